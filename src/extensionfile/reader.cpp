#include "extensionfile/reader.h"

#include "extensionfile/decoder.h"
#include "extensionfile/logging.h"
#include "extensionfile/names.h"
#include "extensionfile/regularfile.h"
#include "extensionfile/tagscanner.h"
#include "extensionfile/textposition.h"

#include <QIODevice>
#include <QSet>
#include <QStringList>
#include <QXmlStreamReader>

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

/// Gives equal names one string, and a null one for what is no name: the parser checks the names of elements, but not
/// those of attributes. A document has a few dozen different names and hundreds of thousands of uses, which would
/// otherwise each hold a copy for as long as the tree lives.
class NamePool final
{
public:
    QString shared(const QStringRef &name)
    {
        const QString view = QString::fromRawData(name.data(), name.size());
        const auto known = m_names.constFind(view);
        if (known != m_names.constEnd())
            return *known;
        if (!isName(view))
            return QString();
        const QString copy = name.toString();
        if (m_names.size() < maximumNames)
            m_names.insert(copy);
        return copy;
    }

private:
    static constexpr int maximumNames = 4'096;
    QSet<QString> m_names;
};

/// Reads one decoded document. The scanner is kept one start tag ahead of the parser, so that the parser never meets a
/// tag or a declaration that it would need too long for.
class DocumentReader final
{
public:
    DocumentReader(const DecodedDocument &document, Sink &sink, const Limits &limits, ReadError *error)
        : m_document(document), m_sink(sink), m_limits(limits), m_error(error), m_scanner(document.utf8, limits)
    {
        m_xml.setNamespaceProcessing(false);
        m_xml.setEntityExpansionLimit(limits.maximumEntityLength);
    }

    bool run()
    {
        if (!scanAhead())
            return false;
        m_exactLocations = !m_scanner.declaresEntities();
        while (!m_exactLocations && m_ahead == TagScanner::Result::Tag) {
            // Elements out of entities can't be matched with tags of the file: look through it once, before.
            if (!scanAhead())
                return false;
        }
        // Text handed over as a string is not decoded again by what its declaration says.
        if (m_document.transcoded)
            m_xml.addData(QString::fromUtf8(m_document.utf8));
        else
            m_xml.addData(m_document.utf8);
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
        const Location where = m_exactLocations ? m_tag.where : parserLocation();
        if (++m_depth > m_limits.maximumDepth)
            return tooMany(QStringLiteral("Elements are nested more than %1 deep."), m_limits.maximumDepth, where);
        if (++m_elements > m_limits.maximumElements)
            return tooMany(QStringLiteral("There are more than %1 elements."), m_limits.maximumElements, where);
        if (!collectAttributes(where))
            return false;
        m_sink.startElement(m_names.shared(m_xml.qualifiedName()), m_attributes, where);
        return !m_exactLocations || scanAhead();
    }

    bool collectAttributes(const Location &where)
    {
        const QXmlStreamAttributes found = m_xml.attributes();
        if (found.size() > m_limits.maximumAttributesPerElement)
            return tooMany(
                QStringLiteral("An element has more than %1 attributes."), m_limits.maximumAttributesPerElement, where);
        m_attributeCount += found.size();
        if (m_attributeCount > m_limits.maximumAttributes)
            return tooMany(QStringLiteral("There are more than %1 attributes."), m_limits.maximumAttributes, where);
        // A fresh vector: a sink may have kept the last one.
        m_attributes = Attributes();
        m_attributes.reserve(found.size());
        for (const QXmlStreamAttribute &attribute : found) {
            m_attributeText += attribute.qualifiedName().size() + attribute.value().size();
            if (m_attributeText > m_limits.maximumAttributeText)
                return tooMany(QStringLiteral("The attributes have more than %1 characters."),
                    m_limits.maximumAttributeText, where);
            const QString name = m_names.shared(attribute.qualifiedName());
            if (name.isNull())
                return fail(m_error, ReadError::Kind::Malformed, QStringLiteral("Invalid attribute name."), where);
            m_attributes.append({ name, attribute.value().toString() });
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

    bool tooMany(const QString &reason, qint64 maximum, const Location &where)
    {
        return fail(m_error, ReadError::Kind::TooLarge, reason.arg(maximum), where);
    }

    Location parserLocation() const { return { m_xml.lineNumber(), qMax<qint64>(1, m_xml.columnNumber()) }; }

    const DecodedDocument &m_document;
    Sink &m_sink;
    const Limits &m_limits;
    ReadError *const m_error;
    TagScanner m_scanner;
    QXmlStreamReader m_xml;
    NamePool m_names;
    Attributes m_attributes;
    TagScanner::Tag m_tag;
    TagScanner::Result m_ahead = TagScanner::Result::End;
    bool m_exactLocations = true;
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
