#include "core/caredfile.h"
#include "core/diskstate.h"
#include "core/filecare.h"
#include "core/recoverystore.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

using Core::DiskState;
using Core::RecoveryStore;

/// What the window keeps of unsaved changes, and what it does about those that an earlier process has left behind.
class tst_FileRecovery : public CaredFile
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void copyComesAndGoes_data();
    void copyComesAndGoes();
    void copyWaitsForTheDocument();
    void copyFails();
    void offer_data();
    void offer();
    void offerOfAMissingFile();
    void offerInAnotherPlace_data();
    void offerInAnotherPlace();
    void severalCopies();
    void restoreOverChanges();
    void recoveredFiles_data();
    void recoveredFiles();

private:
    QDialog *openDialog();
    /// The texts of the rows of the dialog, the first column and the note that comes with it.
    QStringList rows(const QDialog &dialog) const;
};

void tst_FileRecovery::copyComesAndGoes_data()
{
    QTest::addColumn<QString>("end");
    QTest::addColumn<bool>("kept");

    QTest::newRow("saved") << s("saveAction") << false;
    QTest::newRow("saved in vain") << s("save fails") << true;
    QTest::newRow("reverted") << s("revertAction") << false;
    QTest::newRow("closed and discarded") << s("closeAction") << false;
    QTest::newRow("quit and discarded") << s("quitAction") << false;
    QTest::newRow("closing cancelled") << s("cancel") << true;
    QTest::newRow("ended by the system") << s("end") << true;
    QTest::newRow("ended by the system before the first copy") << s("end at once") << true;
}

void tst_FileRecovery::copyComesAndGoes()
{
    QFETCH(QString, end);
    QFETCH(bool, kept);
    FakeDocument *document = open();
    const QByteArray original = contentOf(m_path);
    QTest::qWait(100);
    QVERIFY(copies().isEmpty());
    document->modify("content of mine");
    if (end != s("end at once")) {
        QTRY_COMPARE(copies().size(), 1);
        document->modify("content of mine, later");
        const QString file = m_state + QLatin1Char('/') + copies().first();
        QTRY_VERIFY(contentOf(file).endsWith("content of mine, later"));
        QVERIFY(contentOf(file).contains(DiskState::of(m_path).hash));
    }
    QCOMPARE(contentOf(m_path), original);

    if (end.startsWith(s("end"))) {
        m_manager->closeAll();
    } else if (end == s("cancel")) {
        trigger("closeAction");
        box("savePrompt")->button(QMessageBox::Cancel)->click();
    } else if (end == s("save fails")) {
        document->setSaveMode(s("nothing"));
        trigger("saveAction");
        box("errorMessage")->accept();
    } else {
        trigger(end.toLatin1().constData());
        if (box("savePrompt"))
            box("savePrompt")->button(QMessageBox::Discard)->click();
        if (box("revertPrompt"))
            answer("revertPrompt", true);
    }
    QTest::qWait(100);
    QCOMPARE(copies().size(), kept ? 1 : 0);
    if (end == s("saveAction")) {
        // What is changed from now on is kept with the file as it was saved.
        document->modify("content of mine, later still");
        QTRY_COMPARE(copies().size(), 1);
        QVERIFY(contentOf(m_state + QLatin1Char('/') + copies().first()).contains(DiskState::of(m_path).hash));
    }
    if (end == s("end at once"))
        QVERIFY(contentOf(m_state + QLatin1Char('/') + copies().first()).endsWith("content of mine"));
}

void tst_FileRecovery::copyWaitsForTheDocument()
{
    FakeDocument *document = open("<fake id='1' busy='700'/>");
    document->modify("content of mine");
    QTest::qWait(200);
    QVERIFY(copies().isEmpty());
    QVERIFY(document->property("busy").toBool());
    QVERIFY(!m_window->fileCare().flush());
    QTRY_COMPARE(copies().size(), 1);
    QVERIFY(!document->property("busy").toBool());
    QVERIFY(m_window->fileCare().flush());
}

