#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

/// As libFuzzer hands it over: a block of exactly this size, so that a sanitizer sees every step beyond its end.
bool replay(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    const std::unique_ptr<uint8_t[]> data(new uint8_t[size_t(bytes.size())]);
    std::copy(bytes.cbegin(), bytes.cend(), data.get());
    LLVMFuzzerTestOneInput(data.get(), size_t(bytes.size()));
    return true;
}

} // namespace

/// Runs one fuzz target on every file of the directories given, without a fuzzer. A directory without files is a
/// failure, and so is a file that takes more than ten seconds.
int main(int argc, char **argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir directory(QFile::decodeName(argv[i]));
        const QStringList names = directory.entryList(QDir::Files, QDir::Name);
        if (names.isEmpty()) {
            std::fprintf(stderr, "%s: nothing to replay\n", argv[i]);
            return 1;
        }
        for (const QString &name : names) {
            // Before it is tried, so that a crash has a name.
            std::printf("%s\n", qPrintable(name));
            std::fflush(stdout);
            QElapsedTimer clock;
            clock.start();
            if (!replay(directory.filePath(name)) || clock.elapsed() > 10'000) {
                std::fprintf(stderr, "%s: not read, or too slow\n", qPrintable(name));
                return 1;
            }
            ++count;
        }
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
