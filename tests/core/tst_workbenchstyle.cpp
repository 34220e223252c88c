#include "core/workbenchstyle.h"

#include <QGroupBox>
#include <QHeaderView>
#include <QImage>
#include <QScreen>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTableWidget>
#include <QtTest>

#include <memory>

using Core::WorkbenchStyle;

namespace {

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

/// The first and the last line of @p image, along its middle column, that is not plain ground.
QPair<int, int> frameLines(const QImage &image)
{
    const int x = image.width() / 2;
    const auto isLine = [&](int y) {
        const int below = y + 1 < image.height() ? y + 1 : y - 1;
        return qAbs(qGray(image.pixel(x, y)) - qGray(image.pixel(x, below))) > 3;
    };
    int first = 0;
    while (first < image.height() && !isLine(first))
        ++first;
    int last = image.height() - 1;
    while (last > first && !isLine(last))
        --last;
    return { first, last };
}

/// What its contents ask for, which only a header itself is told.
QSize sizeOf(const QHeaderView &header)
{
    struct Opened : QHeaderView
    {
        using QHeaderView::sectionSizeFromContents;
    };
    return (header.*&Opened::sectionSizeFromContents)(0);
}

} // namespace

class TestWorkbenchStyle : public QObject
{
    Q_OBJECT

private slots:
    void groupBoxes_data();
    void groupBoxes();
    void frames_data();
    void frames();
    void headers_data();
    void headers();
    void icons_data();
    void icons();
};

void TestWorkbenchStyle::groupBoxes_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("checkable");
    QTest::newRow("no title") << QString() << false;
    // Left of the middle, where the frame is looked for.
    QTest::newRow("title") << s("T") << false;
    QTest::newRow("checkable") << QString() << true;
}

