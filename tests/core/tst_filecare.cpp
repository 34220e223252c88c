#include "core/caredfile.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

/// What the window does about changes of its file by others.
class tst_FileCare : public CaredFile
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void changedByOthers_data();
    void changedByOthers();
    void ownSaveIsNoNews();
    void reload();
    void keepMine();
    void noSaveOverOthers();
    void removed();
    void removedAndBack_data();
    void removedAndBack();
    void unreadableMeanwhile();
    void notUnderAMenu();
};

void tst_FileCare::changedByOthers_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<bool>("modified");
    QTest::addColumn<bool>("changed");

    for (const bool modified : { false, true }) {
        const char *state = modified ? "modified" : "clean";
        const auto row = [&](const char *how, bool changed) {
            QTest::addRow("%s, %s", how, state) << s(how) << modified << changed;
        };
        row("written", true);
        row("replaced", true);
        row("replaced, then written", true);
        row("removed and made anew", true);
        row("written while others work beside it", true);
        row("written behind the link", true);
        row("replaced behind the link", true);
        row("move old/one aside; move new/one old/one", true);
        row("move old aside; move new old", true);
        row("move turned link", true);
        row("written with the same", false);
        row("replaced by the same", false);
        row("another file beside it", false);
    }
}

void tst_FileCare::changedByOthers()
{
    QFETCH(QString, how);
    QFETCH(bool, modified);
    QFETCH(bool, changed);
    const QByteArray old = "<fake id='1'/>";
    const QByteArray fresh = "<fake id='2'/>";
    QString target = m_path;
    if (how.endsWith(s("behind the link"))) {
        QVERIFY(QDir(m_dir->path()).mkdir(s("elsewhere")));
        target = m_dir->filePath(s("elsewhere/target"));
        writeFile(target, old);
        QVERIFY(QFile::link(target, m_path));
    }
    const QDir files(m_dir->filePath(s("files")));
    if (how.startsWith(s("move"))) {
        QVERIFY(files.mkpath(s("old/one")) && files.mkpath(s("new/one")));
        QVERIFY(QFile::link(s("old"), files.filePath(s("link"))) && QFile::link(s("new"), files.filePath(s("turned"))));
        writeFile(files.filePath(s("new/one/a.fake")), fresh);
        m_path = files.filePath(s("link/one/a.fake"));
    }
    const QPointer<FakeDocument> first = open(old);
    QVERIFY(first);
    m_window->currentEditor()->widget()->findChild<QTabWidget *>(s("tabWidget"))->setCurrentIndex(1);
    if (modified)
        first->modify("content of mine");
    // The first look is over, so that it is the watching that notices.
    QTest::qWait(2 * SettleTime);
    QTimer others;
    connect(&others, &QTimer::timeout, this, [this] { replaceFile(m_path + s(".beside"), "x"); });
    if (how.endsWith(s("beside it")))
        others.start(SettleTime / 5);

    if (how.startsWith(s("move"))) {
        const QStringList moves = how.split(s("; "));
        for (const QString &move : moves) {
            const QStringList words = move.split(QLatin1Char(' '));
            QCOMPARE(::rename(QFile::encodeName(files.filePath(words.at(1))).constData(),
                         QFile::encodeName(files.filePath(words.at(2))).constData()),
                0);
        }
    } else if (how.startsWith(s("written")))
        writeFile(target, changed ? fresh : old);
    else if (how.startsWith(s("replaced")))
        replaceFile(target, changed ? fresh : old);
    else if (how.startsWith(s("removed")))
        QVERIFY(QFile::remove(target));
    else
        writeFile(m_path + s(".beside"), fresh);
    if (how.startsWith(s("removed")))
        writeFile(target, fresh);

    QPointer<FakeDocument> expected = first;
    if (changed && !modified) {
        QTRY_VERIFY(!first);
        expected = document();
        QCOMPARE(expected->recoveryData(), QByteArray("content of 2"));
        QCOMPARE(m_window->currentEditor()->widget()->findChild<QTabWidget *>(s("tabWidget"))->currentIndex(), 1);
    } else if (changed) {
        QTRY_VERIFY(bar("changeBar")->isVisible());
    } else {
        QTest::qWait(LongEnough);
    }
    if (how.endsWith(s("then written"))) {
        QTest::qWait(2 * SettleTime);
        writeFile(target, "<fake id='3'/>");
        if (!modified) {
            QTRY_VERIFY(!expected);
            expected = document();
            QCOMPARE(expected->recoveryData(), QByteArray("content of 3"));
        }
    }
    QCOMPARE(bar("changeBar")->isVisible(), changed && modified);
    QCOMPARE(document(), expected.data());
    QCOMPARE(m_window->isWindowModified(), modified);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_FileCare::ownSaveIsNoNews()
{
    const QPointer<FakeDocument> document = open();
    for (const char *mode : { "", "inplace" }) {
        document->setSaveMode(s(mode));
        document->modify();
        trigger("saveAction");
        QTest::qWait(LongEnough);
        QVERIFY(document);
        QVERIFY(!bar("changeBar")->isVisible());
    }
}

void tst_FileCare::reload()
{
    const QPointer<FakeDocument> first = open();
    first->modify("content of mine");
    QTRY_COMPARE(copies().size(), 1);
    replaceFile(m_path, "<fake id='2'/>");
    QTRY_VERIFY(bar("changeBar")->isVisible());
    button("reloadButton")->click();
    QTRY_VERIFY(!first);
    QCOMPARE(document()->recoveryData(), QByteArray("content of 2"));
    QVERIFY(!m_window->isWindowModified());
    QVERIFY(!bar("changeBar")->isVisible());
    QVERIFY(copies().isEmpty());
}

void tst_FileCare::keepMine()
{
    const QPointer<FakeDocument> document = open();
    document->modify("content of mine");
    // The replaced file lives on as long as somebody has it open.
    QFile reader(m_path);
    QVERIFY(reader.open(QIODevice::ReadOnly));
    replaceFile(m_path, "<fake id='2'/>");
    QTRY_VERIFY(bar("changeBar")->isVisible());
    button("keepButton")->click();
    QVERIFY(!bar("changeBar")->isVisible());
    QVERIFY(m_window->isWindowModified());
    QCOMPARE(contentOf(m_path), QByteArray("<fake id='2'/>"));

    // What comes after is another matter.
    writeFile(m_path, "<fake id='3'/>");
    QTRY_VERIFY(bar("changeBar")->isVisible());
    button("keepButton")->click();
    trigger("saveAction");
    QVERIFY(!bar("changeBar")->isVisible());
    QVERIFY(!m_window->isWindowModified());
    QVERIFY(contentOf(m_path).contains("saves="));
    QVERIFY(document);
}

void tst_FileCare::noSaveOverOthers()
{
    FakeDocument *document = open();
    document->modify();
    replaceFile(m_path, "<fake id='2'/>");
    // Before it was noticed, and after.
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(bar("changeBar")->isVisible(), i > 0);
        trigger("saveAction");
        QCOMPARE(contentOf(m_path), QByteArray("<fake id='2'/>"));
        QVERIFY(bar("changeBar")->isVisible());
        QVERIFY(m_window->isWindowModified());
        QVERIFY(!QApplication::activeModalWidget());
    }

    // Nor on the way out.
    trigger("closeAction");
    QVERIFY(box("savePrompt"));
    box("savePrompt")->button(QMessageBox::Save)->click();
    QTRY_VERIFY(!box("savePrompt"));
    QCoreApplication::processEvents();
    QCOMPARE(m_window->currentEditor() ? m_window->currentEditor()->document() : nullptr, document);
    QCOMPARE(contentOf(m_path), QByteArray("<fake id='2'/>"));
}

