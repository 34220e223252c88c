#include "extensionfile/reader.h"

#include "extensionfile/decoder.h"
#include "extensionfile/logging.h"
#include "extensionfile/names.h"
#include "extensionfile/regularfile.h"
#include "extensionfile/tagscanner.h"
#include "extensionfile/textposition.h"

#include <QBuffer>
#include <QStringList>
#include <QXmlStreamReader>

#include <array>
#include <cstring>

namespace ExtensionFile {

namespace {

bool fail(ReadError *error, ReadError::Kind kind, const QString &reason, const Location &where = {})
{
    error->kind = kind;
    error->reason = reason;
    error->line = where.line;
    error->column = where.column;
    return false;
}

/// Gives equal strings one, nearly always: a document has a few dozen different names, and values like "true", with
/// hundreds of thousands of uses, which would otherwise each hold a copy for as long as the tree lives. What came last
/// of each hash is remembered, so that a string that comes only once costs hardly more than without.
class StringPool final
{
public:
    QString &slot(const QStringRef &text)
    {
        if (text.isEmpty())
            return m_known[0];
        // What tells short strings apart, at a glance.
        const uint first = text.at(0).unicode();
        const uint middle = text.at(text.size() / 2).unicode();
        const uint last = text.at(text.size() - 1).unicode();
        return m_known[(first + 7 * middle + 31 * last + 131 * uint(text.size())) % size];
    }

private:
    static constexpr uint size = 256;
    std::array<QString, size> m_known;
};

/// Answers a null string for what is no name: the parser checks the names of elements, but not those of attributes.
class NamePool final
{
public:
    QString shared(const QStringRef &name)
    {
        QString &known = m_pool.slot(name);
        if (!known.isNull() && known == name)
            return known;
        const QString copy = name.toString();
        if (!isName(copy))
            return QString();
        known = copy;
        return copy;
    }

private:
    StringPool m_pool;
};

class ValuePool final
{
public:
    QString shared(const QStringRef &value)
    {
        if (value.size() > longestShared)
            return value.toString();
        QString &known = m_pool.slot(value);
        if (known.isNull() || known != value)
            known = value.toString();
        return known;
    }

private:
    static constexpr int longestShared = 24; // longer ones are texts, which hardly come twice
    StringPool m_pool;
};

/// Whether the parser can be given the document as it is: it declares nothing, and no tag can have too many attributes,
/// since none is long enough. No "<" stands within a tag that the parser takes.
bool isHarmless(const QByteArray &text, const Limits &limits)
{
    constexpr int shortestAttribute = 4; // a=""
    const qint64 longestTag = qint64(limits.maximumAttributesPerElement) * shortestAttribute;
    if (text.contains("<!DOCTYPE"))
        return false;
    const char *const end = text.constData() + text.size();
    for (const char *tag = text.constData(); tag < end;) {
        const auto *const found = static_cast<const char *>(std::memchr(tag, '<', size_t(end - tag)));
        const char *const next = found ? found + 1 : end;
        if (next - tag > longestTag)
            return false;
        tag = next;
    }
    return true;
}

/// Reads one decoded document. The scanner is kept one start tag ahead of the parser, so that the parser never meets a
/// tag or a declaration that it would need too long for.
class DocumentReader final
{
public:
    DocumentReader(const DecodedDocument &document, Sink &sink, const Limits &limits, ReadError *error)
        : m_document(document), m_sink(sink), m_limits(limits), m_error(error), m_scanner(document.utf8, limits)
    {
        // Text handed over as a string is not decoded again by what its declaration says.
        if (document.transcoded) {
            m_xml.addData(QString::fromUtf8(document.utf8));
        } else if (document.utf8.size() <= takenWhole) {
            m_xml.addData(document.utf8);
        } else {
            m_device.setData(document.utf8);
            (void)m_device.open(QIODevice::ReadOnly);
            m_xml.setDevice(&m_device);
        }
        // A new device takes every other setting back.
        m_xml.setNamespaceProcessing(false);
        m_xml.setEntityExpansionLimit(limits.maximumEntityLength);
    }

