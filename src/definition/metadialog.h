#pragma once

#include <QDialog>
#include <QList>
#include <QPointer>
#include <QString>
#include <QVariant>

#include <memory>

class PointTreeWidgetItem;
class QTableWidgetItem;

namespace Ui {
class MetaDialog;
}

/// Edits the "Meta" entries of one node of the model in place. Owned by whoever opens it; the node is not its own, and
/// when it dies, or is null, the dialog offers nothing but to be closed. GUI thread.
class MetaDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit MetaDialog(PointTreeWidgetItem *owner, QWidget *parent = nullptr);
    ~MetaDialog() override;

Q_SIGNALS:
    void modified(bool flag);

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): connected by the names of the form's objects
    void on_pushButton_add_clicked();
    void on_pushButton_delete_clicked();
    void on_tableWidget_itemClicked(QTableWidgetItem *cell);
    void propertyChanged(const QString &name, const QVariant &typed);
    void on_pushButton_close_clicked();
    // NOLINTEND(readability-identifier-naming)

protected:
    void done(int result) override;

private:
    void appendRow(PointTreeWidgetItem *entry);
    void updateButtons();
    [[nodiscard]] int currentRow() const;

    std::unique_ptr<Ui::MetaDialog> m_ui;
    QPointer<PointTreeWidgetItem> m_owner;
    QList<QPointer<PointTreeWidgetItem>> m_entries; ///< in table order
    QPointer<PointTreeWidgetItem> m_current;
};
