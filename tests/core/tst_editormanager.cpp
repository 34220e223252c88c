#include "core/editormanager.h"
#include "core/fakeeditor.h"
#include "core/viewmemory.h"
#include "extensionsystem/pluginmanager.h"
#include "files.h"

#include <QApplication>
#include <QDir>
#include <QPointer>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QSettings>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <atomic>
#include <memory>
#include <sys/stat.h>
#include <thread>

using Core::EditorManager;
using Core::OpenOutcome;
using Core::SaveOutcome;
using ExtensionSystem::PluginManager;

class tst_EditorManager : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void routing_data();
    void routing();
    void openFailure_data();
    void openFailure();
    void saveContract_data();
    void saveContract();
    void savedTwiceAtOnce();
    void closing_data();
    void closing();
    void busy();
    void viewsAreRemembered();

private:
    QString makeFile(const QString &name, const QByteArray &content = "<fake/>");
    FakeDocument *openDocument(const QByteArray &content);

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<PluginManager> m_plugins;
    std::unique_ptr<FakeFactory> m_factory;
    std::unique_ptr<EditorManager> m_manager;
};

void tst_EditorManager::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_plugins = std::make_unique<PluginManager>();
    m_factory = std::make_unique<FakeFactory>();
    PluginManager::addObject(m_factory.get());
    m_manager = std::make_unique<EditorManager>();
}

void tst_EditorManager::cleanup()
{
    m_manager.reset();
    QCOMPARE(FakeDocument::alive, 0);
    m_factory.reset();
    m_plugins.reset();
    m_dir.reset();
}

QString tst_EditorManager::makeFile(const QString &name, const QByteArray &content)
{
    writeFile(m_dir->filePath(name), content);
    return m_dir->filePath(name);
}

FakeDocument *tst_EditorManager::openDocument(const QByteArray &content)
{
    const OpenOutcome outcome = m_manager->open(makeFile(s("a.fake"), content));
    return outcome.editor ? qobject_cast<FakeDocument *>(outcome.editor->document()) : nullptr;
}

void tst_EditorManager::routing_data()
{
    QTest::addColumn<QStringList>("factories");
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("expected");

    const QString fake = s("application/x-fake");
    const QString child = s("application/x-fake-child");
    const QString xml = s("text/xml");
    QTest::newRow("exact before parent") << QStringList { xml, fake, child } << "a.child" << 2;
    QTest::newRow("nearest ancestor") << QStringList { xml, fake, child } << "a.grandchild" << 2;
    QTest::newRow("first of equals") << QStringList { fake, fake } << "a.fake" << 0;
    QTest::newRow("none") << QStringList { child } << "a.fake" << -1;
}

void tst_EditorManager::routing()
{
    QFETCH(QStringList, factories);
    QFETCH(QString, file);
    QFETCH(int, expected);
    m_factory.reset();
    std::vector<std::unique_ptr<FakeFactory>> all;
    for (const QString &type : qAsConst(factories)) {
        all.push_back(std::make_unique<FakeFactory>(type));
        PluginManager::addObject(all.back().get());
    }
    const QString path = makeFile(file);
    const Core::IEditorFactory *wanted = expected < 0 ? nullptr : all.at(size_t(expected)).get();
    QCOMPARE(m_manager->factoryFor(path), wanted);
    const OpenOutcome outcome = m_manager->open(path);
    QCOMPARE(outcome.editor != nullptr, expected >= 0);
    QCOMPARE(outcome.error.contains(s("application/x-fake")), expected < 0);
}

void tst_EditorManager::openFailure_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");

    const auto row = [](const char *name, const char *kind, const char *content, const char *reason) {
        QTest::newRow(name) << s(kind) << QByteArray(content) << s(reason);
    };
    row("missing", "none", "", "The file does not exist.");
    row("directory", "directory", "", "This is a directory, not a file.");
    row("pipe", "pipe", "", "This is not a regular file.");
    row("error text", "file", R"(<fake open="text"/>)", "The fake says no.");
    row("logged", "file", R"(<fake open="log"/>)", "line 1, column 7: a logged reason");
    row("without a word", "file", R"(<fake open="silent"/>)", "The content of the file cannot be parsed.");
}

