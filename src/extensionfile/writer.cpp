#include "extensionfile/writer.h"

#include "extensionfile/logging.h"
#include "extensionfile/names.h"
#include "extensionfile/words.h"

#include <algorithm>

namespace ExtensionFile {

namespace {
const int indentation = 4;
const int maximumLogLines = 20;

/// What is written for the byte at @p at in an attribute's value; null when it stands as it is.
const char *referenceFor(const QByteArray &text, int at)
{
    switch (text.at(at)) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '"':
        return "&quot;";
    case '>':
        return at >= 2 && text.at(at - 1) == ']' && text.at(at - 2) == ']' ? "&gt;" : nullptr;
    // Written as they are, the reader would make blanks of them.
    case '\t':
        return "&#x9;";
    case '\n':
        return "&#xa;";
    case '\r':
        return "&#xd;";
    default:
        return nullptr;
    }
}

/// Whether each character is written as the one byte that it is in ASCII, as in all common names and nearly all values.
bool standsAsItIs(const QString &value)
{
    return std::all_of(value.cbegin(), value.cend(), [](QChar c) {
        const ushort code = c.unicode();
        return code >= 0x20 && code < 0x7f && code != '&' && code != '<' && code != '>' && code != '"';
    });
}

} // namespace

Writer::Writer(const QString &path, const Limits &limits) : m_path(path), m_limits(limits) { }

void Writer::reserve(qint64 bytes)
{
    m_bytes.reserve(int(qBound<qint64>(m_bytes.size(), bytes, m_limits.maximumFileSize)));
}

void Writer::startElement(const QString &name)
{
    if (hasFailed())
        return;
    if (m_depth == 0 && (m_rootDone || !isName(name))) {
        fail((m_rootDone ? say(QT_TRANSLATE_NOOP("ExtensionFile", "a second root element \"%1\""))
                         : say(QT_TRANSLATE_NOOP("ExtensionFile", "\"%1\" is no legal name for the root element")))
                 .arg(name));
        return;
    }
    if (!isName(name)) {
        omit(say(QT_TRANSLATE_NOOP("ExtensionFile", "element \"%1\" has no legal name, its children take its place"))
                 .arg(name));
        m_open.append(QByteArray());
        return;
    }
    if (!within(
            m_depth + 1, m_limits.maximumDepth, QT_TRANSLATE_NOOP("ExtensionFile", "elements nested more than %1 deep"))
        || !within(
            m_elements + 1, m_limits.maximumElements, QT_TRANSLATE_NOOP("ExtensionFile", "more than %1 elements")))
        return;
    if (m_startTagOpen)
        m_bytes += ">\n";
    indent();
    const QByteArray encoded = name.toUtf8();
    m_bytes += '<';
    m_bytes += encoded;
    m_open.append(encoded);
    m_attributeNames.clear();
    m_startTagOpen = true;
    ++m_depth;
    ++m_elements;
}

void Writer::attribute(const QString &name, const QString &value)
{
    if (hasFailed())
        return;
    if (!m_open.isEmpty() && m_open.last().isNull())
        return;
    if (!m_startTagOpen) {
        fail(say(QT_TRANSLATE_NOOP("ExtensionFile", "attribute \"%1\" outside of a start tag")).arg(name));
        return;
    }
    if (!isName(name)) {
        omit(say(QT_TRANSLATE_NOOP("ExtensionFile", "attribute \"%1\" has no legal name")).arg(name));
        return;
    }
    if (m_attributeNames.contains(name)) {
        omit(say(QT_TRANSLATE_NOOP("ExtensionFile", "attribute \"%1\" is there already")).arg(name));
        return;
    }
    const QString legal = withoutIllegalCharacters(value);
    if (legal.size() != value.size())
        omit(say(QT_TRANSLATE_NOOP("ExtensionFile", "characters in the value of attribute \"%1\"")).arg(name));
    m_attributeNames.append(name);
    m_attributeText += name.size() + legal.size();
    ++m_attributes;
    if (!within(m_attributeNames.size(), m_limits.maximumAttributesPerElement,
            QT_TRANSLATE_NOOP("ExtensionFile", "an element with more than %1 attributes"))
        || !within(
            m_attributes, m_limits.maximumAttributes, QT_TRANSLATE_NOOP("ExtensionFile", "more than %1 attributes"))
        || !within(m_attributeText, m_limits.maximumAttributeText,
            QT_TRANSLATE_NOOP("ExtensionFile", "more than %1 characters in the attributes"))
        || !within(m_bytes.size(), m_limits.maximumFileSize, QT_TRANSLATE_NOOP("ExtensionFile", "more than %1 bytes")))
        return;
    m_bytes += ' ';
    appendEscaped(name);
    m_bytes += "=\"";
    appendEscaped(legal);
    m_bytes += '"';
}

