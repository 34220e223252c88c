#pragma once

#include <QPointer>
#include <QString>
#include <QVector>

class PointTreeWidgetItem;
class SourceDataManager;

/// One thing in the opened file that will not do what somebody means by it.
struct Problem
{
    enum class Severity {
        Warning, ///< a value that a sheet would refuse
        Error    ///< something that the product will not find, or will take for something else
    };

    Severity severity = Severity::Warning;
    QPointer<PointTreeWidgetItem> node; ///< of the opened file; null when it has gone since
    QString key;                        ///< of the attribute to look at
    QString text;                       ///< the reason, a sentence in plain text
};

/// What is wrong in an opened file, as a function of the model. It stores nothing and touches no widget. GUI thread.
///
/// | what                                                                | needs the siblings |
/// |---------------------------------------------------------------------|--------------------|
/// | two points have one "id"                                            | for those of others |
/// | two sub points of a point, or two of its attributes, have one "key" | no                 |
/// | two records of one point have one "id"; formats are no records      | no                 |
/// | an entry has the "id" of no record, and its kind is that of one     | yes                |
/// | an entry right under a root names a "parent" that its tab lacks     | yes                |
/// | an "ExtData" is for a point that nobody declares                    | yes                |
/// | a value is outside the pattern of its field; an empty one never is  | no                 |
/// | the same, outside the bounds or the choices of its declaration      | no                 |
///
/// An entry with a "text" or a "title", or whose id has the form that "Child Type" gives, stands for itself and needs
/// no record.
namespace Problems {

/// A file of more nodes is looked through up to here: it takes a moment for each hundred thousand.
constexpr int mostNodes = 50'000;

/// In the order of the document, the definition side first. @p withSiblings says that everything that the siblings
/// bring is there; without it, what depends on them is not judged. A file with more than `mostNodes` has as its last
/// problem, without a node, that the rest was not looked at.
[[nodiscard]] QVector<Problem> of(const SourceDataManager &manager, bool withSiblings);

/// Who has the name @p text already that is typed for the attribute @p key of @p node; empty when nobody has, and for
/// what may be there twice. A point and a record are named by "id", a sub point and an attribute by "key".
[[nodiscard]] QString ofTyped(
    const SourceDataManager &manager, PointTreeWidgetItem *node, const QString &key, const QString &text);

} // namespace Problems
