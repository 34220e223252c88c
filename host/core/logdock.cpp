#include "core/logdock.h"

#include <QPlainTextEdit>
#include <QStringList>
#include <QTime>

#include <mutex>
#include <utility>

namespace Core {

namespace {

constexpr int MostLines = 2000;

std::mutex logMutex; // guards the rest
LogDock *listener = nullptr;
QStringList waiting;
QtMessageHandler handlerBefore = nullptr;

void listen(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    {
        const std::lock_guard<std::mutex> lock(logMutex);
        if (listener) {
            // Thousands of lines in a row are taken in at once, and no more of them kept than can be seen.
            if (waiting.isEmpty())
                QMetaObject::invokeMethod(listener, &LogDock::takeIn, Qt::QueuedConnection);
            if (waiting.size() == MostLines)
                waiting.removeFirst();
            waiting.append(QTime::currentTime().toString(QStringLiteral("HH:mm:ss  ")) + text);
        }
    }
    if (handlerBefore)
        handlerBefore(type, context, text);
}

} // namespace

LogDock::LogDock(QWidget *parent) : QDockWidget(tr("Log"), parent), m_lines(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("logDock"));
    m_lines->setObjectName(QStringLiteral("logLines"));
    m_lines->setAccessibleName(windowTitle());
    m_lines->setReadOnly(true);
    // Unlike what can only be selected with the mouse, this takes the keys for it, too.
    m_lines->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_lines->setTabChangesFocus(true);
    m_lines->setMaximumBlockCount(MostLines);
    m_lines->setPlaceholderText(tr("Nothing was logged."));
    setWidget(m_lines);
    hide();
    const std::lock_guard<std::mutex> lock(logMutex);
    listener = this;
    handlerBefore = qInstallMessageHandler(listen);
}

LogDock::~LogDock()
{
    const std::lock_guard<std::mutex> lock(logMutex);
    listener = nullptr;
    waiting.clear();
    qInstallMessageHandler(handlerBefore);
}

void LogDock::takeIn()
{
    QStringList lines;
    {
        const std::lock_guard<std::mutex> lock(logMutex);
        lines = std::exchange(waiting, {});
    }
    m_lines->appendPlainText(lines.join(QLatin1Char('\n')));
}

} // namespace Core
