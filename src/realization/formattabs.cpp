#include "formattabs.h"

#include "model/pointtreewidgetitem.h"
#include "realizationicons.h"

#include <QIcon>

namespace {

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
    return firstFilled({ text(root, QStringLiteral("title")), text(root, QStringLiteral("toolTip")), name });
}

QIcon icon(PointTreeWidgetItem *root)
{
    const QString path = text(root, QStringLiteral("icon"));
    return path.isEmpty() ? QIcon() : RealizationIcons::icon(path, root->basePath());
}

} // namespace

FormatTabs::FormatTabs(QTabWidget *tabs, QObject *parent) : QObject(parent), m_tabs(tabs) { }

void FormatTabs::addPluginFormats(const QVector<PointTreeWidgetItem *> &roots)
{
    for (PointTreeWidgetItem *root : roots) {
        const QString id = text(root, QStringLiteral("id"));
        const QString name = nameOf(root);
        if (!id.isEmpty())
            m_pluginFormatIds.append(id);
        if (!name.isEmpty() && indexOf(name) < 0)
            addPage(name, icon(root), label(root, name));
    }
}

void FormatTabs::addLayout(PointTreeWidgetItem *layout)
{
    const QString name = nameOf(layout);
    if (!m_tabs || name.isEmpty())
        return;
    const int index = indexOf(name);
    if (index < 0) {
        addPage(name, icon(layout), label(layout, name));
        return;
    }
    const QString toolTip = text(layout, QStringLiteral("toolTip"));
    if (!toolTip.isEmpty())
        m_tabs->setTabText(index, toolTip);
    else if (m_tabs->tabText(index) == name)
        m_tabs->setTabText(index, label(layout, name));
    if (m_tabs->tabIcon(index).isNull())
        m_tabs->setTabIcon(index, icon(layout));
}

void FormatTabs::addFormatRoot(PointTreeWidgetItem *root)
{
    const QString name = firstFilled({ text(root, QStringLiteral("target")), text(root, QStringLiteral("id")) });
    if (!name.isEmpty() && indexOf(name) < 0)
        addPage(name, QIcon(), name);
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

QStringList FormatTabs::namesOf(PointTreeWidgetItem *root)
{
    QStringList names { text(root, QStringLiteral("id")), text(root, QStringLiteral("target")) };
    names.removeAll(QString());
    names.removeDuplicates();
    return names;
}

QString FormatTabs::currentName() const
{
    const QWidget *page = m_tabs ? m_tabs->currentWidget() : nullptr;
    return page ? page->objectName() : QString();
}

void FormatTabs::relabel(PointTreeWidgetItem *root)
{
    const QString byId = nameOf(root);
    const QString name = indexOf(byId) < 0 ? text(root, QStringLiteral("target")) : byId;
    const int index = indexOf(name);
    if (index < 0)
        return;
    m_tabs->setTabText(index, label(root, name));
    m_tabs->setTabIcon(index, icon(root));
}

bool FormatTabs::rename(const QString &oldName, const QString &newName)
{
    const int index = indexOf(oldName);
    if (index < 0 || newName.isEmpty() || indexOf(newName) >= 0)
        return false;
    m_tabs->widget(index)->setObjectName(newName);
    m_tabs->setTabToolTip(index, newName);
    const int known = m_pluginFormatIds.indexOf(oldName);
    if (known >= 0)
        m_pluginFormatIds.replace(known, newName);
    return true;
}

void FormatTabs::remove(const QString &name)
{
    const int index = indexOf(name);
    if (index < 0)
        return;
    QWidget *page = m_tabs->widget(index);
    m_tabs->removeTab(index);
    delete page;
    m_pluginFormatIds.removeAll(name);
}

int FormatTabs::indexOf(const QString &name) const
{
    for (int i = 0; m_tabs && i < m_tabs->count(); ++i) {
        if (m_tabs->widget(i)->objectName() == name)
            return i;
    }
    return -1;
}

void FormatTabs::addPage(const QString &name, const QIcon &pageIcon, const QString &pageLabel)
{
    if (!m_tabs)
        return;
    // Named before it is added: the first page becomes the current one within addTab().
    auto *page = new QWidget;
    page->setObjectName(name);
    const int index = m_tabs->addTab(page, pageIcon, pageLabel);
    m_tabs->setTabToolTip(index, name);
}
