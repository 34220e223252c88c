#include "defintionpagebuilder.h"

#include "attributesheet.h"
#include "attributetable.h"
#include "committedvalue.h"
#include "enumtable.h"
#include "form/extpointwidgetform.h"
#include "form/filterline.h"
#include "form/problemmark.h"
#include "form/rowatindex.h"
#include "form/rowfilter.h"
#include "form/sheethelp.h"
#include "form/tabfocus.h"
#include "model/controller.h"
#include "model/definitions.h"
#include "model/keys.h"
#include "model/modelchanges.h"
#include "model/nodewords.h"
#include "model/pointtreewidgetitem.h"
#include "model/problems.h"
#include "model/sourcedatamanager.h"
#include "pointcreation.h"
#include "tablecells.h"
#include "treemenu.h"

#include <QEvent>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>

using PointCreation::Role;

namespace {

/// With two files open the Controller may lead to the other one's nodes, whose rows stand in its tree. Made current
/// here, such a row would stay so after it is gone.
void showInTree(QTreeWidget *tree, PointTreeWidgetItem *item)
{
    if (item->treeWidget() != tree)
        return;
    tree->setCurrentItem(item);
    FilterLine::showCurrent(tree);
}

/// The form's limit is made for letters of the usual size.
void letItsTextFit(QPushButton *button)
{
    const int beside = 4 * button->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, button);
    const int needed = button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width() + 2 * beside;
    button->setMaximumWidth(qMax(button->maximumWidth(), needed));
}

} // namespace

DefintionPageBuilder::DefintionPageBuilder(Ui::ExtPointWidget *ui, QObject *parent)
    : QObject(parent), m_ui(ui), m_pointPropertyTypes(PointSheet::pointTypes()),
      m_subPointPropertyTypes(PointSheet::subPointTypes()), m_treeMenu(std::make_unique<TreeMenu>())
{ }

DefintionPageBuilder::~DefintionPageBuilder() = default;

void DefintionPageBuilder::initWidgets(Ui::ExtPointWidget *ui)
{
    m_ui = ui;
    connect(ui->tabWidget, &QObject::destroyed, this, [this] { m_ui = nullptr; });

    // The sheet and the attributes share what the tree and the attribute's own sheet leave.
    ui->splitter_3->setStretchFactor(0, 0);
    ui->splitter_3->setStretchFactor(1, 3);
    ui->splitter_3->setStretchFactor(2, 2);
    const int letter = ui->tabWidget->fontMetrics().averageCharWidth();
    ui->splitter_3->setSizes({ 230, 560, qMax(380, 40 * letter) });
    ui->splitter_2->setStretchFactor(0, 3);
    ui->splitter_2->setStretchFactor(1, 2);
    for (QSplitter *splitter : { ui->splitter_3, ui->splitter_2, ui->splitter })
        splitter->setChildrenCollapsible(false);

    // The group box around the sheet is frame and ground enough.
    ui->scrollArea->setFrameShape(QFrame::NoFrame);
    ui->scrollArea->setFocusPolicy(Qt::NoFocus);
    ui->scrollArea->viewport()->setAutoFillBackground(false);
    ui->scrollAreaWidgetContents->setAutoFillBackground(false);
    ui->defintionTree->setAccessibleName(tr("Extension points of this plug-in"));
    ui->defintionTree->setContextMenuPolicy(Qt::CustomContextMenu);
    ui->basicInfo->setAccessibleName(tr("Basic information"));
    ui->editInfoWidget->setAccessibleName(tr("Attribute"));
    // Four buttons say "Add" or "Delete"; who only hears them needs to know of what.
    ui->pushButton_add_extpoint->setAccessibleName(tr("Add a point"));
    ui->pushButton_add_attr->setAccessibleName(tr("Add an attribute"));
    ui->pushButton_del_attr->setAccessibleName(tr("Delete the attribute"));
    ui->pushButton_add_enum->setAccessibleName(tr("Add an entry"));
    ui->pushButton_delete_enmu->setAccessibleName(tr("Delete the entry"));
    TableCells::prepare(ui->defintionTable, tr("Attributes of the selected point"));
    TableCells::prepare(ui->enumTable, tr("Entries of the enumeration"));
    ui->editInfoWidget->hide();
    ui->enumGroup->hide();
    createAddPropertyButton();
    letItsTextFit(ui->pushButton_add_extpoint);
    explainSheets();
    QTreeWidget *tree = ui->defintionTree;
    tree->setItemDelegate(
        new ProblemDelegate(tree, [tree](const QModelIndex &index) { return rowAtIndex(tree, index); }));
    ui->defintionTable->setItemDelegate(new ProblemDelegate(ui->defintionTable, [this](const QModelIndex &index) {
        return m_currentPoint ? Definitions::declarations(m_currentPoint).value(index.row()) : nullptr;
    }));
    updateButtons();
}

