#pragma once

#include "propertybrowser/propertyitem.h"
#include "propertybrowser/sheetheading.h"

#include <QWidget>

#include <functional>

class PropertyTree;

/// A property sheet that is a tree of two columns whose values are edited in place: a click, F2, Enter or typing opens
/// the editor of a row, Tab goes from row to row. Owned by its parent; GUI thread.
class PROPERTYBROWSER_EXPORT TreePropertyBrowser final : public QWidget
{
    Q_OBJECT

public:
    explicit TreePropertyBrowser(QWidget *parent = nullptr);

    /// Discards what the sheet showed, an uncommitted edit included, and shows @p items in this order. Emits nothing,
    /// and may be called from a slot of @p propertyChanged. The scroll position stays, and so does the current row
    /// where there is one of its name again.
    void showProperties(const QList<PropertyItem> &items);
    void clear() { showProperties({}); }
    /// One line of plain text over the rows that says whom they are about; without one there is no line.
    /// @p subject is what the sheet is about; a text that it refuses comes back for that alone, and for nothing with
    /// null.
    void setHeading(const QString &text, const QObject *subject = nullptr);
    /// Asked about every text that is typed into a row: what is doubtful about it, empty for nothing.
    void setDoubts(const std::function<QString(const QString &name, const QString &text)> &doubts);
    /// The shown records with the values committed since.
    [[nodiscard]] QList<PropertyItem> properties() const;

    /// Makes the first row of this name current and opens its editor; false when there is none.
    bool openEditor(const QString &name);
    /// Commits and closes the open editor. False when its text is refused; it stays open then, marked.
    bool commitEditor();
    /// Whether an editor is open, also while another window has the focus.
    [[nodiscard]] bool isEditing() const;
    /// The open editor of the first row of this name, null when it is not open. Valid until it is closed.
    [[nodiscard]] QWidget *editorFor(const QString &name) const;

Q_SIGNALS:
    /// The user has committed another value than the row had.
    void propertyChanged(const QString &name, const QVariant &value);
    /// The user gives the own value of a row up; only for rows with PropertyKey::Reset.
    void resetRequested(const QString &name);

private:
    SheetHeading *m_heading;
    PropertyTree *m_tree;
};
