#include "extensionfile/reader.h"

#include "extensionfile/logging.h"
#include "extensionfile/parser.h"
#include "extensionfile/regularfile.h"
#include "extensionfile/words.h"

namespace ExtensionFile {

bool read(const QByteArray &bytes, Sink &sink, ReadError *error, const Limits &limits)
{
    ReadError ignored;
    ReadError *const report = error ? error : &ignored;
    *report = ReadError();
    if (bytes.size() > limits.maximumFileSize)
        return report->fail(ReadError::Kind::TooLarge,
            say(QT_TRANSLATE_NOOP("ExtensionFile", "The file has more than %1 bytes.")).arg(limits.maximumFileSize));
    DecodedDocument document;
    if (!decodeDocument(bytes, &document, report) || !parse(document, sink, limits, report))
        return false;
    // Text in another encoding is hardly ever UTF-8 by chance.
    const QString text = document.transcoded ? QString::fromUtf8(bytes) : QString();
    if (text.size() < bytes.size() && text.toUtf8() == bytes)
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
