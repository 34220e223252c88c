#include "core/caredfile.h"
#include "core/diskstate.h"
#include "core/filecare.h"
#include "core/recoverystore.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
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
    void severalCopies();
    void restoreOverChanges_data();
    void restoreOverChanges();
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

void tst_FileRecovery::restoreOverChanges_data()
{
    QTest::addColumn<bool>("confirmed");
    QTest::newRow("confirmed") << true;
    QTest::newRow("cancelled") << false;
}

void tst_FileRecovery::restoreOverChanges()
{
    QFETCH(bool, confirmed);
    writeFile(m_path, "<fake id='1'/>");
    leaveCopy("content of kept", "x");
    QVERIFY(open());
    document()->modify("content of new work");
    button("restoreButton")->click();
    QTRY_VERIFY(box("restorePrompt"));
    answer("restorePrompt", confirmed);
    QTRY_VERIFY(!box("restorePrompt"));
    QCoreApplication::processEvents();
    QCOMPARE(document()->recoveryData(), confirmed ? QByteArray("content of kept") : QByteArray("content of new work"));
    QVERIFY(m_window->isWindowModified());
    QCOMPARE(bar("recoveryBar")->isVisible(), !confirmed);
}

QTEST_MAIN(tst_FileRecovery)
#include "tst_filerecovery.moc"
