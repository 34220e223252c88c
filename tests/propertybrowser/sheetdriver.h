#pragma once

#include "propertybrowser/grouppropertybrowser.h"
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

/// Either kind of sheet in a window of its own, worked with mouse and keys the way a person does.
class SheetDriver final
{
public:
    enum Kind { Group, Tree };

    explicit SheetDriver(Kind kind)
    {
        auto *layout = new QVBoxLayout(&m_window);
        m_before = new QLineEdit(&m_window);
        layout->addWidget(m_before);
        if (kind == Group) {
            m_group = new GroupPropertyBrowser(&m_window);
            layout->addWidget(m_group);
            m_spy = std::make_unique<QSignalSpy>(m_group, &GroupPropertyBrowser::propertyChanged);
        } else {
            m_tree = new TreePropertyBrowser(&m_window);
            layout->addWidget(m_tree, 1);
            m_spy = std::make_unique<QSignalSpy>(m_tree, &TreePropertyBrowser::propertyChanged);
        }
        m_after = new QLineEdit(&m_window);
        layout->addWidget(m_after);
        m_window.resize(320, 400);
        m_window.show();
        m_window.activateWindow();
        // The caller asserts on ready().
        m_ready = QTest::qWaitForWindowActive(&m_window);
        m_before->setFocus();
    }

    [[nodiscard]] bool ready() const { return m_ready; }
    [[nodiscard]] QSignalSpy &spy() { return *m_spy; }
    [[nodiscard]] QLineEdit *before() const { return m_before; }
    [[nodiscard]] QLineEdit *after() const { return m_after; }
    [[nodiscard]] QWidget *sheet() const { return m_group != nullptr ? static_cast<QWidget *>(m_group) : m_tree; }
    [[nodiscard]] QTreeWidget *treeWidget() const { return m_tree->findChild<QTreeWidget *>(); }
    [[nodiscard]] bool isTree() const { return m_tree != nullptr; }

    void show(const QList<PropertyItem> &items)
    {
        m_group != nullptr ? m_group->showProperties(items) : m_tree->showProperties(items);
        QCoreApplication::processEvents();
    }

    [[nodiscard]] QWidget *editor(const char *name) const
    {
        const QString key = QString::fromLatin1(name);
        return m_group != nullptr ? m_group->editorFor(key) : m_tree->editorFor(key);
    }

    [[nodiscard]] QVariant value(const char *name) const
    {
        const QList<PropertyItem> items = m_group != nullptr ? m_group->properties() : m_tree->properties();
        for (const PropertyItem &item : items) {
            if (item.name() == QLatin1String(name)) {
                return item.value();
            }
        }
        return {};
    }

    [[nodiscard]] bool commit() { return m_group != nullptr ? m_group->commitEditor() : m_tree->commitEditor(); }

    [[nodiscard]] QTreeWidgetItem *row(const char *name) const
    {
        return treeWidget()->findItems(QString::fromLatin1(name), Qt::MatchExactly, 0).value(0);
    }

    /// A click on the row's editor, or on the value that stands in its place, gives it the focus.
    void click(const char *name)
    {
        // The offscreen platform activates popups, and nothing when they are gone.
        if (QGuiApplication::platformName() == QLatin1String("offscreen") && !m_window.isActiveWindow()) {
            m_window.activateWindow();
            m_ready = QTest::qWaitForWindowActive(&m_window);
        }
        QWidget *open = editor(name);
        if (open != nullptr) {
            QWidget *inner = open->focusProxy();
            QTest::mouseClick(inner, Qt::LeftButton, Qt::NoModifier, QPoint(8, inner->height() / 2));
        } else {
            const QRect cell = treeWidget()->visualItemRect(row(name));
            const int x = treeWidget()->columnViewportPosition(1) + 8;
            QTest::mouseClick(treeWidget()->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(x, cell.center().y()));
        }
    }

    /// Replaces what stands in the row that has the focus.
    static void type(const QString &text)
    {
        QWidget *target = QApplication::focusWidget();
        QTest::keyClick(target, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(target, Qt::Key_Delete);
        QTest::keyClicks(target, text);
    }

    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }

    /// The text that the row shows to a person, in whatever stands there.
    [[nodiscard]] QString shown(const char *name) const
    {
        const QWidget *open = editor(name);
        if (open == nullptr) {
            return row(name)->text(1);
        }
        if (const auto *check = open->findChild<QCheckBox *>()) {
            return check->isChecked() ? QStringLiteral("[x]") : QStringLiteral("[ ]");
        }
        if (const auto *box = open->findChild<QComboBox *>()) {
            return box->count() > 0 ? box->currentText() : box->toolTip();
        }
        if (const auto *text = open->findChild<QPlainTextEdit *>()) {
            return text->toPlainText();
        }
        return open->findChild<QLineEdit *>()->text();
    }

    /// Whether the row tells that its value would be refused.
    [[nodiscard]] bool isMarked(const char *name) const
    {
        const QWidget *open = editor(name);
        if (open == nullptr) {
            return !row(name)->data(1, Qt::AccessibleDescriptionRole).toString().isEmpty();
        }
        const auto *mark = open->findChild<QWidget *>(QStringLiteral("invalidMark"));
        return mark->isVisible() && !open->focusProxy()->accessibleDescription().isEmpty();
    }

private:
    QWidget m_window;
    QLineEdit *m_before = nullptr;
    QLineEdit *m_after = nullptr;
    GroupPropertyBrowser *m_group = nullptr;
    TreePropertyBrowser *m_tree = nullptr;
    std::unique_ptr<QSignalSpy> m_spy;
    bool m_ready = false;
};
