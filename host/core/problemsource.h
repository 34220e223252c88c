#pragma once

#include "core/core_global.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <functional>

class QObject;

namespace Core {

/// One thing in an opened file that will not do what its author means by it.
struct FileProblem
{
    enum class Severity { Warning, Error };

    Severity severity = Severity::Warning;
    QString text;  ///< the reason, one sentence
    QString place; ///< what it is about, in words
    QVariant key;  ///< for showProblem() and for nothing else
};

/// What an editor may offer beyond IEditor: what is wrong in its file, for a list of the host's. An editor derives from
/// both classes; the host asks for this one with dynamic_cast and does without where it is missing. GUI thread only.
class CORE_EXPORT ProblemSource
{
public:
    virtual ~ProblemSource();

    /// At most @p most of them, in the order of the file.
    [[nodiscard]] virtual QVector<FileProblem> problems(int most) const = 0;
    [[nodiscard]] virtual int problemCount() const = 0;
    /// Goes to the place. Does nothing for the key of a problem that is gone.
    virtual void showProblem(const QVariant &key) = 0;
    /// Calls @p action after each change of the problems, as long as @p context lives.
    virtual void whenProblemsChange(QObject *context, const std::function<void()> &action) = 0;
};

} // namespace Core
