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

/// One row. What is not said is ordinary: a new file of 13 KB, room enough.
struct Row
{
    Setup setup;
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

Setup holding(int size, mode_t mode = 0644)
{
    return [=](const Place &place) { makeFile(place.file(), documentOf(size, 'o'), mode); };
}

Setup linked(int size)
{
    return [=](const Place &place) { fileAndHardLink(place, size); };
}

/// The file, if there is to be one, in a directory of that mode.
Setup within(mode_t directory, int size = 5'000, mode_t mode = 0644)
{
    return [=](const Place &place) {
        if (size > 0)
            makeFile(place.file(), documentOf(size, 'o'), mode);
        setMode(place.root, directory);
    };
}

void nothing(const Place &) { }

/// Of the extended attribute @p name; empty if there is none.
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

} // namespace

Q_DECLARE_METATYPE(Row)

class TestFaultSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void save_data();
    void save();

private:
    /// A row that is refused when there is a reason.
    static void add(
        const char *name, const Setup &setup, const Check &check = {}, const char *reason = nullptr, Row row = {});
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

void TestFaultSaving::add(const char *name, const Setup &setup, const Check &check, const char *reason, Row row)
{
    row.setup = setup;
    row.check = check;
    row.saved = !reason;
    row.reason = reason ? reason : "";
    QTest::addRow("%s%s", name, row.newSize == large ? ", large" : "") << row;
}

void TestFaultSaving::addFull()
{
    const char *const full = "No space left";
    for (const int size : { small, large }) {
        Row row;
        row.newSize = size;
        // A file of this size lies there; beside it there is less room than the new one needs.
        row.diskKiB = size / 1024 + 8;
        add("disk full", holding(size), {}, full, row);
        const auto linkAndFiller = [size](const Place &place) {
            fileAndHardLink(place, size / 2);
            makeFile(place.in("filler"), documentOf(size / 2 + 3'000));
        };
        add("disk full, written in place", linkAndFiller, hardLinksAgree, full, row);
        row.diskKiB = 16;
        const auto onlyOther = [](const Place &place) { makeFile(place.in("other"), documentOf(7'000, 'o')); };
        add("disk full, new file", onlyOther, {}, full, row);

        Row limited;
        limited.newSize = size;
        limited.sizeLimit = rlim_t(size / 2);
        add("file-size limit in mid-save", holding(5'000), {}, "File too large", limited);
        add("file-size limit, written in place", linked(5'000), hardLinksAgree, "File too large", limited);
    }
    // What has to be overwritten has no room of its own: the writing stops in the middle of the old bytes.
    Row sparse;
    sparse.newSize = large;
    sparse.diskKiB = 40;
    const auto lengthened = [](const Place &place) {
        fileAndHardLink(place, 5'000);
        if (::truncate(QFile::encodeName(place.file()).constData(), large) != 0)
            qFatal("not lengthened");
    };
    add("disk full in mid-write, old bytes put back", lengthened, hardLinksAgree, full, sparse);
}

void TestFaultSaving::addLinks()
{
    const auto link = [](const char *aim) { return [aim](const Place &place) { makeLink(aim, place.file()); }; };
    const auto toFile = [](const Place &place) {
        makeFile(place.in("real.xml"), documentOf(5'000, 'o'));
        makeLink("real.xml", place.file());
    };
    add("symbolic link", toFile, leadsTo("real.xml"));
    const auto toLink = [](const Place &place) {
        makeDirectory(place.in("away"));
        giveAway(place.in("away"));
        makeFile(place.in("away/real.xml"), documentOf(5'000, 'o'));
        giveAway(place.in("away/real.xml"));
        makeLink("away/real.xml", place.in("first"));
        makeLink("first", place.file());
    };
    add("symbolic link to a symbolic link", toLink, leadsTo("away/real.xml"));
    add("dangling link", link("missing.xml"), leadsTo("missing.xml"));
    add("dangling link into a missing directory", link("none/missing.xml"), isStill(S_IFLNK), "No such file");
    const auto loop = [](const Place &place) {
        makeLink("other", place.file());
        makeLink("extension.xml", place.in("other"));
    };
    add("link loop", loop, isStill(S_IFLNK), "symbolic links");
    add("hard link, longer", linked(5'000), hardLinksAgree);
    add("hard link, shorter", linked(large), hardLinksAgree);

    // A file system of its own can't be replaced, however the directory is.
    Row row;
    row.diskKiB = 256;
    const auto mounted = [](const Place &place) {
        makeFile(place.in("real"), documentOf(5'000, 'o'));
        makeFile(place.file(), QByteArray());
        if (::mount(QFile::encodeName(place.in("real")).constData(), QFile::encodeName(place.file()).constData(),
                nullptr, MS_BIND, nullptr)
            != 0)
            qFatal("not mounted");
    };
    const auto isReal = [](const Place &place) {
        return contentsOf(place.in("real")) == documentOf(small) ? QString() : QStringLiteral("not what is mounted");
    };
    add("mount point", mounted, isReal, nullptr, row);
}

void TestFaultSaving::addOthers()
{
    const char *const irregular = "Not a regular file";
    add(
        "pipe", [](const Place &place) { makePipe(place.file()); }, isStill(S_IFIFO), irregular);
    add(
        "socket", [](const Place &place) { makeSocket(place.file()); }, isStill(S_IFSOCK), irregular);
    add(
        "directory", [](const Place &place) { makeDirectory(place.file()); }, isStill(S_IFDIR), irregular);
    const auto isDevice = [](const Place &) {
        return S_ISCHR(statusOf(QStringLiteral("/dev/null")).st_mode) ? QString()
                                                                      : QStringLiteral("the device is gone");
    };
    add(
        "device", [](const Place &place) { makeLink("/dev/null", place.file()); }, isDevice, irregular);

    Row named;
    named.name = QString(246, QLatin1Char('n')) + QLatin1String(".xml");
    add("name of 250 bytes, new", nothing, {}, nullptr, named);
    const QString longName = named.name;
    const auto long250 = [longName](const Place &place) {
        makeFile(place.root + QLatin1Char('/') + longName, documentOf(5'000, 'o'));
    };
    add("name of 250 bytes", long250, {}, nullptr, named);
    named.name = QString(256, QLatin1Char('n'));
    add("name of 256 bytes", nothing, {}, "too long", named);

    add("over an empty file", [](const Place &place) { makeFile(place.file(), QByteArray()); });
    Row empty;
    empty.newSize = 0;
    add("nothing to save", holding(5'000), {}, "could not be read again", empty);
    add("nothing to save, written in place", linked(5'000), hardLinksAgree, "could not be read again", empty);
}

void TestFaultSaving::addRights()
{
    for (const mode_t mode : { mode_t(0600), mode_t(0640), mode_t(0664), mode_t(0755) })
        add(qPrintable(QStringLiteral("mode %1").arg(number(mode))), holding(5'000, mode), hasMode(mode));
    const auto listed = [](const Place &place) {
        makeFile(place.file(), documentOf(5'000, 'o'));
        setAttribute(place.file(), listName, accessList());
    };
    add("access list", listed, hasList(accessList(), 0660));
    const auto listedAround = [](const Place &place) {
        makeFile(place.file(), documentOf(5'000, 'o'), 0640);
        setAttribute(place.root, "system.posix_acl_default", accessList());
    };
    add("access list for new files in the directory", listedAround, hasList(QByteArray(), 0640));
    const auto attributed = [](const Place &place) {
        makeFile(place.file(), documentOf(5'000, 'o'));
        setAttribute(place.file(), "user.note", "kept");
    };
    const auto hasAttribute = [](const Place &place) {
        return attribute(place.file(), "user.note") == "kept" ? QString() : QStringLiteral("the attribute is gone");
    };
    add("extended attribute", attributed, hasAttribute);

    const auto foreign = [](mode_t mode) {
        return [mode](const Place &place) {
            makeFile(place.file(), documentOf(5'000, 'o'), mode);
            makeFile(place.in("foreign"), QByteArray());
        };
    };
    const auto isForeign = [](const Place &place) {
        return statusOf(place.file()).st_uid == statusOf(place.in("foreign")).st_uid
            ? hasMode(0666)(place)
            : QStringLiteral("the owner is another one");
    };
    add("foreign owner, writable", foreign(0666), isForeign);
    // Without root there is no foreign owner, and the mode has to do.
    add("foreign owner, not ours to write", foreign(::geteuid() == 0 ? 0640 : 0440), {}, "Permission denied");

    add("read-only directory, writable file", within(0555));
    add("read-only directory, writable file, shorter", within(0555, large));
    const auto noState = [](const Place &place) {
        within(0555)(place);
        makeFile(place.root + QLatin1String("-state"), QByteArray());
    };
    add("read-only directory, no state directory", noState, {}, "No backup could be made");
    add("read-only directory, read-only file", within(0555, 5'000, 0444), {}, "Permission denied");
    add("read-only file", holding(5'000, 0444), {}, "Permission denied");
    add("read-only directory, no file", within(0555, 0), {}, "Permission denied");
    add("directory not to be entered", within(0), {}, "Permission denied");
}

void TestFaultSaving::addMeanwhile()
{
    const auto meanwhile
        = [](const char *name, const Setup &deed, const Check &check = {}, const char *reason = nullptr) {
              Row row;
              row.meanwhile = deed;
              add(name, holding(5'000), check, reason, row);
          };
    meanwhile("changed before the save", [](const Place &place) { makeFile(place.file(), documentOf(9'000, 'c')); });
    meanwhile("deleted before the save", [](const Place &place) { QFile::remove(place.file()); });
    const auto replaced = [](const Place &place) {
        makeFile(place.in("next"), documentOf(9'000, 'c'), 0600);
        ::rename(QFile::encodeName(place.in("next")).constData(), QFile::encodeName(place.file()).constData());
    };
    meanwhile("replaced by rename before the save", replaced, hasMode(0600));
    const auto directory = [](const Place &place) {
        QFile::remove(place.file());
        makeDirectory(place.file());
    };
    meanwhile("replaced by a directory before the save", directory, {}, "Not a regular file");
    Row row;
    row.name = QStringLiteral("plugin/extension.xml");
    row.meanwhile = [](const Place &place) { QDir(place.in("plugin")).removeRecursively(); };
    const auto inside = [](const Place &place) {
        makeDirectory(place.in("plugin"));
        giveAway(place.in("plugin"));
    };
    add("parent directory removed before the save", inside, {}, "No such file", row);
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
        if (row.sizeLimit > 0)
            limitFileSize(row.sizeLimit);
        const bool saved = saveFile(path, bytes, &error);
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