void tst_EditorManager::openFailure()
{
    QFETCH(QString, kind);
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    const QString path = m_dir->filePath(s("a.fake"));
    if (kind == s("directory"))
        QVERIFY(QDir().mkdir(path));
    else if (kind == s("pipe"))
        QVERIFY(::mkfifo(QFile::encodeName(path).constData(), 0600) == 0);
    else if (kind == s("file"))
        makeFile(s("a.fake"), content);
    const QSignalSpy opened(m_manager.get(), &EditorManager::opened);
    const OpenOutcome outcome = m_manager->open(path);
    QVERIFY(!outcome.editor);
    QCOMPARE(outcome.error, reason);
    QCOMPARE(opened.count(), 0);
    QCOMPARE(FakeDocument::alive, 0);
    QVERIFY(QApplication::allWidgets().isEmpty());
}

void tst_EditorManager::saveContract_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<bool>("written");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("warning");

    const auto row = [](const char *mode, bool written, const char *error, const char *warning = "") {
        QTest::newRow(mode) << s(mode) << written << s(error) << s(warning);
    };
    row("replace", true, "");
    row("inplace", true, "");
    row("nothing", false, "The file on disk was not changed.");
    row("log", false, "the disk is made of cheese");
    row("text", false, "The fake did not write.");
    row("refuse", false, "The file on disk was not changed.");
    row("instruction", true, "", "The saved file has no content but its XML declaration. It will not open again.");
    row("truncated", true, "",
        "The saved file is damaged (line 2, column 0: Premature end of document.). It will not open again.");
    row("directory removed", false, "The directory of the file does not exist.");
    row("file removed", true, "");
}

void tst_EditorManager::saveContract()
{
    QFETCH(QString, mode);
    QFETCH(bool, written);
    QFETCH(QString, error);
    QFETCH(QString, warning);
    FakeDocument *document = openDocument("<fake/>");
    QVERIFY(document);
    document->setSaveMode(mode);
    const QString path = document->filePath().toString();
    if (mode == s("directory removed"))
        QVERIFY(QDir(m_dir->path()).removeRecursively());
    else if (mode == s("file removed"))
        QVERIFY(QFile::remove(path));
    Core::IEditor *editor = m_manager->editors().front();
    document->modify();

    const SaveOutcome outcome = m_manager->save(editor);
    QCOMPARE(outcome.written, written);
    QCOMPARE(outcome.error, error);
    QCOMPARE(outcome.warning, warning);
    QVERIFY(!document->isModified());
    QCOMPARE(m_manager->isModified(editor), !written);
}

void tst_EditorManager::savedTwiceAtOnce()
{
    FakeDocument *document = openDocument(R"(<fake save="inplace"/>)");
    QVERIFY(document);
    // In place and of the same size, only the time tells; the file system's clock is coarse.
    for (int i = 0; i < 20; ++i)
        QVERIFY(m_manager->save(m_manager->editors().front()).written);
}

void tst_EditorManager::closing_data()
{
    QTest::addColumn<bool>("deletesWidget");

    QTest::newRow("the editor leaves its widget") << false;
    QTest::newRow("the editor deletes its widget") << true;
}

void tst_EditorManager::closing()
{
    QFETCH(bool, deletesWidget);
    m_factory->deletesWidget = deletesWidget;
    QVERIFY(openDocument("<fake/>"));
    const QPointer<Core::IEditor> editor = m_manager->editors().front();
    const QPointer<QWidget> widget = editor->widget();
    bool wholeWhenTold = false;
    connect(m_manager.get(), &EditorManager::aboutToClose, this,
        [&](Core::IEditor *closing) { wholeWhenTold = closing == editor && widget && FakeDocument::alive == 1; });
    m_manager->close(editor);
    QVERIFY(wholeWhenTold);
    QVERIFY(editor.isNull());
    QVERIFY(widget.isNull());
    QVERIFY(m_manager->editors().empty());
}

