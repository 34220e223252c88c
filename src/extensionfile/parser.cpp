#include "extensionfile/parser.h"

#include "extensionfile/words.h"

#include <QRegularExpression>
#include <QSet>

#include <array>
#include <cstring>
#include <memory>

#include <expat.h>

namespace ExtensionFile {

namespace {

QString fromUtf8(const char *utf8, int size)
{
    // Qt takes the first byte order mark off, which is a character like any other here.
    if (size > 0 && *utf8 == '\xef')
        return QString::fromUtf8('x' + QByteArray(utf8, size)).mid(1);
    return QString::fromUtf8(utf8, size);
}

/// Gives equal short texts one string, nearly always: a document has a few dozen different names, and values like
/// "true", with hundreds of thousands of uses, which would otherwise each hold a copy for as long as the tree lives.
/// What came last of each hash is remembered, so that a text that comes only once costs hardly more than without.
class StringPool final
{
public:
    QString shared(const char *utf8)
    {
        const auto size = int(std::strlen(utf8));
        // Empty, but not null.
        if (size == 0)
            return QLatin1String("");
        if (size > longest)
            return fromUtf8(utf8, size);
        // What tells short texts apart, at a glance.
        const auto byte = [utf8](int at) { return uint(uchar(utf8[at])); };
        Entry &known = m_known[(byte(0) + 7 * byte(size / 2) + 31 * byte(size - 1) + 131 * uint(size)) % places];
        if (known.size != size || std::memcmp(known.utf8.data(), utf8, size_t(size)) != 0) {
            known.text = fromUtf8(utf8, size);
            known.size = size;
            std::memcpy(known.utf8.data(), utf8, size_t(size));
        }
        return known.text;
    }

private:
    static constexpr uint places = 256;
    static constexpr int longest = 24; // longer ones are texts, which hardly come twice

    struct Entry
    {
        QString text;
        int size = 0;
        std::array<char, longest> utf8;
    };
    std::array<Entry, places> m_known;
};

constexpr int longestAside = 80;

/// What the parser's library says of files, for the catalogues; others are told as they are.
[[maybe_unused]] constexpr const char *wordsOfTheLibrary[] = {
    QT_TRANSLATE_NOOP("ExtensionFile", "out of memory"),
    QT_TRANSLATE_NOOP("ExtensionFile", "syntax error"),
    QT_TRANSLATE_NOOP("ExtensionFile", "no element found"),
    QT_TRANSLATE_NOOP("ExtensionFile", "not well-formed (invalid token)"),
    QT_TRANSLATE_NOOP("ExtensionFile", "unclosed token"),
    QT_TRANSLATE_NOOP("ExtensionFile", "partial character"),
    QT_TRANSLATE_NOOP("ExtensionFile", "mismatched tag"),
    QT_TRANSLATE_NOOP("ExtensionFile", "duplicate attribute"),
    QT_TRANSLATE_NOOP("ExtensionFile", "junk after document element"),
    QT_TRANSLATE_NOOP("ExtensionFile", "undefined entity"),
    QT_TRANSLATE_NOOP("ExtensionFile", "recursive entity reference"),
    QT_TRANSLATE_NOOP("ExtensionFile", "asynchronous entity"),
    QT_TRANSLATE_NOOP("ExtensionFile", "reference to invalid character number"),
    QT_TRANSLATE_NOOP("ExtensionFile", "XML or text declaration not at start of entity"),
    QT_TRANSLATE_NOOP("ExtensionFile", "XML declaration not well-formed"),
    QT_TRANSLATE_NOOP("ExtensionFile", "unclosed CDATA section"),
    QT_TRANSLATE_NOOP("ExtensionFile", "illegal character(s) in public id"),
    QT_TRANSLATE_NOOP("ExtensionFile", "limit on input amplification factor (from DTD and entities) breached"),
};

class Parser final
{
public:
    Parser(const DecodedDocument &document, Sink &sink, const Limits &limits, ReadError *error)
        : m_document(document), m_sink(sink), m_limits(limits), m_error(error),
          m_parser(XML_ParserCreate("UTF-8"), &XML_ParserFree)
    { }

    bool run()
    {
        if (!m_parser)
            return m_error->fail(
                ReadError::Kind::Unreadable, say(QT_TRANSLATE_NOOP("ExtensionFile", "There is not enough memory.")));
        setUp();
        const QByteArray &text = m_document.utf8;
        if (XML_Parse(parser(), text.constData(), text.size(), XML_TRUE) != XML_STATUS_OK && !hasFailed())
            reportFault();
        return !hasFailed();
    }

private:
    static Parser &of(void *self) { return *static_cast<Parser *>(self); }
    [[nodiscard]] XML_Parser parser() const { return m_parser.get(); }
    [[nodiscard]] Locator locator() const { return { m_document, parser() }; }
    [[nodiscard]] bool hasFailed() const { return m_error->kind != ReadError::Kind::None; }

