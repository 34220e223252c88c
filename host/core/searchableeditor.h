#pragma once

#include "core/core_global.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <functional>
#include <memory>

namespace Core {

/// One line of what was found.
struct SearchResult
{
    QString what;    ///< what sort of thing it is, in a word
    QString id;      ///< may be empty
    QString label;   ///< what people call it; may be empty
    QString plugin;  ///< id of the plug-in that holds it
    QString place;   ///< where in the plug-in it stands
    QVariant target; ///< for the editor alone, which may have lost it since
};

/// A search that is under way. It belongs to whoever has asked for it and may outlive what it looks through, which
/// ends it. GUI thread only.
class CORE_EXPORT ProductSearch
{
public:
    virtual ~ProductSearch();

    /// Goes on for about @p milliseconds; false once there is nothing left to be looked through.
    [[nodiscard]] virtual bool advance(int milliseconds) = 0;
    /// What was found by now, the best first, at most @p most of it.
    [[nodiscard]] virtual QVector<SearchResult> results(int most) const = 0;
    /// How much was found by now.
    [[nodiscard]] virtual int count() const = 0;
};

/// What an editor may offer beyond IEditor, so that the host can search what it edits and all that it knows besides. An
/// editor derives from both classes; the host asks for this one with dynamic_cast. GUI thread only.
class CORE_EXPORT SearchableEditor
{
public:
    using Presenter = std::function<void(const QString &title, std::shared_ptr<ProductSearch> search)>;

    virtual ~SearchableEditor();

    /// Everything that holds @p needle in whatever letter case. Never null.
    [[nodiscard]] virtual std::shared_ptr<ProductSearch> search(const QString &needle) = 0;
    /// Goes to what a search of this editor has found, or to what is nearest to it. False when it has gone.
    virtual bool goTo(const SearchResult &result) = 0;
    /// What to do with results that the user has asked the editor for. Empty: the editor doesn't offer any.
    virtual void setPresenter(const Presenter &presenter) = 0;
};

} // namespace Core
