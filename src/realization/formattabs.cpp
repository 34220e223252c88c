#include "formattabs.h"

#include "extensionfile/showntext.h"
#include "model/controller.h"
#include "model/keys.h"
#include "model/modelchanges.h"
#include "model/pointtreewidgetitem.h"
#include "realizationicons.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QSet>
#include <QStackedWidget>
#include <QTabBar>

#include <algorithm>
#include <utility>

namespace {

// Between two portions of tabs in a batch: soon enough for the eye, and so much longer than the last one took that they
// stay a small part of the whole.
constexpr int shortestPauseMs = 50;
constexpr int portionsInPause = 10;
// When nothing else is to be done.
constexpr int portionsInLaterPause = 3;

// Making this many takes less than a quarter of a frame, as long as a portion of a scan; the layout of all comes on
// top.
constexpr int tabsInPortion = 250;

QString text(PointTreeWidgetItem *node, const QString &key)
{
    return node->property(key).toString();
}

QString firstFilled(const QStringList &texts)
{
    for (const QString &candidate : texts) {
        if (!candidate.isEmpty())
            return candidate;
    }
    return {};
}

QString label(PointTreeWidgetItem *root, const QString &name)
{
    return ExtensionFile::shown(
        firstFilled({ text(root, QStringLiteral("title")), text(root, QStringLiteral("toolTip")), name }));
}

QIcon icon(PointTreeWidgetItem *root)
{
    const QString path = text(root, iconKey);
    return path.isEmpty() ? QIcon() : RealizationIcons::icon(path, root->basePath());
}

} // namespace

FormatTabs::FormatTabs(QTabWidget *tabs, QObject *parent) : QObject(parent), m_tabs(tabs)
{
    // This lives on with the page builder, and is to be small then.
    connect(tabs, &QObject::destroyed, this, [this] {
        m_own.clear();
        m_pages.clear();
        m_waiting.clear();
    });
    m_flushTimer.setSingleShot(true);
    m_flushTimer.setInterval(shortestPauseMs);
    connect(&m_flushTimer, &QTimer::timeout, this, &FormatTabs::flushPortion);
}

void FormatTabs::setBatching(bool batching)
{
    m_batching = batching;
    // More would hold everything up for a moment; they go on coming in portions.
    if (!batching && m_waiting.size() <= tabsInPortion)
        flush();
}

void FormatTabs::flush()
{
    m_flushTimer.stop();
    insert(std::exchange(m_waiting, {}));
}

void FormatTabs::flushPortion()
{
    // A bar that is hidden for a moment forgets the button that is being held down on it.
    if (QGuiApplication::mouseButtons() == Qt::NoButton) {
        QElapsedTimer clock;
        clock.start();
        const QVector<WaitingTab> portion = m_waiting.mid(0, tabsInPortion);
        m_waiting.remove(0, portion.size());
        insert(portion);
        const int portions = m_batching ? portionsInPause : portionsInLaterPause;
        m_flushTimer.setInterval(qMax(shortestPauseMs, int(clock.elapsed()) * portions));
    }
    if (!m_waiting.isEmpty())
        m_flushTimer.start();
}

