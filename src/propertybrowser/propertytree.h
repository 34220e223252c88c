#pragma once

#include "propertybrowser/editors/filedrop.h"
#include "propertybrowser/editors/propertyeditor.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/refusedtexts.h"

#include <QHash>
#include <QPointer>
#include <QTreeWidget>

/// The tree inside a @p TreePropertyBrowser. It opens at most one editor in place, and lets the small ones (check
/// boxes) stand. Rows are spoken of by number, since a commit may replace them all.
class PropertyTree final : public QTreeWidget
{
    Q_OBJECT

public:
    explicit PropertyTree(QWidget *parent);
    ~PropertyTree() override;

    void showProperties(const QList<PropertyItem> &items);
    [[nodiscard]] QList<PropertyItem> properties() const { return m_items; }
    /// -1 when there is none; the first where several have the name.
    [[nodiscard]] int rowOf(const QString &name) const;
    [[nodiscard]] PropertyEditor *editorAt(int row) const;
    bool openEditor(int row);
    bool commitEditor();
    [[nodiscard]] bool isEditing() const { return m_open != nullptr; }
    void setDoubts(const PropertyEditor::Doubts &doubts) { m_doubts = doubts; }
    /// Whom the rows are about, for the texts that were refused.
    void setSubject(const QObject *subject) { m_refused.setSubject(subject); }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void propertyChanged(const QString &name, const QVariant &value);
    void resetRequested(const QString &name);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    /// For a row that names a file and can be changed.
    [[nodiscard]] FileDrop::Taker fileTakerAt(const QPoint &at);
    PropertyEditor *createEditor(int row);
    void endEditing(bool takeFocus);
    void showRow(int row);
    void openWithPopup(int row);
    void onCommitted(int row, const QVariant &value);
    void onEnded(int row, PropertyEditor::End how);
    void onClicked(QTreeWidgetItem *rowItem, int column);
    [[nodiscard]] bool isStanding(const QWidget *inner) const;
    [[nodiscard]] int currentRow() const { return indexOfTopLevelItem(currentItem()); }
    [[nodiscard]] int nextEditable(int from, bool forward) const;
    void fitColumns();

    QList<PropertyItem> m_items;
    QHash<int, PropertyEditor *> m_standing;
    PropertyEditor *m_open = nullptr;
    int m_openRow = -1;
    PropertyEditor::Doubts m_doubts;
    RefusedTexts m_refused;
    bool m_columnsByUser = false;
    bool m_fitting = false;
};
