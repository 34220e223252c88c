#pragma once

#include <QWidget>

#include <memory>

class QVBoxLayout;

namespace Core {

class RecentFiles;
class RecoveryStore;

/// What the window shows while no file is open: what to do, unsaved changes that were kept,
/// and the files opened last.
class WelcomePage final : public QWidget
{
    Q_OBJECT

public:
    /// @p recentFiles has to be there whenever the page comes into sight.
    explicit WelcomePage(const RecentFiles &recentFiles, QWidget *parent = nullptr);

    /// Without it the page says nothing of recovered files.
    void setRecoveryStore(std::shared_ptr<const RecoveryStore> store) { m_store = std::move(store); }

    /// Lists the files anew; coming into sight does so, too.
    void refresh();

protected:
    void showEvent(QShowEvent *event) override;

Q_SIGNALS:
    void openRequested();
    void recoveredFilesRequested();
    void fileRequested(const QString &path);

private:
    void build();
    void addRecovered();
    void addRecent();

    const RecentFiles &m_recentFiles;
    std::shared_ptr<const RecoveryStore> m_store;
    QVBoxLayout *m_links = nullptr; ///< null until the page is seen for the first time, which it seldom is
};

} // namespace Core
