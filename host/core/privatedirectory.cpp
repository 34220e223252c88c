#include "core/privatedirectory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace Core {

bool makePrivateDirectory(const QString &path)
{
    const QString parent = QFileInfo(path).path();
    if (!QFileInfo(parent).isDir() && !QDir().mkpath(parent))
        return false;
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), S_IRWXU) == 0)
        return true;
    struct stat data = {};
    if (errno != EEXIST || ::lstat(name.constData(), &data) != 0)
        return false;
    if (!S_ISDIR(data.st_mode) || data.st_uid != ::geteuid()) {
        errno = EACCES;
        return false;
    }
    return (data.st_mode & (S_IRWXG | S_IRWXO)) == 0 || ::chmod(name.constData(), S_IRWXU) == 0;
}

} // namespace Core
