#include "extensionfile/reader.h"
#include "extensionfile/writer.h"

#include <QBuffer>
#include <QLoggingCategory>

#include <cstdio>
#include <cstdlib>

using namespace ExtensionFile;

namespace {

/// Writes what it is given and keeps the events to be compared.
class RewritingSink final : public Sink
{
public:
    void startElement(const QString &name, const Attributes &attributes, const Location &where) override
    {
        if (where.line < 1 || where.column < 1)
            std::abort();
        events.append(name);
        m_writer.startElement(name);
        for (const Attribute &attribute : attributes) {
            events.append(attribute.name);
            events.append(attribute.value);
            m_writer.attribute(attribute.name, attribute.value);
        }
        events.append(QStringLiteral(">"));
    }

    void endElement() override
    {
        events.append(QStringLiteral("/"));
        m_writer.endElement();
    }

    QByteArray finish()
    {
        const QByteArray bytes = m_writer.finish();
        return m_writer.omissions() == 0 ? bytes : QByteArray();
    }

    QVector<QString> events;

private:
    Writer m_writer;
};

bool readBytes(const QByteArray &bytes, Sink &sink, ReadError *error)
{
    QBuffer buffer;
    buffer.setData(bytes);
    return buffer.open(QIODevice::ReadOnly) && read(buffer, sink, error);
}

void demand(bool holds, const char *what, const ReadError &error)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s: %s\n", what, qUtf8Printable(error.toString()));
    std::abort();
}

} // namespace

/// What is accepted must be written back whole, be accepted again with the same events, and be written the same once
/// more.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QLoggingCategory::setFilterRules(QStringLiteral("extpoint.*=false"));
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    RewritingSink first;
    ReadError error;
    if (!readBytes(bytes, first, &error)) {
        demand(!error.reason.isEmpty() && error.line > 0 && error.column > 0, "refused without a reason or a place",
            error);
        return 0;
    }
    const QByteArray written = first.finish();
    demand(!written.isNull(), "could not be written whole", error);
    RewritingSink second;
    demand(readBytes(written, second, &error), "not accepted again", error);
    demand(second.events == first.events, "read differently", error);
    demand(second.finish() == written, "written differently", error);
    return 0;
}
