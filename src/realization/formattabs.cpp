#include "formattabs.h"

#include "model/pointtreewidgetitem.h"

#include <QFileInfo>
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

/// The file as stored when it exists, else the one in the directory that the root was read from; none without a value.
QIcon icon(PointTreeWidgetItem *root)
{
    const QString path = text(root, QStringLiteral("icon"));
    if (path.isEmpty())
        return {};
    return QIcon(QFileInfo(path).isFile() ? path : root->basePath() + path);
}

} // namespace

FormatTabs::FormatTabs(QTabWidget *tabs, QObject *parent) : QObject(parent), m_tabs(tabs) { }

void FormatTabs::addPluginFormats(const QVector<PointTreeWidgetItem *> &roots)
{
    for (PointTreeWidgetItem *root : roots) {
        const QString id = text(root, QStringLiteral("id"));
        const QString name = firstFilled({ id, text(root, QStringLiteral("target")) });
        if (!id.isEmpty())
            m_pluginFormatIds.append(id);
        if (!name.isEmpty() && indexOf(name) < 0)
            addPage(name, icon(root), label(root, name));
    }
}

void FormatTabs::addLayout(PointTreeWidgetItem *layout)
{
    const QString name = firstFilled({ text(layout, QStringLiteral("id")), text(layout, QStringLiteral("target")) });
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
}

void FormatTabs::addFormatRoot(PointTreeWidgetItem *root)
{
    const QString name = firstFilled({ text(root, QStringLiteral("target")), text(root, QStringLiteral("id")) });
    if (!name.isEmpty() && indexOf(name) < 0)
        addPage(name, QIcon(), name);
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
