#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

#include <unistd.h>

/// What the fuzz targets share.
namespace Fuzzing {

/// Ends the process, which is what the fuzzer looks for, unless @p holds.
void demand(bool holds, const char *what, const QString &detail = QString());

/// Silences the project's log and counts its warnings instead. Call it first; again to count from nothing.
void countWarnings();
[[nodiscard]] int warnings();

[[nodiscard]] inline QByteArray bytesOf(const uint8_t *data, size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
}

/// A regular file in memory, with a name to open it by, for what reads files only. One per process.
class MemoryFile final
{
public:
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    void setContents(const QByteArray &bytes);
    [[nodiscard]] QString path() const;

private:
    const int m_descriptor;
};

} // namespace Fuzzing
