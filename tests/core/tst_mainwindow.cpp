#include "core/aboutpluginsdialog.h"
#include "core/caredfile.h"
#include "core/finddock.h"
#include "core/guidewindow.h"
#include "core/problemsdock.h"

#include <QAction>
#include <QCommandLinkButton>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QUrl>
#include <QXmlStreamReader>

#include <algorithm>
#include <numeric>

using Core::MainWindow;

class tst_MainWindow : public CaredFile
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void savePrompt_data();
    void savePrompt();
    void onePromptAtATime();
    void revert_data();
    void revert();
    void undo();
    void undoInAField();
    void openFailureIsTold();
    void furtherFiles();
    void saveAs();
    void newFile_data();
    void newFile();
    void newFileOfATakenId();
    void drops_data();
    void drops();
    void guide();
    void aboutPlugins();
    void findInProduct();
    void problems();

private:
    /// Until the history knows what has changed: a pause of the machine makes it wait longer for an idle moment.
    void settle() const;
    QString makeFile(const QString &name, const QByteArray &content = "<fake/>");
};

QString tst_MainWindow::makeFile(const QString &name, const QByteArray &content)
{
    const QString path = QFileInfo(m_path).path() + QLatin1Char('/') + name;
    writeFile(path, content);
    return path;
}

void tst_MainWindow::savePrompt_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("closed");
    QTest::addColumn<QByteArray>("message");

    const auto row = [](const char *action, const char *name, const QByteArray &content,
                         QMessageBox::StandardButton button, bool closed, const QByteArray &message = QByteArray()) {
        QTest::addRow("%s: %s", action, name) << s(action) << content << int(button) << closed << message;
    };
    row("closeAction", "save", "<fake/>", QMessageBox::Save, true);
    row("closeAction", "discard", R"(<fake save="nothing"/>)", QMessageBox::Discard, true);
    row("closeAction", "cancel", "<fake/>", QMessageBox::Cancel, false);
    row("quitAction", "save", "<fake/>", QMessageBox::Save, true);
    row("quitAction", "save fails", R"(<fake save="log"/>)", QMessageBox::Save, false, "errorMessage");
    row("quitAction", "empty file", R"(<fake save="instruction"/>)", QMessageBox::Save, false, "warningMessage");
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
    QCOMPARE(m_window->isVisible(), !(closed && action == s("quitAction")));
    for (const char *name : { "errorMessage", "warningMessage" })
        QCOMPARE(box(name) != nullptr, message == name);
    const bool saved = button == QMessageBox::Save && message != "errorMessage";
    QCOMPARE(contentOf(m_path) != content, saved);
    // A document that calls itself clean stays marked while nothing was written.
    if (message == "errorMessage")
        QVERIFY(!document->isModified() && m_window->isWindowModified()
            && box("errorMessage")->informativeText().contains(s("the disk is made of cheese")));
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
    FakeDocument *document = open("<fake/>");
    QVERIFY(document);
    const QPointer<FakeDocument> old = document;
    const QSignalSpy current(m_window.get(), &MainWindow::currentEditorChanged);
    if (modified)
        document->modify();
    makeFile(s("a.fake"), onDisk);
    trigger("revertAction");
    QCOMPARE(box("revertPrompt") != nullptr, modified);
    if (modified)
        answer("revertPrompt", !cancelled);
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

