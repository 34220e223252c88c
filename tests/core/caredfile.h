#pragma once

#include "core/fakeeditor.h"
#include "core/mainwindow.h"
#include "extensionsystem/pluginmanager.h"
#include "files.h"

#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>

#include <memory>

constexpr int SettleTime = 50; // milliseconds
/// Long enough that a change would have been noticed.
constexpr int LongEnough = 6 * SettleTime;

/// A window that looks after a file "a.fake" and keeps recovery copies, all in a temporary directory of its own, and
/// with short waits. What the tests of both have in common.
class CaredFile : public QObject
{
    Q_OBJECT

protected:
    void setUp();
    void tearDown();

    FakeDocument *open(const QByteArray &content = "<fake id='1'/>");
    FakeDocument *document() const;
    QPushButton *button(const char *name) const { return m_window->findChild<QPushButton *>(s(name)); }
    QWidget *bar(const char *name) const { return m_window->findChild<QWidget *>(s(name)); }
    QString textOf(const char *barName) const;
    /// What is still being written does not count.
    QStringList copies() const { return QDir(m_state).entryList({ s("*.recovery") }, QDir::Files); }
    /// Leaves a copy as a process does that has ended; a higher @p number is a newer one.
    void leaveCopy(const QByteArray &data, const QByteArray &original, int number = 1);
    void trigger(const char *action);
    QMessageBox *box(const char *name) const;
    /// Clicks the button that goes on or the one that doesn't.
    void answer(const char *boxName, bool goOn);

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
    QString m_state;
    std::unique_ptr<ExtensionSystem::PluginManager> m_plugins;
    std::unique_ptr<FakeFactory> m_factory;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<Core::EditorManager> m_manager;
    std::unique_ptr<Core::MainWindow> m_window;
};