void Writer::endElement()
{
    if (hasFailed())
        return;
    if (m_open.isEmpty()) {
        fail(say(QT_TRANSLATE_NOOP("ExtensionFile", "an element ends that was not started")));
        return;
    }
    const QByteArray name = m_open.takeLast();
    if (name.isNull())
        return;
    --m_depth;
    m_rootDone = m_depth == 0;
    if (m_startTagOpen) {
        m_bytes += "/>\n";
        m_startTagOpen = false;
    } else {
        indent();
        m_bytes += "</";
        m_bytes += name;
        m_bytes += ">\n";
    }
    within(m_bytes.size(), m_limits.maximumFileSize, QT_TRANSLATE_NOOP("ExtensionFile", "more than %1 bytes"));
}

QByteArray Writer::finish()
{
    if (!hasFailed() && !m_open.isEmpty())
        fail(say(QT_TRANSLATE_NOOP("ExtensionFile", "%1 elements are not ended")).arg(m_open.size()));
    if (m_omissions > maximumLogLines)
        qCWarning(fileLog).noquote() << oneLine(
            QStringLiteral("%1: left out %2 more").arg(m_path).arg(m_omissions - maximumLogLines));
    return hasFailed() ? QByteArray() : m_bytes;
}

QByteArray Writer::instructionAlone()
{
    return QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n");
}

void Writer::appendEscaped(const QString &value)
{
    if (standsAsItIs(value)) {
        const int before = m_bytes.size();
        m_bytes.resize(before + value.size());
        std::transform(
            value.cbegin(), value.cend(), m_bytes.begin() + before, [](QChar c) { return char(c.unicode()); });
        return;
    }
    // Every character that is written otherwise is one byte, and no part of another.
    const QByteArray text = value.toUtf8();
    int written = 0;
    for (int i = 0; i < text.size(); ++i) {
        const char *reference = referenceFor(text, i);
        if (!reference)
            continue;
        m_bytes.append(text.constData() + written, i - written);
        m_bytes.append(reference);
        written = i + 1;
    }
    m_bytes.append(text.constData() + written, text.size() - written);
}

void Writer::indent()
{
    m_bytes.append(m_depth * indentation, ' ');
}

void Writer::omit(const QString &what)
{
    if (++m_omissions > maximumLogLines)
        return;
    m_omitted.append(oneLine(what));
    qCWarning(fileLog).noquote() << oneLine(QStringLiteral("%1: left out: %2").arg(m_path, what));
}

void Writer::fail(const QString &reason)
{
    m_failure = reason;
    m_bytes.clear();
    qCWarning(fileLog).noquote() << oneLine(
        say(QT_TRANSLATE_NOOP("ExtensionFile", "%1: can't be written: %2")).arg(m_path, reason));
}

bool Writer::within(qint64 count, qint64 maximum, const char *reason)
{
    if (count > maximum)
        fail(say(reason).arg(maximum));
    return count <= maximum;
}

} // namespace ExtensionFile
