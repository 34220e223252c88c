#pragma once

#include "propertybrowser/propertyitem.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

class PointTreeWidgetItem;
class TreePropertyBrowser;

/// The property sheet of the realization page, and whom it is about: a node, never a row, since rows
/// come and go. It shows itself anew when the model has changed and something else is to be seen.
///
/// Whatever wants to show something else first calls commit(), which may change or destroy what was to be shown, and
/// looks it up after that. Owned by the page builder; the sheet is the form's. GUI thread.
class SheetPane final : public QObject
{
    Q_OBJECT

public:
    enum class Subject {
        Nothing,
        Holder, ///< an "ExtData", which a click on its point shows
        Record, ///< a row of the table
        Entry,  ///< what a row of the format tree shows
        Foreign ///< the same for an entry of a sibling; nothing can be changed
    };

    explicit SheetPane(TreePropertyBrowser *sheet, QObject *parent = nullptr);

    /// Hands out what is still being typed. What is refused stays, and is given up by what is shown next.
    void commit();

    /// Records and holders get the defaults that they lack, which is no change of the user's.
    void show(Subject subject, PointTreeWidgetItem *node);
    void showNothing() { show(Subject::Nothing, nullptr); }

    /// Whom an edit is made for; null when the sheet shows nothing, or nothing that is still there.
    [[nodiscard]] PointTreeWidgetItem *node() const { return m_node; }
    [[nodiscard]] Subject subject() const { return m_node ? m_subject : Subject::Nothing; }

    [[nodiscard]] bool isAboutEntry() const { return subject() == Subject::Entry || subject() == Subject::Foreign; }

    /// Shows what is to be seen by now, also in place of what was refused.
    void showAfresh();
    /// As above, but only where it differs.
    void refresh();

    /// What the row @p key of the sheet has when nobody has given it a value; null for nothing.
    [[nodiscard]] QVariant standard(const QString &key) const;
    /// Gives up the own value of the row @p key: a record gets the declared default, an entry shows the record's again.
    /// False when there is none to give up.
    [[nodiscard]] bool reset(const QString &key);

    /// Opens the editor of the first of these keys that has a row.
    void openEditor(const QStringList &keys);

private:
    [[nodiscard]] QList<PropertyItem> records() const;
    [[nodiscard]] QList<PropertyItem> plainRecords() const;
    void showHeading();

    QPointer<TreePropertyBrowser> m_sheet;
    QPointer<PointTreeWidgetItem> m_node;
    Subject m_subject = Subject::Nothing;
};
