#include "recordtable.h"

#include "columnshare.h"
#include "extensionfile/showntext.h"
#include "form/problemmark.h"
#include "form/sheethelp.h"
#include "model/controller.h"
#include "model/keys.h"
#include "model/modelchanges.h"
#include "model/pointtreewidgetitem.h"
#include "realizationicons.h"
#include "recordcells.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSet>
#include <QSignalBlocker>
#include <QTableWidget>

namespace {

const QString labelColumn = QStringLiteral("displayLabel");
const QString iconColumn = QStringLiteral("displayIcon");
const QString usedKey = QStringLiteral("used");
const QString formatKey = QStringLiteral("format");

/// For changes of many cells: no signal of the table, and no painting in between. A page that is just being switched to
/// has its updates disabled, and the table with it; that is not to be kept.
class QuietChange final
{
public:
    explicit QuietChange(QTableWidget *table)
        : m_table(table), m_blocker(table), m_enabled(!table->testAttribute(Qt::WA_ForceUpdatesDisabled))
    {
        m_table->setUpdatesEnabled(false);
    }
    ~QuietChange() { m_table->setUpdatesEnabled(m_enabled); }
    QuietChange(const QuietChange &) = delete;
    QuietChange &operator=(const QuietChange &) = delete;

private:
    QTableWidget *m_table;
    QSignalBlocker m_blocker;
    bool m_enabled;
};

QString valueOf(PointTreeWidgetItem *node, const QString &key)
{
    return node->property(key).toString();
}

QString labelOf(PointTreeWidgetItem *record)
{
    const QString text = valueOf(record, QStringLiteral("text"));
    return text.isEmpty() ? valueOf(record, QStringLiteral("title")) : text;
}

// A button and a box for each of thousands of rows cost seconds, and nobody sees more than a screenful.
constexpr int rowsDressedAtOnce = 200;

/// The key shown in each column when the point says nothing of it.
QStringList fixedKeys(bool withFormats)
{
    QStringList keys { idKey, QString(), iconKey };
    if (withFormats)
        keys += { usedKey, formatKey };
    return keys;
}

QStringList keysOf(PointTreeWidgetItem *point, bool withFormats)
{
    QStringList keys = fixedKeys(withFormats);
    keys[1] = valueOf(point, labelColumn);
    const QString icon = valueOf(point, iconColumn);
    if (!icon.isEmpty())
        keys[2] = icon;
    return keys;
}

} // namespace

RecordTable::RecordTable(QTableWidget *table, QObject *parent) : QObject(parent), m_table(table)
{
    if (!m_table)
        return;
    RecordCells::prepare(m_table);
    auto *marks = new ProblemDelegate(m_table, [this](const QModelIndex &index) { return this->record(index.row()); });
    // Ids differ at their ends.
    marks->setElideMode(Qt::ElideMiddle);
    m_table->setItemDelegateForColumn(0, marks);
    connect(m_table, &QObject::destroyed, this, [this] {
        m_records.clear();
        m_dressed.clear();
    });
    m_table->viewport()->installEventFilter(this);
    connect(m_table->horizontalHeader(), &QHeaderView::sectionResized, this,
        [this](int column, int /*oldWidth*/, int width) { noteWidth(column, width); });
    connect(m_table->verticalScrollBar(), &QScrollBar::valueChanged, this, &RecordTable::dressRowsInSight);
    connect(m_table->verticalScrollBar(), &QScrollBar::rangeChanged, this, &RecordTable::dressRowsInSight);
    resetColumns(false);
}

QStringList RecordTable::columns(bool withFormats)
{
    QStringList names { idKey, labelColumn, iconColumn };
    if (withFormats)
        names += { usedKey, formatKey };
    return names;
}

void RecordTable::showRecords(PointTreeWidgetItem *point)
{
    if (!m_table)
        return;
    const QuietChange quiet(m_table);
    const Controller *controller = Controller::instance();
    const bool withFormats = point && controller->definitions().hasFormat(point->pointId());
    const int scrolled = point && point == m_point ? m_table->verticalScrollBar()->value() : 0;
    m_point = point;
    m_records.clear();
    m_dressed.clear();
    resetColumns(withFormats);
    m_keys = point ? keysOf(point, withFormats) : fixedKeys(withFormats);
    const OwnRealizations::Nodes records = controller->ownRealizations().recordsOf(point);
    m_table->setRowCount(records.size());
    m_dressAll = records.size() <= rowsDressedAtOnce;
    for (PointTreeWidgetItem *record : records) {
        m_records.append(record);
        m_dressed.append(m_dressAll);
        fillRow(m_records.size() - 1, record, m_keys);
    }
    m_table->verticalScrollBar()->setValue(scrolled);
    dressRowsInSight();
}

