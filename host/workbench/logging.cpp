#include "workbench/logging.h"

#include "utils/pathtext.h"

#include <QLoggingCategory>

namespace Workbench {

namespace {

QtMessageHandler defaultHandler = nullptr;
bool verbose = false;

/// Remarks of Qt on a bare environment and on windows without a display, which tell nothing about the files that are
/// edited; on an exception that ends the process anyway, with a line of its own; on a thread that the system refuses,
/// without which everything is done as well.
bool isIdle(const QString &text)
{
    return text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"))
        || text.startsWith(QLatin1String("This plugin does not support "))
        || text.startsWith(QLatin1String("Qt Concurrent has caught an exception"))
        || text.startsWith(QLatin1String("QThread::start: Thread creation error"));
}

void passOn(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    // What ends the program is the toolkit's own text, in more than one line.
    if (type == QtFatalMsg)
        defaultHandler(type, context, text);
    else if (verbose || !isIdle(text))
        defaultHandler(type, context, Utils::oneLine(text));
}

} // namespace

void setUpLogging(bool everything)
{
    verbose = everything;
    if (verbose) {
        QLoggingCategory::setFilterRules(QStringLiteral("extpoint.*=true\nextensionsystem=true\nutils.*=true"));
        qSetMessagePattern(QStringLiteral("%{time hh:mm:ss.zzz} %{category} %{type}: %{message}"));
    } else {
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.info=false"));
        qSetMessagePattern(QStringLiteral("%{message}"));
    }
    defaultHandler = qInstallMessageHandler(passOn);
}

} // namespace Workbench