    void setUp()
    {
        XML_SetUserData(parser(), this);
        XML_SetBillionLaughsAttackProtectionActivationThreshold(parser(), m_limits.maximumExpansion);
        XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser(), 2);
        XML_SetElementHandler(
            parser(),
            [](void *self, const char *tag, const char **attributes) { of(self).takeStartElement(tag, attributes); },
            [](void *self, const char *) { of(self).takeEndElement(); });
        XML_SetXmlDeclHandler(
            parser(), [](void *self, const char *version, const char *, int) { of(self).takeVersion(version); });
        XML_SetDoctypeDeclHandler(
            parser(),
            [](void *self, const char *name, const char *system, const char *, int) {
                of(self).startDocumentType(name, system);
            },
            [](void *self) { of(self).endDocumentType(); });
        XML_SetExternalEntityRefHandler(
            parser(), [](XML_Parser parser, const char *, const char *, const char *, const char *) -> int {
                of(XML_GetUserData(parser))
                    .fail(say(QT_TRANSLATE_NOOP("ExtensionFile", "External entities are not read.")));
                return XML_STATUS_ERROR;
            });
        XML_SetSkippedEntityHandler(
            parser(), [](void *self, const char *name, int) { of(self).failByEntity(QString::fromUtf8(name)); });
        XML_SetProcessingInstructionHandler(parser(),
            [](void *self, const char *target, const char *) { of(self).takeAside(Aside::Instruction, target); });
        XML_SetCommentHandler(parser(), [](void *self, const char *text) { of(self).takeAside(Aside::Comment, text); });
        XML_SetCharacterDataHandler(
            parser(), [](void *self, const char *text, int size) { of(self).takePieceOfText(text, size); });
    }

    void fail(const QString &reason, ReadError::Kind kind = ReadError::Kind::Malformed)
    {
        // The parser still tells the rest of what it was stopped in.
        if (hasFailed())
            return;
        m_error->fail(kind, reason, locator().element());
        XML_StopParser(parser(), XML_FALSE);
    }

    [[nodiscard]] bool within(qint64 count, qint64 maximum, const char *reason)
    {
        if (count > maximum)
            fail(say(reason).arg(maximum), ReadError::Kind::TooLarge);
        return count <= maximum;
    }

    /// What the parser itself has found wrong.
    void reportFault()
    {
        const XML_Error code = XML_GetErrorCode(parser());
        const Location where = locator().element();
        const ReadError::Kind kind = code == XML_ERROR_AMPLIFICATION_LIMIT_BREACH ? ReadError::Kind::TooLarge
            : code == XML_ERROR_NO_MEMORY                                         ? ReadError::Kind::Unreadable
                                                                                  : ReadError::Kind::Malformed;
        QString reason = say(XML_ErrorString(code)) + QLatin1Char('.');
        reason[0] = reason.at(0).toUpper();
        // Qt's decoder tells damage from a character that is out of place.
        const QByteArray rest = m_document.utf8.mid(int(where.byteOffset) - m_document.markSize, 4);
        if (code == XML_ERROR_INVALID_TOKEN && QString::fromUtf8(rest).startsWith(QChar::ReplacementCharacter))
            reason = say(QT_TRANSLATE_NOOP("ExtensionFile", "The text is not valid UTF-8."));
        m_error->fail(kind, reason, where);
    }

    void takeVersion(const char *version)
    {
        // Whoever reads 1.0 is to read 1.x by the rules of 1.0.
        if (qstrncmp(version, "1.", 2) != 0)
            fail(say(QT_TRANSLATE_NOOP("ExtensionFile", "XML %1 is not known.")).arg(QString::fromUtf8(version)));
    }

    void startDocumentType(const char *name, const char *system)
    {
        m_isDeclaredElsewhere = system != nullptr;
        takeAside(Aside::DocumentType, name);
        m_isInDocumentType = true;
        // It gets the declarations, a word at a time, from here to the end of the document type.
        XML_SetDefaultHandlerExpand(
            parser(), [](void *self, const char *word, int size) { of(self).takeDeclaration(QByteArray(word, size)); });
    }

    void endDocumentType()
    {
        m_isInDocumentType = false;
        XML_SetDefaultHandlerExpand(parser(), nullptr);
    }

    void takeDeclaration(const QByteArray &word)
    {
        m_declarationSize += word.size();
        if (m_lastWord == "<!ENTITY")
            m_entities.insert(QString::fromUtf8(word));
        if (!word.trimmed().isEmpty())
            m_lastWord = word;
        // The parser would pass over what it declares.
        if (word.size() > 1 && word.startsWith('%'))
            fail(say(QT_TRANSLATE_NOOP("ExtensionFile", "Parameter entities are not supported.")));
        else if (within(m_declarationSize, m_limits.maximumDeclarationSize,
                     QT_TRANSLATE_NOOP("ExtensionFile", "The document type has more than %1 bytes of declarations."))
            && (word.startsWith('"') || word.startsWith('\'')))
            lookUpEntities(word);
    }

