#include "samples/sample.h"

#include <QHash>

QJsonObject Samples::run(const QString &name, const QJsonObject &arguments)
{
    using Sample = QJsonObject (*)(const QJsonObject &);
    static const QHash<QString, Sample> samples {
        { QStringLiteral("parse"), &parse },
        { QStringLiteral("scan"), &scan },
        { QStringLiteral("idle"), &idle },
        { QStringLiteral("open"), &open },
        { QStringLiteral("save"), &save },
        { QStringLiteral("click"), &click },
        { QStringLiteral("tab"), &tab },
        { QStringLiteral("edit"), &edit },
    };
    const Sample sample = samples.value(name);
    return sample ? sample(arguments) : failure(QStringLiteral("no sample is named %1").arg(name));
}

QJsonObject Samples::failure(const QString &reason)
{
    return { { QStringLiteral("error"), reason } };
}

bool Samples::failed(const QJsonObject &answer)
{
    return answer.contains(QLatin1String("error"));
}
