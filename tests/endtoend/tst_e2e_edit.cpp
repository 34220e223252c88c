#include "inputdevices.h"
#include "product.h"
#include "workbenchdriver.h"

#include <QDir>
#include <QProcess>
#include <QScopeGuard>
#include <QtEndian>

#include <csignal>

namespace {

QStringList expectedLines(const char *name)
{
    const QByteArray content = contentOf(s(EXTPOINT_SOURCE_DIR "/tests/endtoend/expected/") + s(name));
    return QString::fromUtf8(content).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// What the opened file of the sample holds after a save without any change.
QByteArray savedUnchanged()
{
    const Product product;
    Program program;
    program.setVariable(s("QT_QPA_PLATFORM"), s("offscreen"));
    const Program::Result result = program.run({ s("--save"), product.fileOf(s("chartdesk")) });
    return result.code == 0 ? contentOf(product.fileOf(s("chartdesk"))) : QByteArray();
}

const QStringList noDialogs;

} // namespace

/// A file of the sample in the real program: it is opened, changed, saved, closed and reverted with the pointer and the
/// keys, can't be written, is changed by others meanwhile, and outlives the program that has it open.
class tst_E2eEdit : public QObject, private WorkbenchDriver
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { finish(); }
    void changeIsSaved();
    void revert();
    void undo();
    void density();
    void notWritten_data();
    void notWritten();
    void endedFromOutside_data();
    void endedFromOutside();
    void changedUnderChanges();
    void oneWindowPerFile();
    void viewIsRemembered();

private:
    [[nodiscard]] QStringList definition() { return lines("defintionTree"); }
    [[nodiscard]] static QString title() { return InputDevices::activeTitle().section(s(" — "), 0, 0); }
    /// The row that is current in the tree that has the focus.
    [[nodiscard]] QString currentRow() { return state().value(s("focus")).toObject().value(s("value")).toString(); }
    [[nodiscard]] bool openSample() { return open(m_file) && definitionPage(); }
    [[nodiscard]] bool change(const char *point, const char *row, const char *text);
    [[nodiscard]] bool renameFirstPoint();

    const QStringList m_definition = expectedLines("chartdesk-definition.txt");
    const QStringList m_realization = expectedLines("chartdesk-realization.txt");
    const QStringList m_renamed = QStringList(m_definition).replaceInStrings(s("Chart layers"), s("Sheets"));
    std::unique_ptr<Product> m_product;
    QString m_file;
    QByteArray m_original;
};

void tst_E2eEdit::init()
{
    begin();
    m_product = std::make_unique<Product>();
    m_file = m_product->fileOf(s("chartdesk"));
    m_original = contentOf(m_file);
}

bool tst_E2eEdit::change(const char *point, const char *row, const char *text)
{
    return click(Place::row(s("defintionTree"), { s("saltmere.chartdesk"), s(point) }))
        && edit("basicInfo", row, s(text));
}

bool tst_E2eEdit::renameFirstPoint()
{
    return change("Chart layers", "name", "Sheets")
        && waitFor(s("the new name"), [this] { return definition() == m_renamed && isModified(); });
}

void tst_E2eEdit::changeIsSaved()
{
    QByteArray expected = savedUnchanged();
    // What the plug-in has for the point follows its id.
    QCOMPARE(expected.count("id=\"saltmere.chart.projection\""), 2);
    expected.replace("id=\"saltmere.chart.projection\"", "id=\"saltmere.chart.grid\"");

    STEP(open(m_file));
    EVENTUALLY(lines("realizationTree"), m_realization);
    QCOMPARE(definition(), m_definition);
    EVENTUALLY(title(), s("extension.xml"));
    EVENTUALLY(InputDevices::activeWindowHas(s("_NET_WM_ICON")), true);
    STEP(definitionPage());
    STEP(change("Projections", "id", "saltmere.chart.grid"));
    EVENTUALLY(isModified(), true);
    EVENTUALLY(title(), s("extension.xml*"));
    STEP(save());
    QCOMPARE(dialogs(), noDialogs);
    EVENTUALLY(title(), s("extension.xml"));
    QCOMPARE(contentOf(m_file), expected);
    STEP(close());
    QCOMPARE(contentOf(m_file), expected);

    STEP(openSample());
    QCOMPARE(definition(), m_definition);
    EVENTUALLY(lines("realizationTree"), m_realization);
    STEP(click(Place::row(s("defintionTree"), { s("saltmere.chartdesk"), s("Projections") })));
    EVENTUALLY(lines("basicInfo").contains(s("id = saltmere.chart.grid")), true);
    STEP(close());
}