    /// Where a document type is declared elsewhere, the parser passes over an entity that it does not know; in @p
    /// markup, a start tag or a declared value, without a word.
    void lookUpEntities(const QByteArray &markup)
    {
        if (!m_isDeclaredElsewhere || !markup.contains('&'))
            return;
        static const QRegularExpression reference(QStringLiteral("&([^#;]+);"));
        for (auto found = reference.globalMatch(QString::fromUtf8(markup)); found.hasNext();) {
            const QString name = found.next().captured(1);
            if (!m_entities.contains(name))
                failByEntity(name);
        }
    }

    void failByEntity(const QString &name)
    {
        fail(say(
            QT_TRANSLATE_NOOP("ExtensionFile", "The entity %1 is not declared in the file, and nothing else is read."))
                 .arg(name));
    }

    /// A line at most.
    void takePieceOfText(const char *text, int size)
    {
        for (; m_text.isEmpty() && size > 0 && std::strchr(" \t\r\n", *text); --size)
            ++text;
        if (m_text.size() < longestAside)
            m_text.append(text, size);
    }

    void endText()
    {
        if (!m_text.isEmpty())
            m_sink.aside(Aside::Text, QString::fromUtf8(m_text).left(longestAside).trimmed());
        m_text.clear();
    }

    void takeAside(Aside what, const char *text)
    {
        if (hasFailed() || m_isInDocumentType)
            return;
        endText();
        m_sink.aside(what, QString::fromUtf8(text).trimmed().left(longestAside));
    }

    void takeStartElement(const char *tag, const char **attributes)
    {
        if (hasFailed())
            return;
        endText();
        if (m_isDeclaredElsewhere)
            lookUpEntities(
                m_document.utf8.mid(int(XML_GetCurrentByteIndex(parser())), XML_GetCurrentByteCount(parser())));
        if (!hasFailed()
            && within(++m_depth, m_limits.maximumDepth,
                QT_TRANSLATE_NOOP("ExtensionFile", "Elements are nested more than %1 deep."))
            && within(++m_elements, m_limits.maximumElements,
                QT_TRANSLATE_NOOP("ExtensionFile", "There are more than %1 elements."))
            && collect(attributes))
            m_sink.startElement(m_names.shared(tag), m_attributes, locator());
    }

    void takeEndElement()
    {
        if (hasFailed())
            return;
        endText();
        --m_depth;
        m_sink.endElement();
    }

    /// @p attributes: names and values in turn, and a null pointer.
    bool collect(const char **attributes)
    {
        int count = 0;
        while (attributes[2 * count])
            ++count;
        m_attributeCount += count;
        if (!within(count, m_limits.maximumAttributesPerElement,
                QT_TRANSLATE_NOOP("ExtensionFile", "An element has more than %1 attributes."))
            || !within(m_attributeCount, m_limits.maximumAttributes,
                QT_TRANSLATE_NOOP("ExtensionFile", "There are more than %1 attributes.")))
            return false;
        // A sink may have kept the last ones.
        if (m_attributes.isDetached())
            m_attributes.clear();
        else
            m_attributes = Attributes();
        m_attributes.reserve(count);
        for (int i = 0; i < count; ++i) {
            m_attributes.append({ m_names.shared(attributes[2 * i]), m_values.shared(attributes[2 * i + 1]) });
            m_attributeText += m_attributes.last().name.size() + m_attributes.last().value.size();
        }
        return within(m_attributeText, m_limits.maximumAttributeText,
            QT_TRANSLATE_NOOP("ExtensionFile", "The attributes have more than %1 characters."));
    }

    const DecodedDocument &m_document;
    Sink &m_sink;
    const Limits &m_limits;
    ReadError *const m_error;
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> m_parser;
    StringPool m_names;
    StringPool m_values;
    Attributes m_attributes;
    QByteArray m_text;
    QByteArray m_lastWord;
    QSet<QString> m_entities { QStringLiteral("amp"), QStringLiteral("lt"), QStringLiteral("gt"),
        QStringLiteral("quot"), QStringLiteral("apos") };
    bool m_isInDocumentType = false;
    bool m_isDeclaredElsewhere = false;
    int m_depth = 0;
    int m_elements = 0;
    qint64 m_declarationSize = 0;
    qint64 m_attributeCount = 0;
    qint64 m_attributeText = 0;
};

} // namespace

bool parse(const DecodedDocument &document, Sink &sink, const Limits &limits, ReadError *error)
{
    return Parser(document, sink, limits, error).run();
}

} // namespace ExtensionFile
