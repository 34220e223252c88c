#include "accessiblewalk.h"
#include "clippedtexts.h"
#include "core/caredfile.h"
#include "core/finddock.h"
#include "core/problemsdock.h"
#include "core/readablepalette.h"
#include "core/workbenchstyle.h"
#include "shownwords.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDockWidget>
#include <QKeySequence>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QScopeGuard>
#include <QStyleFactory>
#include <QStyleOptionButton>
#include <QTest>
#include <QVBoxLayout>

#include <algorithm>

/// What can be read, seen and heard of the window.
class tst_Appearance : public CaredFile
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void contrast_data();
    void contrast();
    void marksAreSeen_data();
    void marksAreSeen();
    void textsAreWhole();
    void nothingIsEnglish();
    void lettersAreUnique_data();
    void lettersAreUnique();
};

void tst_Appearance::contrast_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("dark") << Core::darkPalette();
    QTest::newRow("the toolkit's") << QApplication::style()->standardPalette();
    QPalette pale(Qt::lightGray);
    pale.setColor(QPalette::Text, Qt::gray);
    pale.setColor(QPalette::Highlight, Qt::yellow);
    pale.setColor(QPalette::HighlightedText, Qt::white);
    QTest::newRow("a pale one") << pale;
}

/// What must be read stands out 4.5:1 from every ground that it stands on.
void tst_Appearance::contrast()
{
    QFETCH(QPalette, palette);
    const QPalette readable = Core::readable(palette);
    using Role = QPalette::ColorRole;
    const QList<QPair<Role, QList<Role>>> pairs {
        { QPalette::Text, { QPalette::Base, QPalette::AlternateBase } },
        { QPalette::PlaceholderText, { QPalette::Base } },
        { QPalette::WindowText, { QPalette::Window } },
        { QPalette::ButtonText, { QPalette::Button } },
        { QPalette::ToolTipText, { QPalette::ToolTipBase } },
        { QPalette::HighlightedText, { QPalette::Highlight } },
        { QPalette::Link, { QPalette::Base, QPalette::Window } },
    };
    for (const auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled }) {
        for (const auto &pair : pairs) {
            for (const Role ground : pair.second) {
                const double found = Core::contrast(readable.color(group, pair.first), readable.color(group, ground));
                QVERIFY2(found >= 4.5, qPrintable(s("%1: %2 on %3").arg(group).arg(pair.first).arg(ground)));
            }
        }
    }
    // A definition of its own for the oracle: the figures of two well-known pairs.
    QVERIFY(qAbs(Core::contrast(Qt::black, Qt::white) - 21) < 0.01);
    QVERIFY(qAbs(Core::contrast(QColor(0x76, 0x76, 0x76), Qt::white) - 4.54) < 0.01);
}

/// As painted: a field's frame with the focus, a box that is not ticked, and a selection where the keys don't go.
void tst_Appearance::marksAreSeen_data()
{
    contrast_data();
}

void tst_Appearance::marksAreSeen()
{
    QFETCH(QPalette, palette);
    QWidget window;
    window.setStyle(new Core::WorkbenchStyle(QStyleFactory::create(s("Fusion"))));
    window.style()->setParent(&window);
    window.setPalette(Core::readable(palette));
    auto *layout = new QVBoxLayout(&window);
    auto *line = new QLineEdit;
    auto *box = new QCheckBox;
    auto *list = new QListWidget;
    list->addItem(QString());
    list->setCurrentRow(0);
    for (QWidget *each : QList<QWidget *> { line, box, list }) {
        each->setStyle(window.style());
        layout->addWidget(each);
    }
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const auto mostContrast = [](QWidget *widget, const QRect &part, const QColor &ground) {
        const QImage image = widget->grab(part).toImage();
        double most = 1;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                most = std::max(most, Core::contrast(image.pixelColor(x, y), ground));
        }
        return most;
    };
    line->setFocus();
    const QColor base = window.palette().color(QPalette::Base);
    QVERIFY(mostContrast(line, QRect(line->width() / 4, 0, line->width() / 2, 2), base) >= 3);
    QStyleOptionButton option;
    option.initFrom(box);
    QVERIFY(mostContrast(box, window.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box), base) >= 3);
    const QPoint middle = list->visualItemRect(list->item(0)).center();
    const QColor without = list->viewport()->grab().toImage().pixelColor(middle);
    list->setFocus();
    QVERIFY(mostContrast(list, QRect(list->width() / 4, 0, list->width() / 2, 1), base) >= 3);
    const QColor with = list->viewport()->grab().toImage().pixelColor(middle);
    QVERIFY(without != with && without != base);
}

