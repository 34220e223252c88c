#include "core/newfile.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QXmlStreamWriter>

#include <unistd.h>

namespace Core {

namespace {

QString say(const char *text)
{
    return QCoreApplication::translate("Core::NewFile", text);
}

bool isId(const QString &text)
{
    // As the editor wants an id; the host repeats it, since it knows no editor.
    static const QRegularExpression id(QStringLiteral("\\A[a-zA-Z][a-zA-Z0-9_-]*(\\.[a-zA-Z0-9_-]+)*\\z"));
    return id.match(text).hasMatch();
}

/// Whether XML has a way to say it. Half a character and control characters have none.
bool canBeWritten(const QString &text)
{
    const auto codes = text.toUcs4();
    for (const uint code : codes)
        if (code < ' ' || (code >= 0xD800 && code <= 0xDFFF) || code == 0xFFFE || code == 0xFFFF)
            return false;
    return true;
}

QByteArray contentOf(const NewFile &file)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QXmlStreamWriter writer(&buffer);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeEmptyElement(QStringLiteral("Plugin"));
    writer.writeAttribute(QStringLiteral("id"), file.id);
    writer.writeAttribute(QStringLiteral("name"), file.name);
    if (!file.vendor.isEmpty())
        writer.writeAttribute(QStringLiteral("vendor"), file.vendor);
    writer.writeEndDocument();
    return buffer.data();
}

} // namespace

QString NewFile::path() const
{
    return QDir::cleanPath(place + QLatin1Char('/') + directory + QLatin1String("/extension.xml"));
}

QString NewFile::directoryFor(const QString &id)
{
    return id.section(QLatin1Char('.'), -1);
}

QString NewFile::objection() const
{
    if (id.isEmpty())
        return say(QT_TRANSLATE_NOOP("Core::NewFile", "A plug-in needs an id."));
    if (!isId(id))
        return say(QT_TRANSLATE_NOOP("Core::NewFile",
            "An id is made of letters, digits, \"_\" and \"-\", in parts divided by dots; a letter comes first."));
    if (name.isEmpty())
        return say(QT_TRANSLATE_NOOP("Core::NewFile", "A plug-in needs a name."));
    if (!canBeWritten(name) || !canBeWritten(vendor))
        return say(
            QT_TRANSLATE_NOOP("Core::NewFile", "The name or the vendor holds a character that a file can't hold."));
    if (!QDir::isAbsolutePath(place) || !QFileInfo(place).isDir())
        return say(QT_TRANSLATE_NOOP("Core::NewFile", "There is no such directory of plug-ins."));
    if (directory.isEmpty() || directory.startsWith(QLatin1Char('.')) || directory.contains(QLatin1Char('/')))
        return say(QT_TRANSLATE_NOOP(
            "Core::NewFile", "The plug-in needs a directory name, without \"/\" and with no dot at the beginning."));
    // A link that leads nowhere is there, too.
    const QFileInfo file(path());
    if (file.exists() || file.isSymLink())
        return say(QT_TRANSLATE_NOOP("Core::NewFile", "%1 is there already.")).arg(QDir::toNativeSeparators(path()));
    return QString();
}

bool NewFile::create(QString *error) const
{
    *error = objection();
    if (!error->isEmpty())
        return false;
    const QDir products(place);
    const bool isNew = !products.exists(directory);
    if (isNew && !products.mkdir(directory)) {
        *error = say(QT_TRANSLATE_NOOP("Core::NewFile", "The directory %1 can't be made."))
                     .arg(QDir::toNativeSeparators(products.filePath(directory)));
        return false;
    }
    QFile file(path());
    // Fails where somebody else has made one meanwhile.
    const bool made = file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
    const QByteArray content = contentOf(*this);
    if (made && file.write(content) == content.size() && file.flush() && ::fsync(file.handle()) == 0)
        return true;
    *error = say(QT_TRANSLATE_NOOP("Core::NewFile", "%1 can't be written: %2"))
                 .arg(QDir::toNativeSeparators(path()), file.errorString());
    if (made)
        file.remove();
    if (isNew)
        products.rmdir(directory);
    return false;
}

} // namespace Core
