#pragma once

#include "sheetdriver.h"

#include <QCalendarWidget>

#include <functional>

/// What a person does to the row "it", and records to do it to.
using Edit = std::function<void(SheetDriver &)>;
Q_DECLARE_METATYPE(Edit)
Q_DECLARE_METATYPE(PropertyItem)
Q_DECLARE_METATYPE(SheetDriver::Kind)

inline QString s(const char *text)
{
    return QString::fromUtf8(text);
}

inline PropertyItem item(PropertyType type, const QVariant &value, const QMap<QString, QVariant> &data = {})
{
    PropertyItem result(type, s("it"), s("it"), value);
    for (auto each = data.begin(); each != data.end(); ++each) {
        result.setData(each.key(), each.value());
    }
    return result;
}

inline PropertyItem withOptions(PropertyType type, const QVariant &value, const QList<QStringList> &options)
{
    PropertyItem result = item(type, value);
    for (const QStringList &option : options) {
        result.addOption({ option.at(0), option.at(1), QString() });
    }
    return result;
}

inline const QList<QStringList> abc { { s("a"), s("Aah") }, { s("b"), s("Bee") }, { s("c"), s("Cee") } };

inline Edit typing(const char *text)
{
    return [text = s(text)](SheetDriver &driver) {
        driver.click("it");
        SheetDriver::type(text);
        SheetDriver::press(Qt::Key_Return);
    };
}

inline Edit stepping(Qt::Key key, int times, int cursor = 0)
{
    return [key, times, cursor](SheetDriver &driver) {
        driver.click("it");
        SheetDriver::press(Qt::Key_Home);
        for (int i = 0; i < cursor; ++i) {
            SheetDriver::press(Qt::Key_Right);
        }
        for (int i = 0; i < times; ++i) {
            SheetDriver::press(key);
        }
        SheetDriver::press(Qt::Key_Return);
    };
}

/// Opens the drop-down with the mouse and picks the entry at `index` with the keys.
inline Edit choosing(int index)
{
    return [index](SheetDriver &driver) {
        driver.click("it");
        QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
        auto *list = QApplication::activePopupWidget()->findChild<QAbstractItemView *>();
        QTest::keyClick(list, Qt::Key_Home);
        for (int i = 0; i < index; ++i) {
            QTest::keyClick(list, Qt::Key_Down);
        }
        // The list may be gone with the press.
        QTest::keyPress(list, Qt::Key_Return);
    };
}

/// Enters the row without dropping anything down, and presses the keys there.
inline Edit pressing(const QVector<Qt::Key> &keys)
{
    return [keys](SheetDriver &driver) {
        if (driver.isTree()) {
            driver.treeWidget()->setFocus();
            driver.treeWidget()->setCurrentItem(driver.row("it"));
            SheetDriver::press(Qt::Key_F2);
        } else {
            driver.editor("it")->setFocus();
        }
        for (const Qt::Key key : keys) {
            SheetDriver::press(key);
        }
    };
}

inline Edit leavingAfter(const Edit &edit)
{
    return [edit](SheetDriver &driver) {
        edit(driver);
        driver.before()->setFocus();
    };
}

inline Edit askingAfter(const Edit &edit)
{
    return [edit](SheetDriver &driver) {
        edit(driver);
        QCOMPARE(driver.spy().count(), 0);
        QVERIFY(driver.commit());
    };
}

/// Types the line's text again with one part of it changed.
inline Edit replacing(const char *part, const char *by)
{
    return [part = s(part), by = s(by)](SheetDriver &driver) {
        driver.click("it");
        QString text = driver.editor("it")->findChild<QLineEdit *>()->text();
        SheetDriver::type(text.replace(part, by));
        SheetDriver::press(Qt::Key_Return);
    };
}

inline Edit ticking(const QVector<int> &indexes, Qt::Key end = Qt::Key_Return)
{
    return [indexes, end](SheetDriver &driver) {
        driver.click("it");
        QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
        auto *list = QApplication::activePopupWidget()->findChild<QListWidget *>();
        for (const int index : indexes) {
            const QRect entry = list->visualItemRect(list->item(index));
            QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, entry.center());
        }
        QTest::keyPress(list, end);
        QTRY_VERIFY(QApplication::activePopupWidget() == nullptr);
    };
}

inline Edit clickingButton()
{
    return [](SheetDriver &driver) {
        driver.click("it");
        QTest::mouseClick(driver.editor("it")->findChild<QToolButton *>(), Qt::LeftButton);
    };
}

inline Edit pickingDay(int daysOn)
{
    return [daysOn](SheetDriver &driver) {
        clickingButton()(driver);
        QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
        auto *calendar = QApplication::activePopupWidget()->findChild<QCalendarWidget *>();
        auto *days = calendar->findChild<QAbstractItemView *>();
        for (int i = 0; i < daysOn; ++i) {
            QTest::keyClick(days, Qt::Key_Right);
        }
        QTest::keyPress(days, Qt::Key_Return);
    };
}

inline void addForBothSheets(
    const char *name, const PropertyItem &record, const QString &shown, const Edit &edit, const QVariant &expected)
{
    for (const auto kind : { SheetDriver::Group, SheetDriver::Tree }) {
        QTest::addRow("%s, %s", kind == SheetDriver::Group ? "group" : "tree", name)
            << kind << record << shown << edit << expected;
    }
}
