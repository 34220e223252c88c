#include "fuzzing.h"

#include "utils/mimedocument.h"
#include "utils/mimemagic.h"

#include <QBuffer>
#include <QRegularExpression>

using namespace Utils;

/// A document is taken whole or refused with a place, and what was taken can be asked about any file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = Fuzzing::bytesOf(data, size);
    QBuffer buffer;
    buffer.setData(bytes);
    Fuzzing::demand(buffer.open(QIODevice::ReadOnly), "no buffer");
    const MimeDocument document = MimeDocument::read(&buffer);
    if (!document.errorString.isEmpty()) {
        static const QRegularExpression place(QStringLiteral("\\A[1-9][0-9]*:[1-9][0-9]*: [^\\x00-\\x1f]{1,500}\\z"));
        Fuzzing::demand(place.match(document.errorString).hasMatch(), "refused without a place, or not in one line",
            document.errorString);
        Fuzzing::demand(document.types.isEmpty(), "refused and taken", document.errorString);
        return 0;
    }
    for (const MimeTypeRecord &type : document.types) {
        Fuzzing::demand(type.name.count(QLatin1Char('/')) == 1, "a type without a name", type.name);
        const int priority = bestPriority(type.magics, bytes);
        Fuzzing::demand(priority >= -1 && priority <= 100, "a priority beyond the scale");
        for (const MimeGlob &glob : type.globs) {
            Fuzzing::demand(!glob.pattern.isEmpty() && glob.weight >= 0 && glob.weight <= 100, "a pattern of no use");
            (void)glob.wildcards.match(type.comment.left(100)).hasMatch();
        }
    }
    return 0;
}
