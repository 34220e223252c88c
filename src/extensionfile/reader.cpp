#include "extensionfile/reader.h"

#include "extensionfile/logging.h"
#include "extensionfile/parser.h"
#include "extensionfile/regularfile.h"

namespace ExtensionFile {

namespace {

/// Text in another encoding hardly ever has this by chance.
bool looksLikeUtf8(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    return text.size() < bytes.size() && text.toUtf8() == bytes;
}

} // namespace

bool read(const QByteArray &bytes, Sink &sink, ReadError *error, const Limits &limits)
{
    ReadError ignored;
    ReadError *const report = error ? error : &ignored;
    *report = ReadError();
    if (bytes.size() > limits.maximumFileSize)
        return report->fail(
            ReadError::Kind::TooLarge, QStringLiteral("The file has more than %1 bytes.").arg(limits.maximumFileSize));
    DecodedDocument document;
    if (!decodeDocument(bytes, &document, report) || !parse(document, sink, limits, report))
        return false;
    if (document.transcoded && looksLikeUtf8(bytes))
        sink.aside(Aside::LooksLikeUtf8, QString());
    return true;
}

bool readFile(const QString &path, Sink &sink, ReadError *error, const Limits &limits)
{
    ReadError report;
    QByteArray bytes;
    const bool opened = readRegularFile(path, limits.maximumFileSize, &bytes, &report);
    sink.fileRead();
    const bool done = opened && read(bytes, sink, &report, limits);
    report.path = path;
    if (report.kind == ReadError::Kind::Missing)
        qCDebug(fileLog).noquote() << report.toString();
    else if (!done)
        qCWarning(fileLog).noquote() << report.toString();
    if (error)
        *error = report;
    return done;
}

} // namespace ExtensionFile
