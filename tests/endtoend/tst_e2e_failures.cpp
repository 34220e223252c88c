#include "product.h"
#include "steps.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

#include <functional>
#include <sys/mount.h>
#include <unistd.h>

namespace {

constexpr uid_t Nobody = 65534;

bool run(const QString &program, const QStringList &arguments)
{
    return QProcess::execute(program, arguments) == 0;
}

/// Where the kernel and the rights of the tests allow it, a small disk of its own in the directory.
class SmallDisk final
{
public:
    explicit SmallDisk(const QString &directory) : m_directory(QFile::encodeName(directory))
    {
        m_mounted = ::mount("tmpfs", m_directory.constData(), "tmpfs", 0, "size=256k,mode=0755") == 0;
    }
    ~SmallDisk()
    {
        if (m_mounted)
            ::umount2(m_directory.constData(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    [[nodiscard]] bool isThere() const { return m_mounted; }
    /// Leaves no free byte.
    void fill()
    {
        QFile file(fillName());
        if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            qFatal("the disk cannot be filled");
        while (file.write("x", 1) == 1 && file.write(QByteArray(4095, 'x')) == 4095) { }
    }
    [[nodiscard]] bool free() { return QFile::remove(fillName()); }

private:
    [[nodiscard]] QString fillName() const { return QFile::decodeName(m_directory) + QLatin1String("/fill"); }

    const QByteArray m_directory;
    bool m_mounted = false;
};

/// Whether the tests may mount anything is found out once, by doing it.
bool canMount()
{
    QTemporaryDir directory;
    return SmallDisk(directory.path()).isThere();
}

} // namespace

/// What goes wrong outside of the workbench: it says so, and loses nothing.
class tst_E2eFailures : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void brokenFile_data();
    void brokenFile();
    void notWritten_data();
    void notWritten();
    void closingWhileNotWritten();
    void closeDuringScan_data();
    void closeDuringScan();

private:
    [[nodiscard]] bool changeSomething();

    std::unique_ptr<Product> m_product;
    std::unique_ptr<SmallDisk> m_disk;
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
    if (QTest::currentTestFailed())
        m_workbench->leavePicture(QString::fromLatin1(QTest::currentTestFunction()) + QLatin1Char('-')
            + QString::fromUtf8(QTest::currentDataTag()));
    const bool running = m_workbench->program().isRunning();
    m_workbench.reset();
    m_disk.reset();
    QVERIFY(QTest::currentTestFailed() || !running);
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

void tst_E2eFailures::brokenFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");

    const auto row = [](const char *name, const QByteArray &content, const char *reason) {
        QTest::newRow(name) << content << QString::fromLatin1(reason);
    };
    row("missing", QByteArray(), "The file does not exist\\.");
    row("end tag of another", "<Plugin id=\"a\">\n  <ExtPointSet>\n  </ExtDataSet>\n</Plugin>\n",
        "line 3, column \\d+: .+");
    row("cut off", "<Plugin id=\"a\">\n<ExtPointSet>\n", "line 3, column \\d+: .+");
    row("no UTF-8", "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Plugin id=\"\xff\xfe\"/>\n",
        "line 2, column \\d+: .+");
    row("two equal attributes", "<Plugin\nid=\"a\"\nid=\"b\"/>\n", "line 3, column \\d+: .+");
}

void tst_E2eFailures::brokenFile()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    if (content.isEmpty())
        QVERIFY(QFile::remove(m_file));
    else
        writeFile(m_file, content);
    STEP(*m_workbench, launch({ m_file }));
    EVENTUALLY(m_workbench->dialogs(), QStringList { QStringLiteral("errorMessage") });
    const QString text = m_workbench->textOfDialog(QStringLiteral("errorMessage"));
    QVERIFY2(text.contains(m_file), qPrintable(text));
    const QRegularExpression pattern(QRegularExpression::anchoredPattern(QLatin1String(".*\n\n") + reason),
        QRegularExpression::DotMatchesEverythingOption);
    QVERIFY2(pattern.match(text).hasMatch(), qPrintable(text));
    STEP(*m_workbench, click(Place::button(QStringLiteral("errorMessage"), QStringLiteral("OK"))));
    EVENTUALLY(m_workbench->dialogs(), QStringList());
    QVERIFY(!m_workbench->state().value(QLatin1String("editor")).toBool(true));
    QVERIFY(!m_workbench->isModified());
    STEP(*m_workbench, close());
    QCOMPARE(QFile::exists(m_file) ? contentOf(m_file) : QByteArray(), content);
}

enum class Obstacle { ReadOnlyPlace, ReadOnlyFile, SizeLimit, FullDisk };
Q_DECLARE_METATYPE(Obstacle)

void tst_E2eFailures::notWritten_data()
{
    QTest::addColumn<Obstacle>("obstacle");
    QTest::addColumn<QString>("reason");

    QTest::newRow("read-only file of another in a read-only directory")
        << Obstacle::ReadOnlyPlace << QStringLiteral("Permission denied");
    QTest::newRow("read-only file in a directory of the user")
        << Obstacle::ReadOnlyFile << QStringLiteral("Permission denied");
    QTest::newRow("limit of the file size") << Obstacle::SizeLimit << QStringLiteral("File too large");
    if (canMount())
        QTest::newRow("full disk") << Obstacle::FullDisk << QStringLiteral("No space left on device");
    else
        qInfo("nothing can be mounted here; the limit of the file size stands for the full disk");
}

void tst_E2eFailures::notWritten()
{
    QFETCH(Obstacle, obstacle);
    QFETCH(QString, reason);
    const QByteArray original = contentOf(m_file);
    const QString directory = QFileInfo(m_file).absolutePath();
    std::function<bool()> putUp = [] { return true; };
    std::function<bool()> takeAway;
    switch (obstacle) {
    case Obstacle::ReadOnlyPlace:
        m_workbench->program().laysDownRoot();
        setMode(m_file, 0444);
        setMode(directory, 0555);
        takeAway = [&] {
            setMode(directory, 0777);
            setMode(m_file, 0666);
            return true;
        };
        break;
    case Obstacle::ReadOnlyFile:
        m_workbench->program().laysDownRoot();
        if (::getuid() == 0)
            for (const QString &path : { directory, m_file })
                QCOMPARE(::chown(QFile::encodeName(path).constData(), Nobody, Nobody), 0);
        setMode(m_file, 0444);
        takeAway = [&] {
            setMode(m_file, 0644);
            return true;
        };
        break;
    case Obstacle::SizeLimit: {
        // Only the soft limit, which whoever owns the process may raise again.
        const auto limit = [this](const QString &bytes) {
            return run(QStringLiteral("prlimit"),
                { QStringLiteral("--pid"), QString::number(m_workbench->program().processId()),
                    QLatin1String("--fsize=") + bytes + QLatin1Char(':') });
        };
        putUp = [limit] { return limit(QStringLiteral("2000")); };
        takeAway = [limit] { return limit(QStringLiteral("unlimited")); };
        break;
    }
    case Obstacle::FullDisk: {
        const QString small = m_product->directory(QStringLiteral("small"));
        m_disk = std::make_unique<SmallDisk>(small);
        QVERIFY(m_disk->isThere());
        m_file = small + QLatin1String("/plugins/chartdesk/extension.xml");
        copyDirectory(directory, QFileInfo(m_file).absolutePath());
        putUp = [this] {
            m_disk->fill();
            return true;
        };
        takeAway = [this] { return m_disk->free(); };
        break;
    }
    }

    STEP(*m_workbench, open(m_file));
    QVERIFY2(changeSomething(), qPrintable(m_workbench->problem()));
    QVERIFY(putUp());
    // Twice: a failed save must not make the next one believe that there is nothing to do.
    for (int i = 0; i < 2; ++i) {
        STEP(*m_workbench, key(QStringLiteral("ctrl+s")));
        EVENTUALLY(m_workbench->dialogs(), QStringList { QStringLiteral("errorMessage") });
        const QString text = m_workbench->textOfDialog(QStringLiteral("errorMessage"));
        QVERIFY2(text.contains(m_file) && text.contains(reason), qPrintable(text));
        STEP(*m_workbench, click(Place::button(QStringLiteral("errorMessage"), QStringLiteral("OK"))));
        EVENTUALLY(m_workbench->dialogs(), QStringList());
        QVERIFY(m_workbench->isModified());
        QCOMPARE(contentOf(m_file), original);
        QCOMPARE(QDir(QFileInfo(m_file).absolutePath()).entryList(QDir::Files | QDir::Hidden),
            QStringList { QStringLiteral("extension.xml") });
    }

    QVERIFY(takeAway());
    STEP(*m_workbench, key(QStringLiteral("ctrl+s")));
    EVENTUALLY(m_workbench->isModified(), false);
    QCOMPARE(m_workbench->dialogs(), QStringList());
    const QByteArray saved = contentOf(m_file);
    QVERIFY(saved.contains("name=\"Grids\"") && saved.endsWith("</Plugin>\n"));
    STEP(*m_workbench, close());
}

void tst_E2eFailures::closingWhileNotWritten()
{
    const QByteArray original = contentOf(m_file);
    m_workbench->program().laysDownRoot();
    setMode(m_file, 0444);
    setMode(QFileInfo(m_file).absolutePath(), 0555);
    STEP(*m_workbench, open(m_file));
    QVERIFY2(changeSomething(), qPrintable(m_workbench->problem()));
    STEP(*m_workbench, key(QStringLiteral("alt+F4")));
    STEP(*m_workbench, click(Place::button(QStringLiteral("savePrompt"), QStringLiteral("Save"))));
    // What can't be saved is not closed either.
    EVENTUALLY(m_workbench->dialogs(), QStringList { QStringLiteral("errorMessage") });
    STEP(*m_workbench, click(Place::button(QStringLiteral("errorMessage"), QStringLiteral("OK"))));
    EVENTUALLY(m_workbench->dialogs(), QStringList());
    QVERIFY(m_workbench->isModified());
    STEP(*m_workbench, key(QStringLiteral("alt+F4")));
    STEP(*m_workbench, click(Place::button(QStringLiteral("savePrompt"), QStringLiteral("Discard"))));
    STEP(*m_workbench, ended());
    QCOMPARE(contentOf(m_file), original);
}

void tst_E2eFailures::closeDuringScan_data()
{
    QTest::addColumn<int>("arrived");
    for (const int arrived : { 0, 5, 30, 80 })
        QTest::addRow("after %d plug-ins", arrived) << arrived;
}

void tst_E2eFailures::closeDuringScan()
{
    QFETCH(int, arrived);
    m_product->addSiblings(200, 20);
    m_workbench->program().slowDown(20);
    STEP(*m_workbench, launch({ m_file }));
    const auto now = [this] { return m_workbench->state(); };
    STEP(*m_workbench, waitFor(QStringLiteral("the window"), [&] {
        return now().value(QLatin1String("active")).toBool()
            && m_workbench->topRows(QStringLiteral("realizationTree")) >= arrived;
    }));
    QVERIFY(now().value(QLatin1String("busy")).toBool());
    STEP(*m_workbench, key(QStringLiteral("alt+F4")));
    bool busy = true;
    for (QJsonObject last = now(); last.value(QLatin1String("editor")).toBool(); last = now())
        busy = last.value(QLatin1String("busy")).toBool();
    STEP(*m_workbench, ended());
    QVERIFY2(busy, "the plug-ins had all been read when the window closed");
}

QTEST_GUILESS_MAIN(tst_E2eFailures)
#include "tst_e2e_failures.moc"
