#include "form/treeitemmimedata.h"
#include "realization/formattabbar.h"
#include "realization/formattabs.h"

#include "model/modeltesting.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QTabBar>
#include <QTest>

#include <memory>
#include <vector>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// A tab widget on the screen, and roots that bring tabs.
class Tabs final
{
public:
    explicit Tabs(bool batching) : formats(&widget)
    {
        FormatTabBar::putInto(&widget);
        widget.resize(300, 200);
        widget.show();
        formats.setBatching(batching);
    }

    PointTreeWidgetItem *root(const QString &target, const char *title = "")
    {
        m_roots.emplace_back(ModelTesting::node({}, { { s("target"), target }, { s("title"), s(title) } }));
        return m_roots.back().get();
    }
    PointTreeWidgetItem *root(const char *target, const char *title = "") { return root(s(target), title); }
    void addMany(const QString &name, int count)
    {
        for (int i = 0; i < count; ++i)
            formats.addFormatRoot(root(name.arg(i)));
    }

    /// What the widget shows, "name: label" for each tab; the name twice where page and bar do not agree.
    [[nodiscard]] QString shown() const
    {
        QStringList lines;
        for (int i = 0; i < widget.count(); ++i) {
            const QString page = widget.widget(i) ? widget.widget(i)->objectName() : QString();
            const QString tip = widget.tabToolTip(i);
            lines.append((page == tip ? page : page + s("/") + tip) + s(": ") + widget.tabText(i));
        }
        return lines.join(s(", "));
    }

    QTabWidget widget;
    FormatTabs formats;

private:
    std::vector<std::unique_ptr<PointTreeWidgetItem>> m_roots;
};

} // namespace

/// Tabs that come one by one or, while a product is being read, many at a time.
class TestFormatTabs : public QObject
{
    Q_OBJECT

private slots:
    void sameTabs();
    void comesInWhenAskedFor();
    void thousandsComeInPortions_data();
    void thousandsComeInPortions();
    void heldOverInADrag_data();
    void heldOverInADrag();
};

void TestFormatTabs::sameTabs()
{
    for (const bool batching : { false, true }) {
        Tabs tabs(batching);
        QVERIFY(QTest::qWaitForWindowExposed(&tabs.widget));
        for (const char *target : { "a", "b", "a" })
            tabs.formats.addFormatRoot(tabs.root(target));
        tabs.formats.addLayout(tabs.root("c", "Plan"));
        tabs.formats.addFormatRoot(tabs.root(""));
        // It only labels the tab that there is.
        tabs.formats.addLayout(tabs.root("b", "Board"));
        tabs.formats.sync({ tabs.root("d", "Desk"), tabs.root("c", "Plan") });
        tabs.addMany(s("n%1"), 50);
        tabs.formats.setBatching(false);
        const QString shown = tabs.shown();
        QVERIFY2(shown.startsWith(s("a: a, b: Board, c: Plan, d: Desk, n0")), qPrintable(shown));
        QVERIFY2(shown.endsWith(s(", n49: n49")), qPrintable(shown));
        QCOMPARE(tabs.widget.count(), 54);
        QCOMPARE(tabs.formats.currentName(), s("a"));
        QVERIFY(tabs.widget.tabBar()->isVisible());
        // Laid out, each beside the one before it.
        for (int i = 1; i < tabs.widget.count(); ++i)
            QVERIFY(tabs.widget.tabBar()->tabRect(i).left() > tabs.widget.tabBar()->tabRect(i - 1).left());
        QVERIFY(tabs.widget.currentWidget()->geometry().top() >= 0 && tabs.widget.currentWidget()->isVisible());
    }
}

