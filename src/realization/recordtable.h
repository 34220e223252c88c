#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVector>

class PointTreeWidgetItem;
class QTableWidget;
struct ModelChange;

/// The records of one point or sub point in the table of the realization page, a row each. Owned by the page builder;
/// the table is the form's and may die first. GUI thread.
///
/// A row that was filled or refreshed shows in "displayLabel" and "displayIcon" the values of the keys that the point
/// names with its properties of the same names; one that was appended, or whose point names none, shows "text", else
/// "title", and the picture that "icon" names.
class RecordTable final : public QObject
{
    Q_OBJECT

public:
    /// Prepares the table: whole rows, one at a time, a menu of the owner's own, the columns of a point without
    /// formats.
    explicit RecordTable(QTableWidget *table, QObject *parent = nullptr);

    /// "id", "displayLabel", "displayIcon", and with formats "used", "format"; also the header labels.
    [[nodiscard]] static QStringList columns(bool withFormats);

    /// Shows the records of @p point afresh; no row is current afterwards. Anything but a point or a sub point, null
    /// included, has none. Showing the same point again keeps the place that is scrolled to.
    void showRecords(PointTreeWidgetItem *point);
    void clear() { showRecords(nullptr); }

    /// Adds a row for @p record at the end, with the columns shown now. Does nothing for null and when it has a row.
    void append(PointTreeWidgetItem *record);

    /// Brings the table into line with the model after a change. The row that is current stays so, as long as it has
    /// its record.
    void follow(const ModelChange &change);

    /// -1 for a record without a row.
    [[nodiscard]] int row(const PointTreeWidgetItem *record) const;
    /// Null for no row and for a record that is gone.
    [[nodiscard]] PointTreeWidgetItem *record(int row) const;
    /// The point shown; null for none.
    [[nodiscard]] PointTreeWidgetItem *point() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void resetColumns(bool withFormats);
    /// Whether the columns, and what they show, are those of the point as it is now.
    [[nodiscard]] bool columnsFit() const;
    /// Takes out and adds rows until they are these records, in this order.
    void arrange(const QVector<PointTreeWidgetItem *> &records);
    void insertRow(int row, PointTreeWidgetItem *record);
    void removeRow(int row);
    /// @p keys has the key shown in each column, empty for the label by the fixed rule.
    void fillRow(int row, PointTreeWidgetItem *record, const QStringList &keys);
    void fillUses(int row, PointTreeWidgetItem *record, const QStringList &keys);
    /// Gives the rows that can be seen their buttons and boxes.
    void dressRowsInSight();
    void layOutColumns();
    void noteWidth(int column, int width);

    QPointer<QTableWidget> m_table;
    QPointer<PointTreeWidgetItem> m_point;
    QList<QPointer<PointTreeWidgetItem>> m_records; ///< by row
    QVector<bool> m_dressed;                        ///< by row: has its button and its box
    bool m_dressAll = true;
    QStringList m_keys;      ///< what the point names for each column
    QList<int> m_userWidths; ///< by column, in pixels; 0 where the user has set none
    bool m_layingOut = false;
};
