#include "generatedid.h"

#include <QTime>

namespace {

int number()
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    qsrand(uint(QTime(0, 0).secsTo(QTime::currentTime())));
    return qrand() % 10000;
    QT_WARNING_POP
}

} // namespace

QString GeneratedId::make(const QString &pluginId, const QString &text)
{
    return pluginId + QLatin1Char('.') + text + QString::number(number());
}
