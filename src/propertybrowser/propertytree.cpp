#include "propertybrowser/propertytree.h"

#include "extensionfile/showntext.h"
#include "propertybrowser/editors/fileeditor.h"
#include "propertybrowser/editors/propertydisplay.h"
#include "propertybrowser/editortable.h"
#include "propertybrowser/propertydelegate.h"
#include "propertybrowser/propertykeys.h"
#include "propertybrowser/wholematch.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

namespace {

enum Column { NameColumn, ValueColumn, ColumnCount };

/// The name column takes what its names need, within these shares of the width.
constexpr double LeastNameShare = 0.3;
constexpr double MostNameShare = 0.5;

QIcon iconOf(const PropertyDisplay &display, const QWidget *view)
{
    if (!display.icon.isEmpty()) {
        return QIcon(display.icon);
    }
    if (!display.swatch.isValid()) {
        return {};
    }
    const int side = view->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, view);
    const qreal ratio = view->devicePixelRatioF();
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.fillRect(2, 2, side - 4, side - 4, display.swatch);
    painter.setPen(view->palette().color(QPalette::Mid));
    painter.drawRect(2, 2, side - 5, side - 5);
    return QIcon(pixmap);
}

QString firstLine(const QString &text)
{
    static const QRegularExpression lineBreak(QStringLiteral("[\\r\\n\\x{2028}\\x{2029}]"));
    const int end = text.indexOf(lineBreak);
    return end < 0 ? text : text.left(end) + QStringLiteral(" \u2026");
}

} // namespace

PropertyTree::PropertyTree(QWidget *parent) : QTreeWidget(parent)
{
    setItemDelegate(new PropertyDelegate(this));
    setColumnCount(ColumnCount);
    setHeaderLabels({ tr("Property"), tr("Value") });
    setAccessibleName(tr("Properties"));
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setIndentation(0);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    header()->setSectionsMovable(false);
    header()->setMinimumSectionSize(fontMetrics().averageCharWidth() * 6);
    new FileDrop(viewport(), [this](const QPoint &at) { return fileTakerAt(at); });
    connect(this, &QTreeWidget::itemClicked, this, &PropertyTree::onClicked);
    connect(header(), &QHeaderView::sectionResized, this, [this](int column) {
        // The last one follows the width of the tree.
        m_columnsByUser = m_columnsByUser || (column == NameColumn && !m_fitting);
    });
}

PropertyTree::~PropertyTree()
{
    if (m_open != nullptr) {
        m_open->retire();
    }
    for (PropertyEditor *editor : qAsConst(m_standing)) {
        editor->retire();
    }
}

void PropertyTree::showProperties(const QList<PropertyItem> &items)
{
    const int old = currentRow();
    const QString currentName = old >= 0 ? m_items.at(old).name() : QString();
    const int scrolled = verticalScrollBar()->value();
    const QWidget *focus = QApplication::focusWidget();
    const bool hadFocus = focus != nullptr && (focus == this || isAncestorOf(focus));
    endEditing(hadFocus);
    for (PropertyEditor *editor : qAsConst(m_standing)) {
        editor->retire();
    }
    if (hadFocus) {
        setFocus(Qt::OtherFocusReason);
    }
    m_standing.clear();
    clear();

    m_items = items;
    QList<QTreeWidgetItem *> rows;
    for (const PropertyItem &item : items) {
        auto *row = new QTreeWidgetItem;
        row->setText(NameColumn, item.displayText());
        row->setData(NameColumn, Qt::AccessibleTextRole, item.displayText());
        rows.append(row);
    }
    addTopLevelItems(rows);
    for (int row = 0; row < m_items.size(); ++row) {
        showRow(row);
        if (EditorTable::kindOf(m_items.at(row)).stays) {
            m_standing.insert(row, createEditor(row));
        }
    }
    fitColumns();
    const int current = old >= 0 ? rowOf(currentName) : -1;
    if (current >= 0) {
        setCurrentItem(topLevelItem(current), ValueColumn);
    }
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(scrolled);
}

int PropertyTree::rowOf(const QString &name) const
{
    for (int row = 0; row < m_items.size(); ++row) {
        if (m_items.at(row).name() == name) {
            return row;
        }
    }
    return -1;
}