    bool run()
    {
        if (!m_sink.wantsLocations() && isHarmless(m_document.utf8, m_limits))
            m_places = Places::None;
        else if (!beginScan())
            return false;
        while (!m_xml.atEnd()) {
            if (!takeToken(m_xml.readNext()))
                return false;
        }
        if (!m_xml.hasError())
            return true;
        // At an early end the parser's own place is now and then that of the last token instead.
        const bool endsEarly = m_xml.error() == QXmlStreamReader::PrematureEndOfDocumentError;
        return fail(m_error, ReadError::Kind::Malformed, m_xml.errorString(),
            endsEarly ? TextPosition(m_document.utf8).at(m_document.utf8.size()) : parserLocation());
    }

private:
    enum class Places { Exact, OfParser, None };

    bool beginScan()
    {
        if (!scanAhead())
            return false;
        if (!m_scanner.declaresEntities())
            return true;
        // Elements out of entities can't be matched with tags of the file: look through it once, before.
        m_places = Places::OfParser;
        while (m_ahead == TagScanner::Result::Tag) {
            if (!scanAhead())
                return false;
        }
        return true;
    }

    bool takeToken(QXmlStreamReader::TokenType token)
    {
        switch (token) {
        case QXmlStreamReader::StartDocument:
            return sameEncoding();
        case QXmlStreamReader::StartElement:
            return takeStartElement();
        case QXmlStreamReader::EndElement:
            --m_depth;
            m_sink.endElement();
            return true;
        default:
            return true;
        }
    }

    bool sameEncoding()
    {
        const QStringRef seen = m_xml.documentEncoding();
        if (seen.compare(QLatin1String(m_document.declaredEncoding), Qt::CaseInsensitive) == 0)
            return true;
        return fail(m_error, ReadError::Kind::Malformed, QStringLiteral("The encoding declaration is damaged."),
            parserLocation());
    }

    bool takeStartElement()
    {
        ++m_elements;
        if (++m_depth > m_limits.maximumDepth)
            return tooMany(QStringLiteral("Elements are nested more than %1 deep."), m_limits.maximumDepth);
        if (m_elements > m_limits.maximumElements)
            return tooMany(QStringLiteral("There are more than %1 elements."), m_limits.maximumElements);
        if (!collectAttributes())
            return false;
        const Location where = m_places == Places::None ? Location() : elementLocation();
        m_sink.startElement(m_names.shared(m_xml.qualifiedName()), m_attributes, where);
        return m_places != Places::Exact || scanAhead();
    }

    bool collectAttributes()
    {
        const QXmlStreamAttributes found = m_xml.attributes();
        if (found.size() > m_limits.maximumAttributesPerElement)
            return tooMany(
                QStringLiteral("An element has more than %1 attributes."), m_limits.maximumAttributesPerElement);
        m_attributeCount += found.size();
        if (m_attributeCount > m_limits.maximumAttributes)
            return tooMany(QStringLiteral("There are more than %1 attributes."), m_limits.maximumAttributes);
        // A sink may have kept the last ones.
        if (m_attributes.isDetached())
            m_attributes.clear();
        else
            m_attributes = Attributes();
        m_attributes.reserve(found.size());
        for (const QXmlStreamAttribute &attribute : found) {
            m_attributeText += attribute.qualifiedName().size() + attribute.value().size();
            if (m_attributeText > m_limits.maximumAttributeText)
                return tooMany(
                    QStringLiteral("The attributes have more than %1 characters."), m_limits.maximumAttributeText);
            const QString name = m_names.shared(attribute.qualifiedName());
            if (name.isNull())
                return fail(
                    m_error, ReadError::Kind::Malformed, QStringLiteral("Invalid attribute name."), elementLocation());
            m_attributes.append({ name, m_values.shared(attribute.value()) });
        }
        return true;
    }

    bool scanAhead()
    {
        m_ahead = m_scanner.next(&m_tag);
        if (m_ahead != TagScanner::Result::Refused)
            return true;
        return fail(m_error, m_scanner.problemKind(), m_scanner.problem(), m_scanner.problemLocation());
    }

    bool tooMany(const QString &reason, qint64 maximum)
    {
        return fail(m_error, ReadError::Kind::TooLarge, reason.arg(maximum), elementLocation());
    }

    /// The place of the element that the parser has just taken; without the scanner it is counted from the start.
    Location elementLocation() const
    {
        switch (m_places) {
        case Places::Exact:
            return m_tag.where;
        case Places::OfParser:
            return parserLocation();
        case Places::None:
            break;
        }
        TagScanner scanner(m_document.utf8, m_limits);
        TagScanner::Tag tag;
        for (int i = 0; i < m_elements && scanner.next(&tag) == TagScanner::Result::Tag; ++i) { }
        return tag.where;
    }

