#include "utils/mimedocument.h"

#include "utils/pathtext.h"

#include <QIODevice>
#include <QXmlStreamReader>

#include <algorithm>

namespace Utils {

namespace {

/// The largest of the known collections of MIME types has about 2 MiB.
constexpr qint64 MaximumSize = 4 * 1024 * 1024;
/// Nested matches are read and tried by recursion; real documents nest four deep.
constexpr int MaximumMatchDepth = 32;
/// Characters. The parser's reasons quote the document, which may hold line breaks and any amount of text.
constexpr int LongestReason = 500;

/// Reads one document, one function per element. Lives for one reading.
class DocumentReader final
{
public:
    explicit DocumentReader(const QByteArray &bytes) : m_xml(bytes) { }

    MimeDocument read()
    {
        MimeDocument result;
        if (m_xml.readNextStartElement()) {
            if (isKnown("mime-info"))
                readMimeInfo(result.types);
            else
                fail(QStringLiteral("the root element is not \"mime-info\""));
        }
        // What stands behind the root element belongs to the document, too.
        while (!m_xml.atEnd())
            m_xml.readNext();
        if (m_xml.hasError()) {
            result.types.clear();
            result.errorString = QStringLiteral("%1:%2: %3")
                                     .arg(m_xml.lineNumber())
                                     .arg(qMax<qint64>(m_xml.columnNumber(), 1))
                                     .arg(oneLine(m_xml.errorString().left(LongestReason)));
        }
        return result;
    }

private:
    /// The first defect is the one to report; what follows it is mostly its consequence.
    void fail(const QString &reason)
    {
        if (!m_xml.hasError())
            m_xml.raiseError(reason);
    }

    bool isKnown(const char *element) const
    {
        return m_xml.name() == QLatin1String(element)
            && (m_xml.namespaceUri().isEmpty()
                || m_xml.namespaceUri() == QLatin1String("http://www.freedesktop.org/standards/shared-mime-info"));
    }

    QString attribute(const char *name) const { return m_xml.attributes().value(QLatin1String(name)).toString(); }

    /// The attribute's value; its absence and an empty value are errors.
    QString neededAttribute(const char *name)
    {
        const QString value = attribute(name);
        if (value.isEmpty())
            fail(QStringLiteral("\"%1\" has no \"%2\"").arg(m_xml.name().toString(), QLatin1String(name)));
        return value;
    }

    /// A number from 0 to 100, 50 where the attribute is absent.
    int rank(const char *name)
    {
        if (!m_xml.attributes().hasAttribute(QLatin1String(name)))
            return 50;
        bool ok = false;
        const int value = attribute(name).toInt(&ok);
        if (!ok || value < 0 || value > 100)
            fail(QStringLiteral("the \"%1\" \"%2\" is not a number from 0 to 100")
                     .arg(QLatin1String(name), attribute(name)));
        return value;
    }

    /// Two parts around a slash, without white space. Every start of a program reads types: no regular expression.
    static bool isTypeName(const QString &type)
    {
        const int slash = type.indexOf(QLatin1Char('/'));
        return slash > 0 && slash == type.lastIndexOf(QLatin1Char('/')) && slash < type.size() - 1
            && std::none_of(type.cbegin(), type.cend(), [](QChar letter) { return letter.isSpace(); });
    }

    QString typeAttribute()
    {
        const QString type = neededAttribute("type");
        if (!type.isEmpty() && !isTypeName(type))
            fail(QStringLiteral("\"%1\" is not the name of a MIME type").arg(type));
        return type;
    }

    void readMimeInfo(QVector<MimeTypeRecord> &types)
    {
        while (m_xml.readNextStartElement()) {
            if (isKnown("mime-type"))
                types.append(readMimeType());
            else
                m_xml.skipCurrentElement();
        }
    }

