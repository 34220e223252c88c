#include "extensionfile/reader.h"
#include "extensionfile/writer.h"

#include <QLoggingCategory>
#include <QXmlStreamReader>

#include <cstdio>
#include <cstdlib>

using namespace ExtensionFile;

namespace {

/// Keeps the events to be compared.
class KeepingSink final : public Sink
{
public:
    void startElement(const QString &name, const Attributes &attributes, const Locator &) override
    {
        events.append(name);
        for (const Attribute &attribute : attributes) {
            events.append(attribute.name);
            events.append(attribute.value);
        }
        events.append(QStringLiteral(">"));
    }

    void endElement() override { events.append(QStringLiteral("/")); }

    QVector<QString> events;
};

/// Writes what it is given, besides.
class RewritingSink final : public Sink
{
public:
    void startElement(const QString &name, const Attributes &attributes, const Locator &where) override
    {
        const Location element = where.element();
        bool ordered = element.line > 0 && element.column > 0 && element.byteOffset >= 0;
        for (int i = 0; i < attributes.size(); ++i) {
            const Location place = where.attribute(i);
            ordered = ordered && place.line >= element.line && place.byteOffset >= element.byteOffset;
        }
        if (!ordered)
            std::abort();
        m_kept.startElement(name, attributes, where);
        m_writer.startElement(name);
        for (const Attribute &attribute : attributes)
            m_writer.attribute(attribute.name, attribute.value);
    }

    void endElement() override
    {
        m_kept.endElement();
        m_writer.endElement();
    }

    QByteArray finish()
    {
        const QByteArray bytes = m_writer.finish();
        return m_writer.omissions() == 0 ? bytes : QByteArray();
    }

    [[nodiscard]] const QVector<QString> &events() const { return m_kept.events; }

private:
    KeepingSink m_kept;
    Writer m_writer;
};

/// What somebody else's parser makes of it; nothing where it does not take it.
QVector<QString> readByOutsider(const QByteArray &bytes)
{
    QXmlStreamReader xml(bytes);
    xml.setNamespaceProcessing(false);
    KeepingSink sink;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement)
            sink.endElement();
        if (token != QXmlStreamReader::StartElement)
            continue;
        Attributes attributes;
        for (const QXmlStreamAttribute &attribute : xml.attributes())
            attributes.append({ attribute.qualifiedName().toString(), attribute.value().toString() });
        sink.startElement(xml.qualifiedName().toString(), attributes, {});
    }
    return xml.hasError() ? QVector<QString>() : sink.events;
}

void demand(bool holds, const char *what, const ReadError &error)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s: %s\n", what, qUtf8Printable(error.toString()));
    std::abort();
}

} // namespace

/// What is accepted must be what another parser reads, if it reads it, must be written back whole, be accepted again
/// with the same events, and be written the same once more.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QLoggingCategory::setFilterRules(QStringLiteral("extpoint.*=false"));
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    RewritingSink first;
    ReadError error;
    if (!read(bytes, first, &error)) {
        demand(!error.reason.isEmpty() && error.where.line > 0 && error.where.column > 0,
            "refused without a reason or a place", error);
        return 0;
    }
    const QVector<QString> other = readByOutsider(bytes);
    demand(other.isEmpty() || other == first.events(), "read differently by another parser", error);
    const QByteArray written = first.finish();
    demand(!written.isNull(), "could not be written whole", error);
    RewritingSink second;
    demand(read(written, second, &error), "not accepted again", error);
    demand(second.events() == first.events(), "read differently", error);
    demand(second.finish() == written, "written differently", error);
    return 0;
}
