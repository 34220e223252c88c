#include "extensionfile/quickreader.h"

#include "extensionfile/names.h"

#include <array>
#include <cstring>
#include <random>
#include <utility>

#include <expat.h>

namespace ExtensionFile {

namespace {

/// Gives equal short texts one string, nearly always: a document has a few dozen different names, and values like
/// "true", with hundreds of thousands of uses, which would otherwise each hold a copy for as long as the tree lives.
/// What came last of each hash is remembered, so that a text that comes only once costs hardly more than without.
class StringPool final
{
public:
    /// Null for a text that @p convert answers a null string for; it is asked for texts that are not remembered.
    template <typename Convert>
    QString shared(const char *utf8, int size, Convert convert)
    {
        if (size == 0 || size > longest)
            return convert(utf8, size);
        // What tells short texts apart, at a glance.
        const auto byte = [utf8](int at) { return uint(uchar(utf8[at])); };
        Entry &known = m_known[(byte(0) + 7 * byte(size / 2) + 31 * byte(size - 1) + 131 * uint(size)) % slots];
        if (known.size != size || std::memcmp(known.utf8.data(), utf8, size_t(size)) != 0) {
            QString text = convert(utf8, size);
            if (text.isNull())
                return text;
            known.text = std::move(text);
            known.size = size;
            std::memcpy(known.utf8.data(), utf8, size_t(size));
        }
        return known.text;
    }

private:
    static constexpr uint slots = 256;
    static constexpr int longest = 24; // longer ones are texts, which hardly come twice

    struct Entry
    {
        QString text;
        int size = 0;
        std::array<char, longest> utf8;
    };
    std::array<Entry, slots> m_known;
};

QString value(const char *utf8, int size)
{
    // Empty, but not null.
    return size == 0 ? QLatin1String("") : QString::fromUtf8(utf8, size);
}

/// Null for a name that CarefulReader might not take.
QString elementName(const char *utf8, int size)
{
    const QString name = QString::fromUtf8(utf8, size);
    return isValidName(name) ? name : QString();
}

QString attributeName(const char *utf8, int size)
{
    const QString name = QString::fromUtf8(utf8, size);
    return isValidAttributeName(name) ? name : QString();
}

/// So that nobody can make a file whose names all fall into one place of the parser's tables. Left to itself, each
/// parser asks the system for a number of its own, which takes longer than many a file.
unsigned long hashSalt()
{
    static const unsigned long salt = std::random_device()() | 1U;
    return salt;
}

constexpr int longestAside = 80;

class QuickReader final
{
public:
    QuickReader(const DecodedDocument &document, Sink &sink, const Limits &limits)
        : m_document(document), m_sink(sink), m_limits(limits), m_parser(XML_ParserCreate("UTF-8")),
          m_wantsAttributes(sink.wantsAttributes())
    { }
    QuickReader(const QuickReader &) = delete;
    QuickReader &operator=(const QuickReader &) = delete;
    ~QuickReader() { XML_ParserFree(m_parser); }

    bool run()
    {
        if (!m_parser)
            return false;
        XML_SetHashSalt(m_parser, hashSalt());
        XML_SetUserData(m_parser, this);
        XML_SetXmlDeclHandler(m_parser, [](void *self, const XML_Char *version, const XML_Char *encoding, int) {
            static_cast<QuickReader *>(self)->takeDeclaration(version, encoding);
        });
        XML_SetStartDoctypeDeclHandler(
            m_parser, [](void *self, const XML_Char *, const XML_Char *, const XML_Char *, int) {
                static_cast<QuickReader *>(self)->giveUp();
            });
        XML_SetProcessingInstructionHandler(m_parser, [](void *self, const XML_Char *target, const XML_Char *) {
            static_cast<QuickReader *>(self)->takeInstruction(target);
        });
        XML_SetElementHandler(
            m_parser,
            [](void *self, const XML_Char *name, const XML_Char **attributes) {
                static_cast<QuickReader *>(self)->takeStartElement(name, attributes);
            },
            [](void *self, const XML_Char *) { static_cast<QuickReader *>(self)->takeEndElement(); });
        if (m_sink.wantsAsides())
            listenForAsides();
        const QByteArray &text = m_document.utf8;
        return XML_Parse(m_parser, text.constData(), text.size(), XML_TRUE) == XML_STATUS_OK && !m_givenUp;
    }

private:
    void giveUp()
    {
        m_givenUp = true;
        XML_StopParser(m_parser, XML_FALSE);
    }