void DefintionPageBuilder::loadTree()
{
    PointTreeWidgetItem *root = Controller::instance()->definitionRoot();
    if (!root || !m_ui)
        return;
    m_ui->defintionTree->addTopLevelItem(root);
    m_ui->defintionTree->expandAll();
    updateButtons();
}

void DefintionPageBuilder::createConnections()
{
    if (!m_ui)
        return;
    connect(m_treeMenu->createPoint(), &QAction::triggered, this, &DefintionPageBuilder::onCreatPoint);
    connect(m_treeMenu->createSubPoint(), &QAction::triggered, this, &DefintionPageBuilder::onCreatPoint);
    connect(m_treeMenu->deletePoint(), &QAction::triggered, this, &DefintionPageBuilder::onDelPoint);
    connect(m_ui->defintionTree, &QWidget::customContextMenuRequested, this, &DefintionPageBuilder::onDefineTreeMenu);
    connect(m_ui->defintionTree, &QTreeWidget::itemClicked, this, &DefintionPageBuilder::onDefineTreeItemClicked);
    connect(m_ui->defintionTable, &QTableWidget::itemClicked, this, &DefintionPageBuilder::onDefineTableItemClicked);
    connect(m_ui->enumTable, &QTableWidget::itemClicked, this, &DefintionPageBuilder::onEnumTableItemClicked);
    connect(
        m_ui->basicInfo, &GroupPropertyBrowser::propertyChanged, this, &DefintionPageBuilder::onBasicInfoDataChange);
    connect(
        m_ui->editInfoWidget, &TreePropertyBrowser::propertyChanged, this, &DefintionPageBuilder::onEditInfoDataChange);
    for (QPushButton *button : { m_ui->pushButton_add_attr, m_ui->pushButton_add_enum })
        connect(button, &QPushButton::clicked, this, &DefintionPageBuilder::onAddButtonClicked);
    for (QPushButton *button : { m_ui->pushButton_del_attr, m_ui->pushButton_delete_enmu })
        connect(button, &QPushButton::clicked, this, &DefintionPageBuilder::onDelButtonClicked);
    connect(m_ui->pushButton_add_extpoint, &QPushButton::clicked, this, [this] {
        commitSheets();
        createPointIn(Controller::instance()->definitionRoot());
        // To the new row, where F2 goes to its name.
        m_ui->defintionTree->setFocus(Qt::OtherFocusReason);
    });
    if (SourceDataManager *manager = Controller::instance()->sourceDataManager())
        connect(&manager->changes(), &ModelChanges::changed, this, &DefintionPageBuilder::follow);

    // The keyboard moves the current row without a click and shows the same.
    connect(m_ui->defintionTree, &QTreeWidget::currentItemChanged, this,
        [this](QTreeWidgetItem *current) { onDefineTreeItemClicked(current, 0); });
    connect(m_ui->defintionTable, &QTableWidget::currentItemChanged, this,
        [this](QTableWidgetItem *current) { onDefineTableItemClicked(current); });
    connect(m_ui->enumTable, &QTableWidget::currentItemChanged, this,
        [this](QTableWidgetItem *current) { onEnumTableItemClicked(current); });
    createKeys();
}