void tst_FileRecovery::copyFails()
{
    QVERIFY(QDir().mkpath(m_dir->filePath(s("state"))));
    writeFile(m_state, "no directory");
    FakeDocument *document = open();
    const QSignalSpy failed(&m_window->fileCare(), &Core::FileCare::copyFailed);
    document->modify();
    QTRY_COMPARE(failed.count(), 1);
    QVERIFY(failed.first().first().toString().startsWith(m_state));
    // It is tried again without a further change, and told once.
    QTest::qWait(150);
    QCOMPARE(failed.count(), 1);
    QVERIFY(QFile::remove(m_state));
    QTRY_COMPARE(copies().size(), 1);
}

void tst_FileRecovery::offer_data()
{
    QTest::addColumn<bool>("changedSince");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("clicked");

    QTest::newRow("restored") << false << QByteArray("content of mine") << s("restoreButton");
    QTest::newRow("restored over a newer file") << true << QByteArray("content of mine") << s("restoreButton");
    QTest::newRow("not understood") << false << QByteArray("nothing of the kind") << s("restoreButton");
    QTest::newRow("discarded") << false << QByteArray("content of mine") << s("discardButton");
    QTest::newRow("no answer") << false << QByteArray("content of mine") << QString();
}

void tst_FileRecovery::offer()
{
    QFETCH(bool, changedSince);
    QFETCH(QByteArray, data);
    QFETCH(QString, clicked);
    const QByteArray old = "<fake id='1'/>";
    writeFile(m_path, old);
    leaveCopy(data, changedSince ? QByteArray("other") : DiskState::of(m_path).hash);
    const QPointer<FakeDocument> first = open(old);
    QVERIFY(first);
    QVERIFY(bar("recoveryBar")->isVisible());
    QCOMPARE(textOf("recoveryBar").contains(s("was changed since")), changedSince);
    QVERIFY(!m_window->isWindowModified());
    QCOMPARE(first->recoveryData(), QByteArray("content of 1"));

    if (!clicked.isEmpty())
        button(clicked.toLatin1().constData())->click();
    QTest::qWait(100);
    const bool understood = data.startsWith("content of");
    const bool restored = clicked == s("restoreButton") && understood;
    QCOMPARE(first.isNull(), restored);
    QCOMPARE(m_window->isWindowModified(), restored);
    QCOMPARE(bar("recoveryBar")->isVisible(), clicked.isEmpty() || !understood);
    QCOMPARE(copies().size(), clicked == s("discardButton") ? 0 : 1);
    QCOMPARE(contentOf(m_path), old);
    QCOMPARE(box("errorMessage") != nullptr, !understood);
    if (restored) {
        QCOMPARE(document()->recoveryData(), data);
        // It is this process's now, at no moment nobody's.
        QVERIFY(RecoveryStore(m_state).abandoned(RecoveryStore::keyOf(m_path)).empty());
        trigger("saveAction");
        QVERIFY(contentOf(m_path).contains("saves="));
        QVERIFY(copies().isEmpty());
    }
    trigger("closeAction");
    QVERIFY(!bar("recoveryBar")->isVisible());
    QCOMPARE(copies().size(), clicked.isEmpty() || !understood ? 1 : 0);
}

void tst_FileRecovery::offerOfAMissingFile()
{
    writeFile(m_path, "<fake/>");
    leaveCopy("content of mine", DiskState::of(m_path).hash);
    QVERIFY(QFile::remove(m_path));
    m_window->openFile(m_path);
    QVERIFY(!m_window->currentEditor());
    QVERIFY(box("errorMessage"));
    box("errorMessage")->accept();
    QVERIFY(textOf("recoveryBar").contains(s("no longer there")));
    button("restoreButton")->click();
    QTRY_VERIFY(m_window->currentEditor());
    QCOMPARE(document()->recoveryData(), QByteArray("content of mine"));
    trigger("saveAction");
    QVERIFY(contentOf(m_path).contains("saves="));
    QVERIFY(!bar("recoveryBar")->isVisible() && !bar("changeBar")->isVisible());
}

