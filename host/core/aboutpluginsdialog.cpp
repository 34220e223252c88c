#include "core/aboutpluginsdialog.h"

#include "extensionsystem/pluginmanager.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QStyle>
#include <QTableWidget>
#include <QVBoxLayout>

namespace Core {

namespace {

using ExtensionSystem::PluginInfo;

enum Column { NameColumn, VersionColumn, StateColumn, PathColumn, ColumnCount };

QString stateText(const PluginInfo &plugin)
{
    if (plugin.hasError())
        return AboutPluginsDialog::tr("Not loaded");
    switch (plugin.state) {
    case PluginInfo::Running:
    case PluginInfo::Initialized:
        return AboutPluginsDialog::tr("Running");
    case PluginInfo::Stopped:
        return AboutPluginsDialog::tr("Stopped");
    default:
        return AboutPluginsDialog::tr("Found");
    }
}

void fillRow(QTableWidget &table, int row, const PluginInfo &plugin)
{
    const QString name = plugin.metaData.name.isEmpty() ? QFileInfo(plugin.filePath).fileName() : plugin.metaData.name;
    const QString version = plugin.metaData.name.isEmpty() ? QString() : plugin.metaData.version.toString();
    const QString path = QDir::toNativeSeparators(plugin.filePath);
    const QStringList texts { name, version, stateText(plugin), path };
    for (int column = 0; column < texts.size(); ++column) {
        auto *item = new QTableWidgetItem(texts.at(column));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        item->setToolTip(plugin.hasError() ? plugin.errorString : plugin.metaData.description);
        table.setItem(row, column, item);
    }
    if (plugin.hasError())
        table.item(row, NameColumn)->setIcon(table.style()->standardIcon(QStyle::SP_MessageBoxWarning));
}

/// The reasons under the table: they are sentences, too long for a cell.
QString reasons(const QVector<PluginInfo> &plugins)
{
    QStringList lines;
    for (const PluginInfo &plugin : plugins)
        if (plugin.hasError())
            lines.append(QStringLiteral("%1: %2").arg(
                plugin.metaData.name.isEmpty() ? QFileInfo(plugin.filePath).fileName() : plugin.metaData.name,
                plugin.errorString));
    return lines.join(QLatin1Char('\n'));
}

} // namespace

AboutPluginsDialog::AboutPluginsDialog(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("aboutPluginsDialog"));
    setWindowTitle(tr("About Plug-ins"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(820, 380);

    const auto *manager = ExtensionSystem::PluginManager::instance();
    const QVector<PluginInfo> plugins = manager ? manager->plugins() : QVector<PluginInfo>();
    auto *table = new QTableWidget(plugins.size(), ColumnCount, this);
    table->setObjectName(QStringLiteral("pluginTable"));
    table->setAccessibleName(tr("Plug-ins"));
    table->setHorizontalHeaderLabels({ tr("Name"), tr("Version"), tr("State"), tr("Location") });
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTextElideMode(Qt::ElideMiddle);
    table->setWordWrap(false);
    table->setTabKeyNavigation(false);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (int row = 0; row < plugins.size(); ++row)
        fillRow(*table, row, plugins.at(row));
    table->resizeColumnsToContents();
    table->horizontalHeader()->setStretchLastSection(true);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(table, 1);
    const QString failures = reasons(plugins);
    if (!failures.isEmpty()) {
        auto *label = new QLabel(failures, this);
        label->setObjectName(QStringLiteral("pluginErrors"));
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        layout->addWidget(new QLabel(tr("These could not be loaded:"), this));
        layout->addWidget(label);
    }
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

} // namespace Core
