#pragma once

#include "needle.h"

#include <QPointer>
#include <QString>
#include <QVector>

#include <array>

class PointTreeWidgetItem;
class SourceDataManager;

/// What a node is to a person.
enum class NodeSort { Plugin, Point, SubPoint, Attribute, Choice, Record, Format, Entry, Other };

/// Goes through the opened file and then through every plug-in, for what holds a needle in its id, key, name, text or
/// title, in whatever letter case. It may outlive the manager and any node, and passes over what has gone. GUI thread.
class ModelSearch final
{
public:
    using Nodes = QVector<PointTreeWidgetItem *>;

    /// Nodes kept of each rank; the rest is counted only.
    static constexpr int mostKept = 1'000;

    ModelSearch(const SourceDataManager &manager, const QString &needle);
    /// One that is over and has found @p nodes.
    ModelSearch(const SourceDataManager &manager, const Nodes &nodes);

    /// Goes on for about @p milliseconds, a plug-in at least; false once everything was looked through.
    [[nodiscard]] bool advance(int milliseconds);
    [[nodiscard]] int count() const { return m_count; }
    /// At most @p most of what was found: that of the opened file first, where the id or the key is just the needle
    /// before the others.
    [[nodiscard]] Nodes best(int most) const;

    [[nodiscard]] static NodeSort sortOf(const PointTreeWidgetItem *node);

    /// Who uses a point, a sub point, a record or an entry: the records that fill the point, or the entries that stand
    /// for the record, of all plug-ins, those of the opened file first. Empty for any other node.
    [[nodiscard]] static Nodes users(const SourceDataManager &manager, const PointTreeWidgetItem *node);

private:
    struct Part
    {
        QPointer<PointTreeWidgetItem> top;
        bool own;
    };

    void lookThrough(const Part &part);
    void keep(PointTreeWidgetItem *node, bool own, bool exact);

    Needle m_needle;
    QVector<Part> m_parts;
    int m_next = 0;
    int m_count = 0;
    std::array<QVector<QPointer<PointTreeWidgetItem>>, 4> m_found; ///< by rank
};