void TestWorkbenchStyle::groupBoxes()
{
    QFETCH(QString, title);
    QFETCH(bool, checkable);
    const std::unique_ptr<QStyle> plain(QStyleFactory::create(s("Fusion")));
    WorkbenchStyle ours(QStyleFactory::create(s("Fusion")));
    QVector<QPair<int, int>> lines;
    for (QStyle *style : { plain.get(), static_cast<QStyle *>(&ours) }) {
        QGroupBox box(title);
        box.setCheckable(checkable);
        box.setStyle(style);
        box.resize(200, 120);
        QPalette palette;
        palette.setColor(QPalette::Window, Qt::white);
        box.setPalette(palette);
        QImage image(box.size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        box.render(&image, {}, {}, QWidget::DrawChildren);
        lines.append(frameLines(image));
    }
    QVERIFY2(qAbs(lines[0].first - lines[1].first) <= 1 && qAbs(lines[0].second - lines[1].second) <= 1,
        qPrintable(
            s("%1-%2, %3-%4").arg(lines[0].first).arg(lines[0].second).arg(lines[1].first).arg(lines[1].second)));
    QVERIFY(lines[1].second - lines[1].first > 80);
}

void TestWorkbenchStyle::frames_data()
{
    QTest::addColumn<int>("shape");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QColor>("window");
    QTest::addColumn<bool>("covered");
    const int frame = -1;
    const QColor light(239, 239, 239), dark(53, 53, 53), glass(239, 239, 239, 100);
    QTest::newRow("frame") << frame << QSize(200, 120) << light << false;
    QTest::newRow("dark frame") << frame << QSize(200, 120) << dark << false;
    QTest::newRow("frame that shines through") << frame << QSize(200, 120) << glass << false;
    QTest::newRow("frame with children") << frame << QSize(200, 120) << light << true;
    QTest::newRow("frame as small as the picture") << frame << QSize(16, 40) << light << false;
    QTest::newRow("tiny frame") << frame << QSize(5, 3) << light << false;
    QTest::newRow("tabs above") << int(QTabWidget::North) << QSize(300, 200) << light << false;
    QTest::newRow("tabs below") << int(QTabWidget::South) << QSize(300, 200) << light << false;
    QTest::newRow("tabs beside") << int(QTabWidget::West) << QSize(300, 200) << light << false;
    QTest::newRow("tabs with children") << int(QTabWidget::North) << QSize(300, 200) << light << true;
    QTest::newRow("dark tabs with children") << int(QTabWidget::South) << QSize(300, 200) << dark << true;
}

void TestWorkbenchStyle::frames()
{
    QFETCH(int, shape);
    QFETCH(QSize, size);
    QFETCH(QColor, window);
    QFETCH(bool, covered);
    const std::unique_ptr<QStyle> plain(QStyleFactory::create(s("Fusion")));
    WorkbenchStyle ours(QStyleFactory::create(s("Fusion")));
    QVector<QImage> pictures;
    for (QStyle *style : { plain.get(), static_cast<QStyle *>(&ours) }) {
        QWidget top;
        top.setPalette(QPalette(window));
        top.resize(320, 240);
        QWidget *room = nullptr; // what a child may cover
        if (shape < 0) {
            auto *frame = new QFrame(&top);
            frame->setFrameStyle(QFrame::StyledPanel);
            frame->setStyle(style);
            frame->setGeometry({ { 7, 9 }, size });
            room = frame;
        } else {
            auto *tabs = new QTabWidget(&top);
            tabs->setTabPosition(QTabWidget::TabPosition(shape));
            room = new QWidget;
            tabs->addTab(room, s("T"));
            tabs->setStyle(style);
            tabs->setGeometry({ { 7, 9 }, size });
        }
        for (int child = 0; covered && child < 3; ++child) {
            auto *cover = new QWidget(room);
            cover->setAutoFillBackground(true);
            cover->setGeometry(20 + 40 * child, 15 + 20 * child, 30, 50);
        }
        top.show();
        QVERIFY(QTest::qWaitForWindowExposed(&top));
        // What stands on the screen, for there the children cut their parents.
        pictures.append(top.screen()->grabWindow(top.winId()).toImage());
    }
    QVERIFY(!pictures[1].isNull());
    QCOMPARE(pictures[1], pictures[0]);
}

void TestWorkbenchStyle::headers_data()
{
    QTest::addColumn<bool>("highlights");
    QTest::addColumn<bool>("ownFont");
    QTest::addColumn<bool>("roomForBold");
    QTest::newRow("never bold") << false << false << false;
    QTest::newRow("bold where selected") << true << false << true;
    QTest::newRow("a section with a font of its own") << false << true << true;
}

void TestWorkbenchStyle::headers()
{
    QFETCH(bool, highlights);
    QFETCH(bool, ownFont);
    QFETCH(bool, roomForBold);
    const QString label = s("A label wide enough to tell");
    QTableWidget table(0, 1);
    table.setHorizontalHeaderLabels({ label });
    QHeaderView &header = *table.horizontalHeader();
    header.setHighlightSections(highlights);
    if (ownFont)
        table.horizontalHeaderItem(0)->setFont(header.font());
    const std::unique_ptr<QStyle> plain(QStyleFactory::create(s("Fusion")));
    WorkbenchStyle ours(QStyleFactory::create(s("Fusion")));
    header.setStyle(plain.get());
    const QSize before = sizeOf(header);
    header.setStyle(&ours);
    const QSize after = sizeOf(header);
    QCOMPARE(after.height(), before.height());
    QFont bold = header.font();
    bold.setBold(true);
    const int difference = QFontMetrics(bold).horizontalAdvance(label) - header.fontMetrics().horizontalAdvance(label);
    QVERIFY(difference > 0);
    QCOMPARE(before.width() - after.width(), roomForBold ? 0 : difference);
    header.setStyle(nullptr);
}

void TestWorkbenchStyle::icons_data()
{
    QTest::addColumn<int>("which");
    QTest::newRow("end of a menu bar") << int(QStyle::SP_ToolBarHorizontalExtensionButton);
    QTest::newRow("clear button") << int(QStyle::SP_LineEditClearButton);
    QTest::newRow("any other") << int(QStyle::SP_DialogSaveButton);
}

void TestWorkbenchStyle::icons()
{
    QFETCH(int, which);
    const auto icon = QStyle::StandardPixmap(which);
    auto ours = std::make_unique<WorkbenchStyle>(QStyleFactory::create(s("Fusion")));
    const QIcon expected = ours->baseStyle()->standardIcon(icon);
    const QIcon found = ours->standardIcon(icon);
    const QIcon late = ours->standardIcon(icon);
    QVERIFY(!expected.isNull());
    QCOMPARE(found.availableSizes(), expected.availableSizes());
    QCOMPARE(found.actualSize({ 16, 16 }), expected.actualSize({ 16, 16 }));
    QCOMPARE(found.pixmap(16).toImage(), expected.pixmap(16).toImage());
    // Whoever still has the icon of a style that is gone gets nothing, but no fault.
    ours.reset();
    (void)late.pixmap(16);
}

QTEST_MAIN(TestWorkbenchStyle)
#include "tst_workbenchstyle.moc"