    Location parserLocation() const { return { m_xml.lineNumber(), qMax<qint64>(1, m_xml.columnNumber()) }; }

    const DecodedDocument &m_document;
    Sink &m_sink;
    const Limits &m_limits;
    ReadError *const m_error;
    TagScanner m_scanner;
    // The parser takes a device block by block, and makes two more copies of a document that it gets whole. That is worth
    // a device for a large one only.
    static constexpr int takenWhole = 64 * 1024;
    QBuffer m_device;
    QXmlStreamReader m_xml;
    NamePool m_names;
    ValuePool m_values;
    Attributes m_attributes;
    TagScanner::Tag m_tag;
    TagScanner::Result m_ahead = TagScanner::Result::End;
    Places m_places = Places::Exact;
    int m_depth = 0;
    int m_elements = 0;
    qint64 m_attributeCount = 0;
    qint64 m_attributeText = 0;
};

bool readBytes(const QByteArray &bytes, Sink &sink, ReadError *error, const Limits &limits)
{
    if (bytes.size() > limits.maximumFileSize)
        return fail(error, ReadError::Kind::TooLarge,
            QStringLiteral("The file has more than %1 bytes.").arg(limits.maximumFileSize));
    DecodedDocument document;
    DecodeProblem problem;
    if (!decodeDocument(bytes, &document, &problem))
        return fail(error, ReadError::Kind::Malformed, problem.reason, problem.where);
    return DocumentReader(document, sink, limits, error).run();
}

bool readDevice(QIODevice &device, qint64 mostBytes, QByteArray *bytes)
{
    const qint64 blockSize = 64 * 1024;
    qint64 room = device.isSequential() ? blockSize : qMax<qint64>(1, device.bytesAvailable() + 1);
    qint64 length = 0;
    for (;;) {
        bytes->resize(int(qMin(length + room, mostBytes)));
        const qint64 count = device.read(bytes->data() + length, bytes->size() - length);
        // A sequential device says -1 at its end as well.
        if (count < 0 && !device.isSequential())
            return false;
        length += qMax<qint64>(0, count);
        if (count <= 0 || length == mostBytes)
            break;
        room = blockSize;
    }
    bytes->resize(int(length));
    return true;
}

ReadError::Kind kindOf(RegularFileProblem::Kind kind)
{
    switch (kind) {
    case RegularFileProblem::Kind::Missing:
        return ReadError::Kind::Missing;
    case RegularFileProblem::Kind::NotRegular:
        return ReadError::Kind::NotRegular;
    case RegularFileProblem::Kind::Failed:
        break;
    }
    return ReadError::Kind::Unreadable;
}

} // namespace

QString ReadError::toString() const
{
    QStringList parts;
    if (!path.isEmpty())
        parts += oneLine(path);
    if (line > 0)
        parts += QStringLiteral("%1:%2").arg(line).arg(column);
    const QString place = parts.join(QLatin1Char(':'));
    return (place.isEmpty() ? place : place + QLatin1String(": ")) + oneLine(reason);
}

bool read(QIODevice &device, Sink &sink, ReadError *error, const Limits &limits)
{
    ReadError ignored;
    ReadError *const report = error ? error : &ignored;
    *report = ReadError();
    if (!device.isReadable())
        return fail(report, ReadError::Kind::Unreadable, QStringLiteral("The device is not open for reading."));
    QByteArray bytes;
    if (!readDevice(device, limits.maximumFileSize + 1, &bytes))
        return fail(report, ReadError::Kind::Unreadable, device.errorString());
    return readBytes(bytes, sink, report, limits);
}

bool readFile(const QString &path, Sink &sink, ReadError *error, const Limits &limits)
{
    ReadError ignored;
    ReadError *const report = error ? error : &ignored;
    *report = ReadError();
    QByteArray bytes;
    RegularFileProblem problem;
    const bool opened = readRegularFile(path, limits.maximumFileSize, &bytes, &problem);
    const bool done
        = opened ? readBytes(bytes, sink, report, limits) : fail(report, kindOf(problem.kind), problem.reason);
    report->path = path;
    if (!done) {
        if (report->kind == ReadError::Kind::Missing)
            qCDebug(fileLog).noquote() << report->toString();
        else
            qCWarning(fileLog).noquote() << report->toString();
    }
    return done;
}

} // namespace ExtensionFile