void tst_FileRecovery::offerInAnotherPlace_data()
{
    QTest::addColumn<QString>("opened");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("oldStays");
    QTest::addColumn<bool>("offered");

    const QString renamed = s("files/renamed/a.fake");
    const QByteArray other = "<fake id='1' other='2'/>";
    QTest::newRow("directory renamed") << renamed << other << false << true;
    QTest::newRow("another document") << renamed << QByteArray("<fake id='2'/>") << false << false;
    QTest::newRow("document without a name") << renamed << QByteArray("<fake/>") << false << false;
    QTest::newRow("copy of a document") << renamed << other << true << false;
    QTest::newRow("link turned") << s("files/link/a.fake") << QByteArray("<fake id='2'/>") << true << true;
}

void tst_FileRecovery::offerInAnotherPlace()
{
    QFETCH(QString, opened);
    QFETCH(QByteArray, content);
    QFETCH(bool, oldStays);
    QFETCH(bool, offered);
    const QDir files(m_dir->filePath(s("files")));
    QVERIFY(files.mkdir(s("old")) && files.mkdir(s("renamed")) && QFile::link(s("old"), files.filePath(s("link"))));
    writeFile(files.filePath(s("old/a.fake")), "<fake id='1'/>");
    writeFile(files.filePath(s("renamed/a.fake")), content);
    m_path = files.filePath(opened.contains(s("link")) ? s("link/a.fake") : s("old/a.fake"));
    leaveCopy("content of mine", DiskState::of(m_path).hash);
    if (!oldStays)
        QVERIFY(QFile::remove(m_path));
    QVERIFY(QFile::remove(files.filePath(s("link"))) && QFile::link(s("renamed"), files.filePath(s("link"))));

    m_path = m_dir->filePath(opened);
    QVERIFY(open(content));
    QCOMPARE(bar("recoveryBar")->isVisible(), offered);
    if (!offered)
        return;
    QCOMPARE(textOf("recoveryBar").contains(files.filePath(s("old/a.fake"))), !oldStays);
    button("restoreButton")->click();
    QTRY_COMPARE(document()->recoveryData(), QByteArray("content of mine"));
    QCOMPARE(document()->filePath().toString(), m_path);
    QCOMPARE(copies().size(), 1);
    trigger("saveAction");
    QVERIFY(contentOf(m_path).contains("saves=") && copies().isEmpty());
}

void tst_FileRecovery::severalCopies()
{
    writeFile(m_path, "<fake id='1'/>");
    leaveCopy("content of older", "x", 1);
    QTest::qWait(5);
    leaveCopy("content of newer", "x", 2);
    QVERIFY(open());
    button("restoreButton")->click();
    QTRY_COMPARE(document()->recoveryData(), QByteArray("content of newer"));
    // The other one is still to be decided on.
    QVERIFY(bar("recoveryBar")->isVisible());
    button("discardButton")->click();
    QVERIFY(!bar("recoveryBar")->isVisible());
    QCOMPARE(copies().size(), 1);
    QVERIFY(contentOf(m_state + QLatin1Char('/') + copies().first()).endsWith("content of newer"));
}

void tst_FileRecovery::restoreOverChanges()
{
    writeFile(m_path, "<fake id='1'/>");
    leaveCopy("content of kept", "x");
    QVERIFY(open());
    document()->modify("content of new work");
    for (const bool confirmed : { false, true }) {
        button("restoreButton")->click();
        QTRY_VERIFY(box("restorePrompt"));
        answer("restorePrompt", confirmed);
        // It is asked again only once the prompt has gone for good.
        QTRY_VERIFY(!m_window->findChild<QMessageBox *>(s("restorePrompt")));
        QCOMPARE(document()->recoveryData(), QByteArray(confirmed ? "content of kept" : "content of new work"));
        QVERIFY(m_window->isWindowModified());
        QCOMPARE(bar("recoveryBar")->isVisible(), !confirmed);
    }
}

