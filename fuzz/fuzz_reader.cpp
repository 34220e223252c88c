#include "extensionfile/reader.h"
#include "extensionfile/writer.h"

#include <QBuffer>
#include <QLoggingCategory>

#include <cstdio>
#include <cstdlib>

using namespace ExtensionFile;

namespace {

/// Keeps the events to be compared.
class KeepingSink final : public Sink
{
public:
    [[nodiscard]] bool wantsLocations() const override { return false; }
    void restart() override { events.clear(); }

    void startElement(const QString &name, const Attributes &attributes, const Location &) override
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
    void restart() override { std::abort(); }

    void startElement(const QString &name, const Attributes &attributes, const Location &where) override
    {
        if (where.line < 1 || where.column < 1)
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

/// Whether places are asked for must make no other difference. What is accepted must be written back whole, be accepted
/// again with the same events, and be written the same once more.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QLoggingCategory::setFilterRules(QStringLiteral("extpoint.*=false"));
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    RewritingSink first;
    ReadError error;
    const bool accepted = readBytes(bytes, first, &error);
    KeepingSink plain;
    ReadError plainError;
    demand(readBytes(bytes, plain, &plainError) == accepted && plainError.toString() == error.toString(),
        "another verdict without places", accepted ? plainError : error);
    demand(!accepted || plain.events == first.events(), "read differently without places", error);
    if (!accepted) {
        demand(!error.reason.isEmpty() && error.line > 0 && error.column > 0, "refused without a reason or a place",
            error);
        return 0;
    }
    const QByteArray written = first.finish();
    demand(!written.isNull(), "could not be written whole", error);
    RewritingSink second;
    demand(readBytes(written, second, &error), "not accepted again", error);
    demand(second.events() == first.events(), "read differently", error);
    demand(second.finish() == written, "written differently", error);
    return 0;
}
