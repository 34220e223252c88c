#pragma once

#include "definitions.h"
#include "ownrealizations.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <QWidget>

class MainWidgetInterface;
class PointTreeWidgetItem;
class SourceDataManager;

/// The process-wide way of pages and widgets to the current manager and main widget. With two extension files open in
/// one process both editors reach the objects registered last; when those go, the ones registered before them are
/// current again.
///
/// Every operation without a word of its own forwards to the operation of the manager or of the main widget with the
/// same name, and answers empty, null or false when there is none. Created on first use, never destroyed. GUI thread,
/// but for instance().
class Controller final : public QObject
{
    Q_OBJECT

public:
    /// Any thread.
    [[nodiscard]] static Controller *instance();

    void setSourceDataManager(SourceDataManager *manager);
    void setMainWidget(QWidget *widget);
    [[nodiscard]] SourceDataManager *sourceDataManager() const;
    [[nodiscard]] QWidget *mainWidget() const;

    // Main widget
    void addLayout(PointTreeWidgetItem *layout);
    void addFormatRoot(PointTreeWidgetItem *item);

    // Manager
    [[nodiscard]] QString filePath() const;
    [[nodiscard]] QString pluginId() const;
    [[nodiscard]] PointTreeWidgetItem *definitionRoot() const;
    [[nodiscard]] PointTreeWidgetItem *availablePointsRoot() const;
    [[nodiscard]] PointTreeWidgetItem *realizationRoot() const;
    void addDefinition(PointTreeWidgetItem *parent, PointTreeWidgetItem *child);
    void offerDefinition(PointTreeWidgetItem *definition, PointTreeWidgetItem *above);
    /// Announces what has changed; see ModelChanges.
    void flushChanges();
    void addTarget(PointTreeWidgetItem *format);
    void addRealization(PointTreeWidgetItem *node);
    [[nodiscard]] PointTreeWidgetItem *definition(const QString &key) const;
    PointTreeWidgetItem *ensureDataSet();
    void insertRealization(PointTreeWidgetItem *parent, PointTreeWidgetItem *node, int index = -1);
    bool moveRealization(PointTreeWidgetItem *node, PointTreeWidgetItem *parent, int index = -1);
    void setRealizationProperty(PointTreeWidgetItem *node, const QString &key, const QVariant &value);
    void renameRecord(PointTreeWidgetItem *record, const QString &id);
    void destroyRealization(PointTreeWidgetItem *node);
    void retire(PointTreeWidgetItem *node);
    void followPointId(const QString &old, const QString &now);
    [[nodiscard]] OwnRealizations ownRealizations() const;
    [[nodiscard]] int formatRevision(const QString &name) const;
    [[nodiscard]] QVector<PointTreeWidgetItem *> data(const QString &id) const;
    [[nodiscard]] QVector<PointTreeWidgetItem *> realizations() const;
    [[nodiscard]] QVector<PointTreeWidgetItem *> layouts() const;
    [[nodiscard]] QVector<PointTreeWidgetItem *> targetFormats() const;
    [[nodiscard]] bool pointHasFormat(const PointTreeWidgetItem *node) const;
    [[nodiscard]] QStringList attributeTypes() const;
    [[nodiscard]] QMap<QString, QStringList> attributeFields() const;
    [[nodiscard]] QStringList childTypes(const QString &key, const QString &pointId) const;
    [[nodiscard]] QString childTypes(const QString &key, const QString &pointId, bool *exists) const;
    [[nodiscard]] QVector<PointTreeWidgetItem *> realizationItems(const QString &key) const;
    [[nodiscard]] QVector<PointTreeWidgetItem *> realizationItems(const QString &key, const QString &kind) const;
    [[nodiscard]] bool attributeDefinitions(const PointTreeWidgetItem *item, Definitions::Attributes *attributes) const;
    [[nodiscard]] QString keyValue(const PointTreeWidgetItem *node) const;

private:
    Controller() = default;

    /// The answer of the current manager, or a default-made one when there is none.
    template <typename Question>
    auto ask(Question question) const;

    // The one registered last stands last; those that have gone are skipped.
    QList<QPointer<SourceDataManager>> m_managers;
    QList<QPointer<QWidget>> m_widgets;
};
