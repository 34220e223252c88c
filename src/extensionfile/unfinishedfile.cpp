#include "extensionfile/unfinishedfile.h"

#include "extensionfile/words.h"

#include <QDir>
#include <QFile>
#include <QUuid>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ExtensionFile {

namespace {

const QString prefix = QStringLiteral(".extpoint-editor-");
const QString suffix = QStringLiteral(".unfinished");

void removeAbandoned(const QByteArray &directory)
{
    const QString id = QStringLiteral("[0-9a-f]").repeated(32);
    const QStringList names
        = QDir(QFile::decodeName(directory))
              .entryList({ prefix + id + suffix }, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDir::Unsorted);
    for (const QString &name : names) {
        const QByteArray path = directory + '/' + QFile::encodeName(name);
        if (UnfinishedFile::probe(path) == 0)
            (void)::unlink(path.constData());
    }
}

} // namespace

UnfinishedFile::UnfinishedFile(const QByteArray &directory, mode_t mode) : m_file(make(directory, mode)) { }

UnfinishedFile::~UnfinishedFile()
{
    if (!m_name.isEmpty())
        ::unlink(m_name.constData());
}

int UnfinishedFile::make(const QByteArray &directory, mode_t mode)
{
    const int maximumTries = 100;
    removeAbandoned(directory);
    for (int tries = 0; tries < maximumTries; ++tries) {
        const QByteArray name
            = directory + '/' + QFile::encodeName(prefix + QUuid::createUuid().toString(QUuid::Id128) + suffix);
        const int descriptor = ::open(name.constData(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
        if (descriptor < 0)
            return -1;
        // Somebody may have come upon it before it was locked, and hold it in order to remove it. A file system without
        // locks is no hindrance: nobody removes what can't be locked.
        struct stat status;
        const bool lost = ::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        if (!lost && ::fstat(descriptor, &status) == 0 && status.st_nlink > 0) {
            m_name = name;
            return descriptor;
        }
        ::unlink(name.constData());
        ::close(descriptor);
    }
    errno = EBUSY;
    return -1;
}

bool UnfinishedFile::fill(const QByteArray &bytes, QString *reason)
{
    qint64 reached = 0;
    if (!writePart(descriptor(), bytes, 0, bytes.size(), &reached) || !syncToDisk(descriptor()))
        return refuse(reason);
    return contains(descriptor(), bytes)
        || refuse(reason, say(QT_TRANSLATE_NOOP("ExtensionFile", "The file does not hold what was written.")));
}

bool UnfinishedFile::replace(const QByteArray &path)
{
    if (::rename(m_name.constData(), path.constData()) != 0)
        return false;
    m_name.clear();
    return true;
}

bool UnfinishedFile::take(const QByteArray &path)
{
    if (::link(m_name.constData(), path.constData()) != 0)
        return false;
    ::unlink(m_name.constData());
    m_name.clear();
    return true;
}

int UnfinishedFile::probe(const QByteArray &path)
{
    const FileDescriptor file(::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    return file.isOpen() && ::flock(file.get(), LOCK_SH | LOCK_NB) == 0 ? 0 : errno;
}

} // namespace ExtensionFile