PropertyEditor *PropertyTree::editorAt(int row) const
{
    return m_open != nullptr && row == m_openRow ? m_open : m_standing.value(row);
}

bool PropertyTree::openEditor(int row)
{
    if (row < 0 || row >= m_items.size()) {
        return false;
    }
    if (m_open != nullptr && m_openRow != row) {
        // The commit may replace the rows; the one that was asked for is found again by its name.
        const QString name = m_items.at(row).name();
        if (!m_open->commit()) {
            m_open->giveUp();
        }
        endEditing(true);
        if (row >= m_items.size() || m_items.at(row).name() != name) {
            row = rowOf(name);
        }
        if (row < 0) {
            return false;
        }
    }
    setCurrentItem(topLevelItem(row), ValueColumn);
    PropertyEditor *editor = editorAt(row);
    if (editor == nullptr) {
        editor = createEditor(row);
        m_open = editor;
        m_openRow = row;
        editor->takeBack();
        showRow(row);
        executeDelayedItemsLayout();
        scrollToItem(topLevelItem(row));
        editor->raise();
    }
    editor->setFocus(Qt::OtherFocusReason);
    if (auto *line = editor->findChild<QLineEdit *>()) {
        line->selectAll();
    }
    return true;
}

bool PropertyTree::commitEditor()
{
    if (m_open != nullptr) {
        if (!m_open->commit()) {
            return false;
        }
        const QWidget *focus = QApplication::focusWidget();
        endEditing(focus != nullptr && m_open != nullptr && m_open->isAncestorOf(focus));
    }
    return true;
}

void PropertyTree::keyPressEvent(QKeyEvent *event)
{
    const int row = currentRow();
    const bool command = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (row < 0) {
        QTreeWidget::keyPressEvent(event);
    } else if (event->matches(QKeySequence::Copy)) {
        const PropertyItem &item = m_items.at(row);
        QApplication::clipboard()->setText(EditorTable::kindOf(item).display(item).text);
    } else if (event->key() == Qt::Key_F2) {
        openEditor(row);
    } else if (!command && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        openWithPopup(row);
    } else if (event->key() == Qt::Key_F4 || (event->key() == Qt::Key_Down && event->modifiers() == Qt::AltModifier)) {
        if (openEditor(row)) {
            const QPointer<PropertyEditor> editor(editorAt(currentRow()));
            if (editor) {
                editor->openPopup();
            }
        }
    } else if (!command && !event->text().isEmpty() && event->text().at(0).isPrint()) {
        if (event->key() == Qt::Key_Space) {
            openWithPopup(row);
        } else {
            openEditor(row);
        }
        PropertyEditor *editor = editorAt(currentRow());
        const bool stands = m_standing.contains(currentRow());
        if (editor != nullptr && (event->key() != Qt::Key_Space || stands)) {
            QApplication::sendEvent(editor->focusProxy(), event);
            if (event->key() == Qt::Key_Space && stands) {
                // A button is pressed with the key and clicked with its release, which comes by itself.
                editor->focusProxy()->setFocus();
            }
        }
    } else {
        QTreeWidget::keyPressEvent(event);
        return;
    }
    event->accept();
}

void PropertyTree::focusInEvent(QFocusEvent *event)
{
    QTreeWidget::focusInEvent(event);
    const bool forward = event->reason() == Qt::TabFocusReason;
    if (forward || event->reason() == Qt::BacktabFocusReason) {
        openEditor(nextEditable(forward ? -1 : m_items.size(), forward));
    }
}

void PropertyTree::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const int row = byKey ? currentRow() : indexOfTopLevelItem(itemAt(viewport()->mapFrom(this, event->pos())));
    const QString reset = row >= 0 ? m_items.at(row).data(PropertyKey::Reset).toString() : QString();
    if (reset.isEmpty() || !EditorTable::isEditable(m_items.at(row))) {
        QTreeWidget::contextMenuEvent(event);
        return;
    }
    // It lives until the row that it is for is a thing of the past.
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("resetMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(menu->addAction(reset), &QAction::triggered, this,
        [this, name = m_items.at(row).name()] { Q_EMIT resetRequested(name); });
    const QRect place = visualItemRect(topLevelItem(row));
    menu->popup(byKey ? viewport()->mapToGlobal(place.bottomLeft()) : event->globalPos());
    event->accept();
}

