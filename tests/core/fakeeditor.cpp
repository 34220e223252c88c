#include "core/fakeeditor.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QSaveFile>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QXmlStreamReader>

#include "utils/mimedatabase.h"

namespace {

class FakeState final : public Core::DocumentState
{
public:
    explicit FakeState(const QByteArray &content) : m_content(content) { }
    qint64 size() const override { return m_content.startsWith("heavy") ? 20 * 1024 * 1024 : m_content.size(); }
    static QByteArray of(const Core::UndoableDocument::State &state)
    {
        return static_cast<const FakeState &>(*state).m_content;
    }

private:
    QByteArray m_content;
};

} // namespace

int FakeDocument::alive = 0;

FakeDocument::FakeDocument(QObject *parent) : Core::IDocument(parent)
{
    ++alive;
    setMimeType(QStringLiteral("application/x-fake"));
    m_work.setSingleShot(true);
    connect(&m_work, &QTimer::timeout, this, [this] { setProperty("busy", false); });
}

FakeDocument::~FakeDocument()
{
    --alive;
}

Core::IDocument::OpenResult FakeDocument::open(
    QString *errorString, const QString &fileName, const QString &realFileName)
{
    QFile file(realFileName);
    if (!file.open(QIODevice::ReadOnly))
        return OpenResult::ReadError;
    QXmlStreamReader reader(&file);
    if (!reader.readNextStartElement())
        return OpenResult::ReadError;
    const QXmlStreamAttributes attributes = reader.attributes();
    const QString mode = attributes.value(QLatin1String("open")).toString();
    if (mode == QLatin1String("text"))
        *errorString = QStringLiteral("The fake says no.");
    else if (mode == QLatin1String("log"))
        qWarning("%s:1:7: a logged reason", qPrintable(realFileName));
    if (!mode.isEmpty())
        return OpenResult::ReadError;
    setFilePath(Utils::FileName::fromString(fileName));
    m_path = fileName;
    m_saveMode = attributes.value(QLatin1String("save")).toString();
    m_content = QByteArray("content of ") + attributes.value(QLatin1String("id")).toString().toUtf8();
    work(attributes.value(QLatin1String("busy")).toInt());
    return OpenResult::Success;
}

void FakeDocument::work(int milliseconds)
{
    if (milliseconds == 0)
        return;
    setProperty("busy", true);
    m_work.start(milliseconds);
}

