#include "samples/parsers.h"

#include "watchedapplication.h"

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QXmlStreamReader>

#ifdef EXTPOINT_PUGIXML
#include <pugixml.hpp>
#endif

namespace {

bool contents(const QString &fileName, QByteArray *bytes)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    *bytes = file.readAll();
    return file.error() == QFile::NoError;
}

qint64 stream(const QString &fileName)
{
    const qint64 start = WatchedApplication::now();
    QByteArray bytes;
    if (!contents(fileName, &bytes))
        return -1;
    QXmlStreamReader reader(bytes);
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd())
        reader.readNext();
    return reader.hasError() ? -1 : WatchedApplication::now() - start;
}

qint64 dom(const QString &fileName)
{
    const qint64 start = WatchedApplication::now();
    QByteArray bytes;
    QDomDocument document;
    if (!contents(fileName, &bytes) || !document.setContent(bytes))
        return -1;
    return WatchedApplication::now() - start;
}

#ifdef EXTPOINT_PUGIXML
qint64 pugixml(const QString &fileName)
{
    const qint64 start = WatchedApplication::now();
    QByteArray bytes;
    pugi::xml_document document;
    if (!contents(fileName, &bytes) || !document.load_buffer_inplace(bytes.data(), std::size_t(bytes.size())))
        return -1;
    return WatchedApplication::now() - start;
}
#endif

} // namespace

Parsers::Parser Parsers::byName(const QString &name)
{
    if (name == QLatin1String("stream"))
        return &stream;
    if (name == QLatin1String("dom"))
        return &dom;
#ifdef EXTPOINT_PUGIXML
    if (name == QLatin1String("pugixml"))
        return &pugixml;
#endif
    return nullptr;
}

QStringList Parsers::filesBelow(const QString &directory)
{
    QStringList files;
    const QStringList plugins = QDir(directory).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QString &plugin : plugins)
        files.append(directory + QLatin1Char('/') + plugin + QLatin1String("/extension.xml"));
    return files;
}
