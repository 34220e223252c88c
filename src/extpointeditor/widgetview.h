#pragma once

#include <QObject>
#include <QPointer>
#include <QVariantMap>
#include <QWidget>

namespace PointEditor::Internal {

/// Where the view of a form stands, taken off its widgets by their object names: the pages of tab widgets, the sizes of
/// splitters, what is expanded, selected and current in trees and tables, how far they are scrolled, and which of them
/// has the focus. Rows are known by their texts, pages by their names.
[[nodiscard]] QVariantMap viewOf(const QWidget &form);

/// Brings a form, which shows another reading of the same file, to such a place: at once as far as pages and rows are
/// there, the rest when all has been read. Where the user has gone somewhere else meanwhile, that stands. Owned by the
/// editor; GUI thread.
class ViewRestoration final : public QObject
{
    Q_OBJECT

public:
    ViewRestoration(const QVariantMap &view, QWidget *form, QObject *parent);

    /// Whether there is a page to show that was not there.
    [[nodiscard]] bool awaitsPage() const;
    /// To be called when everything has been read.
    void finish();

private:
    void scroll();

    QPointer<QWidget> m_form;
    QVariantMap m_left;
    QVariantMap m_scroll;
    QVariantMap m_scrolledTo;
};

} // namespace PointEditor::Internal