void DefintionPageBuilder::createKeys()
{
    const auto onKey = [this](QWidget *widget, const QKeySequence &key, auto action) {
        connect(new QShortcut(key, widget, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this, action);
    };
    QTreeWidget *tree = m_ui->defintionTree;
    m_menuKey.watch(tree);
    onKey(tree, QKeySequence(Qt::Key_Delete), [this, tree] {
        commitSheets();
        PointTreeWidgetItem *item = PointTreeWidgetItem::fromRow(tree->currentItem());
        if (item && isInSight(item) && PointCreation::roleOf(item) != Role::Plugin)
            destroyPoint(item);
    });
    onKey(tree, QKeySequence(Qt::Key_Insert), [this, tree] {
        commitSheets();
        PointTreeWidgetItem *item = PointTreeWidgetItem::fromRow(tree->currentItem());
        if (!item || PointCreation::roleOf(item) == Role::Plugin)
            createPointIn(Controller::instance()->definitionRoot());
        else if (PointCreation::roleOf(item) == Role::Point)
            createSubPointOf(item);
        else
            createSubPointOf(PointTreeWidgetItem::fromRow(item->QTreeWidgetItem::parent()));
    });
    onKey(tree, QKeySequence(Qt::Key_F2), [this] {
        if (QWidget *editor = m_ui->basicInfo->editorFor(nameKey))
            editor->setFocus(Qt::ShortcutFocusReason);
    });
    TabFocus::onArrival(m_ui->defintionTable, [this] {
        if (m_ui && m_editMode == EditEntry)
            onDefineTableItemClicked(m_ui->defintionTable->currentItem());
    });
    TabFocus::onArrival(m_ui->enumTable, [this] {
        if (m_ui && m_editMode != EditEntry)
            onEnumTableItemClicked(m_ui->enumTable->currentItem());
    });
    for (QTableWidget *table : { m_ui->defintionTable, m_ui->enumTable }) {
        const bool attributes = table == m_ui->defintionTable;
        QPushButton *add = attributes ? m_ui->pushButton_add_attr : m_ui->pushButton_add_enum;
        QPushButton *remove = attributes ? m_ui->pushButton_del_attr : m_ui->pushButton_delete_enmu;
        onKey(table, QKeySequence(Qt::Key_Insert), [add] { add->click(); });
        onKey(table, QKeySequence(Qt::Key_Delete), [remove] { remove->click(); });
        onKey(table, QKeySequence(Qt::ALT + Qt::Key_Up), [this, table] { moveRow(table, -1); });
        onKey(table, QKeySequence(Qt::ALT + Qt::Key_Down), [this, table] { moveRow(table, 1); });
        const QString labelKey = attributes ? nameKey : QStringLiteral("text");
        onKey(table, QKeySequence(Qt::Key_F2), [this, labelKey] { m_ui->editInfoWidget->openEditor(labelKey); });
    }
}

void DefintionPageBuilder::refreshAttributeTypes()
{
    const QStringList types = Controller::instance()->attributeTypes();
    if (types != m_attributeTypes)
        m_attributeTypes = types;
}

void DefintionPageBuilder::showLoaded()
{
    if (!m_ui)
        return;
    // The tree was filled before there was anything to expand or to select.
    m_ui->defintionTree->expandAll();
    if (m_ui->defintionTree->isVisible())
        m_ui->defintionTree->setCurrentItem(m_ui->defintionTree->topLevelItem(0));
    else
        m_ui->defintionTree->installEventFilter(this);
}

bool DefintionPageBuilder::eventFilter(QObject *watched, QEvent *event)
{
    // Filling the sheets of a page that nobody sees would only keep the one in sight from appearing.
    if (event->type() == QEvent::Show && m_ui && watched == m_ui->defintionTree) {
        watched->removeEventFilter(this);
        // Whoever has selected something before has filled it.
        if (m_ui->defintionTable->columnCount() == 0)
            AttributeTable::fill(m_ui->defintionTable, nullptr);
        if (!m_ui->defintionTree->currentItem())
            m_ui->defintionTree->setCurrentItem(m_ui->defintionTree->topLevelItem(0));
    }
    return QObject::eventFilter(watched, event);
}

void DefintionPageBuilder::onDefineTreeMenu(const QPoint &pos)
{
    if (!m_ui)
        return;
    m_menuItem = PointTreeWidgetItem::fromRow(m_ui->defintionTree->itemAt(pos));
    commitSheets();
    if (!m_menuItem)
        return;
    m_treeMenu->fitTo(m_menuItem);
    // What others offer for the row.
    for (QAction *action : m_ui->defintionTree->actions())
        PointCreation::roleOf(m_menuItem) == Role::Plugin ? m_treeMenu->removeAction(action)
                                                          : m_treeMenu->addAction(action);
    m_treeMenu->exec(m_menuKey.place());
}

void DefintionPageBuilder::onCreatPoint()
{
    const auto *action = qobject_cast<QAction *>(sender());
    if (!action || !m_menuItem)
        return;
    if (action->text() == TreeMenu::createPointText())
        createPointIn(m_menuItem);
    else if (action->text() == TreeMenu::createSubPointText())
        createSubPointOf(m_menuItem);
}

void DefintionPageBuilder::onDelPoint()
{
    if (m_menuItem && PointCreation::roleOf(m_menuItem) != Role::Plugin)
        destroyPoint(m_menuItem);
}

void DefintionPageBuilder::createPointIn(PointTreeWidgetItem *plugin)
{
    if (!plugin || !m_ui)
        return;
    PointTreeWidgetItem *point = PointCreation::createPoint(plugin);
    Q_EMIT addDefine(plugin->property(idKey).toString(), point, nullptr);
    Controller::instance()->flushChanges();
    showPoint(point);
    Q_EMIT modified(true);
}

void DefintionPageBuilder::createSubPointOf(PointTreeWidgetItem *point)
{
    if (!point || !m_ui)
        return;
    PointTreeWidgetItem *subPoint = PointCreation::createSubPoint(point);
    // The realization page is told first: making the row current shows the sub point already.
    QTreeWidgetItem *above = point->QTreeWidgetItem::parent();
    if (above)
        Q_EMIT addDefine(PointTreeWidgetItem::fromRow(above)->property(idKey).toString(), point, subPoint);
    Controller::instance()->flushChanges();
    if (above)
        showPoint(subPoint);
    Q_EMIT modified(true);
}

void DefintionPageBuilder::destroyPoint(PointTreeWidgetItem *point)
{
    const bool wasCurrent = m_ui && m_ui->defintionTree->currentItem() == point;
    PointTreeWidgetItem *beside = wasCurrent ? point->neighbour() : nullptr;
    // A point within the point has its row beside it.
    if (beside && point->reaches(beside))
        beside = PointTreeWidgetItem::fromRow(point->QTreeWidgetItem::parent());
    const QPointer<PointTreeWidgetItem> next(beside);
    PointCreation::takeOut(point);
    Q_EMIT delDefine(point);
    PointCreation::destroyWithCounterpart(point);
    m_menuItem = nullptr;
    Controller::instance()->flushChanges();
    if (next && m_ui)
        m_ui->defintionTree->setCurrentItem(next);
    Q_EMIT modified(true);
}

void DefintionPageBuilder::showPoint(PointTreeWidgetItem *row)
{
    showInTree(m_ui->defintionTree, row);
    onDefineTreeItemClicked(row, 0);
}

void DefintionPageBuilder::commitSheets()
{
    if (m_ui)
        m_ui->basicInfo->commitEditor();
    if (m_ui)
        m_ui->editInfoWidget->commitEditor();
}

void DefintionPageBuilder::finishChange()
{
    Controller::instance()->flushChanges();
    Q_EMIT modified(true);
}

void DefintionPageBuilder::onDefineTreeItemClicked(QTreeWidgetItem *item, int)
{
    if (!m_ui)
        return;
    const QPointer<PointTreeWidgetItem> node(PointTreeWidgetItem::fromRow(item));
    commitSheets();
    m_ui->editInfoWidget->hide();
    m_ui->enumGroup->hide();
    m_currentAttribute = nullptr;
    if (node) {
        m_currentPoint = node;
        m_editTarget = node;
        m_editMode = EditAttribute;
    }
    m_ui->basicInfo->showProperties(basicInfo());
    AttributeTable::fill(m_ui->defintionTable, currentTakesAttributes() ? m_currentPoint.data() : nullptr);
    updateButtons();
}

QList<PropertyItem> DefintionPageBuilder::basicInfo()
{
    QList<PropertyItem> rows = plainBasicInfo();
    SheetHelp::explain(&rows);
    return rows;
}

QList<PropertyItem> DefintionPageBuilder::plainBasicInfo()
{
    if (!m_currentPoint)
        return {};
    if (PointCreation::roleOf(m_currentPoint) == Role::SubPoint) {
        m_childTypes = ChildTypeMask(m_currentPoint->parent());
        return PointSheet::ofSubPoint(m_currentPoint, m_subPointPropertyTypes, m_pointPropertyTypes, m_childTypes);
    }
    if (m_currentPoint->property(idKey).isNull())
        return {};
    return PointSheet::ofPoint(m_currentPoint, m_pointPropertyTypes);
}

void DefintionPageBuilder::follow(const ModelChange &change)
{
    if (!m_ui || !change.definitions)
        return;
    const QList<PropertyItem> basic = basicInfo();
    if (m_ui->basicInfo->properties() != basic)
        m_ui->basicInfo->showProperties(basic);
    {
        const QSignalBlocker quiet(m_ui->defintionTable);
        TableCells::setRows(m_ui->defintionTable,
            currentTakesAttributes() ? AttributeTable::rowsOf(m_currentPoint) : QList<QStringList>());
    }
    followCurrentRows();
    if (!m_editTarget || m_editTarget == m_currentPoint) {
        m_ui->editInfoWidget->hide();
    } else if (m_ui->editInfoWidget->isVisibleTo(m_ui->splitter)) {
        const QList<PropertyItem> edited = editInfo();
        if (m_ui->editInfoWidget->properties() != edited)
            m_ui->editInfoWidget->showProperties(edited);
    }
    updateButtons();
}

void DefintionPageBuilder::onBasicInfoDataChange(const QString &name, const QVariant &value)
{
    if (!m_currentPoint)
        return;
    const QPointer<PointTreeWidgetItem> point(m_currentPoint);
    const QString old = point->properties().text(name);
    const bool isChildType = name == QLatin1String("childtype");
    point->setProperty(name, isChildType ? QVariant(m_childTypes.textOf(value, old)) : CommittedValue::of(value));
    const QString now = point->properties().text(name);
    // Only this tag makes a point that records are for.
    if (name == idKey && point->kind() == QLatin1String("ExtPoint") && point->parentItem())
        Controller::instance()->ownEdits().followPointId(old, now);
    if (name == nameKey)
        point->setText(0, now);
    finishChange();
}

void DefintionPageBuilder::explainSheets()
{
    const auto about = [](const QPointer<PointTreeWidgetItem> &node, const QString &key, const QString &text) {
        const SourceDataManager *manager = Controller::instance()->sourceDataManager();
        return manager ? Problems::ofTyped(*manager, node, key, text) : QString();
    };
    m_ui->basicInfo->setDoubts(
        [this, about](const QString &key, const QString &text) { return about(m_currentPoint, key, text); });
    m_ui->editInfoWidget->setDoubts(
        [this, about](const QString &key, const QString &text) { return about(m_editTarget, key, text); });
}

void DefintionPageBuilder::createAddPropertyButton()
{
    m_addProperty = new QToolButton(m_ui->groupBox_2);
    m_addProperty->setObjectName(QStringLiteral("addPropertyButton"));
    m_addProperty->setText(tr("Add Property"));
    m_addProperty->setToolTip(tr("Add a property that the selected point does not have yet"));
    m_addProperty->setPopupMode(QToolButton::InstantPopup);
    m_addProperty->setMenu(new QMenu(m_addProperty));
    m_ui->verticalLayout_4->addWidget(m_addProperty, 0, Qt::AlignRight);
    QWidget::setTabOrder(m_ui->basicInfo, m_addProperty);
    connect(m_addProperty->menu(), &QMenu::aboutToShow, this, &DefintionPageBuilder::fillAddPropertyMenu);
}

void DefintionPageBuilder::fillAddPropertyMenu()
{
    commitSheets();
    QMenu *menu = m_addProperty->menu();
    menu->clear();
    const QStringList missing = missingKeys();
    for (const QString &key : missing)
        connect(menu->addAction(key), &QAction::triggered, this, [this, key] { addProperty(key); });
}

void DefintionPageBuilder::addProperty(const QString &key)
{
    if (!m_currentPoint)
        return;
    m_currentPoint->setProperty(key, QString());
    finishChange();
    if (QWidget *editor = m_ui->basicInfo->editorFor(key))
        editor->setFocus(Qt::OtherFocusReason);
}

void DefintionPageBuilder::showHeadings()
{
    m_ui->basicInfo->setHeading(NodeWords::what(m_currentPoint), m_currentPoint);
    m_ui->editInfoWidget->setHeading(
        m_editTarget != m_currentPoint ? NodeWords::what(m_editTarget) : QString(), m_editTarget);
}

void DefintionPageBuilder::updateButtons()
{
    showHeadings();
    const bool attributes = currentTakesAttributes();
    const bool isEnum = m_currentAttribute && m_currentAttribute->kind() == QLatin1String("Enum");
    m_ui->pushButton_add_extpoint->setEnabled(m_ui->defintionTree->topLevelItemCount() > 0);
    m_ui->groupBox_3->setEnabled(attributes);
    m_ui->pushButton_add_attr->setEnabled(attributes);
    m_ui->pushButton_del_attr->setEnabled(m_currentAttribute && m_ui->defintionTable->currentRow() >= 0);
    m_ui->pushButton_add_enum->setEnabled(isEnum);
    m_ui->pushButton_delete_enmu->setEnabled(isEnum && m_editMode == EditEntry && m_ui->enumTable->currentRow() >= 0);
    m_addProperty->setEnabled(!missingKeys().isEmpty());
}

QStringList DefintionPageBuilder::missingKeys() const
{
    // A plug-in is none, also where its element is named like a point.
    const bool isPlugin = m_currentPoint && PointCreation::roleOf(m_currentPoint) == Role::Plugin;
    return isPlugin ? QStringList() : PointSheet::missingKeys(m_currentPoint);
}

bool DefintionPageBuilder::currentTakesAttributes() const
{
    // The children of a plug-in are its sets, which are no attributes of anything.
    return m_currentPoint && PointCreation::roleOf(m_currentPoint) != Role::Plugin;
}
