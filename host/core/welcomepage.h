#pragma once

#include <QStringList>
#include <QWidget>

class QVBoxLayout;

namespace Core {

/// What the window shows while no file is open: what to do, and the files opened last.
class WelcomePage final : public QWidget
{
    Q_OBJECT

public:
    explicit WelcomePage(QWidget *parent = nullptr);

    void setRecentFiles(const QStringList &files);

protected:
    void showEvent(QShowEvent *event) override;

signals:
    void openRequested();
    void fileRequested(const QString &path);

private:
    void build();
    void fill();

    QVBoxLayout *m_recent = nullptr; ///< null until the page is seen for the first time, which it seldom is
    QStringList m_files;
};

} // namespace Core
