#include "extensionfile/carefulreader.h"

#include "extensionfile/names.h"
#include "extensionfile/tagscanner.h"
#include "extensionfile/textposition.h"

#include <QXmlStreamReader>

namespace ExtensionFile {

namespace {

constexpr int longestAside = 80;

/// Reads one decoded document. The scanner is kept one start tag ahead of the parser, so that the parser never meets a
/// tag or a declaration that it would need too long for.
class CarefulReader final
{
public:
    CarefulReader(const DecodedDocument &document, Sink &sink, const Limits &limits, ReadError *error)
        : m_document(document), m_sink(sink), m_limits(limits), m_error(error), m_scanner(document.utf8, limits)
    {
        // Text handed over as a string is not decoded again by what its declaration says.
        if (document.transcoded)
            m_xml.addData(QString::fromUtf8(document.utf8));
        else
            m_xml.addData(document.utf8);
        m_xml.setNamespaceProcessing(false);
        m_xml.setEntityExpansionLimit(limits.maximumEntityLength);
    }

    bool run()
    {
        if (!beginScan())
            return false;
        while (!m_xml.atEnd()) {
            if (!takeToken(m_xml.readNext()))
                return false;
        }
        if (!m_xml.hasError())
            return true;
        // At an early end the parser's own place is now and then that of the last token instead.
        const bool endsEarly = m_xml.error() == QXmlStreamReader::PrematureEndOfDocumentError;
        return m_error->fail(ReadError::Kind::Malformed, m_xml.errorString(),
            endsEarly ? TextPosition(m_document.utf8).at(m_document.utf8.size()) : parserLocation());
    }

private:
    enum class Places { Exact, OfParser };

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
        case QXmlStreamReader::Comment:
            return takeAside(Aside::Comment);
        case QXmlStreamReader::DTD:
            return takeAside(Aside::DocumentType);
        case QXmlStreamReader::Characters:
            return m_xml.isWhitespace() || takeAside(Aside::Text);
        case QXmlStreamReader::ProcessingInstruction:
            if (m_sink.wantsAsides())
                m_sink.aside(Aside::Instruction, m_xml.processingInstructionTarget().toString());
            return true;
        default:
            return true;
        }
    }

    bool takeAside(Aside what)
    {
        if (m_sink.wantsAsides())
            m_sink.aside(what, m_xml.text().left(longestAside).trimmed().toString());
        return true;
    }

    bool sameEncoding()
    {
        const QStringRef seen = m_xml.documentEncoding();
        if (seen.compare(QLatin1String(m_document.declaredEncoding), Qt::CaseInsensitive) == 0)
            return true;
        return m_error->fail(
            ReadError::Kind::Malformed, QStringLiteral("The encoding declaration is damaged."), parserLocation());
    }

    bool takeStartElement()
    {
        ++m_elements;
        if (++m_depth > m_limits.maximumDepth)
            return tooMany(QStringLiteral("Elements are nested more than %1 deep."), m_limits.maximumDepth);
        if (m_elements > m_limits.maximumElements)
            return tooMany(QStringLiteral("There are more than %1 elements."), m_limits.maximumElements);
        Attributes attributes;
        if (!collect(&attributes))
            return false;
        m_sink.startElement(m_xml.qualifiedName().toString(), attributes, elementLocation());
        return m_places != Places::Exact || scanAhead();
    }

    bool collect(Attributes *attributes)
    {
        const QXmlStreamAttributes found = m_xml.attributes();
        if (found.size() > m_limits.maximumAttributesPerElement)
            return tooMany(
                QStringLiteral("An element has more than %1 attributes."), m_limits.maximumAttributesPerElement);
        m_attributeCount += found.size();
        if (m_attributeCount > m_limits.maximumAttributes)
            return tooMany(QStringLiteral("There are more than %1 attributes."), m_limits.maximumAttributes);
        attributes->reserve(found.size());
        for (const QXmlStreamAttribute &attribute : found) {
            m_attributeText += attribute.qualifiedName().size() + attribute.value().size();
            if (m_attributeText > m_limits.maximumAttributeText)
                return tooMany(
                    QStringLiteral("The attributes have more than %1 characters."), m_limits.maximumAttributeText);
            const QString name = attribute.qualifiedName().toString();
            // The parser checks the names of elements, but not those of attributes.
            if (!isName(name))
                return m_error->fail(
                    ReadError::Kind::Malformed, QStringLiteral("Invalid attribute name."), elementLocation());
            attributes->append({ name, attribute.value().toString() });
        }
        return true;
    }

    bool scanAhead()
    {
        m_ahead = m_scanner.next(&m_tag);
        if (m_ahead != TagScanner::Result::Refused)
            return true;
        return m_error->fail(m_scanner.problemKind(), m_scanner.problem(), m_scanner.problemLocation());
    }

    bool tooMany(const QString &reason, qint64 maximum)
    {
        return m_error->fail(ReadError::Kind::TooLarge, reason.arg(maximum), elementLocation());
    }

    /// The place of the element that the parser has just taken.
    Location elementLocation() const { return m_places == Places::Exact ? m_tag.where : parserLocation(); }

    Location parserLocation() const { return { m_xml.lineNumber(), qMax<qint64>(1, m_xml.columnNumber()) }; }

    const DecodedDocument &m_document;
    Sink &m_sink;
    const Limits &m_limits;
    ReadError *const m_error;
    TagScanner m_scanner;
    QXmlStreamReader m_xml;
    TagScanner::Tag m_tag;
    TagScanner::Result m_ahead = TagScanner::Result::End;
    Places m_places = Places::Exact;
    int m_depth = 0;
    int m_elements = 0;
    qint64 m_attributeCount = 0;
    qint64 m_attributeText = 0;
};

} // namespace

bool readCarefully(const DecodedDocument &document, Sink &sink, const Limits &limits, ReadError *error)
{
    return CarefulReader(document, sink, limits, error).run();
}

} // namespace ExtensionFile