/// The window with every dock, and each dialog that stays open: nothing nameless either.
void tst_Appearance::textsAreWhole()
{
    new Core::FindDock(*m_window, m_manager->busyMonitor());
    m_window->setPluginProblems(2);
    m_window->resize(1024, 700);
    QVERIFY(open());
    m_window->show();
    const auto docks = m_window->findChildren<QDockWidget *>();
    for (QDockWidget *dock : docks)
        dock->show();
    for (const char *action : { "newAction", "keysAction", "aboutPluginsAction", "aboutAction" })
        trigger(action);
    int windows = 0;
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget *window : all) {
        if (!window->isVisible())
            continue;
        ++windows;
        QVERIFY2(AccessibleWalk::complaints(window).isEmpty(), qPrintable(AccessibleWalk::complaints(window)));
        QVERIFY2(ClippedTexts::in(window).isEmpty(), qPrintable(ClippedTexts::in(window).join(s("\n"))));
    }
    QCOMPARE(windows, 5);
    QCOMPARE(docks.size(), 1);
}

/// In a language of brackets: every dock and dialog but for the names in their files.
void tst_Appearance::nothingIsEnglish()
{
    ShownWords::Brackets brackets;
    QVERIFY(QCoreApplication::installTranslator(&brackets));
    const auto removed = qScopeGuard([&] { QCoreApplication::removeTranslator(&brackets); });
    tearDown();
    setUp();
    new Core::FindDock(*m_window, m_manager->busyMonitor());
    new Core::ProblemsDock(*m_window);
    m_window->show();
    for (const char *action : { "newAction", "keysAction", "aboutPluginsAction", "aboutAction" })
        trigger(action);
    for (const QWidget *window : QApplication::topLevelWidgets())
        QCOMPARE(ShownWords::untranslated(window, QString()), QStringList());
}

void tst_Appearance::lettersAreUnique_data()
{
    QTest::addColumn<QString>("language");
    for (const char *language : { "en", "de", "zh_CN" })
        QTest::newRow(language) << s(language);
}

/// Of all that can be seen in the window at once, the two letters of the editor's pages included, and in each menu.
void tst_Appearance::lettersAreUnique()
{
    QFETCH(const QString, language);
    QTranslator translator;
    const bool isTranslated = language != s("en");
    QVERIFY(
        !isTranslated || translator.load(s(EXTPOINT_BINARY_DIR "/share/extpoint/translations/extpoint_") + language));
    QVERIFY(!isTranslated || QCoreApplication::installTranslator(&translator));
    tearDown();
    setUp();
    new Core::FindDock(*m_window, m_manager->busyMonitor());
    QVERIFY(open());
    const auto areUnique = [](const QStringList &texts) {
        QStringList letters;
        for (const QString &text : texts) {
            const QString letter = QKeySequence::mnemonic(text).toString();
            if (!letter.isEmpty() && letters.contains(letter))
                qWarning("%s: %s", qPrintable(letter), qPrintable(texts.join(s(", "))));
            if (!letter.isEmpty() && letters.contains(letter))
                return false;
            letters.append(letter);
        }
        return letters.size() - letters.count(QString()) > 1;
    };
    const auto textsOf = [](const QList<QAction *> &actions) {
        QStringList texts;
        for (const QAction *action : actions)
            texts.append(action->text());
        return texts;
    };
    QStringList texts { QCoreApplication::translate("ExtPointWidget", "&Add"),
        QCoreApplication::translate("ExtPointWidget", "D&elete") };
    texts += textsOf(m_window->menuBar()->actions());
    for (const QAction *menu : m_window->menuBar()->actions()) {
        if (menu->menu()->actions().size() > 1)
            QVERIFY(areUnique(textsOf(menu->menu()->actions())));
    }
    for (const QAbstractButton *button : m_window->findChildren<QAbstractButton *>())
        texts.append(button->window() == m_window.get() ? button->text() : QString());
    QVERIFY(areUnique(texts));
}

QTEST_MAIN(tst_Appearance)
#include "tst_appearance.moc"
