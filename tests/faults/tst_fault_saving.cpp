#include "faulttesting.h"

#include "extensionfile/backup.h"
#include "extensionfile/safesave.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace ExtensionFile;
using namespace FaultTesting;

namespace {

constexpr int small = 13 * 1024;
constexpr int large = 60 * 1024;

/// One row's surroundings. The directory, and all in it that was not made somebody else's on purpose, belongs to the
/// user who saves.
struct Place
{
    QString root;
    QString file() const { return root + QLatin1String("/extension.xml"); }
    QString in(const char *name) const { return root + QLatin1Char('/') + QLatin1String(name); }
};

QString number(mode_t mode)
{
    return QString::number(mode & 07777, 8);
}

using Setup = std::function<void(const Place &)>;
/// Looks at what is there afterwards; says what is wrong, or nothing.
using Check = std::function<QString(const Place &)>;

} // namespace

Q_DECLARE_METATYPE(Setup)
Q_DECLARE_METATYPE(Check)

namespace {

/// One row. What is not said is ordinary: an old file of 5 KB, a new one of 13 KB, all rights, room enough.
struct Row
{
    Setup setup = [](const Place &place) { makeFile(place.file(), documentOf(5'000, 'o')); };
    int newSize = small;
    int diskKiB = 0;
    rlim_t sizeLimit = 0;
    /// What happens to the file after it was opened and before it is saved.
    Setup meanwhile;
    bool saved = true;
    /// A piece of what is logged when it is refused.
    const char *reason = "";
    Check check;
    /// Another name than "extension.xml", below the directory.
    QString name;
};

Check hasMode(mode_t mode)
{
    return [mode](const Place &place) {
        const mode_t found = statusOf(place.file()).st_mode;
        return (found & 07777) == mode ? QString() : QStringLiteral("mode %1").arg(number(found));
    };
}

Check isStill(mode_t type)
{
    return [type](const Place &place) {
        return (statusOf(place.file()).st_mode & S_IFMT) == type ? QString()
                                                                 : QStringLiteral("it is something else now");
    };
}

Check leadsTo(const char *aim)
{
    return [aim](const Place &place) {
        if (!S_ISLNK(statusOf(place.file()).st_mode))
            return QStringLiteral("the link is gone");
        return contentsOf(place.in(aim)) == documentOf(small) ? QString()
                                                              : QStringLiteral("what it leads to is not new");
    };
}

QString hardLinksAgree(const Place &place)
{
    if (statusOf(place.file()).st_ino != statusOf(place.in("other")).st_ino)
        return QStringLiteral("the hard link is broken");
    return contentsOf(place.file()) == contentsOf(place.in("other")) ? QString()
                                                                     : QStringLiteral("the contents differ");
}

void fileAndHardLink(const Place &place, int size)
{
    makeFile(place.file(), documentOf(size, 'o'));
    makeHardLink(place.file(), place.in("other"));
}

/// Of the extended attribute `name`; empty if there is none.
QByteArray attribute(const QString &path, const char *name)
{
    char value[256];
    const ssize_t size = ::getxattr(QFile::encodeName(path).constData(), name, value, sizeof(value));
    return QByteArray(value, int(qMax<ssize_t>(0, size)));
}

void setAttribute(const QString &path, const char *name, const QByteArray &value)
{
    if (::setxattr(QFile::encodeName(path).constData(), name, value.constData(), size_t(value.size()), 0) != 0)
        qFatal("%s: no attribute %s", qPrintable(path), name);
}

/// In the kernel's form: the owner and the user 1234 read and write, the group reads, nobody else does anything.
QByteArray accessList()
{
    const quint32 none = 0xffffffff;
    const struct
    {
        quint16 tag;
        quint16 rights;
        quint32 id;
    } entries[] = { { 1, 6, none }, { 2, 6, 1234 }, { 4, 4, none }, { 16, 6, none }, { 32, 0, none } };
    const quint32 version = 2;
    return QByteArray(reinterpret_cast<const char *>(&version), sizeof(version))
        + QByteArray(reinterpret_cast<const char *>(entries), sizeof(entries));
}

const char *const listName = "system.posix_acl_access";

Check hasList(const QByteArray &list, mode_t mode)
{
    return [list, mode](const Place &place) {
        if (attribute(place.file(), listName) != list)
            return QStringLiteral("another access list: mode %1").arg(number(statusOf(place.file()).st_mode));
        return hasMode(mode)(place);
    };
}

void inReadOnlyDirectory(const Place &place)
{
    makeFile(place.file(), documentOf(5'000, 'o'));
    setMode(place.root, 0555);
}

} // namespace

Q_DECLARE_METATYPE(Row)

class TestFaultSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void save_data();
    void save();

private:
    static void addFull();
    static void addLinks();
    static void addOthers();
    static void addRights();
    static void addMeanwhile();
};

void TestFaultSaving::save_data()
{
    QTest::addColumn<Row>("row");
    addFull();
    addLinks();
    addOthers();
    addRights();
    addMeanwhile();
}

void TestFaultSaving::addFull()
{
    const char *const full = "No space left";
    for (const int size : { small, large }) {
        const auto sized
            = [size](const char *what) -> QTestData & { return QTest::addRow("%s, %d KB", what, size / 1024); };
        // A file of this size lies there; beside it there is less room than the new one needs.
        const int disk = size / 1024 + 8;
        Row row;
        row.newSize = size;
        row.diskKiB = disk;
        row.saved = false;
        row.reason = full;
        row.setup = [size](const Place &place) { makeFile(place.file(), documentOf(size, 'o')); };
        sized("disk full") << row;
        row.setup = [](const Place &place) { makeFile(place.in("other"), documentOf(7'000, 'o')); };
        row.diskKiB = 16;
        sized("disk full, new file") << row;
        row.diskKiB = disk;
        row.setup = [size](const Place &place) {
            fileAndHardLink(place, size / 2);
            makeFile(place.in("filler"), documentOf(size / 2 + 3'000));
        };
        row.check = hardLinksAgree;
        sized("disk full, written in place") << row;

        Row limited;
        limited.newSize = size;
        limited.sizeLimit = rlim_t(size / 2);
        limited.saved = false;
        limited.reason = "File too large";
        sized("file-size limit in mid-save") << limited;
        limited.setup = [](const Place &place) { fileAndHardLink(place, 5'000); };
        limited.check = hardLinksAgree;
        sized("file-size limit, written in place") << limited;
    }
    // What has to be overwritten has no room of its own: the writing stops in the middle of the old bytes.
    Row sparse;
    sparse.newSize = large;
    sparse.diskKiB = 40;
    sparse.saved = false;
    sparse.reason = full;
    sparse.setup = [](const Place &place) {
        makeFile(place.file(), documentOf(5'000, 'o'));
        makeHardLink(place.file(), place.in("other"));
        if (::truncate(QFile::encodeName(place.file()).constData(), large) != 0)
            qFatal("not lengthened");
    };
    sparse.check = hardLinksAgree;
    QTest::newRow("disk full in mid-write, old bytes put back") << sparse;
}

void TestFaultSaving::addLinks()
{
    Row row;
    row.setup = [](const Place &place) {
        makeFile(place.in("real.xml"), documentOf(5'000, 'o'));
        makeLink("real.xml", place.file());
    };
    row.check = leadsTo("real.xml");
    QTest::newRow("symbolic link") << row;
    row.setup = [](const Place &place) {
        makeDirectory(place.in("away"));
        giveAway(place.in("away"));
        makeFile(place.in("away/real.xml"), documentOf(5'000, 'o'));
        giveAway(place.in("away/real.xml"));
        makeLink("away/real.xml", place.in("first"));
        makeLink("first", place.file());
    };
    row.check = leadsTo("away/real.xml");
    QTest::newRow("symbolic link to a symbolic link") << row;
    row.setup = [](const Place &place) { makeLink("missing.xml", place.file()); };
    row.check = leadsTo("missing.xml");
    QTest::newRow("dangling link") << row;
    row.setup = [](const Place &place) { makeLink("none/missing.xml", place.file()); };
    row.check = isStill(S_IFLNK);
    row.saved = false;
    row.reason = "No such file";
    QTest::newRow("dangling link into a missing directory") << row;
    row.setup = [](const Place &place) {
        makeLink("other", place.file());
        makeLink("extension.xml", place.in("other"));
    };
    row.reason = "symbolic links";
    QTest::newRow("link loop") << row;

    Row hard;
    hard.setup = [](const Place &place) { fileAndHardLink(place, 5'000); };
    hard.check = hardLinksAgree;
    QTest::newRow("hard link, longer") << hard;
    hard.setup = [](const Place &place) { fileAndHardLink(place, large); };
    QTest::newRow("hard link, shorter") << hard;

    // A file system of its own can't be replaced, however the directory is.
    Row mounted;
    mounted.diskKiB = 256;
    mounted.setup = [](const Place &place) {
        makeFile(place.in("real"), documentOf(5'000, 'o'));
        makeFile(place.file(), QByteArray());
        if (::mount(QFile::encodeName(place.in("real")).constData(), QFile::encodeName(place.file()).constData(),
                nullptr, MS_BIND, nullptr)
            != 0)
            qFatal("not mounted");
    };
    mounted.check = [](const Place &place) {
        return contentsOf(place.in("real")) == documentOf(small) ? QString() : QStringLiteral("not what is mounted");
    };
    QTest::newRow("mount point") << mounted;
}

void TestFaultSaving::addOthers()
{
    Row row;
    row.saved = false;
    row.reason = "Not a regular file";
    row.setup = [](const Place &place) { makePipe(place.file()); };
    row.check = isStill(S_IFIFO);
    QTest::newRow("pipe") << row;
    row.setup = [](const Place &place) { makeSocket(place.file()); };
    row.check = isStill(S_IFSOCK);
    QTest::newRow("socket") << row;
    row.setup = [](const Place &place) { makeDirectory(place.file()); };
    row.check = isStill(S_IFDIR);
    QTest::newRow("directory") << row;
    row.setup = [](const Place &place) { makeLink("/dev/null", place.file()); };
    row.check = [](const Place &) {
        return S_ISCHR(statusOf(QStringLiteral("/dev/null")).st_mode) ? QString()
                                                                      : QStringLiteral("the device is gone");
    };
    QTest::newRow("device") << row;

    Row name;
    name.setup = [](const Place &) {};
    name.name = QString(246, QLatin1Char('n')) + QLatin1String(".xml");
    QTest::newRow("name of 250 bytes, new") << name;
    const QString longName = name.name;
    name.setup = [longName](const Place &place) {
        makeFile(place.root + QLatin1Char('/') + longName, documentOf(5'000, 'o'));
    };
    QTest::newRow("name of 250 bytes") << name;
    name.name = QString(256, QLatin1Char('n'));
    name.setup = [](const Place &) {};
    name.saved = false;
    name.reason = "too long";
    QTest::newRow("name of 256 bytes") << name;

    Row empty;
    empty.setup = [](const Place &place) { makeFile(place.file(), QByteArray()); };
    QTest::newRow("over an empty file") << empty;
    empty.newSize = 0;
    empty.setup = [](const Place &place) { makeFile(place.file(), documentOf(5'000, 'o')); };
    empty.saved = false;
    empty.reason = "could not be read again";
    QTest::newRow("nothing to save") << empty;
}

void TestFaultSaving::addRights()
{
    for (const mode_t mode : { mode_t(0600), mode_t(0640), mode_t(0664), mode_t(0755) }) {
        Row row;
        row.setup = [mode](const Place &place) { makeFile(place.file(), documentOf(5'000, 'o'), mode); };
        row.check = hasMode(mode);
        QTest::addRow("mode %o", mode) << row;
    }
    Row listed;
    listed.setup = [](const Place &place) {
        makeFile(place.file(), documentOf(5'000, 'o'));
        setAttribute(place.file(), listName, accessList());
    };
    listed.check = hasList(accessList(), 0660);
    QTest::newRow("access list") << listed;
    listed.setup = [](const Place &place) {
        makeFile(place.file(), documentOf(5'000, 'o'), 0640);
        setAttribute(place.root, "system.posix_acl_default", accessList());
    };
    listed.check = hasList(QByteArray(), 0640);
    QTest::newRow("access list for new files in the directory") << listed;
    Row attributed;
    attributed.setup = [](const Place &place) {
        makeFile(place.file(), documentOf(5'000, 'o'));
        setAttribute(place.file(), "user.note", "kept");
    };
    attributed.check = [](const Place &place) {
        return attribute(place.file(), "user.note") == "kept" ? QString() : QStringLiteral("the attribute is gone");
    };
    QTest::newRow("extended attribute") << attributed;

    Row foreign;
    foreign.setup = [](const Place &place) {
        makeFile(place.file(), documentOf(5'000, 'o'), 0666);
        makeFile(place.in("foreign"), QByteArray());
    };
    foreign.check = [](const Place &place) {
        if (statusOf(place.file()).st_uid != statusOf(place.in("foreign")).st_uid)
            return QStringLiteral("the owner is another one");
        return hasMode(0666)(place);
    };
    QTest::newRow("foreign owner, writable") << foreign;
    foreign.setup = [](const Place &place) {
        makeFile(place.file(), documentOf(5'000, 'o'), 0640);
        makeFile(place.in("foreign"), QByteArray());
        if (::geteuid() != 0)
            setMode(place.file(), 0440);
    };
    foreign.check = {};
    foreign.saved = false;
    foreign.reason = "Permission denied";
    QTest::newRow("foreign owner, mode 0640, not ours to write") << foreign;

    Row row;
    row.setup = inReadOnlyDirectory;
    QTest::newRow("read-only directory, writable file") << row;
    row.setup = [](const Place &place) {
        makeFile(place.file(), documentOf(large, 'o'));
        setMode(place.root, 0555);
    };
    QTest::newRow("read-only directory, writable file, shorter") << row;
    row.setup = [](const Place &place) {
        inReadOnlyDirectory(place);
        makeFile(place.root + QLatin1String("-state"), QByteArray());
    };
    row.saved = false;
    row.reason = "No backup could be made";
    QTest::newRow("read-only directory, no state directory") << row;
    row.setup = [](const Place &place) {
        makeFile(place.file(), documentOf(5'000, 'o'), 0444);
        setMode(place.root, 0555);
    };
    row.reason = "Permission denied";
    QTest::newRow("read-only directory, read-only file") << row;
    row.setup = [](const Place &place) { makeFile(place.file(), documentOf(5'000, 'o'), 0444); };
    QTest::newRow("read-only file") << row;
    row.setup = [](const Place &place) { setMode(place.root, 0555); };
    QTest::newRow("read-only directory, no file") << row;
    row.setup = [](const Place &place) {
        makeFile(place.file(), documentOf(5'000, 'o'));
        setMode(place.root, 0);
    };
    QTest::newRow("directory not to be entered") << row;
}

void TestFaultSaving::addMeanwhile()
{
    Row row;
    row.meanwhile = [](const Place &place) { makeFile(place.file(), documentOf(9'000, 'c')); };
    QTest::newRow("changed on disk before the save") << row;
    row.meanwhile = [](const Place &place) { QFile::remove(place.file()); };
    QTest::newRow("deleted before the save") << row;
    row.meanwhile = [](const Place &place) {
        makeFile(place.in("next"), documentOf(9'000, 'c'), 0600);
        ::rename(QFile::encodeName(place.in("next")).constData(), QFile::encodeName(place.file()).constData());
    };
    row.check = hasMode(0600);
    QTest::newRow("replaced by rename before the save") << row;
    row.check = {};
    row.meanwhile = [](const Place &place) {
        QFile::remove(place.file());
        makeDirectory(place.file());
    };
    row.saved = false;
    row.reason = "Not a regular file";
    QTest::newRow("replaced by a directory before the save") << row;
    row.setup = [](const Place &place) {
        makeDirectory(place.in("plugin"));
        giveAway(place.in("plugin"));
    };
    row.name = QStringLiteral("plugin/extension.xml");
    row.meanwhile = [](const Place &place) { QDir(place.in("plugin")).removeRecursively(); };
    row.reason = "No such file";
    QTest::newRow("parent directory removed before the save") << row;
}

void TestFaultSaving::save()
{
    QFETCH(Row, row);
    QTemporaryDir directory;
    setMode(directory.path(), 0755);
    const Place place { directory.filePath(QStringLiteral("plugins")) };
    makeDirectory(place.root);
    giveAway(place.root);
    const QString state = place.root + QLatin1String("-state");
    const QString path = row.name.isEmpty() ? place.file() : place.root + QLatin1Char('/') + row.name;
    qputenv("XDG_STATE_HOME", QFile::encodeName(state));

    Child child;
    child.disk = row.diskKiB > 0 ? place.root : QString();
    child.diskKiB = row.diskKiB;
    child.prepare = [&] {
        row.setup(place);
        const QStringList names = namesIn(place.root);
        for (const QString &name : names) {
            if (!names.contains(QStringLiteral("foreign")))
                giveAway(place.root + QLatin1Char('/') + name);
        }
        if (!QFile::exists(state)) {
            makeDirectory(state);
            giveAway(state);
        }
    };
    child.act = [&]() -> QString {
        if (row.meanwhile)
            row.meanwhile(place);
        const QByteArray old = QFileInfo(path).isFile() ? contentsOf(path) : QByteArray();
        const QStringList before = namesIn(place.root);
        const QByteArray bytes = row.newSize > 0 ? documentOf(row.newSize) : QByteArray();
        const Log log;
        QString error;
        bool saved = false;
        if (row.sizeLimit > 0) {
            const FileSizeLimit limit(row.sizeLimit);
            saved = saveFile(path, bytes, &error);
        } else {
            saved = saveFile(path, bytes, &error);
        }
        if (saved != row.saved)
            return QStringLiteral("saved is %1: %2").arg(saved).arg(error);
        if (saved && (!log.lines().isEmpty() || contentsOf(path) != bytes))
            return QStringLiteral("not written as it should be, or not quietly");
        if (!saved && log.lines() != QStringList(error))
            return QStringLiteral("logged: %1").arg(log.lines().join(QLatin1Char('|')));
        if (!saved && !error.startsWith(path.left(450)))
            return QStringLiteral("the path is not told: %1").arg(error);
        if (!saved && !error.contains(QLatin1String(row.reason)))
            return QStringLiteral("the reason is: %1").arg(error);
        if (!saved && QFileInfo(path).isFile() && contentsOf(path) != old)
            return QStringLiteral("the old bytes are gone");
        if (!saved && namesIn(place.root) != before)
            return QStringLiteral("left behind: %1").arg(namesIn(place.root).join(QLatin1Char(' ')));
        if (QFileInfo(state).isDir() && !namesIn(Backup::directory()).isEmpty())
            return QStringLiteral("a backup was left behind");
        return row.check ? row.check(place) : QString();
    };
    const QString wrong = child.run();
    setMode(place.root, 0755);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

QTEST_GUILESS_MAIN(TestFaultSaving)
#include "tst_fault_saving.moc"
