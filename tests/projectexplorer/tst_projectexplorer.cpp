#include "accessiblewalk.h"
#include "projectexplorer/productdock.h"
#include "tabcycle.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <memory>
#include <sys/stat.h>
#include <thread>

using ProjectExplorer::ProductDock;

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

class tst_ProjectExplorer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rows();
    void tabComesRound();
    void filter();
    void activation();
    void follows();
    void otherProduct();
    void listedAgainBeforeTakenIn();

private:
    QString path(const QString &name) const { return m_dir->filePath(name + s("/extension.xml")); }
    /// Names behind one another; "-" before one whose directory has no file.
    void make(const char *names);
    void openAndWait(const char *name);
    /// The rows: the name, "!" for a row that can be opened, "*" for the bold one.
    QString picture() const;
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return m_dock->findChild<Widget *>(s(name));
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<ProductDock> m_dock;
    QListView *m_view = nullptr;
};

void tst_ProjectExplorer::init()
{
    qRegisterMetaType<QVector<ProjectExplorer::PluginDirectory>>();
    m_dir = std::make_unique<QTemporaryDir>();
    m_dock = std::make_unique<ProductDock>();
    m_view = find<QListView>("productView");
    m_dock->show();
}

void tst_ProjectExplorer::cleanup()
{
    m_dock.reset();
    m_dir.reset();
}

void tst_ProjectExplorer::make(const char *names)
{
    for (QString name : s(names).split(QLatin1Char(' '))) {
        const bool withFile = !name.startsWith(QLatin1Char('-'));
        name.remove(QLatin1Char('-'));
        QFile file(path(name));
        if (!QDir(m_dir->path()).mkpath(name) || (withFile && !file.open(QIODevice::WriteOnly)))
            qFatal("%s cannot be made", qPrintable(name));
    }
}

void tst_ProjectExplorer::openAndWait(const char *name)
{
    QSignalSpy refreshed(m_dock.get(), &ProductDock::refreshed);
    m_dock->setOpenedFile(path(s(name)));
    QVERIFY(refreshed.wait());
}

QString tst_ProjectExplorer::picture() const
{
    QStringList rows;
    for (int row = 0; row < m_view->model()->rowCount(); ++row) {
        const QModelIndex index = m_view->model()->index(row, 0);
        rows.append(index.data().toString() + s(index.flags() & Qt::ItemIsEnabled ? "!" : "")
            + s(index.data(Qt::FontRole).value<QFont>().bold() ? "*" : ""));
    }
    return rows.join(QLatin1Char(' '));
}

void tst_ProjectExplorer::rows()
{
    make("Units Alarms -docs .git -pipe nested/inner -odd/extension.xml");
    QVERIFY(::mkfifo(QFile::encodeName(path(s("pipe"))).constData(), 0600) == 0);
    QFile file(m_dir->filePath(s("readme")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    openAndWait("Units");
    QCOMPARE(picture(), s("Alarms! docs nested odd pipe Units!*"));
    QCOMPARE(m_view->currentIndex().data().toString(), s("Units"));
    QCOMPARE(find<QLabel>("productCount")->text(), s("2 plug-ins, 4 other directories"));
    const QModelIndex index = m_view->model()->index(0, 0);
    const qint64 ordinary = index.data(Qt::DecorationRole).value<QIcon>().cacheKey();
    m_dock->setProblems({ { path(s("Alarms")), s("why") } });
    QCOMPARE(index.data(Qt::ToolTipRole).toString(), s("why"));
    QVERIFY(index.data(Qt::DecorationRole).value<QIcon>().cacheKey() != ordinary);
    m_dock->setOpenedFile(QString());
    QCOMPARE(picture(), QString());
}

void tst_ProjectExplorer::tabComesRound()
{
    make("Units Alarms");
    openAndWait("Units");
    m_dock->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_dock.get()));
    const TabCycle cycle(m_dock.get());
    QCOMPARE(cycle.size(), 2);
    QVERIFY2(cycle.complaint(false).isEmpty(), qPrintable(cycle.complaint(false)));
    QVERIFY2(cycle.complaint(true).isEmpty(), qPrintable(cycle.complaint(true)));
    QCOMPARE(AccessibleWalk::complaints(m_dock.get()), QString());
}

