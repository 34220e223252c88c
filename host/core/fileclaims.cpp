#include "core/fileclaims.h"

#include "core/privatedirectory.h"
#include "core/recoverystore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QTimer>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Core {

namespace {

Q_LOGGING_CATEGORY(claimsLog, "core.claims", QtInfoMsg)

constexpr int LongestWaitForAnswer = 1000; // milliseconds
constexpr int LongestWaitForOpening = 10'000;
constexpr int LongestWaitForTurn = 1000;
constexpr int AnswerPollInterval = 20;
constexpr int MostTries = 20;
constexpr int GoingTime = 10'000;            // microseconds
constexpr size_t LongestRequest = 16 * 1024; // bytes
constexpr char Comes = 'y';

const char claimSuffix[] = ".claim";
const char socketSuffix[] = ".socket";
// Both are as long, so that the one takes the place of the other.
const QByteArray openingWord = QByteArrayLiteral("opening\n");
const QByteArray showingWord = QByteArrayLiteral("showing\n");

/// Closes it in the end.
class Descriptor final
{
public:
    explicit Descriptor(int number = -1) : m_number(number) { }
    ~Descriptor() { close(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    Descriptor(Descriptor &&other) noexcept : m_number(other.take()) { }
    Descriptor &operator=(Descriptor &&) = delete;

    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] bool isOpen() const { return m_number >= 0; }
    [[nodiscard]] int take() { return std::exchange(m_number, -1); }
    void close()
    {
        if (m_number >= 0)
            ::close(take());
    }

private:
    int m_number;
};

/// Two names of one file, or of a place where no file is.
bool isOneFile(const QString &a, const QString &b)
{
    struct stat first = {};
    struct stat second = {};
    const bool firstIs = ::stat(QFile::encodeName(a).constData(), &first) == 0;
    const bool secondIs = ::stat(QFile::encodeName(b).constData(), &second) == 0;
    if (firstIs && secondIs)
        return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
    const QFileInfo one(a);
    const QFileInfo other(b);
    return firstIs == secondIs && one.fileName() == other.fileName()
        && QFileInfo(one.absolutePath()).canonicalFilePath() == QFileInfo(other.absolutePath()).canonicalFilePath();
}

QByteArray contentOf(int file)
{
    QByteArray content(int(LongestRequest), Qt::Uninitialized);
    const ssize_t size = ::pread(file, content.data(), size_t(content.size()), 0);
    return content.left(int(qMax<ssize_t>(0, size)));
}

/// The address of a socket in a directory, which may lie deeper than an address has room for.
sockaddr_un addressOf(int directory, const QByteArray &name)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(directory) + '/' + name;
    std::memcpy(address.sun_path, path.constData(), qMin(size_t(path.size()), sizeof address.sun_path - 1));
    return address;
}

QByteArray newName()
{
    static std::atomic_int number = 0; // tests have several threads
    return QByteArray::number(::getpid()) + '-' + QByteArray::number(++number);
}

/// A message with room for one descriptor.
struct Message
{
    iovec part = {};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> room = {};
    msghdr header = {};

    Message(void *data, size_t size)
    {
        part = { data, size };
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        header.msg_control = room.data();
        header.msg_controllen = room.size();
    }

    void enclose(int descriptor)
    {
        cmsghdr *enclosed = CMSG_FIRSTHDR(&header);
        enclosed->cmsg_level = SOL_SOCKET;
        enclosed->cmsg_type = SCM_RIGHTS;
        enclosed->cmsg_len = CMSG_LEN(sizeof descriptor);
        std::memcpy(CMSG_DATA(enclosed), &descriptor, sizeof descriptor);
    }

    /// The descriptor that came with it, the caller's from now on; -1 for none.
    [[nodiscard]] int enclosed()
    {
        const cmsghdr *found = CMSG_FIRSTHDR(&header);
        if (!found || found->cmsg_type != SCM_RIGHTS || found->cmsg_len != CMSG_LEN(sizeof(int)))
            return -1;
        int descriptor = -1;
        std::memcpy(&descriptor, CMSG_DATA(found), sizeof descriptor);
        return descriptor;
    }
};

QByteArray requestFor(const FileTarget &target, const QByteArray &token)
{
    QByteArray plainToken = token;
    plainToken.replace('\n', "");
    return QByteArray::number(target.line) + '\n' + QByteArray::number(target.column) + '\n' + plainToken + '\n'
        + QFile::encodeName(QFileInfo(target.path).absoluteFilePath());
}

void removeClaim(int directory, const QByteArray &name)
{
    (void)::unlinkat(directory, (name + claimSuffix).constData(), 0);
    (void)::unlinkat(directory, (name + socketSuffix).constData(), 0);
}

/// The directory of the claims, opened. Where it can't be had it holds nothing.
class ClaimsDirectory final
{
public:
    /// The claim of another process on the file that is asked about.
    struct Other
    {
        QByteArray name;
        Descriptor claim;
    };
    enum class Reply { Yes, Gone, None };