QDialog *tst_FileRecovery::openDialog()
{
    trigger("recoveredFilesAction");
    return m_window->findChild<QDialog *>(s("recoveredFilesDialog"));
}

QStringList tst_FileRecovery::rows(const QDialog &dialog) const
{
    QStringList result;
    auto *table = dialog.findChild<QTableWidget *>(s("recoveredFilesTable"));
    for (int row = 0; row < table->rowCount(); ++row) {
        table->selectRow(row);
        result.append(table->item(row, 0)->text() + s(": ")
            + dialog.findChild<QLabel *>(s("recoveredFilesNote"))->text().section(QLatin1Char('.'), 0, 0));
    }
    return result;
}

void tst_FileRecovery::recoveredFiles_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("open");
    QTest::addColumn<QString>("asked");

    QTest::newRow("its file") << QString() << QString() << QString();
    QTest::newRow("another file") << s("files/b.fake") << QString() << s("recoverPrompt");
    QTest::newRow("a new file") << s("files/new.fake") << QString() << QString();
    QTest::newRow("its file, unsaved changes") << QString() << s("files/a.fake") << s("restorePrompt");
    QTest::newRow("its file, another one open") << QString() << s("files/b.fake") << s("launched");
    QTest::newRow("a new file, another one open") << s("files/new.fake") << s("files/b.fake") << s("launched");
}

void tst_FileRecovery::recoveredFiles()
{
    QFETCH(QString, chosen);
    QFETCH(QString, open);
    QFETCH(QString, asked);
    writeFile(m_path, "<fake id='1'/>");
    writeFile(m_dir->filePath(s("files/b.fake")), "<fake id='2'/>");
    leaveCopy("content of mine", DiskState::of(m_path).hash);
    QString launched;
    m_window->setLauncher([&launched](const QString &path) { return !(launched = path).isEmpty(); });
    if (!open.isEmpty()) {
        m_window->openFile(m_dir->filePath(open));
        document()->modify("content of new work");
    }
    QDialog *dialog = openDialog();
    QCOMPARE(rows(*dialog), QStringList { s("files/a.fake: The file is as it was before these changes") });
    const QString path = m_dir->filePath(chosen.isEmpty() ? s("files/a.fake") : chosen);
    if (chosen.isEmpty()) {
        QTest::keyClick(dialog->findChild<QWidget *>(s("recoveredFilesTable")), Qt::Key_Return);
    } else {
        dialog->findChild<QPushButton *>(s("openRecoveredForButton"))->click();
        auto *files = dialog->findChild<QFileDialog *>(s("openRecoveredForDialog"));
        files->selectFile(path);
        static_cast<QDialog *>(files)->accept();
    }
    if (asked.endsWith(s("Prompt"))) {
        QTRY_VERIFY(box(asked.toLatin1().constData()));
        answer(asked.toLatin1().constData(), true);
    }
    if (asked == s("launched")) {
        QTRY_COMPARE(launched, path);
        QCOMPARE(document()->recoveryData(), QByteArray("content of new work"));
        const auto offered = RecoveryStore(m_state).abandoned(RecoveryStore::keyOf(path));
        QCOMPARE(offered.size(), std::size_t(1));
        QCOMPARE(offered.front().data, QByteArray("content of mine"));
        return;
    }
    QTRY_VERIFY(document() && document()->recoveryData() == "content of mine");
    QCOMPARE(document()->filePath().toString(), path);
    QVERIFY(m_window->isWindowModified());
    QTRY_VERIFY(!m_window->findChild<QDialog *>(s("recoveredFilesDialog")));
    QVERIFY(RecoveryStore(m_state).abandoned().empty());
    QCOMPARE(copies().size(), 1);
}

QTEST_MAIN(tst_FileRecovery)
#include "tst_filerecovery.moc"