void tst_FileCare::removed()
{
    const QPointer<FakeDocument> document = open();
    QVERIFY(QFile::remove(m_path));
    QTRY_VERIFY(bar("changeBar")->isVisible());
    QVERIFY(textOf("changeBar").contains(s("files/a.fake is no longer on the disk")));
    QVERIFY(button("reloadButton")->isHidden());
    // What only this window has is not to be lost by closing it.
    QVERIFY(m_window->isWindowModified());
    button("keepButton")->click();
    QVERIFY(!bar("changeBar")->isVisible());
    QVERIFY(m_window->isWindowModified());
    trigger("closeAction");
    QVERIFY(box("savePrompt"));
    box("savePrompt")->button(QMessageBox::Cancel)->click();
    QTRY_VERIFY(!box("savePrompt"));
    trigger("saveAction");
    QVERIFY(contentOf(m_path).contains("saves="));
    QVERIFY(!m_window->isWindowModified());

    // The file that the save made is watched like the first.
    QTest::qWait(2 * SettleTime);
    QVERIFY(document);
    writeFile(m_path, "<fake id='2'/>");
    QTRY_VERIFY(!document);
}

void tst_FileCare::removedAndBack_data()
{
    QTest::addColumn<bool>("link");
    QTest::addColumn<bool>("changed");
    QTest::newRow("as it was") << false << false;
    QTest::newRow("as another") << false << true;
    QTest::newRow("as another, behind the link") << true << true;
}