    explicit ClaimsDirectory(const QString &path) : m_directory(make(path)) { }

    [[nodiscard]] bool isOpen() const { return m_directory.isOpen(); }
    [[nodiscard]] int number() const { return m_directory.number(); }

    /// Waits for who is about to claim something. One that was stopped in the middle of it is not waited for.
    [[nodiscard]] Descriptor turn() const
    {
        Descriptor lock(::openat(number(), "lock", O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
        QElapsedTimer waiting;
        waiting.start();
        while (
            lock.isOpen() && ::flock(lock.number(), LOCK_EX | LOCK_NB) != 0 && !waiting.hasExpired(LongestWaitForTurn))
            ::usleep(1000);
        return lock;
    }

    /// Removes what was left behind on the way.
    [[nodiscard]] std::vector<Other> others(const QString &path, const QByteArray &own) const
    {
        std::vector<Other> found;
        // Files alone: the list has the sockets as well, which are none.
        const QDir names(
            QStringLiteral("/proc/self/fd/%1").arg(number()), QStringLiteral("*.claim"), QDir::Unsorted, QDir::Files);
        const QStringList entries = names.entryList();
        for (const QString &entry : entries) {
            const QByteArray file = QFile::encodeName(entry);
            const QByteArray name = file.left(file.lastIndexOf('.'));
            Descriptor claim(::openat(number(), file.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
            if (!claim.isOpen() || name == own)
                continue;
            if (::flock(claim.number(), LOCK_SH | LOCK_NB) == 0)
                removeClaim(number(), name);
            else if (isOneFile(path, QFile::decodeName(contentOf(claim.number()).mid(openingWord.size()))))
                found.push_back({ name, std::move(claim) });
        }
        return found;
    }

    [[nodiscard]] Reply call(const Other &other, const QByteArray &request) const
    {
        std::array<int, 2> ends = { -1, -1 };
        if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
            return Reply::None;
        const Descriptor mine(ends[0]);
        const int failure = send(other, request, ends[1]);
        ::close(ends[1]);
        if (failure != 0)
            return failure == EAGAIN ? Reply::None : Reply::Gone;
        QElapsedTimer waiting;
        QElapsedTimer sinceShowing;
        waiting.start();
        sinceShowing.start();
        while (!waiting.hasExpired(LongestWaitForOpening) && !sinceShowing.hasExpired(LongestWaitForAnswer)) {
            pollfd event = { mine.number(), POLLIN, 0 };
            if (::poll(&event, 1, AnswerPollInterval) > 0) {
                char answer = 0;
                return ::recv(mine.number(), &answer, 1, 0) == 1 && answer == Comes ? Reply::Yes : Reply::Gone;
            }
            if (contentOf(other.claim.number()).startsWith(openingWord))
                sinceShowing.restart();
        }
        return Reply::None;
    }

private:
    [[nodiscard]] static int make(const QString &path)
    {
        const int directory = makePrivateDirectory(path)
            ? ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)
            : -1;
        if (directory < 0)
            qCInfo(claimsLog, "%s: %s", qUtf8Printable(path), std::strerror(errno));
        return directory;
    }

    /// With the other end of the reply; when nobody takes it any more, that shows on this one. 0, or what errno says.
    [[nodiscard]] int send(const Other &other, QByteArray request, int reply) const
    {
        const Descriptor sender(::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
        sockaddr_un address = addressOf(number(), other.name + socketSuffix);
        Message message(request.data(), size_t(request.size()));
        message.header.msg_name = &address;
        message.header.msg_namelen = sizeof address;
        message.enclose(reply);
        return ::sendmsg(sender.number(), &message.header, MSG_NOSIGNAL) < 0 ? errno : 0;
    }

    Descriptor m_directory;
};

} // namespace

FileClaims::FileClaims(const QString &directory, QObject *parent) : QObject(parent), m_directory(directory) { }

FileClaims::~FileClaims()
{
    release();
}

QString FileClaims::defaultDirectory()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtime.isEmpty() ? QFileInfo(RecoveryStore::defaultDirectory()).path() + QLatin1String("/windows")
                             : runtime + QLatin1String("/extpoint-workbench");
}

FileClaims::Answer FileClaims::ask(const FileTarget &target, const QByteArray &token)
{
    return settle(target, token, false);
}

FileClaims::Answer FileClaims::claim(const FileTarget &target, const QByteArray &token)
{
    if (!m_path.isEmpty() && isOneFile(m_path, target.path))
        return Answer::Free;
    return settle(target, token, true);
}

FileClaims::Answer FileClaims::settle(const FileTarget &target, const QByteArray &token, bool claims)
{
    const ClaimsDirectory directory(m_directory);
    if (!directory.isOpen())
        return Answer::Free;
    const QByteArray request = requestFor(target, token);
    Answer answer = Answer::Free;
    // Whoever has gone meanwhile is found gone at the next look.
    for (int tries = 0; tries < MostTries; ++tries) {
        Descriptor turn = directory.turn();
        const auto others = directory.others(target.path, m_name);
        if (others.empty() || answer == Answer::Silent) {
            if (claims)
                hold(directory.number(), target.path);
            return others.empty() ? Answer::Free : answer;
        }
        turn.close();
        answer = Answer::Silent;
        for (const ClaimsDirectory::Other &other : others) {
            const ClaimsDirectory::Reply reply = directory.call(other, request);
            if (reply == ClaimsDirectory::Reply::Yes)
                return Answer::Taken;
            if (reply == ClaimsDirectory::Reply::Gone)
                answer = Answer::Free;
        }
        ::usleep(GoingTime);
    }
    // Its claim stands, but its socket was taken away.
    if (claims)
        hold(target.path);
    return Answer::Silent;
}

void FileClaims::hold(const QString &path)
{
    if (!m_path.isEmpty() && isOneFile(m_path, path))
        return;
    const ClaimsDirectory directory(m_directory);
    if (!directory.isOpen())
        return;
    const Descriptor turn = directory.turn();
    hold(directory.number(), path);
}

void FileClaims::hold(int directory, const QString &path)
{
    release();
    const QByteArray name = newName();
    const QByteArray unfinished = name + ".unfinished";
    const QByteArray absolute = QFile::encodeName(QFileInfo(path).absoluteFilePath());
    // Another process had the number before.
    (void)::unlinkat(directory, unfinished.constData(), 0);
    removeClaim(directory, name);
    Descriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    Descriptor claim(::openat(
        directory, unfinished.constData(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    const sockaddr_un address = addressOf(directory, name + socketSuffix);
    const QByteArray content = openingWord + absolute;
    // Under its last name only once it is locked, and somebody could ask.
    if (::bind(socket.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0
        || ::flock(claim.number(), LOCK_EX | LOCK_NB) != 0
        || ::write(claim.number(), content.constData(), size_t(content.size())) != content.size()
        || ::renameat(directory, unfinished.constData(), directory, (name + claimSuffix).constData()) != 0) {
        qCInfo(claimsLog, "%s can't be claimed: %s", qUtf8Printable(path), std::strerror(errno));
        (void)::unlinkat(directory, unfinished.constData(), 0);
        removeClaim(directory, name);
        return;
    }
    m_path = QFile::decodeName(absolute);
    m_name = name;
    m_claim = claim.take();
    m_socket = socket.take();
    m_notifier = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &FileClaims::takeRequests);
    // Whoever asks before waits longer: opening a large file takes its time.
    QTimer::singleShot(0, m_notifier.get(),
        [this] { (void)!::pwrite(m_claim, showingWord.constData(), size_t(showingWord.size()), 0); });
}

void FileClaims::release()
{
    if (m_path.isEmpty())
        return;
    m_notifier.reset();
    const ClaimsDirectory directory(m_directory);
    if (directory.isOpen())
        removeClaim(directory.number(), m_name);
    m_path.clear();
    m_name.clear();
    ::close(std::exchange(m_socket, -1));
    ::close(std::exchange(m_claim, -1));
}

void FileClaims::takeRequests()
{
    QByteArray room(int(LongestRequest), Qt::Uninitialized);
    Message message(room.data(), size_t(room.size()));
    const ssize_t size = ::recvmsg(m_socket, &message.header, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
    if (size < 0)
        return;
    const Descriptor reply(message.enclosed());
    if (reply.isOpen() && (message.header.msg_flags & MSG_TRUNC) == 0)
        takeRequest(room.left(int(size)), reply.number());
}

void FileClaims::takeRequest(const QByteArray &request, int reply)
{
    constexpr int Parts = 3;
    const QList<QByteArray> parts = request.split('\n');
    if (parts.size() <= Parts)
        return;
    const FileTarget target { QFile::decodeName(parts.mid(Parts).join('\n')), parts.at(0).toInt(),
        parts.at(1).toInt() };
    // Without an answer it is found out again who has the file.
    if (isOneFile(target.path, m_path) && ::send(reply, &Comes, 1, MSG_NOSIGNAL | MSG_DONTWAIT) == 1)
        Q_EMIT asked(target, parts.at(2));
}

} // namespace Core
