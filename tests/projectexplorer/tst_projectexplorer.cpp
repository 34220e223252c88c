#include "projectexplorer/plugindirectorymodel.h"
#include "projectexplorer/productdock.h"

#include <QAbstractItemModel>
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

using ProjectExplorer::PluginDirectoryModel;
using ProjectExplorer::ProductDock;

class tst_ProjectExplorer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rows();
    void filter();
    void activation();
    void follows_data();
    void follows();
    void otherProduct();
    void listedAgainBeforeTakenIn();

private:
    void makePlugin(const QString &name, bool withFile = true);
    void openAndWait(const QString &name);
    /// A line per row: the name, "!" for a row that can be opened, "*" for the bold one.
    QStringList picture() const;

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<ProductDock> m_dock;
    QListView *m_view = nullptr;
};

void tst_ProjectExplorer::init()
{
    qRegisterMetaType<QVector<ProjectExplorer::PluginDirectory>>();
    m_dir = std::make_unique<QTemporaryDir>();
    m_dock = std::make_unique<ProductDock>();
    m_view = m_dock->findChild<QListView *>(QStringLiteral("productView"));
    m_dock->show();
}

void tst_ProjectExplorer::cleanup()
{
    m_dock.reset();
    m_dir.reset();
}

void tst_ProjectExplorer::makePlugin(const QString &name, bool withFile)
{
    QFile file(m_dir->filePath(name + QLatin1String("/extension.xml")));
    if (!QDir(m_dir->path()).mkpath(name) || (withFile && !file.open(QIODevice::WriteOnly)))
        qFatal("%s cannot be made", qPrintable(name));
}

void tst_ProjectExplorer::openAndWait(const QString &name)
{
    QSignalSpy refreshed(m_dock.get(), &ProductDock::refreshed);
    m_dock->setOpenedFile(m_dir->filePath(name + QLatin1String("/extension.xml")));
    QVERIFY(refreshed.wait());
}

QStringList tst_ProjectExplorer::picture() const
{
    QStringList lines;
    const QAbstractItemModel *model = m_view->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row, 0);
        QString line = index.data().toString();
        if (index.flags() & Qt::ItemIsEnabled)
            line += QLatin1Char('!');
        if (index.data(Qt::FontRole).value<QFont>().bold())
            line += QLatin1Char('*');
        lines.append(line);
    }
    return lines;
}