void tst_FileCare::removedAndBack()
{
    QFETCH(bool, link);
    QFETCH(bool, changed);
    QString target = m_path;
    if (link) {
        QVERIFY(QDir(m_dir->path()).mkdir(s("elsewhere")));
        target = m_dir->filePath(s("elsewhere/target"));
        QVERIFY(QFile::link(target, m_path));
    }
    const QPointer<FakeDocument> first = open();
    QVERIFY(QFile::remove(target));
    QTRY_VERIFY(bar("changeBar")->isVisible());
    QVERIFY(m_window->isWindowModified());
    writeFile(target, changed ? "<fake id='2'/>" : "<fake id='1'/>");
    QTRY_VERIFY(!bar("changeBar")->isVisible());
    QVERIFY(!m_window->isWindowModified());
    QCOMPARE(first.isNull(), changed);
    QCOMPARE(document()->recoveryData(), changed ? QByteArray("content of 2") : QByteArray("content of 1"));
}

void tst_FileCare::unreadableMeanwhile()
{
    const QPointer<FakeDocument> first = open();
    writeFile(m_path, "<fake open='text'/>");
    QTRY_VERIFY(textOf("changeBar").contains(s("can't be read as it is now: The fake says no.")));
    QVERIFY(first && !box("errorMessage"));
    button("reloadButton")->click();
    QTest::qWait(50);
    QVERIFY(first && bar("changeBar")->isVisible());
    writeFile(m_path, "<fake id='2'/>");
    QTRY_VERIFY(!first);
    QVERIFY(!bar("changeBar")->isVisible());

    const QPointer<FakeDocument> second = document();
    writeFile(m_path, "<fake open='text'/>");
    QTRY_VERIFY(bar("changeBar")->isVisible());
    button("keepButton")->click();
    QVERIFY(m_window->isWindowModified());
    trigger("saveAction");
    QVERIFY(second && contentOf(m_path).contains("saves="));
}

void tst_FileCare::notUnderAMenu()
{
    const QPointer<FakeDocument> first = open();
    QMenu menu;
    menu.addAction(s("Entry"));
    bool alive = false;
    QTimer::singleShot(0, &menu, [&] {
        writeFile(m_path, "<fake id='2'/>");
        QTest::qWait(LongEnough);
        alive = !first.isNull();
        menu.close();
    });
    menu.exec();
    QVERIFY(alive);
    QTRY_VERIFY(!first);
}

QTEST_MAIN(tst_FileCare)
#include "tst_filecare.moc"
