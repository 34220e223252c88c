#include "core/aboutpluginsdialog.h"
#include "core/fakeeditor.h"
#include "core/mainwindow.h"
#include "extensionsystem/pluginmanager.h"

#include <QAction>
#include <QDropEvent>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <memory>

using Core::EditorManager;
using Core::MainWindow;
using ExtensionSystem::PluginManager;

class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void title();
    void unwrittenStaysMarked();
    void savePrompt_data();
    void savePrompt();
    void onePromptAtATime();
    void revert_data();
    void revert();
    void openFailureIsTold();
    void furtherFiles();
    void recentMenu();
    void droppedFile();
    void busyIndicator();
    void placeIsRemembered();
    void aboutPlugins();

private:
    QString makeFile(const QString &name, const QByteArray &content = "<fake/>");
    FakeDocument *open(const QByteArray &content = "<fake/>");
    void trigger(const char *action);
    /// The only visible message box with this object name, or null.
    QMessageBox *box(const char *name) const;

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<PluginManager> m_plugins;
    std::unique_ptr<FakeFactory> m_factory;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<EditorManager> m_manager;
    std::unique_ptr<MainWindow> m_window;
};

void tst_MainWindow::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_plugins = std::make_unique<PluginManager>();
    m_factory = std::make_unique<FakeFactory>();
    PluginManager::addObject(m_factory.get());
    m_settings = std::make_unique<QSettings>(m_dir->filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    m_manager = std::make_unique<EditorManager>();
    m_window = std::make_unique<MainWindow>(*m_manager, *m_settings);
    m_window->show();
}

void tst_MainWindow::cleanup()
{
    m_window.reset();
    m_manager.reset();
    QCOMPARE(FakeDocument::alive, 0);
    m_settings.reset();
    m_factory.reset();
    m_plugins.reset();
    m_dir.reset();
}

QString tst_MainWindow::makeFile(const QString &name, const QByteArray &content)
{
    const QString path = m_dir->filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s cannot be written", qPrintable(path));
    return path;
}

FakeDocument *tst_MainWindow::open(const QByteArray &content)
{
    m_window->openFile(makeFile(QStringLiteral("a.fake"), content));
    return m_window->currentEditor() ? qobject_cast<FakeDocument *>(m_window->currentEditor()->document()) : nullptr;
}

void tst_MainWindow::trigger(const char *action)
{
    auto *found = m_window->findChild<QAction *>(QString::fromLatin1(action));
    if (!found || !found->isEnabled())
        qFatal("%s can't be triggered", action);
    found->trigger();
}

QMessageBox *tst_MainWindow::box(const char *name) const
{
    const auto boxes = m_window->findChildren<QMessageBox *>(QString::fromLatin1(name));
    QMessageBox *shown = nullptr;
    for (QMessageBox *candidate : boxes) {
        if (!candidate->isVisible())
            continue;
        if (shown)
            qFatal("more than one %s", name);
        shown = candidate;
    }
    return shown;
}

void tst_MainWindow::title()
{
    QCOMPARE(m_window->windowTitle(), QStringLiteral("ExtPoint Workbench"));
    FakeDocument *document = open();
    QVERIFY(document);
    QCOMPARE(m_window->windowTitle(), QStringLiteral("a.fake[*] — %1 — ExtPoint Workbench").arg(m_dir->path()));
    QVERIFY(!m_window->isWindowModified());
    document->modify();
    QVERIFY(m_window->isWindowModified());
    trigger("saveAction");
    QVERIFY(!m_window->isWindowModified());
    trigger("closeAction");
    QCOMPARE(m_window->windowTitle(), QStringLiteral("ExtPoint Workbench"));
    QVERIFY(!m_window->findChild<QAction *>(QStringLiteral("saveAction"))->isEnabled());
}

void tst_MainWindow::unwrittenStaysMarked()
{
    FakeDocument *document = open(R"(<fake save="log"/>)");
    QVERIFY(document);
    document->modify();
    trigger("saveAction");
    QVERIFY(!document->isModified());
    QVERIFY(m_window->isWindowModified());
    QMessageBox *error = box("errorMessage");
    QVERIFY(error);
    QCOMPARE(error->textFormat(), Qt::PlainText);
    QVERIFY(error->informativeText().contains(m_dir->filePath(QStringLiteral("a.fake"))));
    QVERIFY(error->informativeText().contains(QLatin1String("the disk is made of cheese")));
    error->accept();
    document->setSaveMode(QString());
    trigger("saveAction");
    QVERIFY(!m_window->isWindowModified());
}

