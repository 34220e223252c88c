#pragma once

#include "utils/mimerecord.h"

#include <QHash>

#include <memory>

namespace Utils {

using MimeTypeRecordPointer = std::shared_ptr<const MimeTypeRecord>;

/// The declared types at one moment. The current one is replaced as a whole under a mutex, so a reader keeps an
/// unchanging view without holding a lock, and a refused document leaves no trace.
class MimeRegistry final
{
public:
    /// The current registry; never null. Any thread.
    static std::shared_ptr<const MimeRegistry> current();
    /// Makes a registry with \a types in addition the current one. Any thread.
    static void declare(const QVector<MimeTypeRecord> &types);

    /// The declared type called \a name or having it as an alias; else null.
    MimeTypeRecordPointer find(const QString &name) const;
    const QVector<MimeTypeRecordPointer> &types() const { return m_types; }

    /// The name under which \a name is known here or to the system, aliases resolved; \a name itself when it is
    /// unknown.
    QString canonicalName(const QString &name) const;
    /// True when the type called \a name is \a ancestor or descends from it.
    bool inherits(const QString &name, const QString &ancestor) const;

    /// The types whose patterns fit \a fileName equally well, and better than all others.
    QVector<MimeTypeRecordPointer> bestByName(const QString &fileName) const;
    /// The type among \a candidates that fits \a data best; null when none does.
    MimeTypeRecordPointer bestByContent(const QVector<MimeTypeRecordPointer> &candidates, const QByteArray &data) const;
    /// True when at least one declared type can be told by its content.
    bool knowsContents() const { return m_knowsContents; }

private:
    void add(const MimeTypeRecord &type);
    QStringList parentsOf(const QString &canonical) const;

    QVector<MimeTypeRecordPointer> m_types;
    QHash<QString, int> m_indexByName;
    QHash<QString, int> m_indexByAlias;
    bool m_knowsContents = false;
};

} // namespace Utils
