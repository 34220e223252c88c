#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

/// What was typed into the rows of a sheet and given up since it was refused, the newest twenty: it comes back when the
/// row is edited again, of the same subject only. Owned by the sheet; GUI thread.
class RefusedTexts final
{
public:
    /// Whom the rows are about from now on; without one nothing is kept.
    void setSubject(const QObject *subject) { m_subject = subject; }

    void keep(const QString &name, const QString &text);
    /// What was kept for the row of this name, once; empty when there is nothing.
    [[nodiscard]] QString take(const QString &name);

private:
    struct Refused
    {
        QPointer<const QObject> subject;
        QString name;
        QString text;
    };

    QPointer<const QObject> m_subject;
    QList<Refused> m_texts;
};