void FormatTabs::insert(const QVector<WaitingTab> &tabs)
{
    if (!m_tabs || tabs.isEmpty())
        return;
    // The widget lays out everything with each tab that is added to it, so all but the last one are given to its parts.
    // A bar that does not show puts its layout off, too; it comes back before anything is painted.
    QTabBar *bar = m_tabs->tabBar();
    auto *stack = m_tabs->findChild<QStackedWidget *>(QString(), Qt::FindDirectChildrenOnly);
    const bool hasFocus = bar->hasFocus();
    const bool hide = tabs.size() > 1 && bar->isVisible();
    if (hide)
        bar->hide();
    QVector<QWidget *> pages;
    pages.reserve(tabs.size());
    for (const WaitingTab &tab : tabs) {
        // Named before it is added, since the first page becomes the current one at once; and hidden, as the stack
        // wants it, else it would first be shown by an event of its own.
        pages.append(new QWidget(stack));
        pages.last()->hide();
        pages.last()->setObjectName(tab.name);
        m_pages.insert(tab.name, pages.last());
    }
    const int alone = stack ? tabs.size() - 1 : 0;
    for (int i = 0; i < alone; ++i)
        stack->addWidget(pages.at(i));
    // Apart from the pages: the bar goes through all its tabs for each one that is added, which is quicker when they
    // lie side by side in memory.
    for (int i = 0; i < alone; ++i)
        bar->addTab(tabs.at(i).icon, tabs.at(i).label);
    if (hide)
        bar->show();
    for (int i = alone; i < tabs.size(); ++i)
        m_tabs->addTab(pages.at(i), tabs.at(i).icon, tabs.at(i).label);
    for (int i = 0; i < tabs.size(); ++i)
        bar->setTabToolTip(bar->count() - tabs.size() + i, ExtensionFile::shown(tabs.at(i).name));
    if (hasFocus)
        bar->setFocus();
}

void FormatTabs::sync(const QVector<PointTreeWidgetItem *> &roots, const QSet<const PointTreeWidgetItem *> &edited)
{
    const auto before = std::exchange(m_own, {});
    QHash<QString, const PointTreeWidgetItem *> bringers; // the first of each name
    QSet<QString> touched;
    for (PointTreeWidgetItem *root : roots) {
        const QString name = nameOf(root);
        if (name.isEmpty())
            continue;
        m_own.append({ root, name });
        if (!bringers.contains(name))
            bringers.insert(name, root);
        if (edited.contains(root))
            touched.insert(name);
    }
    const auto isFilled = [&bringers](const QString &name) {
        return bringers.contains(name) || !Controller::instance()->ownRealizations().siblingFormats(name).isEmpty();
    };
    QSet<QString> namedBefore;
    for (const auto &known : before) {
        const QString newName = known.first ? nameOf(known.first) : QString();
        if (newName != known.second && bringers.contains(newName) && !has(newName) && !isFilled(known.second))
            rename(known.second, newName);
        if (!namedBefore.contains(known.second) && bringers.value(known.second) != known.first)
            touched.insert(known.second);
        namedBefore.insert(known.second);
    }
    for (const auto &known : before) {
        if (has(known.second) && !isFilled(known.second))
            remove(known.second);
    }
    for (const auto &known : qAsConst(m_own)) {
        if (!has(known.second)) {
            const Face face = faceOf(known.second);
            addPage(known.second, face.icon, face.label);
        } else if (!namedBefore.contains(known.second)) {
            touched.insert(known.second);
        }
    }
    for (const QString &name : qAsConst(touched)) {
        const int index = indexOf(name);
        if (index < 0)
            continue;
        const Face face = faceOf(name);
        m_tabs->setTabText(index, face.label);
        m_tabs->setTabIcon(index, face.icon);
    }
}

void FormatTabs::follow(const ModelChange &change)
{
    QSet<const PointTreeWidgetItem *> edited;
    for (const ModelChange::Edit &edit : change.edits) {
        if (edit.node && OwnRealizations::isRoot(edit.node))
            edited.insert(edit.node);
    }
    const Controller *controller = Controller::instance();
    if (change.structure || !edited.isEmpty())
        sync(controller->ownRealizations().tabRoots(), edited);
}

