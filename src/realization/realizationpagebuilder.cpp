#include "realizationpagebuilder.h"

#include "definitionchanges.h"
#include "formatediting.h"
#include "formatmenu.h"
#include "formattabbar.h"
#include "formattabs.h"
#include "formattree.h"
#include "model/controller.h"
#include "model/generatedid.h"
#include "model/pointtreewidgetitem.h"
#include "model/sourcedatamanager.h"
#include "recordtable.h"
#include "surface/extpointwidgetform.h"

#include <QAbstractItemView>
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
    ui->propertyRealization->setEnabled(false);
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
    connect(m_ui->realizTable, &RealizationTableWidget::modified, this, &RealizationPageBuilder::modified);
    connect(m_ui->realizationTree, &RealizationTreeWidget::modified, this, &RealizationPageBuilder::modified);
    connect(formatTree, &RealizationTreeWidget::modified, this, &RealizationPageBuilder::modified);
    connect(formatTree, &RealizationTreeWidget::setTarget, this, &RealizationPageBuilder::setTarget);
    connect(formatTree, &RealizationTreeWidget::dropPoint, this, &RealizationPageBuilder::dropPoint);
    connect(m_ui->realizTable, &RealizationTableWidget::addTableRealization, this,
        &RealizationPageBuilder::onAddTableRealization);
    createMenus();
    connect(m_ui->pushButton_add_format_tree, &QPushButton::clicked, this,
        &RealizationPageBuilder::on_pushButton_add_format_tree_clicked);

    // An entry that was moved can have taken entries of siblings with it, uncover one, or be used otherwise.
    connect(formatTree, &RealizationTreeWidget::modified, this, [this] {
        afterFormatsChanged();
        requestRefill();
    });
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
    // What the definition page has changed meanwhile.
    connect(m_ui->tabWidget, &QTabWidget::currentChanged, this, &RealizationPageBuilder::showAfresh);
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
        afterFormatsChanged();
    });
}

