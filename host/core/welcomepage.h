#pragma once

#include <QWidget>

class QVBoxLayout;

namespace Core {

class RecentFiles;

/// What the window shows while no file is open: what to do, and the files opened last.
class WelcomePage final : public QWidget
{
    Q_OBJECT

public:
    /// @p recentFiles has to be there whenever the page comes into sight.
    explicit WelcomePage(const RecentFiles &recentFiles, QWidget *parent = nullptr);

    /// Lists the files anew; coming into sight does so, too.
    void refresh();

protected:
    void showEvent(QShowEvent *event) override;

signals:
    void openRequested();
    void fileRequested(const QString &path);

private:
    void build();

    const RecentFiles &m_recentFiles;
    QVBoxLayout *m_recent = nullptr; ///< null until the page is seen for the first time, which it seldom is
};

} // namespace Core
