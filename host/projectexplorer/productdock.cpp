#include "projectexplorer/productdock.h"

#include "projectexplorer/plugindirectorymodel.h"

#include <QEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

namespace ProjectExplorer {

namespace {
// A build that creates a thousand directories tells a thousand times.
constexpr int RefreshDelayMilliseconds = 150;
constexpr QSize PreferredSize(230, 400);
} // namespace

ProductDock::ProductDock(QWidget *parent)
    : QDockWidget(tr("Plug-ins"), parent), m_model(new PluginDirectoryModel(this)),
      m_filtered(new QSortFilterProxyModel(this))
{
    setObjectName(QStringLiteral("productDock"));
    auto *contents = new QWidget(this);
    m_filter = new QLineEdit(contents);
    m_filter->setObjectName(QStringLiteral("productFilter"));
    m_filter->setPlaceholderText(tr("Filter"));
    m_filter->setAccessibleName(tr("Filter plug-ins"));
    m_filter->setClearButtonEnabled(true);
    m_filter->installEventFilter(this);
    m_filtered->setSourceModel(m_model);
    m_filtered->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_view = new QListView(contents);
    m_view->setObjectName(QStringLiteral("productView"));
    m_view->setAccessibleName(tr("Plug-ins of the product"));
    m_view->setUniformItemSizes(true);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setModel(m_filtered);
    m_count = new QLabel(contents);
    m_count->setObjectName(QStringLiteral("productCount"));
    m_count->setWordWrap(true);
    auto *layout = new QVBoxLayout(contents);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_filter);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_count);
    setWidget(contents);
    resize(PreferredSize);

    m_refreshDelay.setSingleShot(true);
    m_refreshDelay.setInterval(RefreshDelayMilliseconds);
    connect(&m_refreshDelay, &QTimer::timeout, this, &ProductDock::refresh);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_refreshDelay, QOverload<>::of(&QTimer::start));
    // The watcher sees no "extension.xml" that comes or goes inside of a directory; watching thousands would be dear.
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            m_refreshDelay.start();
    });
    connect(&m_lister, &DirectoryLister::listed, this, &ProductDock::takeIn);
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_filtered->setFilterFixedString(text);
        updateCount();
    });
    connect(m_view, &QListView::activated, this, [this](const QModelIndex &index) {
        const QString path = index.data(PluginDirectoryModel::PathRole).toString();
        if (!path.isEmpty())
            Q_EMIT fileActivated(path);
    });
    updateCount();
}

void ProductDock::setOpenedFile(const QString &path)
{
    const QString directory = path.isEmpty() ? QString() : QFileInfo(path).absolutePath();
    const QString productPath = path.isEmpty() ? QString() : QFileInfo(directory).absolutePath();
    m_model->setOpened(path.isEmpty() ? QString() : QFileInfo(directory).fileName());
    if (productPath != m_productPath) {
        watch(productPath);
        m_model->setDirectories(productPath, {});
    }
    refresh();
}

void ProductDock::setProblems(const QHash<QString, QString> &reasons)
{
    m_model->setProblems(reasons);
}

void ProductDock::watch(const QString &productPath)
{
    if (!m_watcher.directories().isEmpty())
        m_watcher.removePaths(m_watcher.directories());
    m_productPath = productPath;
    if (!productPath.isEmpty())
        m_watcher.addPath(productPath);
}

void ProductDock::refresh()
{
    m_refreshDelay.stop();
    if (!m_productPath.isEmpty()) {
        m_lister.list(m_productPath);
        return;
    }
    m_lister.cancel();
    takeIn(QString(), {});
}

void ProductDock::takeIn(const QString &productPath, const QVector<PluginDirectory> &directories)
{
    const QString current = m_view->currentIndex().data().toString();
    m_model->setDirectories(productPath, directories);
    if (!m_view->currentIndex().isValid()) {
        for (int row = 0; row < m_filtered->rowCount(); ++row) {
            const QModelIndex index = m_filtered->index(row, 0);
            const bool wanted
                = current.isEmpty() ? index.data(PluginDirectoryModel::OpenedRole).toBool() : index.data() == current;
            if (!wanted)
                continue;
            m_view->setCurrentIndex(index);
            m_view->scrollTo(index);
            break;
        }
    }
    updateCount();
    Q_EMIT refreshed();
}

void ProductDock::updateCount()
{
    const int all = m_model->rowCount();
    const int shown = m_filtered->rowCount();
    if (m_productPath.isEmpty())
        m_count->setText(tr("Open a file to see its product."));
    else if (shown < all)
        m_count->setText(tr("%1 of %2 directories").arg(shown).arg(all));
    else if (m_model->fileCount() < all)
        m_count->setText(all - m_model->fileCount() == 1
                ? tr("%n plug-ins, 1 other directory", nullptr, m_model->fileCount())
                : tr("%n plug-ins, %1 other directories", nullptr, m_model->fileCount())
                      .arg(all - m_model->fileCount()));
    else
        m_count->setText(all == 1 ? tr("1 plug-in") : tr("%n plug-ins", nullptr, all));
}

bool ProductDock::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_filter && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Down && m_filtered->rowCount() > 0) {
        m_view->setFocus(Qt::OtherFocusReason);
        if (!m_view->currentIndex().isValid())
            m_view->setCurrentIndex(m_filtered->index(0, 0));
        return true;
    }
    return QDockWidget::eventFilter(watched, event);
}

} // namespace ProjectExplorer