bool PropertyTree::eventFilter(QObject *watched, QEvent *event)
{
    // From a check box the arrows go on to the rows beside it.
    if (event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        const auto *box = qobject_cast<QWidget *>(watched);
        if (box != nullptr && (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down)
            && key->modifiers() == Qt::NoModifier && isStanding(box)) {
            setFocus(Qt::OtherFocusReason);
            keyPressEvent(key);
            return true;
        }
    }
    return QTreeWidget::eventFilter(watched, event);
}

bool PropertyTree::isStanding(const QWidget *inner) const
{
    return std::any_of(m_standing.begin(), m_standing.end(),
        [inner](const PropertyEditor *editor) { return editor->isAncestorOf(inner); });
}

bool PropertyTree::focusNextPrevChild(bool next)
{
    const QWidget *focus = QApplication::focusWidget();
    int from = currentRow();
    for (auto standing = m_standing.constBegin(); standing != m_standing.constEnd(); ++standing) {
        if (focus != nullptr && standing.value()->isAncestorOf(focus)) {
            from = standing.key();
        }
    }
    if (m_open != nullptr) {
        from = m_openRow;
    }
    const int to = nextEditable(from, next);
    if (isVisible() && to >= 0) {
        return openEditor(to);
    }
    if (m_open != nullptr) {
        if (!m_open->commit()) {
            m_open->giveUp();
        }
        endEditing(true);
    } else if (!hasFocus()) {
        // From a standing editor: what comes next is counted from the tree, or it would be another row's editor.
        setFocus(Qt::OtherFocusReason);
    }
    return QTreeWidget::focusNextPrevChild(next);
}

void PropertyTree::showEvent(QShowEvent *event)
{
    // It lays the view out, which half of all trees never need.
    setVerticalScrollMode(ScrollPerPixel);
    QTreeWidget::showEvent(event);
}

void PropertyTree::resizeEvent(QResizeEvent *event)
{
    QTreeWidget::resizeEvent(event);
    fitColumns();
}

void PropertyTree::changeEvent(QEvent *event)
{
    QTreeWidget::changeEvent(event);
    const QEvent::Type type = event->type();
    if (type == QEvent::FontChange || type == QEvent::StyleChange) {
        if (auto *delegate = qobject_cast<PropertyDelegate *>(itemDelegate())) {
            delegate->forgetRowHeight();
            scheduleDelayedItemsLayout();
        }
    }
}

FileDrop::Taker PropertyTree::fileTakerAt(const QPoint &at)
{
    const int row = indexOfTopLevelItem(itemAt(at));
    if (row < 0 || EditorTable::kindOf(m_items.at(row)).create != FileEditor::create) {
        return {};
    }
    return [this, name = m_items.at(row).name()](const QString &path) {
        const int found = rowOf(name);
        if (openEditor(found)) {
            FileEditor::take(editorAt(currentRow()), path);
        }
    };
}

PropertyEditor *PropertyTree::createEditor(int row)
{
    const PropertyItem &item = m_items.at(row);
    PropertyEditor *editor = EditorTable::kindOf(item).create(item, viewport());
    editor->setInPlace(true);
    editor->setDoubts(m_doubts);
    editor->setRefusedTexts(&m_refused);
    // Tab goes by the rows, not by the order in which their editors were made.
    editor->setFocusPolicy(Qt::ClickFocus);
    editor->focusProxy()->installEventFilter(this);
    connect(editor, &PropertyEditor::committed, this,
        [this, row](const QString & /*name*/, const QVariant &value) { onCommitted(row, value); });
    connect(editor, &PropertyEditor::ended, this, [this, row](PropertyEditor::End how) { onEnded(row, how); });
    setItemWidget(topLevelItem(row), ValueColumn, editor);
    return editor;
}

