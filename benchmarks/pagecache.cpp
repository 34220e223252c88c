#include "pagecache.h"

#include "samples/parsers.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

PageCache::Emptied PageCache::forget(const QString &directory, bool whole)
{
    // What is not on the disk yet stays in memory.
    ::sync();
    if (whole) {
        QFile knob(QStringLiteral("/proc/sys/vm/drop_caches"));
        if (knob.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && knob.write("3\n") == 2)
            return Emptied::Whole;
    }
    const QStringList files = Parsers::filesBelow(directory);
    for (const QString &name : files) {
        QFile file(name);
        if (file.open(QIODevice::ReadOnly))
            (void)::posix_fadvise(file.handle(), 0, 0, POSIX_FADV_DONTNEED);
    }
    return Emptied::Files;
}