FormatTabs::Face FormatTabs::faceOf(const QString &name) const
{
    Face face;
    const auto own = std::find_if(
        m_own.cbegin(), m_own.cend(), [&name](const auto &known) { return known.first && known.second == name; });
    const bool isOwn = own != m_own.cend();
    if (isOwn)
        face = { icon(own->first), label(own->first, name) };
    // As they have come: the first one brings the tab where no own one does, layouts add to it.
    const OwnRealizations::Nodes siblings = Controller::instance()->ownRealizations().siblingFormats(name);
    for (PointTreeWidgetItem *root : siblings) {
        const bool isLayout = root->isKind(QLatin1String("Layout"));
        if (!isOwn && root == siblings.first()) {
            face = isLayout ? Face { icon(root), label(root, name) } : Face { QIcon(), ExtensionFile::shown(name) };
        } else if (isLayout) {
            const QString toolTip = text(root, QStringLiteral("toolTip"));
            if (!toolTip.isEmpty() || face.label == ExtensionFile::shown(name))
                face.label = toolTip.isEmpty() ? label(root, name) : ExtensionFile::shown(toolTip);
            if (face.icon.isNull())
                face.icon = icon(root);
        }
    }
    return face;
}

void FormatTabs::addLayout(PointTreeWidgetItem *layout)
{
    const QString name = nameOf(layout);
    if (!m_tabs || name.isEmpty())
        return;
    if (!has(name)) {
        addPage(name, icon(layout), label(layout, name));
        return;
    }
    const int index = indexOf(name);
    const QString toolTip = text(layout, QStringLiteral("toolTip"));
    if (!toolTip.isEmpty())
        m_tabs->setTabText(index, ExtensionFile::shown(toolTip));
    else if (m_tabs->tabText(index) == ExtensionFile::shown(name))
        m_tabs->setTabText(index, label(layout, name));
    if (m_tabs->tabIcon(index).isNull())
        m_tabs->setTabIcon(index, icon(layout));
}

void FormatTabs::addFormatRoot(PointTreeWidgetItem *root)
{
    const QString name = firstFilled({ text(root, targetKey), text(root, idKey) });
    if (!name.isEmpty() && !has(name))
        addPage(name, QIcon(), ExtensionFile::shown(name));
}

void FormatTabs::show(PointTreeWidgetItem *root)
{
    const int index = indexOf(nameOf(root));
    if (index >= 0)
        m_tabs->setCurrentIndex(index);
}

QString FormatTabs::nameOf(PointTreeWidgetItem *root)
{
    return namesOf(root).value(0);
}

bool FormatTabs::wouldLoseItsName(PointTreeWidgetItem *root, const QString &key, const QVariant &value)
{
    if (!root || !OwnRealizations::isRoot(root) || !value.toString().isEmpty() || (key != idKey && key != targetKey))
        return false;
    const QStringList names = namesOf(root);
    return names.size() == 1 && names.first() == root->property(key).toString();
}

QStringList FormatTabs::namesOf(PointTreeWidgetItem *root)
{
    QStringList names { text(root, idKey), text(root, targetKey) };
    names.removeAll(QString());
    names.removeDuplicates();
    return names;
}

QString FormatTabs::currentName() const
{
    const QWidget *page = m_tabs ? m_tabs->currentWidget() : nullptr;
    return page ? page->objectName() : QString();
}

void FormatTabs::rename(const QString &oldName, const QString &newName)
{
    const int index = indexOf(oldName);
    if (index < 0)
        return;
    m_pages.insert(newName, m_pages.take(oldName));
    m_tabs->widget(index)->setObjectName(newName);
    m_tabs->setTabToolTip(index, ExtensionFile::shown(newName));
}

void FormatTabs::remove(const QString &name)
{
    const int index = indexOf(name);
    if (index < 0)
        return;
    QWidget *page = m_pages.take(name);
    Q_EMIT aboutToRemove(page);
    m_tabs->removeTab(index);
    delete page;
}

int FormatTabs::indexOf(const QString &name)
{
    if (!m_tabs || !has(name))
        return -1;
    flush();
    return m_tabs->indexOf(m_pages.value(name));
}

void FormatTabs::addPage(const QString &name, const QIcon &pageIcon, const QString &pageLabel)
{
    if (!m_tabs)
        return;
    m_pages.insert(name, nullptr);
    m_waiting.append({ name, pageIcon, pageLabel });
    if (!m_batching && m_waiting.size() == 1)
        flush();
    else if (!m_flushTimer.isActive())
        m_flushTimer.start();
}