void tst_MainWindow::savePrompt_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("closed");
    QTest::addColumn<QByteArray>("message");

    const char *const actions[] = { "closeAction", "quitAction" };
    for (const char *action : actions) {
        const auto row = [action](const char *name, const QByteArray &content, QMessageBox::StandardButton button,
                             bool closed, const QByteArray &message = QByteArray()) {
            QTest::addRow("%s: %s", action, name)
                << QString::fromLatin1(action) << content << int(button) << closed << message;
        };
        row("save", "<fake/>", QMessageBox::Save, true);
        row("save fails", R"(<fake save="nothing"/>)", QMessageBox::Save, false, "errorMessage");
        row("save leaves an empty file", R"(<fake save="instruction"/>)", QMessageBox::Save, false, "warningMessage");
        row("discard", R"(<fake save="nothing"/>)", QMessageBox::Discard, true);
        row("cancel", "<fake/>", QMessageBox::Cancel, false);
    }
}

void tst_MainWindow::savePrompt()
{
    QFETCH(QString, action);
    QFETCH(QByteArray, content);
    QFETCH(int, button);
    QFETCH(bool, closed);
    QFETCH(QByteArray, message);
    FakeDocument *document = open(content);
    QVERIFY(document);
    document->modify();
    trigger(action.toLatin1().constData());
    QVERIFY(m_window->currentEditor());
    QMessageBox *prompt = box("savePrompt");
    QVERIFY(prompt);
    bool clicked = false;
    QTimer::singleShot(0, prompt, [&] {
        QTest::mouseClick(prompt->button(QMessageBox::StandardButton(button)), Qt::LeftButton);
        clicked = true;
    });
    QTRY_VERIFY(clicked && !box("savePrompt"));
    QCoreApplication::processEvents();
    QCOMPARE(m_window->currentEditor() == nullptr, closed);
    QCOMPARE(m_window->isVisible(), !(closed && action == QLatin1String("quitAction")));
    for (const char *name : { "errorMessage", "warningMessage" })
        QCOMPARE(box(name) != nullptr, message == name);
    QFile file(m_dir->filePath(QStringLiteral("a.fake")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const bool saved = button == QMessageBox::Save && message != "errorMessage";
    QCOMPARE(file.readAll() != content, saved);
}

void tst_MainWindow::onePromptAtATime()
{
    FakeDocument *document = open();
    QVERIFY(document);
    document->modify();
    trigger("closeAction");
    trigger("quitAction");
    trigger("revertAction");
    QVERIFY(!m_window->close());
    QVERIFY(box("savePrompt"));
    QVERIFY(!box("revertPrompt"));
    box("savePrompt")->button(QMessageBox::Cancel)->click();
    QTRY_VERIFY(!box("savePrompt"));
    // Cancelled is not remembered as an answer.
    QCoreApplication::processEvents();
    QVERIFY(!m_window->close());
    QTRY_VERIFY(box("savePrompt"));
}

void tst_MainWindow::revert_data()
{
    QTest::addColumn<bool>("modified");
    QTest::addColumn<QByteArray>("onDisk");
    QTest::addColumn<bool>("cancelled");
    QTest::addColumn<bool>("fresh");
    QTest::addColumn<bool>("told");

    QTest::newRow("clean") << false << QByteArray("<fake/>") << false << true << false;
    QTest::newRow("modified") << true << QByteArray("<fake/>") << false << true << false;
    QTest::newRow("cancelled") << true << QByteArray("<fake/>") << true << false << false;
    QTest::newRow("broken meanwhile") << true << QByteArray("<fake") << false << false << true;
}

void tst_MainWindow::revert()
{
    QFETCH(bool, modified);
    QFETCH(QByteArray, onDisk);
    QFETCH(bool, cancelled);
    QFETCH(bool, fresh);
    QFETCH(bool, told);
    FakeDocument *document = open();
    QVERIFY(document);
    const QPointer<FakeDocument> old = document;
    const QSignalSpy current(m_window.get(), &MainWindow::currentEditorChanged);
    if (modified)
        document->modify();
    makeFile(QStringLiteral("a.fake"), onDisk);
    trigger("revertAction");
    QMessageBox *prompt = box("revertPrompt");
    QCOMPARE(prompt != nullptr, modified);
    if (prompt) {
        const auto buttons = prompt->buttons();
        for (QAbstractButton *button : buttons)
            if ((prompt->buttonRole(button) == QMessageBox::RejectRole) == cancelled)
                button->click();
    }
    QTRY_VERIFY(!box("revertPrompt"));
    QCoreApplication::processEvents();
    QCOMPARE(old.isNull(), fresh);
    QCOMPARE(FakeDocument::alive, 1);
    QVERIFY(m_window->currentEditor());
    QVERIFY(m_window->currentEditor()->widget()->isVisible());
    QCOMPARE(m_window->isWindowModified(), modified && !fresh);
    QCOMPARE(box("errorMessage") != nullptr, told);
    QCOMPARE(current.count() > 0, fresh);
}

void tst_MainWindow::openFailureIsTold()
{
    QVERIFY(!open("<fake"));
    QMessageBox *error = box("errorMessage");
    QVERIFY(error);
    QVERIFY(error->informativeText().contains(m_dir->filePath(QStringLiteral("a.fake"))));
    QVERIFY(error->informativeText().contains(QLatin1String("cannot be parsed")));
    QVERIFY(m_window->findChild<QWidget *>(QStringLiteral("welcomePage"))->isVisible());
}

void tst_MainWindow::furtherFiles()
{
    QStringList launched;
    bool works = true;
    m_window->setLauncher([&](const QString &path) {
        launched.append(path);
        return works;
    });
    QVERIFY(open());
    const Core::IEditor *first = m_window->currentEditor();
    const QString link = m_dir->filePath(QStringLiteral("link.fake"));
    QVERIFY(QFile::link(m_dir->filePath(QStringLiteral("a.fake")), link));
    for (const QString &same : { m_dir->filePath(QStringLiteral("a.fake")), link,
             m_dir->filePath(QStringLiteral("../%1/./a.fake").arg(QFileInfo(m_dir->path()).fileName())) })
        m_window->openFile(same);
    QVERIFY(launched.isEmpty());
    const QString other = makeFile(QStringLiteral("b.fake"));
    m_window->openFile(other);
    QCOMPARE(launched, QStringList { other });
    QVERIFY(!box("errorMessage"));
    works = false;
    m_window->openFile(other);
    QVERIFY(box("errorMessage"));
    QCOMPARE(m_window->currentEditor(), first);
    QCOMPARE(FakeDocument::alive, 1);
}

void tst_MainWindow::recentMenu()
{
    auto *menu = m_window->findChild<QMenu *>(QStringLiteral("recentMenu"));
    QVERIFY(open());
    trigger("closeAction");
    m_window->openFile(makeFile(QStringLiteral("b & c.fake")));
    trigger("closeAction");
    emit menu->aboutToShow();
    QStringList texts;
    for (const QAction *action : menu->actions())
        texts.append(action->text());
    QCOMPARE(texts,
        (QStringList { m_dir->filePath(QStringLiteral("b && c.fake")), m_dir->filePath(QStringLiteral("a.fake")),
            QString(), QStringLiteral("Clear Menu") }));
    menu->actions().at(1)->trigger();
    QVERIFY(m_window->currentEditor());
    QCOMPARE(m_window->currentEditor()->document()->displayName(), QStringLiteral("a.fake"));
    menu->actions().last()->trigger();
    emit menu->aboutToShow();
    QCOMPARE(menu->actions().size(), 2);
}

void tst_MainWindow::droppedFile()
{
    QMimeData text;
    text.setText(QStringLiteral("text"));
    QDragEnterEvent refused(QPoint(5, 5), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    refused.setAccepted(false);
    QCoreApplication::sendEvent(m_window.get(), &refused);
    QVERIFY(!refused.isAccepted());

    QMimeData data;
    data.setUrls({ QUrl::fromLocalFile(makeFile(QStringLiteral("a.fake"))) });
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_window.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_window.get(), &drop);
    QTRY_VERIFY(m_window->currentEditor());
}

void tst_MainWindow::busyIndicator()
{
    auto *indicator = m_window->findChild<QWidget *>(QStringLiteral("busyIndicator"));
    QVERIFY(!indicator->isVisible());
    const QSignalSpy changes(&m_manager->busyMonitor(), &Core::BusyMonitor::busyChanged);
    QVERIFY(open(R"(<fake busy="60"/>)"));
    bool seen = false;
    while (changes.count() < 2) {
        QTest::qWait(1);
        seen = seen || indicator->isVisible();
    }
    QVERIFY(!seen);
    trigger("closeAction");
    QVERIFY(open(R"(<fake busy="600"/>)"));
    QTRY_VERIFY(indicator->isVisible());
    QTRY_VERIFY(!indicator->isVisible());
}

void tst_MainWindow::placeIsRemembered()
{
    m_window->restorePlace();
    m_window->resize(777, 555);
    QVERIFY(m_window->close());
    MainWindow second(*m_manager, *m_settings);
    second.restorePlace();
    QCOMPARE(second.size(), QSize(777, 555));
}

void tst_MainWindow::aboutPlugins()
{
    m_window->setPluginProblems(0);
    QVERIFY(!m_window->findChild<QWidget *>(QStringLiteral("pluginProblemsButton")));
    m_window->setPluginProblems(2);
    auto *button = m_window->findChild<QAbstractButton *>(QStringLiteral("pluginProblemsButton"));
    QVERIFY(button && button->text().contains(QLatin1Char('2')));
    button->click();
    QVERIFY(m_window->findChild<Core::AboutPluginsDialog *>());
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
