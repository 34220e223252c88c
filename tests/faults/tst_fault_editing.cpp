#include "curioususer.h"
#include "faulttesting.h"

#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/ieditorfactory.h"
#include "extensionsystem/pluginmanager.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QLineEdit>
#include <QPointer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QTimer>
#include <QXmlStreamReader>

#include <memory>

using namespace FaultTesting;

// Loads the plug-in as a host does and drives it through the host's interfaces and object names alone.

namespace {

constexpr char quitOption[] = "--quit-in-mid-scan";

/// A copy of the sample product, with as many siblings more as are asked for.
class Sample final
{
public:
    explicit Sample(int more = 0)
    {
        const QDir source(QStringLiteral(EXTPOINT_SOURCE_DIR "/samples/product/plugins"));
        const QStringList plugins = source.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QDir().mkpath(m_directory.path() + QLatin1String("/plugins"));
        for (const QString &plugin : plugins)
            add(plugin, contentsOf(source.filePath(plugin + QLatin1String("/extension.xml"))));
        for (int i = 0; i < more; ++i)
            add(QStringLiteral("more%1").arg(i), documentOf(2'000));
    }
    [[nodiscard]] QString path(const char *plugin) const
    {
        return m_directory.path() + QLatin1String("/plugins/") + QLatin1String(plugin)
            + QLatin1String("/extension.xml");
    }

private:
    void add(const QString &plugin, const QByteArray &bytes) const
    {
        const QString directory = m_directory.path() + QLatin1String("/plugins/") + plugin;
        makeDirectory(directory);
        makeFile(directory + QLatin1String("/extension.xml"), bytes);
    }

    QTemporaryDir m_directory;
};

/// An editor as a host holds it: it deletes the editor, then the widget.
class OpenedEditor final
{
public:
    OpenedEditor(Core::IEditorFactory *factory, const QString &path)
        : m_editor(factory->createEditor()), m_widget(m_editor->widget())
    {
        m_opened = m_editor->document()->open(nullptr, path, path) == Core::IDocument::OpenResult::Success;
        m_widget->resize(1200, 800);
        m_widget->show();
    }
    OpenedEditor(const OpenedEditor &) = delete;
    OpenedEditor &operator=(const OpenedEditor &) = delete;
    ~OpenedEditor()
    {
        m_editor.reset();
        delete m_widget.data();
    }
    [[nodiscard]] Core::IDocument *document() const { return m_editor->document(); }
    [[nodiscard]] QWidget *widget() const { return m_widget; }
    [[nodiscard]] bool isOpened() const { return m_opened; }
    [[nodiscard]] bool isBusy() const { return document()->property("busy").toBool(); }

private:
    std::unique_ptr<Core::IEditor> m_editor;
    QPointer<QWidget> m_widget;
    bool m_opened = false;
};

bool loadPlugins(ExtensionSystem::PluginManager *plugins)
{
    plugins->setPluginPaths({ QStringLiteral(EXTPOINT_BINARY_DIR "/lib/extpoint/plugins") });
    plugins->loadPlugins({});
    return ExtensionSystem::PluginManager::getObject<Core::IEditorFactory>() != nullptr;
}

/// What a child of this test does: it opens a file and quits as a host does, so many ms later.
int quitInMidScan(QApplication &application, const QString &path, int delay)
{
    ExtensionSystem::PluginManager plugins;
    if (!loadPlugins(&plugins))
        return 2;
    auto editor
        = std::make_unique<OpenedEditor>(ExtensionSystem::PluginManager::getObject<Core::IEditorFactory>(), path);
    if (!editor->isOpened() || !editor->isBusy())
        return 3;
    QTimer::singleShot(delay, &application, &QApplication::quit);
    application.exec();
    // Said only when the moment was the right one.
    if (editor->isBusy())
        std::puts("in mid-scan");
    editor.reset();
    plugins.shutdown();
    return 0;
}

QString notWellFormed(const QString &path)
{
    QXmlStreamReader xml(contentsOf(path));
    while (!xml.atEnd())
        xml.readNext();
    return xml.hasError() ? QStringLiteral("%1:%2: %3").arg(path).arg(xml.lineNumber()).arg(xml.errorString())
                          : QString();
}

} // namespace

class TestFaultEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void twoInOneProcess_data();
    void twoInOneProcess();
    void pastedIntoASheet_data();
    void pastedIntoASheet();
    void quitsInMidScan();

private:
    ExtensionSystem::PluginManager m_plugins;
    Core::IEditorFactory *m_factory = nullptr;
};

void TestFaultEditing::initTestCase()
{
    QVERIFY(loadPlugins(&m_plugins));
    m_factory = ExtensionSystem::PluginManager::getObject<Core::IEditorFactory>();
}

void TestFaultEditing::cleanupTestCase()
{
    m_plugins.shutdown();
}

void TestFaultEditing::twoInOneProcess_data()
{
    QTest::addColumn<bool>("closeFirst");
    QTest::addColumn<bool>("usedBefore");
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : { 1u, 2u, 3u }) {
        for (const bool used : { false, true }) {
            const char *const what = used ? "used together" : "opened together";
            QTest::addRow("%s, first closes first, seed %u", what, seed) << true << used << seed;
            QTest::addRow("%s, second closes first, seed %u", what, seed) << false << used << seed;
        }
    }
}