bool FakeDocument::write(const QByteArray &data)
{
    QSaveFile file(m_path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.flush()
        && file.error() == QFileDevice::NoError && file.commit();
}

bool FakeDocument::save(QString *errorString, const QString &fileName, bool autoSave)
{
    Q_UNUSED(fileName)
    Q_UNUSED(autoSave)
    m_modified = false;
    Q_EMIT changed();
    ++m_saves;
    if (m_saveMode == QLatin1String("nothing"))
        return true;
    if (m_saveMode == QLatin1String("text"))
        *errorString = QStringLiteral("The fake did not write.");
    else if (m_saveMode == QLatin1String("log"))
        qWarning("%s: the disk is made of cheese", qPrintable(m_path));
    else if (m_saveMode == QLatin1String("instruction"))
        write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    else if (m_saveMode == QLatin1String("truncated"))
        write("<fake><child>\n");
    else if (m_saveMode == QLatin1String("inplace")) {
        QFile file(m_path);
        if (file.open(QIODevice::ReadWrite))
            file.write("<");
    } else
        write("<fake saves=\"" + QByteArray::number(m_saves) + "\"/>\n");
    return m_saveMode != QLatin1String("refuse");
}

QByteArray FakeDocument::recoveryData() const
{
    return property("busy").toBool() ? QByteArray() : m_content;
}

bool FakeDocument::openRecovered(QString *errorString, const QString &fileName, const QByteArray &data)
{
    if (!data.startsWith("content of ")) {
        *errorString = QStringLiteral("The fake can't take this.");
        return false;
    }
    setFilePath(Utils::FileName::fromString(fileName));
    m_path = fileName;
    modify(data);
    return true;
}

FakeDocument::State FakeDocument::documentState()
{
    return std::make_shared<FakeState>(m_content);
}

void FakeDocument::setDocumentState(const State &state)
{
    modify(FakeState::of(state));
}

FakeDocument::Change FakeDocument::changeBetween(const State &before, const State &after) const
{
    const QByteArray content = FakeState::of(after);
    if (FakeState::of(before) == content)
        return {};
    return { QString::fromLatin1("To " + content), content.startsWith("deleted") };
}

void FakeDocument::modify(const QByteArray &content)
{
    if (!content.isNull())
        m_content = content;
    m_modified = true;
    Q_EMIT changed();
}

FakeEditor::FakeEditor(bool deletesWidget)
    : m_document(new FakeDocument(this)), m_tabs(new QTabWidget), m_deletesWidget(deletesWidget)
{
    auto *widget = new QWidget;
    widget->setObjectName(QStringLiteral("fakeWidget"));
    m_tabs->setObjectName(QStringLiteral("tabWidget"));
    m_tabs->setAccessibleName(QStringLiteral("Pages"));
    auto *line = new QLineEdit;
    line->setAccessibleName(QStringLiteral("Line"));
    m_tabs->addTab(line, QStringLiteral("First"));
    m_tabs->addTab(new QWidget, QStringLiteral("Second"));
    (new QVBoxLayout(widget))->addWidget(m_tabs);
    setWidget(widget);
}

QVariantMap FakeEditor::viewState() const
{
    return { { QStringLiteral("page"), m_tabs->currentIndex() } };
}

void FakeEditor::setViewState(const QVariantMap &state)
{
    m_tabs->setCurrentIndex(state.value(QStringLiteral("page")).toInt());
}

namespace {

class FakeSearch final : public Core::ProductSearch
{
public:
    explicit FakeSearch(int count) : m_count(count) { }
    bool advance(int) override { return ++m_goes < 3; }
    QVector<Core::SearchResult> results(int most) const override
    {
        QVector<Core::SearchResult> lines;
        for (int i = 0; i < qMin(most, m_goes < 3 ? 0 : m_count); ++i)
            lines.append({ QStringLiteral("thing"), QString::number(i), {}, {}, {}, i });
        return lines;
    }
    int count() const override { return m_count; }

private:
    int m_count;
    int m_goes = 0;
};

} // namespace

std::shared_ptr<Core::ProductSearch> FakeEditor::search(const QString &needle)
{
    ++searches;
    return std::make_shared<FakeSearch>(needle.toInt());
}

bool FakeEditor::goTo(const Core::SearchResult &result)
{
    wentTo.append(result.target.toString());
    return result.target.toInt() != 1;
}

QVector<Core::FileProblem> FakeEditor::problems(int most) const
{
    QVector<Core::FileProblem> problems;
    for (const QString &text : m_problems.mid(0, most))
        problems.append({ Core::FileProblem::Severity::Error, text, QStringLiteral("place"), text });
    return problems;
}

void FakeEditor::whenProblemsChange(QObject *context, const std::function<void()> &action)
{
    connect(this, &FakeEditor::problemsChanged, context, action);
}

void FakeEditor::setProblems(const QStringList &texts)
{
    m_problems = texts;
    Q_EMIT problemsChanged();
}

FakeEditor::~FakeEditor()
{
    if (m_deletesWidget)
        delete widget();
}

FakeFactory::FakeFactory(const QString &mimeType)
{
    registerFakeMimeTypes();
    setId(Core::Id("Test.FakeEditor"));
    setMimeTypes({ mimeType });
}

Core::IEditor *FakeFactory::createEditor()
{
    return new FakeEditor(deletesWidget);
}

void registerFakeMimeTypes()
{
    QByteArray document(R"(<?xml version="1.0"?>
        <mime-info xmlns="http://www.freedesktop.org/standards/shared-mime-info">
          <mime-type type="application/x-fake"><sub-class-of type="text/xml"/><glob pattern="*.fake"/></mime-type>
          <mime-type type="application/x-fake-child">
            <sub-class-of type="application/x-fake"/><glob pattern="*.child"/></mime-type>
          <mime-type type="application/x-fake-grandchild">
            <sub-class-of type="application/x-fake-child"/><glob pattern="*.grandchild"/></mime-type>
        </mime-info>)");
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    const QString error = Utils::MimeDatabase::addMimeTypes(&buffer);
    if (!error.isEmpty())
        qFatal("%s", qPrintable(error));
}
