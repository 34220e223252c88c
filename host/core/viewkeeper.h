#pragma once

#include "core/core_global.h"

#include <QVariantMap>

namespace Core {

/// What an editor may offer beyond IEditor, so that a fresh editor on the same file can take the place of an old one
/// without the user losing the place: where the view stands (page, selection, what is expanded, scrolling). So can the
/// editor that opens the file the next time. An editor derives from both classes; the host asks for this one with
/// dynamic_cast and does without where it is missing. It is apart from IEditor::saveState(), which other hosts keep.
/// GUI thread only.
class CORE_EXPORT ViewKeeper
{
public:
    virtual ~ViewKeeper();

    /// Means something to an editor of the same kind only, in this process or a later one: values that QDataStream
    /// writes.
    [[nodiscard]] virtual QVariantMap viewState() const = 0;
    /// To be called once, after the document was opened and the widget is shown. What is no longer there is left out;
    /// what comes later (read in the background, say) is followed as it comes.
    virtual void setViewState(const QVariantMap &state) = 0;
};

} // namespace Core
