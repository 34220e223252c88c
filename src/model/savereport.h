#pragma once

#include "propertyhash.h"

#include <QString>
#include <QStringList>
#include <QVector>

class PointTreeWidgetItem;

/// What a save does to a file beside writing what the pages show: what of the old file the new one does not have, or
/// has otherwise. Collected by ModelWriter; a value type, for any thread.
class SaveReport final
{
public:
    enum class Kind {
        MarksLost,        ///< a value was read with the marks of translatable text and is written without
        MarksGained,      ///< the other way round
        ReadOtherwise,    ///< a value does not come back as it is; @p detail is what comes back
        CannotBeWritten,  ///< what XML can't hold; @p detail says what
        AttributeDropped, ///< the format has no place for it
        Dropped,          ///< a comment, text, instruction or element; @p detail says which
        SetDropped,       ///< the same, for what looks like one of the two sets
        NothingLeft,      ///< the document without its root
        LooksLikeUtf8     ///< the file was read in the encoding that it declares, which is hardly the one it is in
    };

    /// Why marks are lost.
    enum class Reason {
        None,
        NotDeclared, ///< the point is known, and declares no translatable attribute of this name
        Unknown,     ///< nobody declares the point
        Unread       ///< a sibling that could not be read may declare it
    };

    struct Remark
    {
        Kind kind;
        QString element; ///< kind and "id" of the node
        QString key;
        QString value;
        QString detail;
        Reason reason = Reason::None;
    };

    void add(const Remark &remark) { m_remarks.append(remark); }

    /// How the value of @p entry of @p node is written as @p written, marked or not.
    void noteValue(const PointTreeWidgetItem *node, const PropertyHash::Entry &entry, const QString &written,
        bool isMarked, bool isDeclared);
    void noteDroppedAttribute(const PointTreeWidgetItem *node, const PropertyHash::Entry &entry);

    /// To be called last. @p unread: the siblings' files that could not be read or have not been read yet. As a key is
    /// translatable everywhere once any point says so, each of them may be why any marks are lost.
    void blame(const QStringList &unread);

    [[nodiscard]] const QVector<Remark> &remarks() const { return m_remarks; }
    [[nodiscard]] const QStringList &unread() const { return m_unread; }
    [[nodiscard]] int count(Kind kind, Reason reason = Reason::None) const;

private:
    QVector<Remark> m_remarks;
    QStringList m_unread;
};
