#pragma once

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

signals:
    void openRequested();
    void fileRequested(const QString &path);

private:
    QVBoxLayout *m_recent = nullptr;
};

} // namespace Core
