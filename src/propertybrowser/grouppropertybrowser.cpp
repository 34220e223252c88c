#include "propertybrowser/grouppropertybrowser.h"

#include "propertybrowser/editors/propertyeditor.h"
#include "propertybrowser/editortable.h"
#include "propertybrowser/elidedlabel.h"
#include "propertybrowser/wholematch.h"

#include <QApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QPair>
#include <QPointer>
#include <QVector>

namespace {

constexpr int Margin = 6;
constexpr int RowSpacing = 4;

/// Groups the rows for those who can't see them, without a frame of its own: the page's box has one already.
class RowBox final : public QGroupBox
{
public:
    using QGroupBox::QGroupBox;

protected:
    void paintEvent(QPaintEvent * /*event*/) override { }
};

} // namespace

GroupPropertyBrowser::GroupPropertyBrowser(QWidget *parent)
    : QWidget(parent), m_layout(new QVBoxLayout(this)), m_heading(new SheetHeading(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addWidget(m_heading);
    m_layout->addStretch(1);
    // A click beside the rows leaves the row that is being edited.
    setFocusPolicy(Qt::ClickFocus);
    setAccessibleName(tr("Properties"));
}

GroupPropertyBrowser::~GroupPropertyBrowser()
{
    for (PropertyEditor *editor : qAsConst(m_editors)) {
        editor->retire();
    }
}

void GroupPropertyBrowser::setHeading(const QString &text, const QObject *subject)
{
    m_heading->setText(text);
    m_refused.setSubject(subject);
    const int focused = focusedRow();
    if (focused >= 0) {
        m_editors.at(focused)->takeBack();
    }
}

void GroupPropertyBrowser::showProperties(const QList<PropertyItem> &items)
{
    const int focused = focusedRow();
    const QString focusedName = focused >= 0 ? m_editors.at(focused)->item().name() : QString();
    for (PropertyEditor *editor : qAsConst(m_editors)) {
        editor->giveUp();
        editor->retire();
    }
    m_editors.clear();
    QGroupBox *old = m_box;

    m_box = new RowBox(this);
    m_box->setAccessibleName(accessibleName());
    m_box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto *grid = new QGridLayout(m_box);
    grid->setColumnStretch(1, 1);
    grid->setContentsMargins(Margin, Margin, Margin, Margin);
    grid->setVerticalSpacing(RowSpacing);
    for (int row = 0; row < items.size(); ++row) {
        addRow(items.at(row), row);
    }
    m_box->setVisible(!items.isEmpty());
    m_layout->insertWidget(1, m_box);

    // The rows come where the sheet stands among the page's widgets, not after all of them for being newer.
    QWidget *previous = this;
    for (PropertyEditor *editor : qAsConst(m_editors)) {
        setTabOrder(previous, editor);
        previous = editor;
    }

    if (focused >= 0) {
        if (QWidget *editor = editorFor(focusedName)) {
            editor->setFocus(Qt::OtherFocusReason);
        }
    }
    if (old != nullptr) {
        // Not deleted at once: the editor whose commit has brought us here is still on the stack.
        m_layout->removeWidget(old);
        old->hide();
        old->deleteLater();
    }
    updateGeometry();
}

QList<PropertyItem> GroupPropertyBrowser::properties() const
{
    QList<PropertyItem> items;
    for (const PropertyEditor *editor : m_editors) {
        items.append(editor->item());
    }
    return items;
}

bool GroupPropertyBrowser::commitEditor()
{
    // A commit may show the sheet anew, and with it goes what was typed in the other rows: it is kept first.
    const QPointer<QGroupBox> box(m_box);
    QVector<QPair<QString, QVariant>> typed;
    bool accepted = true;
    for (const PropertyEditor *editor : qAsConst(m_editors)) {
        if (!editor->isModified()) {
            continue;
        }
        accepted = accepted && editor->isAcceptable();
        if (editor->isAcceptable()) {
            typed.append({ editor->item().name(), editor->value() });
        }
    }
    for (const auto &row : qAsConst(typed)) {
        auto *editor = box == m_box ? qobject_cast<PropertyEditor *>(editorFor(row.first)) : nullptr;
        if (editor != nullptr) {
            editor->commit();
        } else {
            Q_EMIT propertyChanged(row.first, row.second);
        }
    }
    return accepted;
}

QWidget *GroupPropertyBrowser::editorFor(const QString &name) const
{
    for (PropertyEditor *editor : m_editors) {
        if (editor->item().name() == name) {
            return editor;
        }
    }
    return nullptr;
}

void GroupPropertyBrowser::addRow(const PropertyItem &item, int row)
{
    auto *grid = static_cast<QGridLayout *>(m_box->layout());
    PropertyEditor *editor = EditorTable::kindOf(item).create(item, m_box);
    auto *label = new ElidedLabel(item.displayText(), m_box);
    label->setBuddy(editor);
    label->setAccessibleDescription(WholeMatch::help(item));
    label->setToolTip(WholeMatch::help(item).toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")));
    editor->setDoubts(m_doubts);
    editor->setRefusedTexts(&m_refused);
    const int lineHeight = fontMetrics().height();
    const bool tall = editor->sizeHint().height() > 3 * lineHeight;
    grid->addWidget(label, row, 0, tall ? Qt::AlignTop : Qt::AlignVCenter);
    if (tall) {
        label->setContentsMargins(0, lineHeight / 4, 0, 0);
    }
    grid->addWidget(editor, row, 1);
    grid->setRowMinimumHeight(row, lineHeight + 2 * RowSpacing);
    connect(editor, &PropertyEditor::committed, this, &GroupPropertyBrowser::propertyChanged);
    m_editors.append(editor);
}

int GroupPropertyBrowser::focusedRow() const
{
    const QWidget *focus = QApplication::focusWidget();
    for (int row = 0; focus != nullptr && row < m_editors.size(); ++row) {
        if (m_editors.at(row)->isAncestorOf(focus)) {
            return row;
        }
    }
    return -1;
}
