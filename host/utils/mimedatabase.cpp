#include "utils/mimedatabase.h"

#include "utils/pathtext.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QMap>
#include <QMimeDatabase>
#include <QXmlStreamReader>

#include <utility>

namespace Utils {

namespace {

Q_LOGGING_CATEGORY(mimeLog, "utils.mime")

/// The declared types by name.
QMap<QString, MimeType> &declaredTypes()
{
    static QMap<QString, MimeType> types;
    return types;
}

MimeType systemType(const QMimeType &type)
{
    return { type.name(), type.comment(), type.parentMimeTypes(), type.globPatterns() };
}

/// Better patterns are greater; the least one does not match at all.
using Fit = std::pair<bool, int>;

Fit fitOf(const QString &pattern, const QString &fileName)
{
    if (pattern.compare(fileName, Qt::CaseInsensitive) == 0)
        return { true, pattern.size() };
    return { false, QDir::match(QStringList { pattern }, fileName) ? pattern.size() : 0 };
}

/// Reads one document, one function per element. Lives for one reading.
class DocumentReader final
{
public:
    explicit DocumentReader(QIODevice *device) : m_xml(device) { }

    QVector<MimeType> read()
    {
        QVector<MimeType> types;
        if (m_xml.readNextStartElement() && !isAt("mime-info"))
            m_xml.raiseError(QStringLiteral("the root element is not \"mime-info\""));
        while (m_xml.readNextStartElement()) {
            if (isAt("mime-type"))
                types.append(readType());
            else
                m_xml.skipCurrentElement();
        }
        // What stands behind the root element belongs to the document, too.
        while (!m_xml.atEnd())
            m_xml.readNext();
        return types;
    }

    QString error() const
    {
        if (!m_xml.hasError())
            return QString();
        // The parser's reasons quote the document, which may hold line breaks and any amount of text.
        constexpr int longest = 500;
        return QStringLiteral("%1:%2: %3")
            .arg(QString::number(m_xml.lineNumber()), QString::number(qMax<qint64>(m_xml.columnNumber(), 1)),
                oneLine(m_xml.errorString().left(longest)));
    }

private:
    bool isAt(const char *element) const
    {
        return m_xml.name() == QLatin1String(element)
            && (m_xml.namespaceUri().isEmpty()
                || m_xml.namespaceUri() == QLatin1String("http://www.freedesktop.org/standards/shared-mime-info"));
    }

    QString attribute(const char *name)
    {
        const QString value = m_xml.attributes().value(QLatin1String(name)).toString();
        if (value.isEmpty() && !m_xml.hasError())
            m_xml.raiseError(QStringLiteral("\"%1\" has no \"%2\"").arg(m_xml.name().toString(), QLatin1String(name)));
        return value;
    }

    MimeType readType()
    {
        const QString name = attribute("type");
        QString comment;
        QStringList parents;
        QStringList patterns;
        while (m_xml.readNextStartElement()) {
            if (isAt("comment") && m_xml.attributes().isEmpty()) {
                comment = m_xml.readElementText(QXmlStreamReader::SkipChildElements).simplified();
                continue;
            }
            if (isAt("sub-class-of"))
                parents.append(attribute("type"));
            else if (isAt("glob"))
                patterns.append(attribute("pattern"));
            m_xml.skipCurrentElement();
        }
        return { name, comment, parents, patterns };
    }

    QXmlStreamReader m_xml;
};

} // namespace

MimeType::MimeType(
    const QString &name, const QString &comment, const QStringList &parents, const QStringList &globPatterns)
    : m_name(name), m_comment(comment), m_parents(parents), m_globPatterns(globPatterns)
{ }

bool MimeType::inherits(const QString &mimeTypeName) const
{
    QStringList names { m_name };
    for (int i = 0; isValid() && i < names.size(); ++i) {
        const auto declared = declaredTypes().constFind(names.at(i));
        const bool isDeclared = declared != declaredTypes().constEnd();
        if (names.at(i) == mimeTypeName
            || (!isDeclared && QMimeDatabase().mimeTypeForName(names.at(i)).inherits(mimeTypeName)))
            return true;
        const QStringList parents = isDeclared ? declared->parentMimeTypes() : QStringList();
        for (const QString &parent : parents)
            // Nothing keeps documents from declaring a circle.
            if (!names.contains(parent))
                names.append(parent);
    }
    return false;
}

void MimeDatabase::addMimeTypes(const QString &fileName)
{
    QFile file(fileName);
    const QString reason
        = file.open(QIODevice::ReadOnly) ? addMimeTypes(&file) : QStringLiteral("1:1: ") + file.errorString();
    if (!reason.isEmpty())
        qCWarning(mimeLog, "%ls:%ls", qUtf16Printable(fileName), qUtf16Printable(reason));
}

QString MimeDatabase::addMimeTypes(QIODevice *device)
{
    DocumentReader reader(device);
    const QVector<MimeType> types = reader.read();
    const QString error = reader.error();
    if (error.isEmpty())
        for (const MimeType &type : types)
            declaredTypes().insert(type.name(), type);
    return error;
}

MimeType MimeDatabase::mimeTypeForName(const QString &name) const
{
    const auto declared = declaredTypes().constFind(name);
    return declared != declaredTypes().constEnd() ? *declared : systemType(QMimeDatabase().mimeTypeForName(name));
}

MimeType MimeDatabase::mimeTypeForFile(const QString &path) const
{
    const QString fileName = QFileInfo(path).fileName();
    MimeType best;
    Fit bestFit;
    for (const MimeType &type : qAsConst(declaredTypes())) {
        const QStringList patterns = type.globPatterns();
        for (const QString &pattern : patterns) {
            const Fit fit = fitOf(pattern, fileName);
            if (fit > bestFit) {
                bestFit = fit;
                best = type;
            }
        }
    }
    return best.isValid() ? best : systemType(QMimeDatabase().mimeTypeForFile(path));
}

} // namespace Utils