void RealizationPageBuilder::createKeys()
{
    const auto onKey = [this](QWidget *widget, const QKeySequence &key, auto action) {
        connect(new QShortcut(key, widget, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this, action);
    };
    RealizationTreeWidget *formatTree = m_formatTree->widget();
    onKey(formatTree, QKeySequence(Qt::Key_Delete), [this, formatTree] {
        m_contextItem = PointTreeWidgetItem::fromRow(formatTree->currentItem());
        m_formatMenu->fitTo(m_contextItem);
        if (m_formatMenu->deleteAction()->isEnabled() && m_contextItem->isSelected())
            formatItemDel();
    });
    onKey(formatTree, QKeySequence(Qt::Key_Insert), [this, formatTree] {
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
        m_contextItem = m_records->record(m_ui->realizTable->currentRow());
        tableItemDel();
    });
    for (QWidget *widget : { static_cast<QWidget *>(formatTree), static_cast<QWidget *>(m_ui->realizTable) }) {
        onKey(widget, QKeySequence(Qt::Key_F2), [this] {
            for (const QString &key : { QStringLiteral("text"), QStringLiteral("title"), idKey }) {
                if (m_ui->propertyRealization->isEnabled() && m_ui->propertyRealization->openEditor(key))
                    return;
            }
        });
    }
}

void RealizationPageBuilder::addPluginFormats()
{
    const Controller *controller = Controller::instance();
    m_formatTabs->addPluginFormats(controller->layouts() + controller->targetFormats());
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
    if (m_realizationRoot)
        DefinitionChanges::add(m_realizationRoot, plugin, point, subPoint);
}

void RealizationPageBuilder::delDefine(PointTreeWidgetItem *item)
{
    if (!m_realizationRoot)
        return;
    const bool nothingClicked = !m_clickedPoint;
    item->unlink();
    if (m_ui && !nothingClicked && !m_clickedPoint)
        m_records->clear();
}

void RealizationPageBuilder::showAfresh()
{
    if (!m_ui || m_ui->tabWidget->currentWidget() != m_ui->tab_2)
        return;
    if (m_clickedPoint) {
        const int row = m_ui->realizTable->currentRow();
        const QSignalBlocker quiet(m_ui->realizTable);
        m_formatTree->setShown(Controller::instance()->pointHasFormat(m_clickedPoint));
        m_records->showRecords(m_clickedPoint);
        if (row >= 0)
            m_ui->realizTable->setCurrentCell(row, 0);
    }
    if (!m_currentItem || !m_ui->propertyRealization->isEnabled())
        return;
    if (m_formatTree->contains(m_currentItem))
        onFormatTreeItemClicked(m_currentItem, 0);
    else if (m_records->row(m_currentItem) >= 0)
        onTableItemClicked(m_ui->realizTable->item(m_records->row(m_currentItem), 0));
    else
        showHolderSheet(m_currentItem);
}

void RealizationPageBuilder::onItemClicked(QTreeWidgetItem *item, int)
{
    if (!m_ui)
        return;
    m_ui->propertyRealization->commitEditor();
    m_ui->realizTable->show();
    m_records->clear();
    clearSheetOfDead();
    m_clickedPoint = PointTreeWidgetItem::fromRow(item);
    if (!m_clickedPoint)
        return;
    if (m_clickedPoint->parentItem() == m_realizationRoot)
        m_ui->realizTable->hide();
    m_formatTree->setShown(Controller::instance()->pointHasFormat(m_clickedPoint));
    if (!m_clickedPoint->isKind(QLatin1String("ExtPoint")) && !m_clickedPoint->isKind(QLatin1String("SubExtPoint"))) {
        disableSheet();
        return;
    }
    m_records->showRecords(m_clickedPoint);
    const OwnRealizations::Nodes known
        = Controller::instance()->ownRealizations().withId(m_clickedPoint->property(idKey).toString());
    if (known.isEmpty())
        disableSheet();
    else
        showHolderSheet(known.first());
}

void RealizationPageBuilder::formatTabCurrentChanged(int)
{
    if (!m_ui || !m_formatTabs || !m_ui->formatTab->currentWidget())
        return;
    m_ui->propertyRealization->commitEditor();
    m_formatTree->moveTo(m_ui->formatTab->currentWidget());
    m_formatTree->show(m_formatTabs->currentName());
    clearSheetOfDead();
}

void RealizationPageBuilder::onFormatTreeMenu(const QPoint pos)
{
    if (!m_ui)
        return;
    m_contextItem = PointTreeWidgetItem::fromRow(m_formatTree->widget()->itemAt(pos));
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
    PointTreeWidgetItem *item = FormatEditing::createChild(m_contextItem, action->text());
    m_contextItem->QTreeWidgetItem::addChild(item);
    m_formatTree->enter(item);
    m_formatTree->widget()->setCurrentItem(item);
    m_formatTree->widget()->scrollToItem(item);
    onFormatTreeItemClicked(item, 0);
    afterFormatsChanged();
    Q_EMIT modified(true);
}

void RealizationPageBuilder::on_pushButton_add_format_tree_clicked()
{
    if (!m_ui)
        return;
    const QString id = GeneratedId::make(Controller::instance()->pluginId(), QStringLiteral("layout."));
    // What somebody asks for comes at once, also while a product is read.
    m_formatTabs->setBatching(false);
    m_formatTabs->addFormatRoot(FormatEditing::createRoot(id));
    m_formatTabs->flush();
    Q_EMIT modified(true);
}

void RealizationPageBuilder::formatItemDel()
{
    if (!m_ui || !m_contextItem || !m_formatTree->contains(m_contextItem) || !FormatEditing::isDeletable(m_contextItem))
        return;
    PointTreeWidgetItem *row = std::exchange(m_contextItem, nullptr);
    const bool isRoot = !row->parentItem();
    const bool isMerged = m_formatTree->isMerged() || m_formatTree->showsOthersUnder(row);
    PointTreeWidgetItem *saved = row->master()->item();
    const QStringList names = FormatTabs::namesOf(saved);
    m_formatTree->destroyRow(row);
    Controller::instance()->destroyRealization(saved);
    if (isRoot)
        followRoot(names, nullptr);
    else if (isMerged)
        refill();
    clearSheetOfDead();
    afterFormatsChanged();
    Q_EMIT modified(true);
}

void RealizationPageBuilder::followRoot(const QStringList &oldNames, PointTreeWidgetItem *root)
{
    if (root && !oldNames.isEmpty() && FormatSources::of(oldNames.first()).isEmpty()) {
        const QString newName = FormatTabs::nameOf(root);
        if (m_formatTabs->rename(oldNames.first(), newName))
            m_formatTree->renameTab(oldNames.first(), newName);
    }
    for (const QString &name : oldNames) {
        if (!FormatSources::of(name).isEmpty())
            continue;
        if (m_formatTree->tabName() == name) {
            m_formatTree->clear();
            m_formatTree->moveTo(nullptr);
        }
        m_formatTabs->remove(name);
    }
    if (root) {
        m_formatTabs->addPluginFormats({ root });
        m_formatTabs->relabel(root);
    }
    refill();
}

void RealizationPageBuilder::onTableShowMenu(QPoint pos)
{
    if (!m_ui)
        return;
    const QModelIndex index = m_ui->realizTable->indexAt(pos);
    m_contextItem = index.isValid() ? m_records->record(index.row()) : nullptr;
    m_deleteRecord->setEnabled(m_contextItem != nullptr);
    m_menuOpen = true;
    m_tableMenu->exec(QCursor::pos());
    m_menuOpen = false;
}

void RealizationPageBuilder::requestRefill()
{
    m_refillWanted = true;
    if (!m_refillTimer.isActive())
        m_refillTimer.start();
}

void RealizationPageBuilder::refillWhenIdle()
{
    if (!m_ui || !m_refillWanted)
        return;
    if (isBusy()) {
        m_refillTimer.start();
        return;
    }
    refill();
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
    const QWidget *focus = QApplication::focusWidget();
    const auto *sheet = m_ui->propertyRealization->findChild<QAbstractItemView *>();
    return focus && sheet && focus != sheet && sheet->isAncestorOf(focus);
}

void RealizationPageBuilder::refill()
{
    m_refillWanted = false;
    QElapsedTimer clock;
    clock.start();
    // The row that the sheet shows is made anew; the sheet stays.
    const bool showsRow = m_formatTree->contains(m_currentItem) && m_currentItem->link() != m_currentItem;
    const PointTreeWidgetItem *source = showsRow ? m_currentItem->link()->item() : nullptr;
    const PointTreeWidgetItem *context
        = m_formatTree->contains(m_contextItem) ? m_contextItem->link()->item() : nullptr;
    m_formatTree->refill();
    if (showsRow)
        m_currentItem = m_formatTree->rowOf(source);
    if (context)
        m_contextItem = m_formatTree->rowOf(context);
    clearSheetOfDead();
    m_refillTimer.setInterval(qMax(refillPauseMs, int(clock.elapsed()) * refillsInPause));
}