void tst_ProjectExplorer::filter()
{
    make("alarms charts sea.charts units");
    openAndWait("units");
    const auto *count = find<QLabel>("productCount");
    QCOMPARE(count->text(), s("4 plug-ins"));
    QTest::keyClicks(find<QLineEdit>("productFilter"), s("CHART"));
    QCOMPARE(picture(), s("charts! sea.charts!"));
    QCOMPARE(count->text(), s("2 of 4 directories"));
    // The text is no pattern.
    find<QLineEdit>("productFilter")->setText(s("a.c"));
    QCOMPARE(picture(), s("sea.charts!"));
}

void tst_ProjectExplorer::activation()
{
    make("alarms units -docs");
    openAndWait("units");
    QVERIFY(QTest::qWaitForWindowExposed(m_dock.get()));
    const QSignalSpy activated(m_dock.get(), &ProductDock::fileActivated);
    // "docs", which has no file, and "alarms".
    for (const int row : { 1, 0 }) {
        const QPoint position = m_view->visualRect(m_view->model()->index(row, 0)).center();
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, position);
        QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, {}, position);
    }
    auto *line = find<QLineEdit>("productFilter");
    line->setText(s("unit"));
    QTest::keyClick(line, Qt::Key_Down);
    QTest::keyClick(m_view, Qt::Key_Return);
    QCOMPARE(
        QList<QList<QVariant>>(activated), (QList<QList<QVariant>> { { path(s("alarms")) }, { path(s("units")) } }));
}

void tst_ProjectExplorer::follows()
{
    make("-alarms units");
    openAndWait("units");
    make("-new");
    QTRY_COMPARE(picture(), s("alarms new units!*"));
    // What comes inside of a directory is seen when the user comes back.
    make("alarms");
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    QTRY_COMPARE(picture(), s("alarms! new units!*"));
    QCOMPARE(m_view->currentIndex().data().toString(), s("units"));
}

void tst_ProjectExplorer::otherProduct()
{
    make("first/one second/two");
    m_dock->setOpenedFile(path(s("first/one")));
    openAndWait("second/two");
    QCOMPARE(picture(), s("two!*"));
    // The first product is not watched any more, nor does its listing arrive late.
    QSignalSpy refreshed(m_dock.get(), &ProductDock::refreshed);
    make("first/three");
    QVERIFY(!refreshed.wait(600));
    make("second/four");
    QTRY_COMPARE(refreshed.count(), 1);
    QCOMPARE(picture(), s("four! two!*"));
}

void tst_ProjectExplorer::listedAgainBeforeTakenIn()
{
    for (int i = 0; i < 300; ++i)
        make(qPrintable(s("plugin%1").arg(i)));
    ProjectExplorer::DirectoryLister lister;
    std::atomic<int> finished { 0 };
    connect(
        &lister, &ProjectExplorer::DirectoryLister::finished, &lister, [&finished] { ++finished; },
        Qt::DirectConnection);
    QSignalSpy listed(&lister, &ProjectExplorer::DirectoryLister::listed);
    lister.list(m_dir->path());
    while (finished == 0)
        std::this_thread::yield();
    // The first result waits in the event queue, and nobody wants it any more.
    lister.list(m_dir->path());
    QVERIFY(listed.wait());
    QTRY_COMPARE(finished.load(), 2);
    QCoreApplication::processEvents();
    QCOMPARE(listed.count(), 1);
    QCOMPARE(listed.at(0).at(1).value<QVector<ProjectExplorer::PluginDirectory>>().size(), 300);
}

QTEST_MAIN(tst_ProjectExplorer)
#include "tst_projectexplorer.moc"