void tst_E2eEdit::revert()
{
    STEP(openSample());
    STEP(renameFirstPoint());
    STEP(chooseFromMenu(s("File"), s("Revert to Saved")));
    STEP(click(Place::button(s("revertPrompt"), s("Revert"))));
    EVENTUALLY(isModified(), false);
    EVENTUALLY(definition(), m_definition);
    EVENTUALLY(lines("realizationTree"), m_realization);
    QCOMPARE(contentOf(m_file), m_original);

    // The fresh editor is as good as the first.
    STEP(definitionPage());
    STEP(renameFirstPoint());
    STEP(save());
    QVERIFY(contentOf(m_file).contains("name=\"Sheets\""));
    STEP(close());
}

void tst_E2eEdit::undo()
{
    const QByteArray unchanged = savedUnchanged();
    STEP(openSample());
    EVENTUALLY(lines("realizationTree"), m_realization);
    STEP(renameFirstPoint());
    STEP(click(Place::row(s("defintionTree"), { s("saltmere.chartdesk"), s("Sheets") })));
    STEP(key(s("Delete")));
    EVENTUALLY(definition().contains(s("    Sheets")), false);
    EVENTUALLY(lines("realizationTree") == m_realization, false);
    STEP(click(Place::widget(s("undoDeletionButton"))));
    EVENTUALLY(definition(), m_renamed);
    STEP(key(s("ctrl+z")));
    EVENTUALLY(definition(), m_definition);
    EVENTUALLY(lines("realizationTree"), m_realization);
    STEP(save());
    QCOMPARE(contentOf(m_file), unchanged);
    STEP(key(s("ctrl+shift+z")));
    EVENTUALLY(definition(), m_renamed);
    EVENTUALLY(isModified(), true);
    STEP(save());
    STEP(close());
    QVERIFY(contentOf(m_file).contains("name=\"Sheets\""));
}

/// The density that the X server states is taken as it is, and clicks arrive.
void tst_E2eEdit::density()
{
    const auto restored = qScopeGuard([] {
        QProcess::execute(s("xprop"), { s("-root"), s("-remove"), s("RESOURCE_MANAGER") });
    });
    const auto widthAt = [this](const QString &resources) {
        const QStringList set { s("-root"), s("-f"), s("RESOURCE_MANAGER"), s("8s"), s("-set"), s("RESOURCE_MANAGER") };
        if (QProcess::execute(s("xprop"), set + QStringList { resources }) != 0)
            return 0u;
        const QString picture = program().homeDirectory() + s("/picture.png");
        (void)program().run({ s("--screenshot"), picture, m_file });
        // Of a PNG file, behind the signature and the head of the first chunk.
        const QByteArray size = contentOf(picture).mid(16, 4);
        return size.size() == 4 ? qFromBigEndian<quint32>(size.constData()) : 0u;
    };
    const quint32 plain = widthAt(s("Xft.antialias: 1\n"));
    QVERIFY(plain > 0);
    QCOMPARE(widthAt(s("Xft.antialias: 1\nXft.dpi:\t108\n")), plain * 9 / 8);
    STEP(openSample());
    STEP(renameFirstPoint());
    STEP(save());
    QVERIFY(contentOf(m_file).contains("name=\"Sheets\""));
    STEP(close());
}