void tst_ProjectExplorer::rows()
{
    makePlugin(QStringLiteral("Units"));
    makePlugin(QStringLiteral("Alarms"));
    makePlugin(QStringLiteral("docs"), false);
    makePlugin(QStringLiteral(".git"));
    makePlugin(QStringLiteral("pipe"), false);
    makePlugin(QStringLiteral("nested/inner"));
    QVERIFY(::mkfifo(QFile::encodeName(m_dir->filePath(QStringLiteral("pipe/extension.xml"))).constData(), 0600) == 0);
    QVERIFY(QDir(m_dir->path()).mkpath(QStringLiteral("odd/extension.xml")));
    QFile file(m_dir->filePath(QStringLiteral("readme")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    openAndWait(QStringLiteral("Units"));
    QCOMPARE(picture().join(QLatin1Char(' ')), QStringLiteral("Alarms! docs nested odd pipe Units!*"));
    QCOMPARE(m_view->currentIndex().data().toString(), QStringLiteral("Units"));
    QCOMPARE(m_dock->findChild<QLabel *>(QStringLiteral("productCount"))->text(),
        QStringLiteral("2 plug-ins, 4 other directories"));
    const QString alarms = m_dir->filePath(QStringLiteral("Alarms/extension.xml"));
    const QModelIndex index = m_view->model()->index(0, 0);
    const qint64 ordinary = index.data(Qt::DecorationRole).value<QIcon>().cacheKey();
    m_dock->setProblems({ { alarms, QStringLiteral("why") } });
    QCOMPARE(index.data(Qt::ToolTipRole).toString(), QStringLiteral("why"));
    QVERIFY(index.data(Qt::DecorationRole).value<QIcon>().cacheKey() != ordinary);
    m_dock->setOpenedFile(QString());
    QCOMPARE(picture(), QStringList());
}

void tst_ProjectExplorer::filter()
{
    for (const char *name : { "alarms", "charts", "sea.charts", "units" })
        makePlugin(QString::fromLatin1(name));
    openAndWait(QStringLiteral("units"));
    auto *line = m_dock->findChild<QLineEdit *>(QStringLiteral("productFilter"));
    auto *count = m_dock->findChild<QLabel *>(QStringLiteral("productCount"));
    QCOMPARE(count->text(), QStringLiteral("4 plug-ins"));
    QTest::keyClicks(line, QStringLiteral("CHART"));
    QCOMPARE(picture(), (QStringList { QStringLiteral("charts!"), QStringLiteral("sea.charts!") }));
    QCOMPARE(count->text(), QStringLiteral("2 of 4 directories"));
    // The text is no pattern.
    line->setText(QStringLiteral("a.c"));
    QCOMPARE(picture(), QStringList { QStringLiteral("sea.charts!") });
}

void tst_ProjectExplorer::activation()
{
    for (const char *name : { "alarms", "units" })
        makePlugin(QString::fromLatin1(name));
    makePlugin(QStringLiteral("docs"), false);
    openAndWait(QStringLiteral("units"));
    QVERIFY(QTest::qWaitForWindowExposed(m_dock.get()));
    const QSignalSpy activated(m_dock.get(), &ProductDock::fileActivated);
    const auto doubleClick = [this](int row) {
        const QPoint position = m_view->visualRect(m_view->model()->index(row, 0)).center();
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, position);
        QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, {}, position);
    };
    doubleClick(1);
    QCOMPARE(activated.count(), 0);
    doubleClick(0);
    QCOMPARE(activated.count(), 1);
    QCOMPARE(activated.at(0).at(0).toString(), m_dir->filePath(QStringLiteral("alarms/extension.xml")));

    auto *line = m_dock->findChild<QLineEdit *>(QStringLiteral("productFilter"));
    line->setText(QStringLiteral("unit"));
    QTest::keyClick(line, Qt::Key_Down);
    QTest::keyClick(m_view, Qt::Key_Return);
    QCOMPARE(activated.count(), 2);
    QCOMPARE(activated.at(1).at(0).toString(), m_dir->filePath(QStringLiteral("units/extension.xml")));
}

void tst_ProjectExplorer::follows_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("expected");

    QTest::newRow("a directory comes") << "add"
                                       << "alarms! new units!*";
    QTest::newRow("a file comes, the user comes back") << "file"
                                                       << "alarms! units!*";
}

void tst_ProjectExplorer::follows()
{
    QFETCH(QString, change);
    QFETCH(QString, expected);
    const bool fileComes = change == QLatin1String("file");
    makePlugin(QStringLiteral("alarms"), !fileComes);
    makePlugin(QStringLiteral("units"));
    openAndWait(QStringLiteral("units"));
    QDir dir(m_dir->path());
    if (change == QLatin1String("add"))
        QVERIFY(dir.mkdir(QStringLiteral("new")));
    else {
        makePlugin(QStringLiteral("alarms"));
        emit qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    }
    QTRY_COMPARE(picture().join(QLatin1Char(' ')), expected);
    QCOMPARE(m_view->currentIndex().data().toString(), QStringLiteral("units"));
}

void tst_ProjectExplorer::otherProduct()
{
    makePlugin(QStringLiteral("first/one"));
    makePlugin(QStringLiteral("second/two"));
    m_dock->setOpenedFile(m_dir->filePath(QStringLiteral("first/one/extension.xml")));
    openAndWait(QStringLiteral("second/two"));
    QCOMPARE(picture(), QStringList { QStringLiteral("two!*") });
    // The first product is not watched any more, nor does its listing arrive late.
    QSignalSpy refreshed(m_dock.get(), &ProductDock::refreshed);
    makePlugin(QStringLiteral("first/three"));
    QVERIFY(!refreshed.wait(600));
    makePlugin(QStringLiteral("second/four"));
    QTRY_COMPARE(refreshed.count(), 1);
    QCOMPARE(picture(), (QStringList { QStringLiteral("four!"), QStringLiteral("two!*") }));
}

void tst_ProjectExplorer::listedAgainBeforeTakenIn()
{
    for (int i = 0; i < 300; ++i)
        makePlugin(QStringLiteral("plugin%1").arg(i));
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
