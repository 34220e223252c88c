#pragma once

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QTimer>
#include <QVariant>
#include <QVector>

class PointTreeWidgetItem;

/// What has changed in the opened file since the views were told last. GUI thread.
struct ModelChange
{
    struct Edit
    {
        QPointer<PointTreeWidgetItem> node; ///< null when it has gone since
        QString key;
        QVariant old;
    };

    QVector<Edit> edits;      ///< of the realization side, in order
    QSet<QString> records;    ///< ids of records that came, went or changed; some may be of other nodes
    bool definitions = false; ///< anything on the definition side
    bool structure = false;   ///< nodes of the realization side came, went or moved

    [[nodiscard]] bool isEmpty() const { return edits.isEmpty() && records.isEmpty() && !definitions && !structure; }
    /// Whether a property with this key was changed.
    [[nodiscard]] bool touches(const QString &key) const;
};

/// The one channel by which views hear of changes in the opened file. Each view listens and shows what it shows anew;
/// nobody who changes the model tells a view.
///
/// Changes are collected while an operation is under way and announced together at its end, which flush() marks: no
/// view ever meets half an operation. What nobody flushes is announced when the event loop has its turn. Owned by the
/// manager; GUI thread.
class ModelChanges final : public QObject
{
    Q_OBJECT

public:
    explicit ModelChanges(QObject *parent = nullptr);

    void noteEdit(PointTreeWidgetItem *node, const QString &key, const QVariant &old);
    void noteRecord(const QString &id);
    void noteDefinitions();
    void noteStructure();

    /// Forgets what has been collected: the whole file is new, and is shown as such.
    void discard();

    /// Announces what has been collected, if anything. A listener that makes further changes has them announced too.
    void flush();

Q_SIGNALS:
    void changed(const ModelChange &change);

private:
    void announceLater();

    ModelChange m_collected;
    QTimer m_turn;
    bool m_announcing = false;
};
