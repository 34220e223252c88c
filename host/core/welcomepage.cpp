#include "core/welcomepage.h"

#include "core/recentfiles.h"
#include "core/recoverystore.h"

#include <QCommandLinkButton>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace Core {

namespace {
constexpr int ShownFiles = 5;
constexpr int PageWidth = 560;
} // namespace

WelcomePage::WelcomePage(const RecentFiles &recentFiles, QWidget *parent) : QWidget(parent), m_recentFiles(recentFiles)
{
    setObjectName(QStringLiteral("welcomePage"));
}

void WelcomePage::showEvent(QShowEvent *event)
{
    if (!m_links)
        build();
    refresh();
    QWidget::showEvent(event);
}

void WelcomePage::build()
{
    setAccessibleName(tr("Welcome"));
    auto *column = new QWidget(this);
    column->setFixedWidth(PageWidth);
    auto *title = new QLabel(tr("ExtPoint Workbench"), column);
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.8);
    font.setBold(true);
    title->setFont(font);
    auto *explanation = new QLabel(
        tr("Open the \"extension.xml\" of a plug-in to edit the extension points that it declares and the data that it "
           "gives to those of other plug-ins. The other plug-ins of the product are read from the directories beside "
           "it."),
        column);
    explanation->setWordWrap(true);
    auto *open = new QPushButton(style()->standardIcon(QStyle::SP_DialogOpenButton), tr("&Open a File…"), column);
    open->setObjectName(QStringLiteral("welcomeOpenButton"));
    open->setDefault(true);
    setFocusProxy(open);
    open->setFocus(Qt::OtherFocusReason);
    connect(open, &QPushButton::clicked, this, &WelcomePage::openRequested);
    auto *hint = new QLabel(tr("… or drop a file on this window."), column);
    m_links = new QVBoxLayout;
    m_links->setSpacing(0);

    auto *openRow = new QHBoxLayout;
    openRow->addWidget(open);
    openRow->addWidget(hint);
    openRow->addStretch();
    auto *columnLayout = new QVBoxLayout(column);
    columnLayout->setSpacing(14);
    columnLayout->addWidget(title);
    columnLayout->addWidget(explanation);
    columnLayout->addLayout(openRow);
    columnLayout->addLayout(m_links);

    // An alignment flag would give the column the height of unwrapped text.
    auto *middle = new QHBoxLayout;
    middle->addStretch();
    middle->addWidget(column);
    middle->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->addStretch(1);
    layout->addLayout(middle);
    layout->addStretch(2);
}

void WelcomePage::refresh()
{
    if (!m_links)
        return;
    while (QLayoutItem *item = m_links->takeAt(0)) {
        // A click on one of these links may be what brought us here.
        if (item->widget())
            item->widget()->deleteLater();
        delete item;
    }
    addRecovered();
    addRecent();
}

void WelcomePage::addRecovered()
{
    const auto count = m_store ? m_store->abandoned().size() : 0;
    if (count == 0)
        return;
    auto *link = new QCommandLinkButton(tr("Recovered Files…"), this);
    link->setObjectName(QStringLiteral("welcomeRecoveredButton"));
    link->setDescription(count == 1
            ? tr("The workbench ended with unsaved changes to a file. They were kept.")
            : tr("The workbench ended with unsaved changes to files. %n copies were kept.", nullptr, int(count)));
    link->setAccessibleDescription(link->description());
    link->setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning));
    connect(link, &QCommandLinkButton::clicked, this, &WelcomePage::recoveredFilesRequested);
    m_links->addWidget(link);
}

void WelcomePage::addRecent()
{
    const QStringList shown = m_recentFiles.files().mid(0, ShownFiles);
    if (shown.isEmpty())
        return;
    m_links->addWidget(new QLabel(tr("Opened last:"), this));
    for (const QString &path : shown) {
        const QString directory = QDir::toNativeSeparators(QFileInfo(path).absolutePath());
        auto *link = new QCommandLinkButton(QFileInfo(QFileInfo(path).absolutePath()).fileName(), this);
        link->setDescription(fontMetrics().elidedText(directory, Qt::ElideMiddle, PageWidth - 60));
        link->setToolTip(QDir::toNativeSeparators(path));
        link->setIcon(style()->standardIcon(QStyle::SP_FileIcon));
        connect(link, &QCommandLinkButton::clicked, this, [this, path] { emit fileRequested(path); });
        m_links->addWidget(link);
    }
}

} // namespace Core
