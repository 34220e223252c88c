#include "core/documentroot.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

namespace Core {

namespace {

constexpr qint64 LongestBeginning = 64 * 1024; // bytes
constexpr qint64 Portion = 4 * 1024;           // bytes

} // namespace

DocumentRoot DocumentRoot::of(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    QXmlStreamReader reader;
    reader.setNamespaceProcessing(false);
    while (file.pos() < LongestBeginning) {
        const QByteArray portion = file.read(Portion);
        if (portion.isEmpty())
            break;
        reader.addData(portion);
        if (reader.readNextStartElement())
            return { reader.qualifiedName().toString(), reader.attributes().value(QLatin1String("id")).toString() };
        if (reader.error() != QXmlStreamReader::PrematureEndOfDocumentError)
            break;
    }
    return {};
}

} // namespace Core