void tst_E2eEdit::notWritten_data()
{
    QTest::addColumn<bool>("isReadOnly");
    QTest::addColumn<QString>("reason");

    QTest::newRow("read-only file in a read-only directory") << true << s("Permission denied");
    QTest::newRow("limit of the file size") << false << s("File too large");
}

void tst_E2eEdit::notWritten()
{
    QFETCH(bool, isReadOnly);
    QFETCH(QString, reason);
    const QString directory = QFileInfo(m_file).path();
    const auto hinder = [&](bool on) {
        if (isReadOnly) {
            setMode(directory, on ? 0555 : 0777);
            setMode(m_file, on ? 0444 : 0666);
            return true;
        }
        // Only the soft limit, which the owner of the process may raise again.
        return QProcess::execute(s("prlimit"),
                   { s("--pid"), QString::number(program().processId()),
                       on ? s("--fsize=2000:") : s("--fsize=unlimited:") })
            == 0;
    };
    if (isReadOnly)
        program().laysDownRoot();
    STEP(openSample());
    STEP(renameFirstPoint());
    QVERIFY(hinder(true));
    // Twice: a failed save must not make the next one believe that there is nothing to do; and what can't be saved is
    // not closed either.
    for (const char *how : { "ctrl+s", "ctrl+s", "alt+F4" }) {
        STEP(key(s(how)));
        if (qstrcmp(how, "alt+F4") == 0)
            STEP(click(Place::button(s("savePrompt"), s("Save"))));
        EVENTUALLY(dialogs(), QStringList { s("errorMessage") });
        const QString text = textOfDialog();
        QVERIFY2(text.contains(m_file) && text.contains(reason), qPrintable(text));
        STEP(click(Place::button(s("errorMessage"), s("OK"))));
        EVENTUALLY(dialogs(), noDialogs);
        QVERIFY(isModified());
        QCOMPARE(contentOf(m_file), m_original);
        QCOMPARE(QDir(directory).entryList(QDir::Files | QDir::Hidden), QStringList { s("extension.xml") });
    }
    QVERIFY(hinder(false));
    STEP(save());
    const QByteArray saved = contentOf(m_file);
    QVERIFY(saved.contains("name=\"Sheets\"") && saved.endsWith("</Plugin>\n"));
    STEP(close());
}

void tst_E2eEdit::endedFromOutside_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<int>("code");

    QTest::newRow("killed, the directory renamed before the next start") << SIGKILL << -1;
    QTest::newRow("told to end") << SIGTERM << 0;
    QTest::newRow("its display gone") << 0 << 1;
}

void tst_E2eEdit::endedFromOutside()
{
    QFETCH(int, signal);
    QFETCH(int, code);
    STEP(openSample());
    STEP(renameFirstPoint());
    if (signal == SIGKILL)
        EVENTUALLY(program().recoveryCopies().size(), 1);
    QVERIFY(signal == 0 ? InputDevices::cutOffActiveWindow() : program().signal(signal));
    const Program::Result result = program().result();
    QCOMPARE(result.code, code);
    QVERIFY2(code != 0 || result.error.isEmpty(), result.error.constData());
    QCOMPARE(contentOf(m_file), m_original);
    QCOMPARE(program().recoveryCopies().size(), 1);
    if (signal == SIGKILL) {
        QVERIFY(QDir(m_product->plugins()).rename(s("chartdesk"), s("desk")));
        m_file = m_product->fileOf(s("desk"));
    }

    STEP(openSample());
    EVENTUALLY(isShown("recoveryBar"), true);
    QCOMPARE(definition(), m_definition);
    QVERIFY(!isModified());
    QCOMPARE(dialogs(), noDialogs);
    STEP(click(Place::widget(s("restoreButton"))));
    EVENTUALLY(definition(), m_renamed);
    EVENTUALLY(isModified(), true);
    QVERIFY(!isShown("recoveryBar"));
    QCOMPARE(contentOf(m_file), m_original);
    EVENTUALLY(isBusy(), false);
    STEP(save());
    // The whole model came over: nothing but the name is different from what a save of the original gives.
    QCOMPARE(contentOf(m_file).replace("\"Sheets\"", "\"Chart layers\""), savedUnchanged());
    QVERIFY(contentOf(m_file).contains("\"Sheets\""));
    QCOMPARE(program().recoveryCopies(), QStringList());
    STEP(close());
}

