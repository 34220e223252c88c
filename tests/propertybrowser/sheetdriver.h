#pragma once

#include "propertybrowser/grouppropertybrowser.h"
#include "propertybrowser/propertydialogs.h"
#include "propertybrowser/propertykeys.h"
#include "propertybrowser/treepropertybrowser.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QtTest>

#include <memory>

inline QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// A value of a record; literals are texts.
struct Value : QVariant
{
    template <typename T>
    Value(const T &value) : QVariant(value)
    { }
    Value(const char *text) : QVariant(s(text)) { }
};

/// The record "it" with what restricts it.
inline PropertyItem item(PropertyType type, const Value &value, const QVector<QPair<QString, Value>> &data = {})
{
    PropertyItem result(type, s("it"), s("it"), value);
    for (const auto &each : data)
        result.setData(each.first, each.second);
    return result;
}

inline PropertyItem text(const char *name, const QString &value, PropertyType type = PropertyType::String)
{
    return { type, s(name), s(name), value };
}

/// Either kind of sheet in a window of its own, worked with mouse and keys the way a person does.
class SheetDriver final
{
public:
    enum Kind { Group, Tree };

    /// Every test is about both kinds.
    static void bothKinds()
    {
        QTest::addColumn<Kind>("kind");
        QTest::newRow("group") << Group;
        QTest::newRow("tree") << Tree;
    }

    explicit SheetDriver(Kind kind)
    {
        auto *layout = new QVBoxLayout(&m_window);
        layout->addWidget(before);
        if (kind == Group) {
            m_group = new GroupPropertyBrowser;
            layout->addWidget(m_group);
            m_spy = std::make_unique<QSignalSpy>(m_group, &GroupPropertyBrowser::propertyChanged);
        } else {
            m_tree = new TreePropertyBrowser;
            layout->addWidget(m_tree, 1);
            m_spy = std::make_unique<QSignalSpy>(m_tree, &TreePropertyBrowser::propertyChanged);
        }
        after = new QLineEdit;
        layout->addWidget(after);
        m_window.resize(320, 400);
        m_window.show();
        activate();
        before->setFocus();
    }

    [[nodiscard]] QSignalSpy &spy() { return *m_spy; }
    [[nodiscard]] QWidget *sheet() const { return m_group ? static_cast<QWidget *>(m_group) : m_tree; }
    [[nodiscard]] QTreeWidget *treeWidget() const { return m_tree->findChild<QTreeWidget *>(); }
    [[nodiscard]] bool isTree() const { return m_tree; }

    void activate()
    {
        m_window.activateWindow();
        if (!QTest::qWaitForWindowActive(&m_window))
            qFatal("not active");
    }
    void show(const QList<PropertyItem> &items)
    {
        m_group ? m_group->showProperties(items) : m_tree->showProperties(items);
        QCoreApplication::processEvents();
    }
    template <typename Slot>
    void onChange(const Slot &slot)
    {
        if (m_group)
            QObject::connect(m_group, &GroupPropertyBrowser::propertyChanged, &m_window, slot);
        else
            QObject::connect(m_tree, &TreePropertyBrowser::propertyChanged, &m_window, slot);
    }

    [[nodiscard]] QWidget *editor(const char *name) const
    {
        return m_group ? m_group->editorFor(s(name)) : m_tree->editorFor(s(name));
    }
    /// Enters a row without dropping anything down.
    void enter(const char *name) const
    {
        if (m_group)
            m_group->editorFor(s(name))->setFocus();
        else if (!m_tree->openEditor(s(name)))
            qFatal("no editor");
    }
    [[nodiscard]] QVariant value(const char *name) const
    {
        for (const PropertyItem &item : m_group ? m_group->properties() : m_tree->properties()) {
            if (item.name() == s(name))
                return item.value();
        }
        return {};
    }
    [[nodiscard]] bool commit() { return m_group ? m_group->commitEditor() : m_tree->commitEditor(); }
    [[nodiscard]] QTreeWidgetItem *row(const char *name) const
    {
        return treeWidget()->findItems(s(name), Qt::MatchExactly, 0).value(0);
    }

    /// A click on the row's editor, or on the value that stands in its place, gives it the focus.
    void click(const char *name)
    {
        // The offscreen platform activates popups, and nothing when they are gone.
        if (QGuiApplication::platformName() == s("offscreen") && !m_window.isActiveWindow())
            activate();
        if (const QWidget *open = editor(name)) {
            QWidget *inner = open->focusProxy();
            QTest::mouseClick(inner, Qt::LeftButton, {}, QPoint(8, inner->height() / 2));
        } else {
            const QRect cell = treeWidget()->visualItemRect(row(name));
            const int x = treeWidget()->columnViewportPosition(1) + 8;
            QTest::mouseClick(treeWidget()->viewport(), Qt::LeftButton, {}, QPoint(x, cell.center().y()));
        }
    }
    /// Replaces what stands in the row that has the focus.
    static void type(const QString &text)
    {
        press(Qt::Key_A, Qt::ControlModifier);
        press(Qt::Key_Delete);
        QTest::keyClicks(QApplication::focusWidget(), text);
    }
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }

    /// The text that the row shows to a person, in whatever stands there.
    [[nodiscard]] QString shown(const char *name) const
    {
        const QWidget *open = editor(name);
        if (!open)
            return row(name)->text(1);
        if (const auto *check = open->findChild<QCheckBox *>())
            return check->isChecked() ? s("[x]") : s("[ ]");
        if (const auto *box = open->findChild<QComboBox *>())
            return box->count() > 0 ? box->currentText() : box->toolTip();
        if (const auto *text = open->findChild<QPlainTextEdit *>())
            return text->toPlainText();
        return open->findChild<QLineEdit *>()->text();
    }
    /// Whether the row tells that its value would be refused.
    [[nodiscard]] bool isMarked(const char *name) const
    {
        const QWidget *open = editor(name);
        if (!open)
            return !row(name)->data(1, Qt::AccessibleDescriptionRole).toString().isEmpty();
        const auto *mark = open->findChild<QWidget *>(s("invalidMark"));
        return mark->isVisible() && !open->focusProxy()->accessibleDescription().isEmpty();
    }

private:
    QWidget m_window;
    GroupPropertyBrowser *m_group = nullptr;
    TreePropertyBrowser *m_tree = nullptr;
    std::unique_ptr<QSignalSpy> m_spy;

public:
    QLineEdit *const before = new QLineEdit(&m_window);
    QLineEdit *after = nullptr;
};

Q_DECLARE_METATYPE(PropertyItem)
Q_DECLARE_METATYPE(SheetDriver::Kind)