void TestFormatTabs::comesInWhenAskedFor()
{
    Tabs tabs(true);
    PointTreeWidgetItem *a = tabs.root("a");
    PointTreeWidgetItem *b = tabs.root("b", "Board");
    PointTreeWidgetItem *c = tabs.root("c");
    QStringList gone;
    connect(&tabs.formats, &FormatTabs::aboutToRemove, this, [&](QWidget *page) { gone.append(page->objectName()); });
    tabs.formats.sync({ a, b, c });
    // A renamed root keeps its tab, unless the name is taken: then its own goes.
    b->setProperty(s("target"), s("x"));
    c->setProperty(s("target"), s("a"));
    tabs.formats.sync({ a, b, c }, { b, c });
    QCOMPARE(tabs.shown(), s("a: a, x: Board"));
    QCOMPARE(gone, QStringList { s("c") });
    PointTreeWidgetItem *layout = tabs.root("d", "Desk");
    tabs.formats.addLayout(layout);
    tabs.formats.addFormatRoot(tabs.root("e"));
    tabs.formats.show(layout);
    QCOMPARE(tabs.formats.currentName(), s("d"));
    // An emptied label gives way to the name; the second root of a name takes over from the first.
    b->setProperty(s("title"), QString());
    c->setProperty(s("title"), s("Second"));
    tabs.formats.sync({ b, c }, { b, c });
    tabs.formats.setBatching(false);
    QCOMPARE(tabs.shown(), s("a: Second, x: x, d: Desk, e: e"));
    QCOMPARE(tabs.formats.currentName(), s("d"));
}

void TestFormatTabs::thousandsComeInPortions_data()
{
    QTest::addColumn<bool>("ended");
    QTest::addColumn<bool>("askedFor");
    QTest::newRow("in a batch") << false << false;
    QTest::newRow("also after its end") << true << false;
    QTest::newRow("but for whoever asks") << true << true;
}

void TestFormatTabs::thousandsComeInPortions()
{
    QFETCH(bool, ended);
    QFETCH(bool, askedFor);
    constexpr int all = 1000;
    Tabs tabs(true);
    tabs.addMany(s("%1"), all - 1);
    if (ended)
        tabs.formats.setBatching(false);
    QTRY_VERIFY(tabs.widget.count() > 0);
    QVERIFY(tabs.widget.count() < all - 1);
    // What comes now stays behind them.
    tabs.formats.addFormatRoot(tabs.root(QString::number(all - 1)));
    if (askedFor) {
        tabs.formats.flush();
        QCOMPARE(tabs.widget.count(), all);
    }
    QTRY_COMPARE(tabs.widget.count(), all);
    QCOMPARE(tabs.widget.widget(all - 1)->objectName(), QString::number(all - 1));
}

void TestFormatTabs::heldOverInADrag_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("leaves");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("a point") << s("ExtPoint") << false << true;
    QTest::newRow("a sub point") << s("SubExtPoint") << false << true;
    QTest::newRow("one that passes by") << s("ExtPoint") << true << false;
    QTest::newRow("an entry, which goes nowhere else") << s("menu") << false << false;
}

void TestFormatTabs::heldOverInADrag()
{
    QFETCH(QString, kind);
    QFETCH(bool, leaves);
    QFETCH(bool, isShown);
    Tabs tabs(false);
    tabs.addMany(s("number %1"), 20);
    QVERIFY(QTest::qWaitForWindowExposed(&tabs.widget));
    // The bar is scrolled.
    tabs.widget.setCurrentIndex(19);
    QTabBar *bar = tabs.widget.tabBar();
    QTRY_VERIFY(bar->tabRect(18).left() >= 0 && bar->tabRect(0).right() < 0);
    const std::unique_ptr<PointTreeWidgetItem> dragged(ModelTesting::node(kind));
    TreeItemMimeData data;
    data.setItem(TreeItemMimeData::itemFormat(), dragged.get());
    const QPoint place = bar->tabRect(18).center();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(bar, &enter);
    QCOMPARE(enter.isAccepted(), kind != s("menu"));
    if (enter.isAccepted()) {
        QDragMoveEvent move(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(bar, &move);
        QVERIFY2(!move.isAccepted(), "nothing is dropped on a tab");
    }
    QTest::qWait(FormatTabBar::hoverDelay / 2);
    QCOMPARE(tabs.widget.currentIndex(), 19);
    if (leaves) {
        QDragLeaveEvent leave;
        QApplication::sendEvent(bar, &leave);
    }
    QTest::qWait(FormatTabBar::hoverDelay);
    QCOMPARE(tabs.widget.currentIndex(), isShown ? 18 : 19);
}

QTEST_MAIN(TestFormatTabs)
#include "tst_formattabs.moc"
