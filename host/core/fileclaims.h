#pragma once

#include "core/core_global.h"
#include "core/filetarget.h"

#include <QObject>
#include <QString>

#include <memory>

class QSocketNotifier;

namespace Core {

/// Says to the other processes of this user which file this one shows, and asks them. In a directory that only the user
/// can enter there is, for each file that is shown, a claim, locked for as long as its process lives, and a socket that
/// takes requests; so one that was killed leaves nothing that counts. Which file a claim is about is found out when
/// somebody asks, by device and inode: links are the file, and so is what a save has put in its place. Where no such
/// directory can be had every file is free. GUI thread only; asking blocks for as long as Answer says.
class CORE_EXPORT FileClaims final : public QObject
{
    Q_OBJECT

public:
    enum class Answer {
        Free,  ///< No other process shows the file.
        Taken, ///< One does, and has been told to show its window.
        Silent ///< One does, but has not answered for a second, or is still opening it after ten.
    };

    explicit FileClaims(const QString &directory = defaultDirectory(), QObject *parent = nullptr);
    ~FileClaims() override;

    /// "extpoint-workbench" in $XDG_RUNTIME_DIR, or what stands for that.
    [[nodiscard]] static QString defaultDirectory();

    /// Asks about a file, and has the process that shows it go to the place; @p token is handed on.
    [[nodiscard]] Answer ask(const FileTarget &target, const QByteArray &token);
    /// As ask(), and claims the file in the same step unless it is Taken: of two processes that do so at once one has
    /// it. A claim on another file is given up then; on one that is claimed already this does nothing.
    [[nodiscard]] Answer claim(const FileTarget &target, const QByteArray &token);
    /// Claims the file without asking.
    void hold(const QString &path);
    void release();

Q_SIGNALS:
    /// Another process was to open the file that is claimed here.
    void asked(const Core::FileTarget &target, const QByteArray &token);

private:
    [[nodiscard]] Answer settle(const FileTarget &target, const QByteArray &token, bool claims);
    void hold(int directory, const QString &path);
    void takeRequests();
    void takeRequest(const QByteArray &request, int reply);

    const QString m_directory;
    QString m_path; ///< What is claimed, absolute; empty for nothing.
    QByteArray m_name;
    int m_claim = -1; ///< Descriptors.
    int m_socket = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace Core