    MimeTypeRecord readMimeType()
    {
        MimeTypeRecord record;
        record.name = typeAttribute();
        bool hasUntranslated = false;
        while (m_xml.readNextStartElement()) {
            if (isKnown("comment")) {
                readComment(record, hasUntranslated);
                continue;
            }
            if (isKnown("magic")) {
                record.magics.append(readMagic());
                continue;
            }
            if (isKnown("sub-class-of"))
                record.parents.append(typeAttribute());
            else if (isKnown("alias"))
                record.aliases.append(typeAttribute());
            else if (isKnown("glob"))
                record.globs.append(readGlob());
            else if (isKnown("root-XML"))
                record.rootElements.append(readRootElement());
            m_xml.skipCurrentElement();
        }
        return record;
    }

    void readComment(MimeTypeRecord &record, bool &hasUntranslated)
    {
        const bool untranslated = !m_xml.attributes().hasAttribute(
            QStringLiteral("http://www.w3.org/XML/1998/namespace"), QStringLiteral("lang"));
        const QString text = m_xml.readElementText(QXmlStreamReader::SkipChildElements).simplified();
        if (record.comment.isEmpty() || (untranslated && !hasUntranslated))
            record.comment = text;
        hasUntranslated = hasUntranslated || untranslated;
    }

    MimeGlob readGlob()
    {
        MimeGlob glob;
        glob.pattern = neededAttribute("pattern");
        glob.weight = rank("weight");
        const QString sensitivity = attribute("case-sensitive");
        glob.caseSensitive = sensitivity == QLatin1String("true");
        if (!glob.caseSensitive && !sensitivity.isEmpty() && sensitivity != QLatin1String("false"))
            fail(QStringLiteral("\"case-sensitive\" is neither \"true\" nor \"false\""));
        const auto isWildcard = [](QChar letter) {
            return letter == QLatin1Char('*') || letter == QLatin1Char('?') || letter == QLatin1Char('[');
        };
        if (std::any_of(glob.pattern.cbegin(), glob.pattern.cend(), isWildcard)) {
            glob.wildcards = QRegularExpression(QRegularExpression::wildcardToRegularExpression(glob.pattern),
                glob.caseSensitive ? QRegularExpression::NoPatternOption : QRegularExpression::CaseInsensitiveOption);
            if (!glob.wildcards.isValid())
                fail(QStringLiteral("\"%1\" is not a pattern").arg(glob.pattern));
        }
        return glob;
    }

    MimeRootElement readRootElement()
    {
        const MimeRootElement root { attribute("namespaceURI"), attribute("localName") };
        if (root.namespaceUri.isEmpty() && root.localName.isEmpty())
            fail(QStringLiteral("\"root-XML\" has neither \"namespaceURI\" nor \"localName\""));
        return root;
    }

    MimeMagic readMagic()
    {
        MimeMagic magic;
        magic.priority = rank("priority");
        readMatches(magic.matches, 1);
        if (magic.matches.isEmpty())
            fail(QStringLiteral("\"magic\" has no \"match\""));
        return magic;
    }

    void readMatches(QVector<MimeMatch> &matches, int depth)
    {
        while (m_xml.readNextStartElement()) {
            if (!isKnown("match")) {
                m_xml.skipCurrentElement();
                continue;
            }
            if (depth > MaximumMatchDepth) {
                fail(QStringLiteral("more than %1 nested matches").arg(MaximumMatchDepth));
                return;
            }
            const bool hasMask = m_xml.attributes().hasAttribute(QLatin1String("mask"));
            // A missing mask is told from an empty one by being null.
            const QString mask = hasMask ? attribute("mask") + QLatin1String("") : QString();
            QString reason;
            std::optional<MimeMatch> match
                = MimeMatch::fromAttributes(attribute("type"), attribute("value"), attribute("offset"), mask, &reason);
            if (!match) {
                fail(reason);
                return;
            }
            readMatches(match->nested, depth + 1);
            matches.append(*match);
        }
    }

    QXmlStreamReader m_xml;
};

} // namespace

MimeDocument MimeDocument::read(QIODevice *device)
{
    const QByteArray bytes = device->read(MaximumSize + 1);
    if (bytes.size() <= MaximumSize)
        return DocumentReader(bytes).read();
    MimeDocument result;
    result.errorString = QStringLiteral("1:1: the document is larger than %1 bytes").arg(MaximumSize);
    return result;
}

} // namespace Utils
