#include "realizationpagebuilder.h"

#include "definition/committedvalue.h"
#include "definition/metadialog.h"
#include "definitionchanges.h"
#include "formatediting.h"
#include "formatfilling.h"
#include "formatmenu.h"
#include "formattabbar.h"
#include "formattabs.h"
#include "formattree.h"
#include "model/controller.h"
#include "model/generatedid.h"
#include "model/modelchanges.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "recordtable.h"
#include "sheetpane.h"
#include "surface/extpointwidgetform.h"

#include <QApplication>
#include <QCursor>
#include <QElapsedTimer>
#include <QMenu>
#include <QShortcut>

namespace {

const QString idKey = QStringLiteral("id");

// A tab that many siblings fill is filled again this often while they arrive, or less often when that takes long.
constexpr int refillPauseMs = 120;
constexpr int refillsInPause = 10;

} // namespace

RealizationPageBuilder::RealizationPageBuilder(Ui::ExtPointWidget *ui, QObject *parent)
    : QObject(parent), m_ui(ui), m_formatTree(new FormatTree(this)), m_formatMenu(new FormatMenu(this)),
      m_tableMenu(std::make_unique<QMenu>())
{
    m_refillTimer.setSingleShot(true);
    m_refillTimer.setInterval(refillPauseMs);
    connect(&m_refillTimer, &QTimer::timeout, this, &RealizationPageBuilder::refillWhenIdle);
}

RealizationPageBuilder::~RealizationPageBuilder() = default;

void RealizationPageBuilder::initWidgets(Ui::ExtPointWidget *ui)
{
    m_ui = ui;
    FormatTabBar::putInto(ui->formatTab);
    m_formatTabs = new FormatTabs(ui->formatTab, this);
    m_records = new RecordTable(ui->realizTable, this);
    m_sheet = new SheetPane(ui->propertyRealization, this);
    connect(ui->tabWidget, &QObject::destroyed, this, [this] {
        m_ui = nullptr;
        m_refillTimer.stop();
    });

    ui->splitter_5->setStretchFactor(0, 0);
    ui->splitter_5->setStretchFactor(1, 3);
    ui->splitter_5->setStretchFactor(2, 2);
    ui->splitter_5->setSizes({ 260, 600, 320 });
    ui->splitter_5->setChildrenCollapsible(false);
    ui->splitter_4->setChildrenCollapsible(false);
    ui->splitter_4->setStretchFactor(0, 1);
    ui->splitter_4->setStretchFactor(2, 1);
    ui->splitter_4->setSizes({ 300, 0, 300 });

    ui->realizationTree->setAccessibleName(tr("Extension points of all plug-ins"));
    ui->formatTab->setAccessibleName(tr("Formats"));
    ui->formatTab->setUsesScrollButtons(true);
    ui->realizTable->setAccessibleName(tr("Records of the selected point"));
    ui->propertyRealization->setAccessibleName(tr("Properties"));
    m_formatTree->widget()->setColumnCount(2);
    m_formatTree->widget()->setHeaderLabels({ idKey, QStringLiteral("displayLabel") });
    ui->pushButton_add_format_tree->hide();
}

void RealizationPageBuilder::loadTree()
{
    m_realizationRoot = Controller::instance()->availablePointsRoot();
    if (!m_realizationRoot || !m_ui)
        return;
    m_ui->realizationTree->addTopLevelItem(m_realizationRoot);
    m_ui->realizationTree->expandAll();
}