void tst_E2eEdit::changedUnderChanges()
{
    STEP(openSample());
    STEP(renameFirstPoint());
    QByteArray theirs = m_original;
    replaceFile(m_file, theirs.replace("Chart layers", "Their layers"));
    EVENTUALLY(isShown("changeBar"), true);
    QCOMPARE(definition(), m_renamed);
    // Saving now would destroy what the others wrote.
    STEP(key(s("ctrl+s")));
    EVENTUALLY(state().value(s("status")).toString().startsWith(s("Not saved")), true);
    QCOMPARE(contentOf(m_file), theirs);
    QCOMPARE(dialogs(), noDialogs);

    STEP(click(Place::widget(s("reloadButton"))));
    EVENTUALLY(isShown("changeBar"), false);
    EVENTUALLY(definition().value(1), s("    Their layers"));
    EVENTUALLY(isModified(), false);
    STEP(close());
    QCOMPARE(program().recoveryCopies(), QStringList());
}

void tst_E2eEdit::oneWindowPerFile()
{
    const QString link = m_product->plugins() + s("/link.xml");
    QVERIFY(QFile::link(m_file, link));
    STEP(open(m_file));
    Program other;
    Program further;
    for (Program *each : { &other, &further })
        each->setVariable(s("XDG_RUNTIME_DIR"), program().homeDirectory() + s("/XDG_RUNTIME_DIR"));
    // Another one is before it, and in it the file is opened under another name.
    QVERIFY(other.start({ m_product->fileOf(s("tides")) }));
    EVENTUALLY(InputDevices::activeTitle().contains(s("tides")), true);
    EVENTUALLY(state().value(s("active")).toBool(), false);
    const Program::Result result = further.run({ link + s(":30") });
    QCOMPARE(result.error, QByteArray());
    QCOMPARE(result.code, 0);
    EVENTUALLY(state().value(s("active")).toBool(), true);
    EVENTUALLY(currentRow(), s("Layer"));
    // What needs no window is done.
    QCOMPARE(further.run({ s("--save"), m_file }).code, 0);
    QCOMPARE(contentOf(m_file), savedUnchanged());
    QVERIFY(other.signal(SIGTERM));
    STEP(close());
}

void tst_E2eEdit::viewIsRemembered()
{
    STEP(open(m_file));
    STEP(realizationPage());
    STEP(click(Place::point({ s("saltmere.tides") })));
    STEP(close());
    STEP(open(m_file));
    EVENTUALLY(isShown("realizationTree"), true);
    EVENTUALLY(currentRow(), s("saltmere.tides"));
    STEP(close());
    // Where the user has gone meanwhile is theirs.
    program().holdBack(m_product->fileOf(s("tides")));
    STEP(open(m_file, false));
    STEP(click(Place::point({ s("saltmere.chartdesk"), s("Projections") })));
    program().readOn();
    EVENTUALLY(isBusy(), false);
    EVENTUALLY(lines("realizationTree").join(QString()).contains(s("saltmere.tides")), true);
    QCOMPARE(currentRow(), s("Projections"));
    STEP(close());
    // A line that is asked for comes before it.
    STEP(open(m_file + s(":30")));
    EVENTUALLY(isShown("defintionTree"), true);
    EVENTUALLY(currentRow(), s("Layer"));
    STEP(close());
}

QTEST_GUILESS_MAIN(tst_E2eEdit)
#include "tst_e2e_edit.moc"
