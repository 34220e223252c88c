#pragma once

#include "definitions.h"
#include "ownedits.h"
#include "ownrealizations.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QStringList>
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
    void addRealization(PointTreeWidgetItem *node);
    void retire(PointTreeWidgetItem *node);
    [[nodiscard]] OwnRealizations ownRealizations() const;
    [[nodiscard]] OwnEdits ownEdits();
    [[nodiscard]] Definitions definitions() const;
    [[nodiscard]] QStringList attributeTypes() const;
    [[nodiscard]] QMap<QString, QStringList> attributeFields() const;
    /// Announces what has changed; see ModelChanges.
    void flushChanges();
    /// See SiblingScan.
    [[nodiscard]] int formatRevision(const QString &name) const;
    [[nodiscard]] bool isScanning() const;

private:
    Controller() = default;

    /// The answer of the current manager, or a default-made one when there is none.
    template <typename Question>
    auto ask(Question question) const;

    // The one registered last stands last; those that have gone are skipped.
    QList<QPointer<SourceDataManager>> m_managers;
    QList<QPointer<QWidget>> m_widgets;
};