void RecordTable::append(PointTreeWidgetItem *record)
{
    if (!m_table || !record || row(record) >= 0)
        return;
    const QuietChange quiet(m_table);
    const int last = m_records.size();
    insertRow(last, record);
    fillRow(last, record, fixedKeys(m_table->columnCount() > columns(false).size()));
}

void RecordTable::follow(const ModelChange &change)
{
    if (!m_table)
        return;
    const QPointer<PointTreeWidgetItem> current(record(m_table->currentRow()));
    const bool selected = m_table->currentItem() && m_table->currentItem()->isSelected();
    const bool moves = change.structure || change.touches(idKey);
    {
        const QuietChange quiet(m_table);
        if (change.definitions && !columnsFit()) {
            showRecords(m_point);
        } else if (change.definitions || moves) {
            arrange(Controller::instance()->ownRealizations().recordsOf(m_point));
        }
        for (const ModelChange::Edit &edit : change.edits) {
            const int edited = edit.node ? row(edit.node) : -1;
            if (edited >= 0)
                fillRow(edited, edit.node, m_keys);
        }
        if (moves) {
            for (int i = 0; i < m_records.size(); ++i)
                fillUses(i, m_records.at(i), m_keys);
        }
        // What QTableWidget made current in place of a row that has gone is none that somebody has gone to.
        const int index = current ? row(current) : -1;
        if (index < 0)
            m_table->setCurrentCell(-1, -1);
        else if (index != m_table->currentRow())
            m_table->setCurrentCell(index, 0,
                selected ? QItemSelectionModel::SelectCurrent | QItemSelectionModel::Rows
                         : QItemSelectionModel::NoUpdate);
    }
    dressRowsInSight();
}

bool RecordTable::columnsFit() const
{
    const bool withFormats = m_point && Controller::instance()->definitions().hasFormat(m_point->pointId());
    return columns(withFormats).size() == m_table->columnCount()
        && m_keys == (m_point ? keysOf(m_point, withFormats) : fixedKeys(withFormats));
}

void RecordTable::arrange(const QVector<PointTreeWidgetItem *> &records)
{
    const QSet<const PointTreeWidgetItem *> wanted(records.cbegin(), records.cend());
    for (int i = m_records.size() - 1; i >= 0; --i) {
        if (!m_records.at(i) || !wanted.contains(m_records.at(i)))
            removeRow(i);
    }
    for (int i = 0; i < records.size(); ++i) {
        if (record(i) == records.at(i))
            continue;
        const int old = row(records.at(i));
        if (old >= 0)
            removeRow(old);
        insertRow(i, records.at(i));
        fillRow(i, records.at(i), m_keys);
    }
}

void RecordTable::insertRow(int row, PointTreeWidgetItem *record)
{
    m_table->insertRow(row);
    m_records.insert(row, record);
    m_dressed.insert(row, true);
}

void RecordTable::removeRow(int row)
{
    m_table->removeRow(row);
    m_records.removeAt(row);
    m_dressed.removeAt(row);
}

int RecordTable::row(const PointTreeWidgetItem *record) const
{
    for (int i = 0; record && i < m_records.size(); ++i) {
        if (m_records.at(i) == record)
            return i;
    }
    return -1;
}

PointTreeWidgetItem *RecordTable::record(int row) const
{
    return row >= 0 && row < m_records.size() ? m_records.at(row).data() : nullptr;
}

PointTreeWidgetItem *RecordTable::point() const
{
    return m_point;
}

bool RecordTable::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        layOutColumns();
    if (event->type() == QEvent::Resize || event->type() == QEvent::Show)
        dressRowsInSight();
    return QObject::eventFilter(watched, event);
}

void RecordTable::resetColumns(bool withFormats)
{
    const QStringList names = columns(withFormats);
    const QScopedValueRollback<bool> layingOut(m_layingOut, true);
    m_table->clear();
    m_table->setRowCount(0);
    m_table->setColumnCount(names.size());
    m_table->setHorizontalHeaderLabels(names);
    SheetHelp::explainColumns(m_table, names);
    m_keys = fixedKeys(withFormats);
    layOutColumns();
}

