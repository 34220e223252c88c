#include "realizationpagebuilder.h"

#include "definition/committedvalue.h"
#include "definition/metadialog.h"
#include "definitionchanges.h"
#include "form/extpointwidgetform.h"
#include "form/filterline.h"
#include "formatediting.h"
#include "formattabbar.h"
#include "formattabs.h"
#include "formattree.h"
#include "heldpress.h"
#include "model/controller.h"
#include "model/generatedid.h"
#include "model/keys.h"
#include "model/modelchanges.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "ownpluginrows.h"
#include "pagemenus.h"
#include "recordtable.h"
#include "sheetpane.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>

namespace {

// A tab that many siblings fill is filled again this often while they arrive, or less often when that takes long.
constexpr int refillPauseMs = 120;
constexpr int refillsInPause = 10;

} // namespace

RealizationPageBuilder::RealizationPageBuilder(Ui::ExtPointWidget *ui, QObject *parent)
    : QObject(parent), m_ui(ui), m_formatTree(new FormatTree(this))
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
    // The bar has come after everything else.
    QWidget::setTabOrder(ui->formatTab->tabBar(), ui->realizTable);
    QWidget::setTabOrder(ui->realizTable, ui->propertyRealization->focusProxy());
    m_formatTabs = new FormatTabs(ui->formatTab, this);
    m_records = new RecordTable(ui->realizTable, this);
    m_sheet = new SheetPane(ui->propertyRealization, this);
    new OwnPluginRows(ui->realizationTree, this);
    connect(ui->tabWidget, &QObject::destroyed, this, [this] {
        m_ui = nullptr;
        m_refillTimer.stop();
    });

    ui->splitter_5->setStretchFactor(0, 1);
    ui->splitter_5->setStretchFactor(1, 4);
    ui->splitter_5->setStretchFactor(2, 1);
    const int letter = ui->tabWidget->fontMetrics().averageCharWidth();
    ui->splitter_5->setSizes({ qMax(260, 32 * letter), 600, qMax(320, 40 * letter) });
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
    connect(m_ui->propertyRealization, &TreePropertyBrowser::resetRequested, this, [this](const QString &key) {
        m_sheet->commit();
        if (!FormatTabs::wouldLoseItsName(m_sheet->node(), key, m_sheet->standard(key)) && m_sheet->reset(key))
            finishChange();
    });
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
    m_menus = new PageMenus(m_formatTree, m_ui->realizationTree, m_ui->realizTable, m_records, m_sheet, this);
    connect(m_ui->pushButton_add_format_tree, &QPushButton::clicked, this,
        &RealizationPageBuilder::on_pushButton_add_format_tree_clicked);

    m_heldPoint = new HeldPress(
        m_ui->realizationTree, [this] { onItemClicked(m_ui ? m_ui->realizationTree->currentItem() : nullptr, 0); });
    m_heldRecord = new HeldPress(
        m_ui->realizTable, [this] { onTableItemClicked(m_ui ? m_ui->realizTable->currentItem() : nullptr); });
    m_ui->realizationTree->setDragEnded([this] { m_heldPoint->putBack(); });
    m_ui->realizTable->setDragEnded([this] { m_heldRecord->putBack(); });
    // The keyboard moves the current row without a click and shows the same; a drag makes every row that it passes
    // current.
    connect(m_ui->realizationTree, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *current) {
        const bool canWait = showsTargetsOf(PointTreeWidgetItem::fromRow(current));
        if (!isDragging() && !(canWait && m_heldPoint && m_heldPoint->holdsBack()))
            onItemClicked(current, 0);
    });
    connect(m_ui->realizTable, &QTableWidget::currentItemChanged, this, [this](QTableWidgetItem *current) {
        if (!isDragging() && !(m_heldRecord && m_heldRecord->holdsBack()))
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
        m_formatTree->setShown(Controller::instance()->definitions().hasFormat(m_clickedPoint->pointId()));
    m_records->follow(change);

    // The sheet is about nothing that can't be found on the page any more. A record without an id is found nowhere, but
    // may be given one where that was taken from it.
    PointTreeWidgetItem *node = m_sheet->node();
    const OwnRealizations realizations = Controller::instance()->ownRealizations();
    const bool isForeign = m_sheet->subject() == SheetPane::Subject::Foreign;
    bool isFound = node && (isForeign ? realizations.isForeign(node) : realizations.isOwn(node));
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

void RealizationPageBuilder::addPluginFormats()
{
    const Controller *controller = Controller::instance();
    m_formatTabs->sync(controller->ownRealizations().tabRoots());
}

void RealizationPageBuilder::showAllFormats()
{
    m_formatTabs->flush();
}

void RealizationPageBuilder::addLayout(PointTreeWidgetItem *layout)
{
    m_formatTabs->setBatching(Controller::instance()->isScanning());
    m_formatTabs->addLayout(layout);
}

void RealizationPageBuilder::addFormatRoot(PointTreeWidgetItem *item)
{
    if (item) {
        m_formatTabs->setBatching(Controller::instance()->isScanning());
        m_formatTabs->addFormatRoot(item);
    } else if (m_ui) {
        formatTabCurrentChanged(m_ui->formatTab->currentIndex());
    }
}

void RealizationPageBuilder::showPoint(PointTreeWidgetItem *point)
{
    m_ui->realizationTree->setCurrentItem(point);
    FilterLine::showCurrent(m_ui->realizationTree);
    onItemClicked(point, 0);
}

bool RealizationPageBuilder::showRecord(PointTreeWidgetItem *record)
{
    const int row = m_records->row(record);
    if (row < 0)
        return false;
    m_ui->realizTable->setCurrentCell(row, 0);
    FilterLine::showCurrent(m_ui->realizTable);
    onTableItemClicked(m_ui->realizTable->item(row, 0));
    return true;
}

void RealizationPageBuilder::showSheetOf(PointTreeWidgetItem *node)
{
    if (m_sheet->node() == node)
        return;
    const bool isHolder = node->isKind(QLatin1String("ExtData"));
    m_sheet->show(isHolder                    ? SheetPane::Subject::Holder
            : OwnRealizations::isRecord(node) ? SheetPane::Subject::Record
                                              : SheetPane::Subject::Entry,
        node);
}

void RealizationPageBuilder::openField(const QString &key)
{
    m_sheet->openEditor({ key });
}

void RealizationPageBuilder::addDefine(const QString &plugin, PointTreeWidgetItem *point, PointTreeWidgetItem *subPoint)
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
    if (m_heldPoint)
        m_heldPoint->shown();
    const QPointer<PointTreeWidgetItem> clicked(PointTreeWidgetItem::fromRow(item));
    m_sheet->commit();
    m_ui->realizTable->show();
    m_records->clear();
    m_clickedPoint = clicked;
    if (!m_clickedPoint) {
        if (!m_sheet->isAboutEntry())
            m_sheet->showNothing();
        return;
    }
    if (m_clickedPoint->parentItem() == m_realizationRoot)
        m_ui->realizTable->hide();
    m_formatTree->setShown(Controller::instance()->definitions().hasFormat(m_clickedPoint->pointId()));
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
    if (m_heldRecord)
        m_heldRecord->shown();
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
    const bool isForeign = Controller::instance()->ownRealizations().isForeign(shown);
    if (shown)
        m_sheet->show(isForeign ? SheetPane::Subject::Foreign : SheetPane::Subject::Entry, shown);
    else if (item || m_sheet->isAboutEntry())
        m_sheet->showNothing();
}

void RealizationPageBuilder::onPropertyRealization(const QString &property, const QVariant &variant)
{
    PointTreeWidgetItem *node = m_sheet ? m_sheet->node() : nullptr;
    if (!m_ui || !node || m_sheet->subject() == SheetPane::Subject::Foreign)
        return;
    const QVariant value = CommittedValue::of(variant);
    // A root without a name would never be shown again.
    if (FormatTabs::wouldLoseItsName(node, property, value)) {
        m_sheet->showAfresh();
        return;
    }
    if (property == idKey)
        FormatEditing::rename(node, value.toString());
    else
        node->setProperty(property, value);
    finishChange();
}

void RealizationPageBuilder::formatTabCurrentChanged(int)
{
    if (!m_ui || !m_formatTabs || !m_ui->formatTab->currentWidget())
        return;
    m_sheet->commit();
    if (!m_ui || !m_ui->formatTab->currentWidget())
        return;
    m_formatTree->moveTo(m_ui->formatTab->currentWidget());
    QWidget::setTabOrder(m_ui->formatTab->tabBar(), m_formatTree->widget());
    m_formatTree->show(m_formatTabs->currentName());
    // Its row has gone.
    if (m_sheet->isAboutEntry())
        m_sheet->showNothing();
}

void RealizationPageBuilder::onFormatTreeMenu(const QPoint pos)
{
    if (m_ui)
        m_menus->openForTree(pos);
}

void RealizationPageBuilder::onCreatType()
{
    const auto *action = qobject_cast<QAction *>(sender());
    PointTreeWidgetItem *above = m_ui ? m_menus->target() : nullptr;
    if (!action || !above)
        return;
    const QPointer<PointTreeWidgetItem> item(FormatEditing::createChild(above, action->data().toString()));
    above->QTreeWidgetItem::addChild(item);
    Controller::instance()->flushChanges();
    showEntry(item);
    Q_EMIT modified(true);
}

void RealizationPageBuilder::showEntry(PointTreeWidgetItem *row)
{
    if (!m_formatTree->contains(row))
        return;
    m_formatTree->widget()->setCurrentItem(row);
    FilterLine::showCurrent(m_formatTree->widget());
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
    PointTreeWidgetItem *row = m_ui ? m_menus->takeTarget() : nullptr;
    if (!row || !m_formatTree->contains(row) || !FormatEditing::isDeletable(row))
        return;
    const bool wasCurrent = row == m_formatTree->widget()->currentItem();
    const QPointer<PointTreeWidgetItem> next(wasCurrent ? row->neighbour() : nullptr);
    PointTreeWidgetItem::destroySubtree(row->master()->item());
    finishChange();
    showEntry(next);
}

void RealizationPageBuilder::onTableShowMenu(QPoint pos)
{
    if (m_ui)
        m_menus->openForTable(pos);
}

void RealizationPageBuilder::tableItemDel()
{
    PointTreeWidgetItem *record = m_ui ? m_menus->takeTarget() : nullptr;
    if (!record)
        return;
    const int row = m_records->row(record);
    const bool wasCurrent = row >= 0 && row == m_ui->realizTable->currentRow();
    Controller::instance()->retire(record);
    finishChange();
    if (wasCurrent)
        m_ui->realizTable->setCurrentCell(qMin(row, m_ui->realizTable->rowCount() - 1), 0);
}

void RealizationPageBuilder::addMeta()
{
    MetaDialog dialog(m_menus ? m_menus->target() : nullptr);
    connect(&dialog, &MetaDialog::modified, this, &RealizationPageBuilder::modified);
    dialog.exec();
    Controller::instance()->flushChanges();
}

void RealizationPageBuilder::setTarget(PointTreeWidgetItem *item)
{
    if (item && m_formatTabs)
        item->setProperty(targetKey, m_formatTabs->currentName());
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
        if (PointTreeWidgetItem *set = controller->ownEdits().ensureDataSet())
            OwnEdits::insert(set, parent);
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
    (void)showRecord(record);
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

bool RealizationPageBuilder::showsTargetsOf(PointTreeWidgetItem *point) const
{
    if (!m_ui || !point || !m_formatTree->widget())
        return true;
    return m_ui->realizTable->isVisible()
        && (m_formatTree->widget()->isVisible() || !Controller::instance()->definitions().hasFormat(point->pointId()));
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
    if (QApplication::activePopupWidget() || QApplication::activeModalWidget() || isDragging())
        return true;
    return m_ui->propertyRealization->isEditing();
}