void RealizationPageBuilder::createConnections()
{
    if (!m_ui)
        return;
    RealizationTreeWidget *formatTree = m_formatTree->widget();
    connect(m_ui->realizationTree, &QTreeWidget::itemClicked, this, &RealizationPageBuilder::onItemClicked);
    connect(m_ui->formatTab, &QTabWidget::currentChanged, this, &RealizationPageBuilder::formatTabCurrentChanged);
    connect(m_ui->realizTable, &QTableWidget::itemClicked, this, &RealizationPageBuilder::onTableItemClicked);
    connect(formatTree, &QTreeWidget::itemClicked, this, &RealizationPageBuilder::onFormatTreeItemClicked);
    connect(m_ui->propertyRealization, &TreePropertyBrowser::propertyChanged, this,
        &RealizationPageBuilder::onPropertyRealization);
    // What a drop has changed is seen before anybody hears of it.
    const auto forward = [this](bool flag) {
        Controller::instance()->flushChanges();
        Q_EMIT modified(flag);
    };
    connect(m_ui->realizTable, &RealizationTableWidget::modified, this, forward);
    connect(m_ui->realizationTree, &RealizationTreeWidget::modified, this, forward);
    connect(formatTree, &RealizationTreeWidget::modified, this, forward);
    connect(formatTree, &RealizationTreeWidget::setTarget, this, &RealizationPageBuilder::setTarget);
    connect(formatTree, &RealizationTreeWidget::dropPoint, this, &RealizationPageBuilder::dropPoint);
    connect(m_ui->realizTable, &RealizationTableWidget::addTableRealization, this,
        &RealizationPageBuilder::onAddTableRealization);
    createMenus();
    connect(m_ui->pushButton_add_format_tree, &QPushButton::clicked, this,
        &RealizationPageBuilder::on_pushButton_add_format_tree_clicked);

    // The keyboard moves the current row without a click and shows the same; a drag makes every row that it passes
    // current.
    connect(m_ui->realizationTree, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *current) {
        if (!isDragging())
            onItemClicked(current, 0);
    });
    connect(m_ui->realizTable, &QTableWidget::currentItemChanged, this, [this](QTableWidgetItem *current) {
        if (!isDragging())
            onTableItemClicked(current);
    });
    connect(formatTree, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *current) {
        if (!isDragging())
            onFormatTreeItemClicked(current, 0);
    });
    connect(m_formatTabs, &FormatTabs::aboutToRemove, this, [this](QWidget *page) {
        if (m_formatTree->tabName() != page->objectName())
            return;
        m_formatTree->clear();
        m_formatTree->moveTo(nullptr);
    });
    connectToManager();
    createKeys();
}

void RealizationPageBuilder::createMenus()
{
    RealizationTreeWidget *formatTree = m_formatTree->widget();
    formatTree->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(formatTree, &QWidget::customContextMenuRequested, this, &RealizationPageBuilder::onFormatTreeMenu);
    connect(m_formatMenu->deleteAction(), &QAction::triggered, this, &RealizationPageBuilder::formatItemDel);
    m_ui->realizTable->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_ui->realizTable, &QWidget::customContextMenuRequested, this, &RealizationPageBuilder::onTableShowMenu);
    m_tableMenu->setObjectName(QStringLiteral("tableMenu"));
    m_deleteRecord = m_tableMenu->addAction(QStringLiteral("Delete"));
    m_editMeta = m_tableMenu->addAction(QObject::tr("Meta"));
    connect(m_deleteRecord, &QAction::triggered, this, &RealizationPageBuilder::tableItemDel);
    connect(m_editMeta, &QAction::triggered, this, &RealizationPageBuilder::addMeta);
}

void RealizationPageBuilder::connectToManager()
{
    SourceDataManager *manager = Controller::instance()->sourceDataManager();
    if (!manager)
        return;
    connect(manager, &SourceDataManager::scanProgressed, this, [this] {
        if (m_formatTree->isOutdated())
            requestRefill();
    });
    connect(manager, &SourceDataManager::scanFinished, this, [this] {
        if (!m_ui)
            return;
        m_formatTabs->setBatching(false);
        m_formatTree->relabel();
        requestRefill();
    });
    connect(&manager->changes(), &ModelChanges::changed, this, &RealizationPageBuilder::follow);
}