    void takeDeclaration(const char *version, const char *encoding)
    {
        if (qstrcmp(version, "1.0") != 0 || qstricmp(encoding, m_document.declaredEncoding.constData()) != 0)
            giveUp();
    }

    void takeInstruction(const char *target)
    {
        if (elementName(target, int(std::strlen(target))).isNull())
            giveUp();
        else
            takeAside(Aside::Instruction, target);
    }

    void listenForAsides()
    {
        XML_SetCommentHandler(m_parser, [](void *self, const XML_Char *text) {
            static_cast<QuickReader *>(self)->takeAside(Aside::Comment, text);
        });
        // It comes in pieces, a line each at most.
        XML_SetCharacterDataHandler(m_parser, [](void *self, const XML_Char *text, int size) {
            auto *reader = static_cast<QuickReader *>(self);
            if (reader->m_text.size() < longestAside)
                reader->m_text.append(text, size);
        });
    }

    void takeText()
    {
        const QByteArray text = m_text.trimmed();
        m_text.clear();
        if (!text.isEmpty())
            m_sink.aside(Aside::Text, QString::fromUtf8(text).left(longestAside));
    }

    void takeAside(Aside what, const char *text)
    {
        if (m_givenUp || !m_sink.wantsAsides())
            return;
        takeText();
        m_sink.aside(what, QString::fromUtf8(text).trimmed().left(longestAside));
    }

    void takeStartElement(const char *tag, const char **attributes)
    {
        if (m_givenUp)
            return;
        takeText();
        const QString name = m_elementNames.shared(tag, int(std::strlen(tag)), &elementName);
        if (name.isNull() || ++m_depth > m_limits.maximumDepth || ++m_elements > m_limits.maximumElements
            || !collect(attributes)) {
            giveUp();
            return;
        }
        m_sink.startElement(name, m_attributes, Location());
    }

    void takeEndElement()
    {
        // The parser ends an empty element that it was stopped in.
        if (m_givenUp)
            return;
        takeText();
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
        if (count > m_limits.maximumAttributesPerElement || m_attributeCount > m_limits.maximumAttributes)
            return false;
        // A sink may have kept the last ones.
        if (m_attributes.isDetached())
            m_attributes.clear();
        else
            m_attributes = Attributes();
        if (m_wantsAttributes)
            m_attributes.reserve(count);
        for (int i = 0; i < count; ++i) {
            const char *const utf8 = attributes[2 * i + 1];
            const auto size = int(std::strlen(utf8));
            const char *const nameUtf8 = attributes[2 * i];
            const QString name = m_attributeNames.shared(nameUtf8, int(std::strlen(nameUtf8)), &attributeName);
            // Bytes, which are no fewer than the characters that the limit is about.
            m_attributeText += name.size() + size;
            if (name.isNull() || m_attributeText > m_limits.maximumAttributeText)
                return false;
            if (m_wantsAttributes)
                m_attributes.append({ name, m_values.shared(utf8, size, &value) });
        }
        return true;
    }

    const DecodedDocument &m_document;
    Sink &m_sink;
    const Limits &m_limits;
    const XML_Parser m_parser;
    const bool m_wantsAttributes;
    StringPool m_elementNames;
    StringPool m_attributeNames;
    StringPool m_values;
    Attributes m_attributes;
    QByteArray m_text;
    bool m_givenUp = false;
    int m_depth = 0;
    int m_elements = 0;
    qint64 m_attributeCount = 0;
    qint64 m_attributeText = 0;
};

} // namespace

bool readQuickly(const DecodedDocument &document, Sink &sink, const Limits &limits)
{
    return QuickReader(document, sink, limits).run();
}

} // namespace ExtensionFile
