#include "core/caredfile.h"

#include "core/filecare.h"
#include "core/processidentity.h"
#include "core/recoverystore.h"

#include <QAction>
#include <QDir>
#include <QLabel>
#include <QTest>

using Core::EditorManager;
using Core::MainWindow;
using Core::RecoveryStore;
using ExtensionSystem::PluginManager;

void CaredFile::setUp()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_dir->path()).mkdir(s("files")));
    m_path = m_dir->filePath(s("files/a.fake"));
    m_state = m_dir->filePath(s("state/recovery"));
    m_plugins = std::make_unique<PluginManager>();
    m_factory = std::make_unique<FakeFactory>();
    PluginManager::addObject(m_factory.get());
    m_settings = std::make_unique<QSettings>(m_dir->filePath(s("settings.ini")), QSettings::IniFormat);
    m_manager = std::make_unique<EditorManager>();
    m_window = std::make_unique<MainWindow>(*m_manager, *m_settings);
    m_window->setRecoveryStore(std::make_shared<RecoveryStore>(m_state));
    m_window->fileCare().setIntervals(30, SettleTime);
    m_window->show();
}

void CaredFile::tearDown()
{
    m_window.reset();
    m_manager.reset();
    QCOMPARE(FakeDocument::alive, 0);
    m_settings.reset();
    m_factory.reset();
    m_plugins.reset();
    m_dir.reset();
}

FakeDocument *CaredFile::open(const QByteArray &content)
{
    writeFile(m_path, content);
    m_window->openFile(m_path);
    return document();
}

FakeDocument *CaredFile::document() const
{
    Core::IEditor *editor = m_window->currentEditor();
    return editor ? qobject_cast<FakeDocument *>(editor->document()) : nullptr;
}

QString CaredFile::textOf(const char *barName) const
{
    return bar(barName)->isVisible() ? m_window->findChild<QLabel *>(s(barName) + s("Text"))->text() : QString();
}

void CaredFile::leaveCopy(const QByteArray &data, const QByteArray &original, int number)
{
    const Core::RecoveryKey key = RecoveryStore::keyOf(m_path);
    QString error;
    if (!RecoveryStore(m_state).write(key, original, data, &error))
        qFatal("%s", qPrintable(error));
    const QString own = QStringLiteral("%1/%2-%3.recovery")
                            .arg(m_state, QString::fromLatin1(key.hash))
                            .arg(QCoreApplication::applicationPid());
    QByteArray content = contentOf(own);
    content.replace(Core::ProcessIdentity::current().boot, "another boot");
    QFile::remove(own);
    writeFile(
        QStringLiteral("%1/%2-%3.recovery").arg(m_state, QString::fromLatin1(key.hash)).arg(2'000'000'000 + number),
        content);
}

void CaredFile::trigger(const char *action)
{
    m_window->findChild<QAction *>(s(action))->trigger();
}

QMessageBox *CaredFile::box(const char *name) const
{
    auto *found = m_window->findChild<QMessageBox *>(s(name));
    return found && found->isVisible() ? found : nullptr;
}

void CaredFile::answer(const char *boxName, bool goOn)
{
    QAbstractButton *wanted = nullptr;
    const auto buttons = box(boxName)->buttons();
    for (QAbstractButton *candidate : buttons)
        if ((box(boxName)->buttonRole(candidate) == QMessageBox::DestructiveRole) == goOn)
            wanted = candidate;
    wanted->click();
}
