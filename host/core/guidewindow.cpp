#include "core/guidewindow.h"

#include <QAbstractTextDocumentLayout>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QMenu>
#include <QPointer>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextFrame>
#include <QTextTable>
#include <QVBoxLayout>

namespace Core {

namespace {

constexpr QSize WindowSize(880, 720);
constexpr int WidestPicture = 800; // pixels
constexpr int CellPadding = 4;

QString directory()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1String("/../" EXTPOINT_DOC_DIR));
}

/// Shows no picture wider than the page.
class Browser final : public QTextBrowser
{
public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int type, const QUrl &name) override
    {
        const QVariant bytes = QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::ImageResource)
            return bytes;
        const QImage image = QImage::fromData(bytes.toByteArray());
        return image.width() > WidestPicture ? image.scaledToWidth(WidestPicture, Qt::SmoothTransformation) : image;
    }
};

/// What a heading is called in links: its words in small letters, with hyphens between them.
QString anchorOf(const QString &heading)
{
    QString anchor;
    const QString text = heading.toLower();
    for (const QChar c : text) {
        if (c.isLetterOrNumber())
            anchor += c;
        else if (c == QLatin1Char(' ') || c == QLatin1Char('-'))
            anchor += QLatin1Char('-');
    }
    return anchor;
}

void lineTables(QTextFrame *frame, const QBrush &lines)
{
    const QList<QTextFrame *> children = frame->childFrames();
    for (QTextFrame *child : children) {
        auto *table = qobject_cast<QTextTable *>(child);
        if (!table)
            continue;
        QTextTableFormat format = table->format();
        format.setBorder(1);
        format.setBorderCollapse(true);
        format.setBorderBrush(lines);
        format.setCellPadding(CellPadding);
        table->setFormat(format);
    }
}

} // namespace

GuideWindow::GuideWindow(QWidget *parent) : QWidget(parent, Qt::Window), m_browser(new Browser(this))
{
    setObjectName(QStringLiteral("guideWindow"));
    setWindowTitle(tr("User Guide"));
    resize(WindowSize);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_browser);
    m_browser->setObjectName(QStringLiteral("guideBrowser"));
    m_browser->setAccessibleName(windowTitle());
    m_browser->setFrameStyle(QFrame::NoFrame);
    m_browser->setOpenLinks(false);
    m_browser->setSearchPaths({ directory() });
    const QString guide = installedText(QStringLiteral("user-guide.md"));
    if (guide.isEmpty())
        m_browser->setPlainText(tr("The guide can't be read. It should be in %1.").arg(directory()));
    else
        m_browser->setMarkdown(guide);
    m_browser->document()->setDocumentMargin(2 * fontMetrics().averageCharWidth());
    lineTables(m_browser->document()->rootFrame(), palette().mid());
    connect(m_browser, &QTextBrowser::anchorClicked, this, [this](const QUrl &link) {
        if (link.isRelative())
            showSection(link.fragment());
        else
            QDesktopServices::openUrl(link);
    });
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
    setFocusProxy(m_browser);
}

void GuideWindow::addEntries(QMenu *help, QWidget *parent)
{
    const auto add = [&](const QString &text, const char *name, const QString &anchor) {
        QAction *action = help->addAction(text);
        action->setObjectName(QString::fromLatin1(name));
        connect(action, &QAction::triggered, parent, [parent, anchor] {
            auto *guide = parent->findChild<GuideWindow *>(QString(), Qt::FindDirectChildrenOnly);
            if (!guide)
                guide = new GuideWindow(parent);
            guide->show();
            guide->raise();
            guide->activateWindow();
            guide->showSection(anchor);
        });
        return action;
    };
    add(tr("&User Guide"), "userGuideAction", QString())->setShortcut(QKeySequence::HelpContents);
    add(tr("&Keyboard Shortcuts"), "keysAction", QStringLiteral("keys"));
    help->addSeparator();
}

bool GuideWindow::showSection(const QString &anchor)
{
    const QTextDocument *document = m_browser->document();
    if (anchor.isEmpty()) {
        m_browser->moveCursor(QTextCursor::Start);
        m_browser->verticalScrollBar()->setValue(0);
        return true;
    }
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0 || anchorOf(block.text()) != anchor)
            continue;
        m_browser->setTextCursor(QTextCursor(block));
        m_browser->verticalScrollBar()->setValue(
            int(document->documentLayout()->blockBoundingRect(block).top() - document->documentMargin()));
        return true;
    }
    return false;
}

QString GuideWindow::installedText(const QString &name)
{
    QFile file(directory() + QLatin1Char('/') + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace Core
