#include "extensionfile/reader.h"

#include "extensionfile/carefulreader.h"
#include "extensionfile/decoder.h"
#include "extensionfile/logging.h"
#include "extensionfile/quickreader.h"
#include "extensionfile/regularfile.h"

#include <QIODevice>
#include <QStringList>
#include <QTextCodec>

#include <algorithm>

namespace ExtensionFile {

namespace {

/// Text in another encoding hardly ever has this by chance.
bool looksLikeUtf8(const QByteArray &bytes)
{
    const auto isAscii = [](char c) { return uchar(c) < 0x80; };
    if (std::all_of(bytes.cbegin(), bytes.cend(), isAscii))
        return false;
    QTextCodec::ConverterState state;
    (void)QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

bool readBytes(const QByteArray &bytes, Sink &sink, ReadError *error, const Limits &limits)
{
    if (bytes.size() > limits.maximumFileSize)
        return error->fail(
            ReadError::Kind::TooLarge, QStringLiteral("The file has more than %1 bytes.").arg(limits.maximumFileSize));
    DecodedDocument document;
    DecodeProblem problem;
    if (!decodeDocument(bytes, &document, &problem))
        return error->fail(ReadError::Kind::Malformed, problem.reason, problem.where);
    bool done = !sink.wantsLocations() && readQuickly(document, sink, limits);
    if (!done) {
        if (!sink.wantsLocations())
            sink.restart();
        done = readCarefully(document, sink, limits, error);
    }
    if (done && document.transcoded && sink.wantsAsides() && looksLikeUtf8(bytes))
        sink.aside(Aside::LooksLikeUtf8, QString());
    return done;
}

bool readDevice(QIODevice &device, qint64 mostBytes, QByteArray *bytes)
{
    const qint64 blockSize = 64 * 1024;
    qint64 room = device.isSequential() ? blockSize : qBound<qint64>(0, device.bytesAvailable(), mostBytes) + 1;
    qint64 length = 0;
    for (;;) {
        bytes->resize(int(qMin(length + room, mostBytes)));
        const qint64 count = device.read(bytes->data() + length, bytes->size() - length);
        // A sequential device says -1 at its end as well.
        if (count < 0 && !device.isSequential())
            return false;
        length += qMax<qint64>(0, count);
        if (count <= 0 || length == mostBytes)
            break;
        room = blockSize;
    }
    bytes->resize(int(length));
    return true;
}

ReadError::Kind kindOf(RegularFileProblem::Kind kind)
{
    switch (kind) {
    case RegularFileProblem::Kind::Missing:
        return ReadError::Kind::Missing;
    case RegularFileProblem::Kind::NotRegular:
        return ReadError::Kind::NotRegular;
    case RegularFileProblem::Kind::Failed:
        break;
    }
    return ReadError::Kind::Unreadable;
}

} // namespace

bool ReadError::fail(Kind failure, const QString &why, const Location &where)
{
    kind = failure;
    reason = why;
    line = where.line;
    column = where.column;
    return false;
}

QString ReadError::toString() const
{
    QStringList parts;
    if (!path.isEmpty())
        parts += oneLine(path);
    if (line > 0)
        parts += QStringLiteral("%1:%2").arg(line).arg(column);
    const QString place = parts.join(QLatin1Char(':'));
    return (place.isEmpty() ? place : place + QLatin1String(": ")) + oneLine(reason);
}

bool read(QIODevice &device, Sink &sink, ReadError *error, const Limits &limits)
{
    ReadError ignored;
    ReadError *const report = error ? error : &ignored;
    *report = ReadError();
    if (!device.isReadable())
        return report->fail(ReadError::Kind::Unreadable, QStringLiteral("The device is not open for reading."));
    QByteArray bytes;
    if (!readDevice(device, limits.maximumFileSize + 1, &bytes))
        return report->fail(ReadError::Kind::Unreadable, device.errorString());
    return readBytes(bytes, sink, report, limits);
}

bool readFile(const QString &path, Sink &sink, ReadError *error, const Limits &limits)
{
    ReadError ignored;
    ReadError *const report = error ? error : &ignored;
    *report = ReadError();
    QByteArray bytes;
    RegularFileProblem problem;
    const bool opened = readRegularFile(path, limits.maximumFileSize, &bytes, &problem);
    sink.fileRead();
    const bool done
        = opened ? readBytes(bytes, sink, report, limits) : report->fail(kindOf(problem.kind), problem.reason);
    report->path = path;
    if (!done) {
        if (report->kind == ReadError::Kind::Missing)
            qCDebug(fileLog).noquote() << report->toString();
        else
            qCWarning(fileLog).noquote() << report->toString();
    }
    return done;
}

} // namespace ExtensionFile