void RealizationPageBuilder::follow(const ModelChange &change)
{
    if (!m_ui)
        return;
    m_formatTabs->follow(change);
    m_formatTree->follow(change, m_formatTabs->currentName());
    if (change.definitions && m_clickedPoint)
        m_formatTree->setShown(Controller::instance()->pointHasFormat(m_clickedPoint));
    m_records->follow(change);

    // The sheet is about nothing that can't be found on the page any more. A record without an id is found nowhere, but
    // may be given one where that was taken from it.
    PointTreeWidgetItem *node = m_sheet->node();
    bool isFound = node && Controller::instance()->ownRealizations().isOwn(node);
    if (isFound && m_sheet->subject() == SheetPane::Subject::Record)
        isFound = m_records->row(node) >= 0 || node->properties().text(idKey).isEmpty();
    else if (isFound && m_sheet->subject() == SheetPane::Subject::Holder)
        isFound = node == holderOf(m_clickedPoint);
    isFound ? m_sheet->refresh() : m_sheet->showNothing();
}

void RealizationPageBuilder::finishChange()
{
    Controller::instance()->flushChanges();
    Q_EMIT modified(true);
}

void RealizationPageBuilder::createKeys()
{
    const auto onKey = [this](QWidget *widget, const QKeySequence &key, auto action) {
        connect(new QShortcut(key, widget, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this, action);
    };
    RealizationTreeWidget *formatTree = m_formatTree->widget();
    onKey(formatTree, QKeySequence(Qt::Key_Delete), [this, formatTree] {
        m_sheet->commit();
        m_contextItem = PointTreeWidgetItem::fromRow(formatTree->currentItem());
        m_formatMenu->fitTo(m_contextItem);
        if (m_formatMenu->deleteAction()->isEnabled() && m_contextItem->isSelected())
            formatItemDel();
    });
    onKey(formatTree, QKeySequence(Qt::Key_Insert), [this, formatTree] {
        m_sheet->commit();
        QTreeWidgetItem *current = formatTree->currentItem();
        if (!current || !current->isSelected())
            return;
        m_contextItem = PointTreeWidgetItem::fromRow(current);
        m_formatMenu->fitTo(m_contextItem);
        const QPoint place = formatTree->visualItemRect(current).bottomLeft();
        if (m_formatMenu->childTypeMenu()->isEnabled())
            openFormatMenu(m_formatMenu->childTypeMenu(), formatTree->viewport()->mapToGlobal(place));
    });
    onKey(m_ui->realizTable, QKeySequence(Qt::Key_Delete), [this] {
        m_sheet->commit();
        m_contextItem = m_records->record(m_ui->realizTable->currentRow());
        tableItemDel();
    });
    for (QWidget *widget : { static_cast<QWidget *>(formatTree), static_cast<QWidget *>(m_ui->realizTable) }) {
        onKey(widget, QKeySequence(Qt::Key_F2), [this] {
            m_sheet->openEditor({ QStringLiteral("text"), QStringLiteral("title"), idKey });
        });
    }
}

void RealizationPageBuilder::addPluginFormats()
{
    const Controller *controller = Controller::instance();
    m_formatTabs->sync(controller->layouts() + controller->targetFormats());
}

void RealizationPageBuilder::showAllFormats()
{
    m_formatTabs->flush();
}

void RealizationPageBuilder::addLayout(PointTreeWidgetItem *layout)
{
    m_formatTabs->setBatching(isScanning());
    m_formatTabs->addLayout(layout);
}

void RealizationPageBuilder::addFormatRoot(PointTreeWidgetItem *item)
{
    if (item) {
        m_formatTabs->setBatching(isScanning());
        m_formatTabs->addFormatRoot(item);
    } else if (m_ui) {
        formatTabCurrentChanged(m_ui->formatTab->currentIndex());
    }
}

bool RealizationPageBuilder::isScanning()
{
    const SourceDataManager *manager = Controller::instance()->sourceDataManager();
    return manager && manager->isScanning();
}

void RealizationPageBuilder::addDefine(QString plugin, PointTreeWidgetItem *point, PointTreeWidgetItem *subPoint)
{
    if (m_realizationRoot && point)
        DefinitionChanges::add(m_realizationRoot, plugin, point, subPoint);
}

void RealizationPageBuilder::delDefine(PointTreeWidgetItem *item)
{
    if (m_realizationRoot && item)
        item->unlink();
}

void RealizationPageBuilder::onItemClicked(QTreeWidgetItem *item, int)
{
    if (!m_ui)
        return;
    const QPointer<PointTreeWidgetItem> clicked(PointTreeWidgetItem::fromRow(item));
    m_sheet->commit();
    m_ui->realizTable->show();
    m_records->clear();
    m_clickedPoint = clicked;
    if (!m_clickedPoint) {
        if (m_sheet->subject() != SheetPane::Subject::Entry)
            m_sheet->showNothing();
        return;
    }
    if (m_clickedPoint->parentItem() == m_realizationRoot)
        m_ui->realizTable->hide();
    m_formatTree->setShown(Controller::instance()->pointHasFormat(m_clickedPoint));
    m_records->showRecords(m_clickedPoint);
    m_sheet->show(SheetPane::Subject::Holder, holderOf(m_clickedPoint));
}

PointTreeWidgetItem *RealizationPageBuilder::holderOf(PointTreeWidgetItem *point) const
{
    if (!point || (!point->isKind(QLatin1String("ExtPoint")) && !point->isKind(QLatin1String("SubExtPoint"))))
        return nullptr;
    const QString id = point->property(idKey).toString();
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    const OwnRealizations::Nodes holders = realizations.holders(id);
    if (!holders.isEmpty())
        return holders.first();
    // A node without "id" stands under its tag, and is nobody's.
    const OwnRealizations::Nodes known = realizations.withId(id);
    const bool isNamed = !known.isEmpty() && known.first()->property(idKey).toString() == id;
    return isNamed ? known.first() : nullptr;
}

void RealizationPageBuilder::onTableItemClicked(QTableWidgetItem *item)
{
    if (!m_ui || !item || !m_ui->realizTable->item(item->row(), 0))
        return;
    const QString id = m_ui->realizTable->item(item->row(), 0)->data(Qt::EditRole).toString();
    // Two records can have one id, since generated ones are not unique: the row knows which one it shows.
    QPointer<PointTreeWidgetItem> record(m_records->record(item->row()));
    m_sheet->commit();
    if (!record)
        record = Controller::instance()->ownRealizations().record(id);
    if (!record)
        return;
    m_formatTree->select(m_formatTree->rowsWithId(record->property(idKey).toString()));
    m_sheet->show(SheetPane::Subject::Record, record);
}

void RealizationPageBuilder::onFormatTreeItemClicked(QTreeWidgetItem *item, int)
{
    if (!m_ui)
        return;
    PointTreeWidgetItem *row = PointTreeWidgetItem::fromRow(item);
    PointTreeWidgetItem *source = FormatTree::sourceOf(row);
    const QPointer<PointTreeWidgetItem> shown(source ? source : row);
    m_sheet->commit();
    if (shown && !Controller::instance()->ownRealizations().isForeign(shown))
        m_sheet->show(SheetPane::Subject::Entry, shown);
    else if (item || m_sheet->subject() == SheetPane::Subject::Entry)
        m_sheet->showNothing();
}

void RealizationPageBuilder::onPropertyRealization(const QString &property, const QVariant &variant)
{
    PointTreeWidgetItem *node = m_sheet ? m_sheet->node() : nullptr;
    if (!m_ui || !node)
        return;
    const QVariant value = CommittedValue::of(variant);
    if (OwnRealizations::isRoot(node) && wouldLoseItsName(node, property, value)) {
        m_sheet->showAfresh();
        return;
    }
    if (property == idKey)
        rename(node, value.toString());
    else
        Controller::instance()->setRealizationProperty(node, property, value);
    finishChange();
}

void RealizationPageBuilder::rename(PointTreeWidgetItem *node, const QString &id)
{
    Controller *controller = Controller::instance();
    const QString old = node->property(idKey).toString();
    const bool isRecord = m_sheet->subject() == SheetPane::Subject::Record;
    OwnRealizations::Nodes entries;
    if (isRecord && !id.isEmpty())
        entries = controller->ownRealizations().references(old);
    else if (m_sheet->subject() == SheetPane::Subject::Entry)
        entries.append(node);
    // What stands under an entry because it names it goes on doing so.
    OwnRealizations::Nodes placed;
    if (!old.isEmpty() && !id.isEmpty()) {
        for (PointTreeWidgetItem *entry : qAsConst(entries))
            placed += FormatFilling::placedUnder(entry);
    }
    if (isRecord)
        controller->renameRecord(node, id);
    else
        controller->setRealizationProperty(node, idKey, id);
    for (PointTreeWidgetItem *entry : qAsConst(placed))
        controller->setRealizationProperty(entry, QStringLiteral("parent"), id);
}

bool RealizationPageBuilder::wouldLoseItsName(
    PointTreeWidgetItem *root, const QString &key, const QVariant &value) const
{
    // Nothing would ever show it again.
    if (!value.toString().isEmpty() || (key != idKey && key != QLatin1String("target")))
        return false;
    const QStringList names = FormatTabs::namesOf(root);
    return names.size() == 1 && names.first() == root->property(key).toString();
}

void RealizationPageBuilder::formatTabCurrentChanged(int)
{
    if (!m_ui || !m_formatTabs || !m_ui->formatTab->currentWidget())
        return;
    m_sheet->commit();
    if (!m_ui || !m_ui->formatTab->currentWidget())
        return;
    m_formatTree->moveTo(m_ui->formatTab->currentWidget());
    m_formatTree->show(m_formatTabs->currentName());
    // Its row has gone.
    if (m_sheet->subject() == SheetPane::Subject::Entry)
        m_sheet->showNothing();
}

void RealizationPageBuilder::onFormatTreeMenu(const QPoint pos)
{
    if (!m_ui)
        return;
    // The row may move by what is committed, but it is the one that was meant.
    const QPointer<PointTreeWidgetItem> row(PointTreeWidgetItem::fromRow(m_formatTree->widget()->itemAt(pos)));
    m_sheet->commit();
    m_contextItem = row;
    if (!m_contextItem)
        return;
    m_formatMenu->fitTo(m_contextItem);
    openFormatMenu(m_formatMenu->menu(), QCursor::pos());
}

void RealizationPageBuilder::openFormatMenu(QMenu *menu, const QPoint &globalPos)
{
    const QList<QAction *> types = m_formatMenu->childTypeMenu()->actions();
    for (QAction *type : types)
        connect(type, &QAction::triggered, this, &RealizationPageBuilder::onCreatType);
    m_menuOpen = true;
    menu->exec(globalPos);
    m_menuOpen = false;
}

void RealizationPageBuilder::onCreatType()
{
    const auto *action = qobject_cast<QAction *>(sender());
    if (!action || !m_contextItem || !m_ui)
        return;
    const QPointer<PointTreeWidgetItem> item(FormatEditing::createChild(m_contextItem, action->data().toString()));
    m_contextItem->QTreeWidgetItem::addChild(item);
    Controller::instance()->flushChanges();
    showEntry(item);
    Q_EMIT modified(true);
}

void RealizationPageBuilder::showEntry(PointTreeWidgetItem *row)
{
    if (!m_formatTree->contains(row))
        return;
    m_formatTree->widget()->setCurrentItem(row);
    m_formatTree->widget()->scrollToItem(row);
    onFormatTreeItemClicked(row, 0);
}

void RealizationPageBuilder::on_pushButton_add_format_tree_clicked()
{
    if (!m_ui)
        return;
    m_sheet->commit();
    // What somebody asks for comes at once, also while a product is read.
    m_formatTabs->setBatching(false);
    (void)FormatEditing::createRoot(GeneratedId::make(Controller::instance()->pluginId(), QStringLiteral("layout.")));
    finishChange();
    m_formatTabs->flush();
}

void RealizationPageBuilder::formatItemDel()
{
    if (!m_ui || !m_contextItem || !m_formatTree->contains(m_contextItem) || !FormatEditing::isDeletable(m_contextItem))
        return;
    PointTreeWidgetItem *row = std::exchange(m_contextItem, nullptr);
    const bool wasCurrent = row == m_formatTree->widget()->currentItem();
    const QPointer<PointTreeWidgetItem> next(wasCurrent ? row->neighbour() : nullptr);
    Controller::instance()->destroyRealization(row->master()->item());
    finishChange();
    showEntry(next);
}

void RealizationPageBuilder::onTableShowMenu(QPoint pos)
{
    if (!m_ui)
        return;
    const QModelIndex index = m_ui->realizTable->indexAt(pos);
    const QPointer<PointTreeWidgetItem> record(index.isValid() ? m_records->record(index.row()) : nullptr);
    m_sheet->commit();
    m_contextItem = record;
    m_deleteRecord->setEnabled(m_contextItem != nullptr);
    m_menuOpen = true;
    m_tableMenu->exec(QCursor::pos());
    m_menuOpen = false;
}

void RealizationPageBuilder::tableItemDel()
{
    if (!m_ui || !m_contextItem)
        return;
    PointTreeWidgetItem *record = std::exchange(m_contextItem, nullptr);
    const int row = m_records->row(record);
    const bool wasCurrent = row >= 0 && row == m_ui->realizTable->currentRow();
    Controller::instance()->retire(record);
    finishChange();
    if (wasCurrent)
        m_ui->realizTable->setCurrentCell(qMin(row, m_ui->realizTable->rowCount() - 1), 0);
}

void RealizationPageBuilder::addMeta()
{
    MetaDialog dialog(m_contextItem);
    connect(&dialog, &MetaDialog::modified, this, &RealizationPageBuilder::modified);
    dialog.exec();
    Controller::instance()->flushChanges();
}

void RealizationPageBuilder::setTarget(PointTreeWidgetItem *item)
{
    if (item && m_formatTabs)
        Controller::instance()->setRealizationProperty(item, QStringLiteral("target"), m_formatTabs->currentName());
}

void RealizationPageBuilder::dropPoint(PointTreeWidgetItem *item)
{
    if (!m_ui || !item)
        return;
    const QPointer<PointTreeWidgetItem> row(item);
    Controller::instance()->flushChanges();
    m_formatTree->complete(row);
    showEntry(row);
    Q_EMIT modified(true);
}

void RealizationPageBuilder::onAddTableRealization(PointTreeWidgetItem *parent, PointTreeWidgetItem *child, bool)
{
    if (!m_ui || !child)
        return;
    Controller *controller = Controller::instance();
    const QPointer<PointTreeWidgetItem> record(child);
    if (parent && !parent->parentItem()) {
        if (PointTreeWidgetItem *set = controller->ensureDataSet())
            controller->insertRealization(set, parent);
    }
    controller->flushChanges();
    // The point that was dragged is the current one of its tree.
    if (!controller->ownRealizations().recordsOf(m_records->point()).contains(record))
        onItemClicked(m_ui->realizationTree->currentItem(), 0);
    if (!record)
        return;
    if (OwnRealizations::isRoot(record))
        m_formatTabs->show(record);
    if (!m_records->point())
        m_records->append(record);
    const int row = m_records->row(record);
    if (row < 0)
        return;
    m_ui->realizTable->setCurrentCell(row, 0);
    m_ui->realizTable->scrollToItem(m_ui->realizTable->item(row, 0));
    onTableItemClicked(m_ui->realizTable->item(row, 0));
}

void RealizationPageBuilder::requestRefill()
{
    if (!m_refillTimer.isActive())
        m_refillTimer.start();
}

void RealizationPageBuilder::refillWhenIdle()
{
    if (!m_ui)
        return;
    if (isBusy()) {
        m_refillTimer.start();
        return;
    }
    QElapsedTimer clock;
    clock.start();
    if (m_formatTree->isOutdated())
        m_formatTree->sync(m_formatTabs->currentName());
    m_sheet->refresh();
    m_refillTimer.setInterval(qMax(refillPauseMs, int(clock.elapsed()) * refillsInPause));
}

bool RealizationPageBuilder::isDragging() const
{
    // The trees that die with the form have one last current row.
    if (!m_ui || !m_formatTree->widget())
        return false;
    return m_formatTree->widget()->isDragging() || m_ui->realizationTree->isDragging()
        || m_ui->realizTable->isDragging();
}

bool RealizationPageBuilder::isBusy() const
{
    if (m_menuOpen || QApplication::activePopupWidget() || QApplication::activeModalWidget() || isDragging())
        return true;
    return m_ui->propertyRealization->isEditing();
}
