#include "fuzzing.h"

#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

#include <sys/mman.h>

namespace Fuzzing {

namespace {

int warningCount = 0;

void count(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtWarningMsg || type == QtCriticalMsg)
        ++warningCount;
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(text));
        std::abort();
    }
}

} // namespace

void demand(bool holds, const char *what, const QString &detail)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s: %s\n", what, qUtf8Printable(detail));
    std::abort();
}

void countWarnings()
{
    static const QtMessageHandler before = qInstallMessageHandler(count);
    Q_UNUSED(before)
    warningCount = 0;
}

int warnings()
{
    return warningCount;
}

MemoryFile::MemoryFile() : m_descriptor(::memfd_create("extension.xml", MFD_CLOEXEC))
{
    demand(m_descriptor >= 0, "no file in memory");
}

MemoryFile::~MemoryFile()
{
    ::close(m_descriptor);
}

void MemoryFile::setContents(const QByteArray &bytes)
{
    const bool written = ::ftruncate(m_descriptor, 0) == 0
        && ::pwrite(m_descriptor, bytes.constData(), size_t(bytes.size()), 0) == bytes.size();
    demand(written, "the file in memory could not be written");
}

QString MemoryFile::path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor);
}

} // namespace Fuzzing