void tst_EditorManager::busy()
{
    const Core::BusyMonitor &monitor = m_manager->busyMonitor();
    QSignalSpy changes(&monitor, &Core::BusyMonitor::busyChanged);
    QVERIFY(openDocument(R"(<fake busy="100"/>)"));
    QVERIFY(monitor.isBusy());
    QTRY_COMPARE(changes.count(), 2);
    QCOMPARE(changes.at(0).at(0).toBool(), true);
    QCOMPARE(changes.at(1).at(0).toBool(), false);
    QVERIFY(!monitor.isBusy());

    std::atomic<bool> done { false };
    const auto end = qScopeGuard([&done] {
        done = true;
        QThreadPool::globalInstance()->waitForDone();
    });
    QThreadPool::globalInstance()->start([&done] {
        while (!done)
            std::this_thread::yield();
    });
    QTRY_COMPARE(changes.count(), 3);
    QVERIFY(monitor.isBusy());
    done = true;
    QTRY_COMPARE(changes.count(), 4);

    // A document that is closed while it works leaves no trace.
    m_manager->close(m_manager->editors().front());
    QVERIFY(openDocument(R"(<fake busy="100000"/>)"));
    QVERIFY(monitor.isBusy());
    m_manager->close(m_manager->editors().front());
    QVERIFY(!monitor.isBusy());
}

/// As a list of the files closed last says it.
void tst_EditorManager::viewsAreRemembered()
{
    constexpr int Files = Core::ViewMemory::MostFiles + 10;
    const QString store = m_dir->filePath(s("settings.ini"));
    auto settings = std::make_unique<QSettings>(store, QSettings::IniFormat);
    auto memory = std::make_unique<Core::ViewMemory>(*m_manager, *settings);
    QRandomGenerator random(7);
    QVector<QPair<int, int>> closed; // file and page, the last one first
    for (int step = 0; step < 3 * Files; ++step) {
        // Another process, now and then.
        if (step % 50 == 0) {
            memory.reset();
            settings = std::make_unique<QSettings>(store, QSettings::IniFormat);
            memory = std::make_unique<Core::ViewMemory>(*m_manager, *settings);
        }
        const int file = step < Files ? step : random.bounded(Files);
        const auto known
            = std::find_if(closed.begin(), closed.end(), [&](const auto &each) { return each.first == file; });
        const int expected = known == closed.end() ? 0 : known->second;
        if (known != closed.end())
            closed.erase(known);
        const QString path = makeFile(s("%1.fake").arg(file));
        const QString link = m_dir->filePath(s("link.fake"));
        QFile::remove(link);
        QVERIFY(QFile::link(path, link));
        Core::IEditor *editor = m_manager->open(step % 3 == 0 ? link : path).editor;
        auto *tabs = editor->widget()->findChild<QTabWidget *>();
        memory->restore(editor);
        QCOMPARE(tabs->currentIndex(), expected);
        closed.prepend({ file, random.bounded(2) });
        closed.resize(qMin(closed.size(), Core::ViewMemory::MostFiles));
        tabs->setCurrentIndex(closed.first().second);
        m_manager->close(editor);
    }
    settings->beginGroup(s("Views"));
    QCOMPARE(settings->childKeys().size(), Core::ViewMemory::MostFiles);
    // What somebody has damaged is as good as nothing.
    const QString path = m_dir->filePath(s("%1.fake").arg(closed.first().first));
    for (const QString &key : settings->childKeys()) {
        QVariantList entry = settings->value(key).toList();
        entry[1] = entry.at(1).toByteArray().left(random.bounded(12)) + QByteArray(random.bounded(12), '\xff');
        settings->setValue(key, entry);
    }
    settings->endGroup();
    Core::IEditor *editor = m_manager->open(path).editor;
    memory->restore(editor);
    QCOMPARE(editor->widget()->findChild<QTabWidget *>()->currentIndex(), 0);
}

QTEST_MAIN(tst_EditorManager)
#include "tst_editormanager.moc"
