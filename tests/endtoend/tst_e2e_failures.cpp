#include "product.h"
#include "steps.h"

#include <QDir>
#include <QFileInfo>

#include <functional>

/// What goes wrong outside of the workbench: it says so, and loses nothing.
class tst_E2eFailures : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void brokenFile();
    void notWritten_data();
    void notWritten();

private:
    [[nodiscard]] bool changeSomething();
    [[nodiscard]] QString problem() const { return m_workbench->problem(); }
    /// Waits for the message, which must name the file and the reason, and closes it.
    void readsError(const QString &reason);

    std::unique_ptr<Product> m_product;
    std::unique_ptr<WorkbenchDriver> m_workbench;
    QString m_file;
};

void tst_E2eFailures::init()
{
    m_product = std::make_unique<Product>();
    m_workbench = std::make_unique<WorkbenchDriver>();
    m_file = m_product->fileOf(QStringLiteral("chartdesk"));
}

void tst_E2eFailures::cleanup()
{
    m_workbench->finish();
}

bool tst_E2eFailures::changeSomething()
{
    const QVariantList point { QStringLiteral("saltmere.chartdesk"), QStringLiteral("Projections") };
    return m_workbench->click(Place::tab(QStringLiteral("tabWidget"), QStringLiteral("ExtPointEdit")))
        && m_workbench->click(Place::row(QStringLiteral("defintionTree"), point))
        && m_workbench->typeIntoSheet(
            QStringLiteral("basicInfo"), QStringLiteral("name"), QStringLiteral("Grids"), QStringLiteral("Return"))
        && m_workbench->waitFor(QStringLiteral("the mark of the change"), [this] { return m_workbench->isModified(); });
}

void tst_E2eFailures::readsError(const QString &reason)
{
    EVENTUALLY(m_workbench->dialogs(), QStringList { QStringLiteral("errorMessage") });
    const QString text = m_workbench->textOfDialog(QStringLiteral("errorMessage"));
    QVERIFY2(text.contains(m_file) && text.contains(reason), qPrintable(text));
    STEP(*m_workbench, click(Place::button(QStringLiteral("errorMessage"), QStringLiteral("OK"))));
    EVENTUALLY(m_workbench->dialogs(), QStringList());
}

void tst_E2eFailures::brokenFile()
{
    const QByteArray content = "<Plugin id=\"a\">\n  <ExtPointSet>\n  </ExtDataSet>\n</Plugin>\n";
    writeFile(m_file, content);
    STEP(*m_workbench, launch({ m_file }));
    readsError(QStringLiteral("\n\nline 3, column "));
    QVERIFY(!m_workbench->state().value(QLatin1String("editor")).toBool(true));
    STEP(*m_workbench, close());
    QCOMPARE(contentOf(m_file), content);
}

void tst_E2eFailures::notWritten_data()
{
    QTest::addColumn<bool>("isReadOnly");
    QTest::addColumn<QString>("reason");

    QTest::newRow("read-only file in a read-only directory") << true << QStringLiteral("Permission denied");
    QTest::newRow("limit of the file size") << false << QStringLiteral("File too large");
}

void tst_E2eFailures::notWritten()
{
    QFETCH(bool, isReadOnly);
    QFETCH(QString, reason);
    const QByteArray original = contentOf(m_file);
    const QString directory = QFileInfo(m_file).absolutePath();
    const auto hinder = [&](bool on) {
        if (isReadOnly) {
            setMode(directory, on ? 0555 : 0777);
            setMode(m_file, on ? 0444 : 0666);
            return true;
        }
        // Only the soft limit, which the owner of the process may raise again.
        return QProcess::execute(QStringLiteral("prlimit"),
                   { QStringLiteral("--pid"), QString::number(m_workbench->program().processId()),
                       on ? QStringLiteral("--fsize=2000:") : QStringLiteral("--fsize=unlimited:") })
            == 0;
    };
    if (isReadOnly)
        m_workbench->program().laysDownRoot();
    STEP(*m_workbench, open(m_file));
    STEP(*this, changeSomething());
    QVERIFY(hinder(true));
    // Twice: a failed save must not make the next one believe that there is nothing to do; and what can't be saved is
    // not closed either.
    for (const char *how : { "ctrl+s", "ctrl+s", "alt+F4" }) {
        STEP(*m_workbench, key(QString::fromLatin1(how)));
        if (qstrcmp(how, "alt+F4") == 0)
            STEP(*m_workbench, click(Place::button(QStringLiteral("savePrompt"), QStringLiteral("Save"))));
        readsError(reason);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(m_workbench->isModified());
        QCOMPARE(contentOf(m_file), original);
        QCOMPARE(QDir(directory).entryList(QDir::Files | QDir::Hidden), QStringList(QStringLiteral("extension.xml")));
    }
    QVERIFY(hinder(false));
    STEP(*m_workbench, key(QStringLiteral("ctrl+s")));
    EVENTUALLY(m_workbench->isModified(), false);
    const QByteArray saved = contentOf(m_file);
    QVERIFY(saved.contains("name=\"Grids\"") && saved.endsWith("</Plugin>\n"));
    STEP(*m_workbench, close());
}

QTEST_GUILESS_MAIN(tst_E2eFailures)
#include "tst_e2e_failures.moc"
