#pragma once

#include "propertybrowser/propertyitem.h"
#include "propertybrowser/refusedtexts.h"
#include "propertybrowser/sheetheading.h"

#include <QWidget>

#include <functional>

class PropertyEditor;
class QGroupBox;
class QVBoxLayout;

/// A property sheet that lays its rows out in a group box, label beside editor, every editor standing all the time. It
/// is as high as its rows, so it goes well into a scroll area. Owned by its parent; GUI thread.
class PROPERTYBROWSER_EXPORT GroupPropertyBrowser final : public QWidget
{
    Q_OBJECT

public:
    explicit GroupPropertyBrowser(QWidget *parent = nullptr);
    ~GroupPropertyBrowser() override;

    /// Gives up what the sheet showed, an uncommitted edit included, and shows @p items in this order. Emits nothing,
    /// and may be called from a slot of @p propertyChanged. A row of the same name as the one that had the focus gets
    /// it.
    void showProperties(const QList<PropertyItem> &items);
    void clear() { showProperties({}); }
    /// One line of plain text over the rows that says whom they are about; without one there is no line. A text that
    /// was refused for @p subject comes back when its row is edited again.
    void setHeading(const QString &text, const QObject *subject = nullptr);
    /// Asked about every text that is typed into a row: what is doubtful about it, empty for nothing.
    void setDoubts(const std::function<QString(const QString &name, const QString &text)> &doubts)
    {
        m_doubts = doubts;
    }
    /// The shown records with the values committed since.
    [[nodiscard]] QList<PropertyItem> properties() const;

    /// Commits what is typed but not committed yet. False when a text is refused; it stays in its row then, marked.
    bool commitEditor();
    /// The editor of the first row of this name, null when there is none. Valid until the sheet is shown anew.
    [[nodiscard]] QWidget *editorFor(const QString &name) const;

Q_SIGNALS:
    /// The user has committed another value than the row had.
    void propertyChanged(const QString &name, const QVariant &value);

private:
    void addRow(const PropertyItem &item, int row);
    [[nodiscard]] int focusedRow() const;

    QVBoxLayout *m_layout;
    SheetHeading *m_heading;
    QGroupBox *m_box = nullptr;
    QList<PropertyEditor *> m_editors;
    RefusedTexts m_refused;
    std::function<QString(const QString &name, const QString &text)> m_doubts;
};
