#pragma once

#include <QPointer>
#include <QString>
#include <QVector>

class PointTreeWidgetItem;

/// What a drop into a format tree would do, decided before anything is touched: the tree paints its mark from it, and
/// the drop carries it out. Valid until the model changes.
struct DropPlan
{
    enum class Place {
        Nothing,
        Into,   ///< as the last child of the row
        Before, ///< directly before the row
        After   ///< directly after the row, and after what stands under it
    };

    Place place = Place::Nothing;
    /// The change is made in the opened file beside the row, with @p through as the "parent", and not in the row's own
    /// node.
    bool recorded = false;
    /// The node that takes the kind: the row, or one that it also stands for; of what comes beside the row, the same of
    /// the row above.
    PointTreeWidgetItem *through = nullptr;
    /// A sentence that says why nothing would be done; empty for a plan that does something.
    QString reason = {};

    explicit operator bool() const { return place != Place::Nothing; }

    /// A plan that does nothing.
    [[nodiscard]] static DropPlan refusal(const QString &reason);
    /// The same plan at another place.
    [[nodiscard]] DropPlan at(Place other) const;
};

/// What a drop has done, in the order in which it is to be announced. The nodes are guarded, since whoever hears of the
/// first may destroy the others.
struct DropOutcome
{
    struct Addition
    {
        QPointer<PointTreeWidgetItem> format; ///< the "Format" that it was recorded in; null for a direct drop
        QPointer<PointTreeWidgetItem> row;    ///< the displayed node
    };

    void add(PointTreeWidgetItem *format, PointTreeWidgetItem *row);

    QVector<Addition> additions;
    bool modified = false;
};