void RecordTable::fillRow(int row, PointTreeWidgetItem *record, const QStringList &keys)
{
    const QString id = ExtensionFile::shown(valueOf(record, idKey));
    for (int column = 0; column < keys.size(); ++column) {
        const QString &key = keys.at(column);
        const QString text = key.isEmpty() ? labelOf(record) : valueOf(record, key);
        const bool isId = column == 0;
        RecordCells::setText(m_table, row, column, text,
            isId ? tr("%1\nPlug-in: %2").arg(id, ExtensionFile::shown(Controller::instance()->pluginId()))
                 : ExtensionFile::shown(text));
        if (key == iconKey && m_dressed.at(row))
            RecordCells::setIcon(
                m_table, row, column, RealizationIcons::icon(text, record->basePath()), tr("Icon of %1").arg(id));
    }
    fillUses(row, record, keys);
}

void RecordTable::fillUses(int row, PointTreeWidgetItem *record, const QStringList &keys)
{
    if (!keys.contains(usedKey) && !keys.contains(formatKey))
        return;
    const QString id = valueOf(record, idKey);
    const int uses = Controller::instance()->ownRealizations().references(id).size();
    const QString said = tr("Places in formats: %1").arg(uses);
    for (int column = 0; column < keys.size(); ++column) {
        if (keys.at(column) == usedKey)
            RecordCells::setNumber(m_table, row, column, uses, said);
        else if (keys.at(column) == formatKey && m_dressed.at(row))
            RecordCells::setBox(m_table, row, column, uses > 0, said);
    }
}

void RecordTable::dressRowsInSight()
{
    // While rows come and go, the table and the lists don't fit.
    if (!m_table || m_dressAll || m_table->rowCount() != m_records.size() || m_records.size() != m_dressed.size())
        return;
    const int first = qMax(0, m_table->rowAt(0));
    const int below = m_table->rowAt(m_table->viewport()->height());
    const int last = below < 0 ? m_dressed.size() - 1 : qMin(below, m_dressed.size() - 1);
    for (int row = first; row <= last; ++row) {
        if (m_dressed.at(row) || !m_records.at(row) || m_table->isRowHidden(row))
            continue;
        const QuietChange quiet(m_table);
        m_dressed[row] = true;
        fillRow(row, m_records.at(row), m_keys);
    }
}

void RecordTable::layOutColumns()
{
    // In pixels: enough to tell two ids apart.
    constexpr int minimumWidth = 64;
    const QScopedValueRollback<bool> layingOut(m_layingOut, true);
    QHeaderView *header = m_table->horizontalHeader();
    const int last = m_table->columnCount() - 1;
    const auto width = [this](int column, int own) {
        const int byUser = m_userWidths.value(column, 0);
        return byUser ? byUser : own;
    };
    // The id and the label share by their content what the narrow columns leave over, and the last column takes what
    // those leave: done here, since the header's own stretching never makes a column smaller that has just come.
    const int available = m_table->viewport()->width();
    int left = available;
    for (int column = 2; column <= last; ++column)
        left -= width(column, header->sectionSizeHint(column));
    const QAbstractItemView *view = m_table;
    const auto wanted
        = [&](int column) { return qMax(view->sizeHintForColumn(column), header->sectionSizeHint(column)); };
    const int shared = qMin(firstOfTwoColumns(left, wanted(0), wanted(1)), left - header->sectionSizeHint(1));
    const int id = width(0, qMax(shared, minimumWidth));
    const int label = width(1, qMax(left - id, header->sectionSizeHint(1)));
    left = available;
    for (int column = 0; column < last; ++column) {
        const int own = column == 0 ? id : column == 1 ? label : width(column, header->sectionSizeHint(column));
        header->resizeSection(column, own);
        left -= own;
    }
    header->resizeSection(last, qMax(left, header->sectionSizeHint(last)));
}

void RecordTable::noteWidth(int column, int width)
{
    if (m_layingOut || !m_table || column >= m_table->columnCount() - 1)
        return;
    while (m_userWidths.size() <= column)
        m_userWidths.append(0);
    m_userWidths[column] = width;
    layOutColumns();
}