/// A list of what the document was, and a place in it.
void tst_MainWindow::settle() const
{
    const auto *idle = m_window->findChild<QTimer *>(s("undoIdleTimer"));
    QCoreApplication::processEvents();
    while (idle->isActive())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void tst_MainWindow::undo()
{
    FakeDocument *document = open();
    QVERIFY(document);
    document->modify("0");
    settle();
    const auto weight = [](const QByteArray &content) {
        return content.startsWith("heavy") ? qint64(20) * 1024 * 1024 : content.size();
    };
    QList<QByteArray> states { "0" };
    int current = 0;
    QRandomGenerator random(1);
    const auto *button = m_window->findChild<QToolButton *>(s("undoDeletionButton"));
    for (int step = 1; step <= 1500; ++step) {
        switch (random.bounded(step < 900 ? 9 : 5)) {
        case 0:
            trigger("undoAction");
            current = qMax(0, current - 1);
            break;
        case 1:
            trigger("redoAction");
            current = qMin(int(states.size()) - 1, current + 1);
            break;
        case 2:
            document->modify(); // the same once more
            settle();
            break;
        default: {
            static const char *const kinds[] = { "deleted ", "light ", "light ", "heavy " };
            // A beginning without heavy ones reaches the greatest number of steps.
            const QByteArray content = kinds[random.bounded(step < 500 ? 3 : 4)] + QByteArray::number(step);
            document->modify(content);
            if (random.bounded(2))
                settle();
            else
                trigger("undoAction"); // what has changed since is known all the same
            states = states.mid(0, current + 1) << content;
            const auto bytes = [&] {
                return std::accumulate(states.cbegin(), states.cend(), qint64(0),
                    [&](qint64 sum, const QByteArray &state) { return sum + weight(state); });
            };
            while (states.size() > 201 || (states.size() > 2 && bytes() > 64 * 1024 * 1024))
                states.removeFirst();
            current = int(states.size()) - (document->content() == content ? 1 : 2);
            if (current == states.size() - 1)
                QCOMPARE(button->isVisible(), content.startsWith("deleted"));
        }
        }
        QCOMPARE(document->content(), states.at(current));
        QCOMPARE(m_window->findChild<QAction *>(s("undoAction"))->isEnabled(), current > 0);
        QCOMPARE(m_window->findChild<QAction *>(s("redoAction"))->isEnabled(), current + 1 < states.size());
    }
    QVERIFY(m_window->isWindowModified());
}

void tst_MainWindow::undoInAField()
{
    FakeDocument *document = open();
    QVERIFY(document);
    settle();
    document->modify("changed");
    settle();
    auto *field = m_window->findChild<QLineEdit *>();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    field->setFocus();
    QTest::keyClicks(field, s("typed"));
    QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(field->text(), QString());
    QCOMPARE(document->content(), QByteArray("changed"));
    QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(document->content() != "changed");
    QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(field->text(), s("typed"));
    QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(document->content(), QByteArray("changed"));
}

void tst_MainWindow::openFailureIsTold()
{
    QVERIFY(!open("<fake"));
    QMessageBox *error = box("errorMessage");
    QVERIFY(error);
    QVERIFY(error->informativeText().contains(m_path));
    QVERIFY(error->informativeText().contains(s("cannot be parsed")));
    QVERIFY(m_window->findChild<QWidget *>(s("welcomePage"))->isVisible());
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
    const QString link = m_path + s(".link.fake");
    QVERIFY(QFile::link(m_path, link));
    for (const QString &same : { m_path, link, m_dir->filePath(s("files/../files/./a.fake")) })
        m_window->openFile(same);
    QVERIFY(launched.isEmpty());
    const QString other = makeFile(s("b.fake"));
    m_window->openFile(other);
    QCOMPARE(launched, QStringList { other });
    QVERIFY(!box("errorMessage"));
    works = false;
    m_window->openFile(other);
    QVERIFY(box("errorMessage"));
    QCOMPARE(m_window->currentEditor(), first);
    QCOMPARE(FakeDocument::alive, 1);
}

/// Nothing is written, and the directory to copy is named.
void tst_MainWindow::saveAs()
{
    QVERIFY(!m_window->findChild<QAction *>(s("saveAsAction"))->isEnabled());
    QVERIFY(open());
    const QStringList before = QFileInfo(m_path).dir().entryList();
    trigger("saveAsAction");
    QVERIFY(box("saveAsMessage"));
    QVERIFY(box("saveAsMessage")->informativeText().contains(QFileInfo(m_path).path()));
    QCOMPARE(QFileInfo(m_path).dir().entryList(), before);
}

void tst_MainWindow::newFile_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("directory"); // the part of the id if empty
    QTest::addColumn<QString>("made");      // below the place; nothing is if empty
    const auto row = [](const char *title, const char *id, const char *name, const char *directory, const char *made) {
        QTest::newRow(title) << s(id) << s(name) << s(directory) << s(made);
    };
    row("plain", "a.b.chart", "Chart", "", "chart");
    row("escaped", "chart", R"(<"Salt" & 'Pepper'> ]]> ü)", "", "chart");
    row("a directory of one's own choice", "a.chart", "Chart", "my chart", "my chart");
    row("a directory that is there", "a.empty", "Chart", "", "empty");
    row("a file that is there", "a.taken", "Chart", "", "");
    row("a link to nowhere", "a.dangling", "Chart", "", "");
    row("no id", "", "Chart", "chart", "");
    row("blank in the id", "a chart", "Chart", "chart", "");
    row("dots at the end of the id", "a..", "Chart", "chart", "");
    row("no name", "a.chart", " ", "", "");
    row("out of the place", "a.chart", "Chart", "../chart", "");
    row("the place above", "a.chart", "Chart", "..", "");
    row("what XML can't hold", "a.chart", "Cha\x01rt", "", "");
}

