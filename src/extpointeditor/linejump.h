#pragma once

#include <QObject>
#include <QPointer>

class ExtPointWidget;
class PointTreeWidgetItem;

namespace PointEditor::Internal {

class ExtPointEditorDocument;

/// Shows what stands on a line of the opened file: at once as far as the page has it, and once more when the other
/// plug-ins have been read, since records stand under points of theirs. Does not do so any more once the user has
/// pressed a key or a button. Owned by the editor; GUI thread.
class LineJump final : public QObject
{
    Q_OBJECT

public:
    /// @p column may be 0, for the first thing on the line. Both must outlive it.
    LineJump(const ExtPointEditorDocument &document, ExtPointWidget &widget, int line, int column, QObject *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void go();

    const ExtPointEditorDocument &m_document;
    ExtPointWidget &m_widget;
    QPointer<PointTreeWidgetItem> m_node;
};

} // namespace PointEditor::Internal