void TestFaultEditing::twoInOneProcess()
{
    QFETCH(const bool, closeFirst);
    QFETCH(const bool, usedBefore);
    QFETCH(const quint32, seed);
    const Sample sample;
    auto first = std::make_unique<OpenedEditor>(m_factory, sample.path("chartdesk"));
    auto second = std::make_unique<OpenedEditor>(m_factory, sample.path("shell"));
    QVERIFY(first->isOpened() && second->isOpened());
    QTRY_VERIFY(!first->isBusy() && !second->isBusy());
    if (usedBefore) {
        for (const auto &editor : { first.get(), second.get() }) {
            CuriousUser user(editor->widget(), seed);
            user.tryAnything(60);
            QVERIFY2(user.strayRow().isEmpty(), qPrintable(user.strayRow()));
        }
    }
    (closeFirst ? first : second).reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    const OpenedEditor &left = closeFirst ? *second : *first;
    CuriousUser user(left.widget(), seed);
    user.tryEverything();
    user.tryAnything(200);
    qInfo("%d deeds, the longest took %lld ms (%s)", user.count(), user.longest(), qPrintable(user.longestDeed()));
    QVERIFY(user.count() > 300);
    QVERIFY2(user.strayRow().isEmpty(), qPrintable(user.strayRow()));
    QVERIFY2(user.longest() < patienceMs(), qPrintable(user.longestDeed()));

    QVERIFY(left.document()->isModified());
    const QString path = sample.path(closeFirst ? "shell" : "chartdesk");
    const QByteArray before = contentsOf(path);
    QVERIFY(left.document()->save(nullptr, path, false));
    QVERIFY(contentsOf(path) != before);
    QCOMPARE(notWellFormed(path), QString());
    const OpenedEditor again(m_factory, path);
    QVERIFY(again.isOpened());
}

void TestFaultEditing::pastedIntoASheet_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("kept");

    const auto row
        = [](const char *name, const QString &text, const QString &kept) { QTest::newRow(name) << text << kept; };
    const QString emoji = QString::fromUtf8("\xf0\x9f\x98\x80");
    row("plain", QStringLiteral("Chart"), QStringLiteral("Chart"));
    row("NUL", QStringLiteral("Cha") + QChar(0) + QStringLiteral("rt"), QStringLiteral("Chart"));
    row("control characters", QStringLiteral("C\x01ha\x1frt"), QStringLiteral("Chart"));
    // What the pattern of a name can't match is not taken at all.
    const QString old = QStringLiteral("Quantities");
    row("lone surrogate", QStringLiteral("Cha") + QChar(0xd83d) + QStringLiteral("rt"), old);
    row("surrogates the wrong way round", QStringLiteral("C") + emoji.at(1) + emoji.at(0), old);
    row("markup", QStringLiteral("\"<&>'"), old);
    row("no character", QStringLiteral("Cha") + QChar(0xffff) + QStringLiteral("rt"), QStringLiteral("Chart"));
    row("far plane", emoji, emoji);
}

void TestFaultEditing::pastedIntoASheet()
{
    QFETCH(const QString, text);
    QFETCH(const QString, kept);
    const Sample sample;
    const QString path = sample.path("units");
    {
        const OpenedEditor editor(m_factory, path);
        QVERIFY(editor.isOpened());
        QTRY_VERIFY(!editor.isBusy());
        editor.widget()->findChild<QTabWidget *>(QStringLiteral("tabWidget"))->setCurrentIndex(0);
        auto *tree = editor.widget()->findChild<QAbstractItemView *>(QStringLiteral("defintionTree"));
        tree->setCurrentIndex(tree->model()->index(0, 0, tree->model()->index(0, 0)));
        QPointer<QLineEdit> name;
        const auto lines
            = editor.widget()->findChild<QWidget *>(QStringLiteral("basicInfo"))->findChildren<QLineEdit *>();
        for (QLineEdit *line : lines) {
            if (line->accessibleName() == QLatin1String("name"))
                name = line;
        }
        QVERIFY(name);
        QApplication::clipboard()->setText(text);
        name->selectAll();
        name->paste();
        QVERIFY(editor.document()->save(nullptr, path, false));
        QCOMPARE(notWellFormed(path), QString());
    }
    const OpenedEditor again(m_factory, path);
    QVERIFY(again.isOpened());
    auto *tree = again.widget()->findChild<QAbstractItemView *>(QStringLiteral("defintionTree"));
    QString found = tree->model()->index(0, 0, tree->model()->index(0, 0)).data().toString();
    // A line edit shows a blank in the place of some of them.
    QCOMPARE(found.remove(QLatin1Char(' ')), kept);
}

void TestFaultEditing::quitsInMidScan()
{
    const Sample sample(2'000);
    QRandomGenerator random(11);
    int inMidScan = 0;
    for (int round = 0; round < 12; ++round) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(),
            { QLatin1String(quitOption), sample.path("chartdesk"), QString::number(random.bounded(60)) });
        QVERIFY(child.waitForFinished(30'000));
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child.exitCode(), 0);
        inMidScan += child.readAllStandardOutput().contains("in mid-scan");
    }
    QVERIFY2(inMidScan > 2, qPrintable(QString::number(inMidScan)));
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == QLatin1String(quitOption))
        return quitInMidScan(application, arguments.at(2), arguments.at(3).toInt());
    TestFaultEditing test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_fault_editing.moc"