void tst_MainWindow::newFile()
{
    QFETCH(QString, id);
    QFETCH(QString, name);
    QFETCH(QString, directory);
    QFETCH(QString, made);
    const QDir place(m_dir->filePath(s("files")));
    for (const char *each : { "empty", "taken", "dangling" })
        QVERIFY(place.mkdir(s(each)));
    writeFile(place.filePath(s("taken/extension.xml")), "mine");
    QVERIFY(QFile::link(m_dir->filePath(s("elsewhere")), place.filePath(s("dangling/extension.xml"))));
    QStringList launched;
    m_window->setLauncher([&](const QString &path) {
        launched.append(path);
        return true;
    });
    QVERIFY(open());
    trigger("newAction");
    auto *dialog = m_window->findChild<QDialog *>(s("newFileDialog"));
    QVERIFY(dialog);
    const auto type = [dialog](const char *field, const QString &text) {
        auto *line = dialog->findChild<QLineEdit *>(s(field));
        line->selectAll();
        line->insert(text);
    };
    type("newPlace", place.path());
    if (!directory.isEmpty())
        type("newDirectory", directory);
    type("newId", id);
    type("newName", name);
    type("newVendor", s("A & B"));
    auto *create = dialog->findChild<QPushButton *>(s("createFileButton"));
    QCOMPARE(create->isEnabled(), !made.isEmpty());
    create->click();
    QCoreApplication::processEvents();
    QCOMPARE(contentOf(place.filePath(s("taken/extension.xml"))), QByteArray("mine"));
    QVERIFY(!QFile::exists(m_dir->filePath(s("elsewhere"))));
    const QString path = place.filePath(made + s("/extension.xml"));
    QCOMPARE(launched, made.isEmpty() ? QStringList() : QStringList(path));
    if (made.isEmpty())
        return;
    QXmlStreamReader reader(contentOf(path));
    QVERIFY(reader.readNextStartElement());
    QCOMPARE(reader.name().toString(), s("Plugin"));
    QStringList attributes;
    for (const QXmlStreamAttribute &each : reader.attributes())
        attributes << each.name().toString() << each.value().toString();
    QCOMPARE(attributes, QStringList({ s("id"), id, s("name"), name, s("vendor"), s("A & B") }));
    QVERIFY(!reader.readNextStartElement() && !reader.hasError());
}

void tst_MainWindow::newFileOfATakenId()
{
    QVERIFY(open());
    const QDir place(m_dir->filePath(s("files")));
    // A long beginning, and more plug-ins than are read in one go.
    for (int i = 0; i < 300; ++i) {
        QVERIFY(place.mkdir(s("p%1").arg(i)));
        writeFile(place.filePath(s("p%1/extension.xml").arg(i)),
            "<!--" + QByteArray(9000, '-').replace("--", "- ") + "--><Plugin id=\"a." + QByteArray::number(i) + "\"/>");
    }
    trigger("newAction");
    auto *dialog = m_window->findChild<QDialog *>(s("newFileDialog"));
    dialog->findChild<QLineEdit *>(s("newPlace"))->setText(place.path());
    dialog->findChild<QLineEdit *>(s("newName"))->setText(s("New"));
    for (const int i : { 299, 0, 300 }) {
        dialog->findChild<QLineEdit *>(s("newId"))->setText(s("a.%1").arg(i));
        const auto *note = dialog->findChild<QLabel *>(s("newFileNote"));
        QTRY_COMPARE(note->text().contains(s("\"p%1\" has this id").arg(i)), i < 300);
        QVERIFY(dialog->findChild<QPushButton *>(s("createFileButton"))->isEnabled());
    }
}

