#include "product.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <sys/stat.h>

Product::Product()
{
    if (!m_directory.isValid())
        qFatal("no temporary directory");
    setMode(m_directory.path(), 0755);
    copyDirectory(QStringLiteral(EXTPOINT_SOURCE_DIR "/samples/product/plugins"), plugins());
}

Product::Product(const Files &files)
{
    if (!m_directory.isValid())
        qFatal("no temporary directory");
    setMode(m_directory.path(), 0755);
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QString path = plugins() + QLatin1Char('/') + file.key();
        if (!QDir().mkpath(QFileInfo(path).absolutePath()))
            qFatal("%s cannot be created", qPrintable(path));
        writeFile(path, file.value());
    }
}

Product::~Product()
{
    QDirIterator entries(m_directory.path(), QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    setMode(m_directory.path(), 0755);
    while (entries.hasNext())
        ::chmod(QFile::encodeName(entries.next()).constData(), 0755);
}

QString Product::plugins() const
{
    return m_directory.filePath(QStringLiteral("plugins"));
}

QString Product::fileOf(const QString &plugin) const
{
    return plugins() + QLatin1Char('/') + plugin + QLatin1String("/extension.xml");
}

QString Product::directory(const QString &name) const
{
    const QString path = m_directory.filePath(name);
    if (!QDir().mkpath(path))
        qFatal("%s cannot be created", qPrintable(path));
    return path;
}

void Product::addSiblings(int count, int points) const
{
    for (int i = 0; i < count; ++i) {
        const QString number = QStringLiteral("%1").arg(i, 4, 10, QLatin1Char('0'));
        QByteArray content = "<?xml version=\"1.0\"?>\n<Plugin id=\"generated.p" + number.toLatin1()
            + "\" name=\"Generated\">\n<ExtPointSet>\n";
        for (int point = 0; point < points; ++point)
            content += "<ExtPoint id=\"generated.p" + number.toLatin1() + ".e" + QByteArray::number(point)
                + "\" name=\"Point\"><String key=\"text\" name=\"Text\" value=\"\"/>"
                  "<SubExtPoint key=\"entry\" name=\"Entry\"/></ExtPoint>\n";
        const QString path = fileOf(QLatin1String("generated") + number);
        if (!QDir().mkpath(QFileInfo(path).absolutePath()))
            qFatal("%s cannot be created", qPrintable(path));
        writeFile(path, content + "</ExtPointSet>\n</Plugin>\n");
    }
}

QByteArray Product::fingerprintWithout(const QString &plugin) const
{
    QStringList paths;
    QDirIterator files(plugins(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext())
        if (!files.next().startsWith(plugins() + QLatin1Char('/') + plugin + QLatin1Char('/')))
            paths.append(files.filePath());
    paths.sort();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString &path : qAsConst(paths)) {
        hash.addData(path.toUtf8() + '\0');
        hash.addData(contentOf(path));
    }
    return hash.result().toHex();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(path));
    return file.readAll();
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) != content.size()
        || !file.flush())
        qFatal("%s cannot be written", qPrintable(path));
}

void copyDirectory(const QString &from, const QString &to)
{
    QDirIterator entries(from, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString source = entries.next();
        const QString target = to + source.mid(from.size());
        if (!QDir().mkpath(QFileInfo(target).absolutePath()))
            qFatal("%s cannot be created", qPrintable(target));
        writeFile(target, contentOf(source));
    }
}

void setMode(const QString &path, unsigned mode)
{
    if (::chmod(QFile::encodeName(path).constData(), mode) != 0)
        qFatal("the mode of %s cannot be changed", qPrintable(path));
}