void PropertyTree::endEditing(bool takeFocus)
{
    PropertyEditor *editor = m_open;
    if (editor == nullptr) {
        return;
    }
    const int row = m_openRow;
    editor->giveUp();
    m_open = nullptr;
    m_openRow = -1;
    editor->retire();
    // Before it is hidden, or the toolkit would send the focus to whatever comes next.
    if (takeFocus) {
        setFocus(Qt::OtherFocusReason);
    }
    editor->hide();
    removeItemWidget(topLevelItem(row), ValueColumn);
    showRow(row);
}

void PropertyTree::showRow(int row)
{
    const PropertyItem &item = m_items.at(row);
    const EditorTable::Kind &kind = EditorTable::kindOf(item);
    const PropertyDisplay display = kind.display(item);
    QTreeWidgetItem *rowItem = topLevelItem(row);
    const QString text = ExtensionFile::shown(display.text);
    rowItem->setText(ValueColumn, firstLine(text));
    rowItem->setData(ValueColumn, Qt::AccessibleTextRole, text);
    rowItem->setIcon(ValueColumn, iconOf(display, this));
    rowItem->setData(ValueColumn, PropertyDelegate::ProblemRole, display.problem);
    // What is seen by slant, colour and mark is told, too.
    QStringList told { display.problem, item.data(PropertyKey::Borrowed).toString(), WholeMatch::help(item) };
    told.removeAll(QString());
    rowItem->setData(ValueColumn, Qt::AccessibleDescriptionRole, told.join(QLatin1String(". ")));
    const QString help = display.problem.isEmpty() ? WholeMatch::help(item) : item.data(PropertyKey::Help).toString();
    for (int column = 0; column < ColumnCount; ++column) {
        rowItem->setData(column, PropertyDelegate::BorrowedRole, item.data(PropertyKey::Borrowed));
        rowItem->setData(column, PropertyDelegate::HelpRole, help);
    }
    rowItem->setData(ValueColumn, PropertyDelegate::StandingRole, kind.stays || row == m_openRow);
    rowItem->setData(ValueColumn, PropertyDelegate::DropsDownRole, kind.dropsDown && !item.options().isEmpty());
}

void PropertyTree::openWithPopup(int row)
{
    if (!openEditor(row)) {
        return;
    }
    const int opened = currentRow();
    if (EditorTable::kindOf(m_items.at(opened)).dropsDown) {
        editorAt(opened)->openPopup();
    }
}

void PropertyTree::onCommitted(int row, const QVariant &value)
{
    m_items[row].setVal(value);
    showRow(row);
    Q_EMIT propertyChanged(QString(m_items.at(row).name()), value);
}

void PropertyTree::onEnded(int row, PropertyEditor::End how)
{
    const bool takeFocus = how != PropertyEditor::End::FocusLeft;
    if (m_open != nullptr && row == m_openRow) {
        endEditing(takeFocus);
    } else if (how == PropertyEditor::End::Cancelled) {
        setFocus(Qt::OtherFocusReason);
    }
}

void PropertyTree::onClicked(QTreeWidgetItem *rowItem, int column)
{
    const int row = indexOfTopLevelItem(rowItem);
    if (column == ValueColumn) {
        openWithPopup(row);
    } else if (EditorTable::isEditable(m_items.at(row))) {
        openEditor(row);
    }
}

int PropertyTree::nextEditable(int from, bool forward) const
{
    for (int row = from + (forward ? 1 : -1); row >= 0 && row < m_items.size(); row += forward ? 1 : -1) {
        if (EditorTable::isEditable(m_items.at(row))) {
            return row;
        }
    }
    return -1;
}

void PropertyTree::fitColumns()
{
    if (m_columnsByUser || viewport()->width() <= 0) {
        return;
    }
    const QScopedValueRollback<bool> fitting(m_fitting, true);
    int widest = header()->sectionSizeHint(NameColumn);
    for (const PropertyItem &item : qAsConst(m_items)) {
        widest = qMax(widest, fontMetrics().horizontalAdvance(item.displayText()) + 12);
    }
    const int width = viewport()->width();
    const int least = static_cast<int>(width * LeastNameShare);
    const int most = static_cast<int>(width * MostNameShare);
    header()->resizeSection(NameColumn, qBound(least, widest, most));
}