void tst_MainWindow::drops_data()
{
    QTest::addColumn<bool>("takesFiles");
    QTest::addColumn<QList<QUrl>>("urls");
    QTest::addColumn<QString>("opened");
    const QUrl file = QUrl::fromLocalFile(s("/there/b.fake"));
    const QUrl remote(s("https://example.org/b.fake"));
    QTest::newRow("on a field") << false << QList<QUrl> { file } << s("/there/b.fake");
    QTest::newRow("the first that is here") << false << QList<QUrl> { remote, file } << s("/there/b.fake");
    QTest::newRow("on a field for files") << true << QList<QUrl> { file } << QString();
    QTest::newRow("on one that is read-only") << true << QList<QUrl> { file } << s("/there/b.fake");
    QTest::newRow("from elsewhere") << false << QList<QUrl> { remote } << QString();
}

void tst_MainWindow::drops()
{
    QFETCH(bool, takesFiles);
    QFETCH(QList<QUrl>, urls);
    QFETCH(QString, opened);
    QStringList launched;
    m_window->setLauncher([&](const QString &path) {
        launched.append(path);
        return true;
    });
    QVERIFY(open());
    auto *field = new QLineEdit(m_window->centralWidget());
    field->setProperty("takesFiles", takesFiles);
    field->setReadOnly(takesFiles && !opened.isEmpty());
    QMimeData data;
    data.setUrls(urls);
    data.setText(urls.first().toString()); // as file managers do
    field->show();
    QDragEnterEvent enter(QPoint(2, 2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(field, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(2, 2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(field, &drop);
    QCoreApplication::processEvents();
    QCOMPARE(launched, opened.isEmpty() ? QStringList() : QStringList(opened));
    QCOMPARE(field->text().isEmpty(), !opened.isEmpty());
}

/// Whatever the guide refers to is there, and "Keys" is shown at once.
void tst_MainWindow::guide()
{
    trigger("keysAction");
    auto *guide = m_window->findChild<Core::GuideWindow *>();
    QVERIFY(guide && guide->isVisible());
    auto *browser = guide->findChild<QTextBrowser *>();
    QCOMPARE(browser->textCursor().block().text(), s("Keys"));
    QVERIFY(browser->verticalScrollBar()->value() > browser->height());
    const QString text = Core::GuideWindow::installedText(s("user-guide.md"));
    QRegularExpressionMatchIterator links = QRegularExpression(s("\\]\\(([^)]+)\\)")).globalMatch(text);
    QVERIFY(links.hasNext());
    while (links.hasNext()) {
        const QString link = links.next().captured(1);
        const bool found = link.startsWith(QLatin1Char('#'))
            ? guide->showSection(link.mid(1))
            : !browser->loadResource(QTextDocument::ImageResource, QUrl(link)).value<QImage>().isNull();
        QVERIFY2(found, qPrintable(link));
    }
    QVERIFY(!guide->showSection(s("nowhere")));
    trigger("userGuideAction");
    QCOMPARE(m_window->findChildren<Core::GuideWindow *>().size(), 1);
    QCOMPARE(browser->verticalScrollBar()->value(), 0);
}

void tst_MainWindow::aboutPlugins()
{
    m_window->setPluginProblems(0);
    QVERIFY(!m_window->findChild<QWidget *>(s("pluginProblemsButton")));
    m_window->setPluginProblems(2);
    auto *button = m_window->findChild<QAbstractButton *>(s("pluginProblemsButton"));
    QVERIFY(button && button->text().contains(QLatin1Char('2')));
    button->click();
    QVERIFY(m_window->findChild<Core::AboutPluginsDialog *>());
}

void tst_MainWindow::findInProduct()
{
    auto *dock = new Core::FindDock(*m_window, m_manager->busyMonitor());
    auto *action = m_window->findChild<QAction *>(s("findInProductAction"));
    QVERIFY(!action->isEnabled() && dock->isHidden());
    open();
    auto *editor = static_cast<FakeEditor *>(m_window->currentEditor());
    m_window->show();
    action->trigger();
    QVERIFY(dock->isVisible());
    auto *needle = dock->findChild<QLineEdit *>(s("findNeedle"));
    auto *list = dock->findChild<QTreeWidget *>(s("findResults"));
    auto *summary = dock->findChild<QLabel *>(s("findSummary"));
    QTest::keyClicks(needle, s("1234"));
    QTRY_COMPARE(list->topLevelItemCount(), 1000);
    QCOMPARE(summary->text(), s("1,000 of 1,234, go on typing"));
    QTest::keyClick(needle, Qt::Key_Return);
    QCOMPARE(editor->wentTo, QStringList(s("0")));
    // Return does not go to what was found for an earlier needle.
    needle->setText(QString());
    QCOMPARE(list->topLevelItemCount(), 0);
    QTest::keyClicks(needle, s("2"));
    QTest::keyClick(needle, Qt::Key_Return);
    QCOMPARE(editor->wentTo, QStringList(s("0")));
    QTRY_COMPARE(summary->text(), s("2 found"));
    // It goes there once it is found.
    QCOMPARE(editor->wentTo, QStringList({ s("0"), s("0") }));
    list->setCurrentItem(list->topLevelItem(1));
    Q_EMIT list->itemActivated(list->currentItem(), 0);
    QCOMPARE(editor->wentTo, QStringList({ s("0"), s("0"), s("1") }));
    QCOMPARE(summary->text(), s("It is no longer there"));
    // What is found while something is being read is looked for again, and the row that was chosen stays current.
    editor->document()->work(300);
    QTRY_VERIFY(m_manager->busyMonitor().isBusy());
    QTest::keyClicks(needle, s("0"));
    QTRY_COMPARE(summary->text(), s("20 found"));
    list->setCurrentItem(list->topLevelItem(7));
    const int searches = editor->searches;
    QTRY_COMPARE(editor->searches, searches + 1);
    QTRY_COMPARE(list->currentIndex().row(), 7);
    editor->presenterOf(s("Users of X"), editor->search(s("3")));
    QTRY_COMPARE(list->topLevelItemCount(), 3);
    QCOMPARE(dock->windowTitle(), s("Users of X"));
    // Escape leads back into the file.
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    needle->setFocus();
    QTest::keyClick(needle, Qt::Key_Escape);
    QVERIFY(editor->widget()->isAncestorOf(QApplication::focusWidget()));
    // A closed editor leaves nothing that leads to it, but a page whose links Return follows.
    trigger("closeAction");
    QTRY_VERIFY(!m_window->currentEditor());
    QVERIFY(list->topLevelItemCount() == 0 && !action->isEnabled());
    QCOMPARE(QApplication::focusWidget()->objectName(), s("welcomeOpenButton"));
    const auto links = m_window->findChildren<QCommandLinkButton *>();
    QVERIFY(!links.isEmpty());
    QCommandLinkButton *link = links.last();
    QTRY_VERIFY(link->isVisible());
    link->setFocus();
    const QSignalSpy clicked(link, &QAbstractButton::clicked);
    QTest::keyClick(link, Qt::Key_Return);
    QCOMPARE(clicked.count(), 1);
}

/// The count is seen while there is something to count; it brings the list, and the list goes to the place.
void tst_MainWindow::problems()
{
    auto *dock = new Core::ProblemsDock(*m_window);
    auto *count = m_window->findChild<QToolButton *>(s("problemsButton"));
    auto *list = m_window->findChild<QTreeWidget *>(s("problemsList"));
    m_window->show();
    QVERIFY(open());
    auto *editor = dynamic_cast<FakeEditor *>(m_window->currentEditor());
    QVERIFY(count->isHidden() && dock->isHidden());
    editor->setProblems({ s("one"), s("two"), s("three") });
    QVERIFY(!count->isHidden() && dock->isHidden());
    QCOMPARE(count->text(), s("3 problems"));
    count->click();
    QVERIFY(!dock->isHidden());
    QCOMPARE(list->topLevelItemCount(), 3);
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(editor->shownProblem, s("two"));
    editor->setProblems({ s("three") });
    QCOMPARE(count->text(), s("1 problem"));
    QCOMPARE(list->topLevelItem(0)->text(0), s("three"));
    // Those of a file that is closed are nobody's.
    trigger("closeAction");
    QTRY_VERIFY(!m_window->currentEditor());
    QVERIFY(count->isHidden());
    QCOMPARE(list->topLevelItemCount(), 0);
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
