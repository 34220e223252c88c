#include "testplugin.h"

#if !defined(TESTPLUGIN_NO_IPLUGIN)

#include <QCoreApplication>
#include <QVariant>

namespace {

enum Behaviour { Plain, InitializeFails };

constexpr Behaviour behaviour = TESTPLUGIN_BEHAVIOUR;

QString ownName()
{
    return QStringLiteral(TESTPLUGIN_NAME);
}

void appendCall(const QString &call)
{
    QStringList calls = qApp->property("calls").toStringList();
    calls.append(call);
    qApp->setProperty("calls", calls);
}

void record(const QString &call)
{
    appendCall(ownName() + QLatin1Char('.') + call);
}

/// An object for the pool that tells when its plug-in's manager deletes it.
class Registered final : public QObject
{
public:
    explicit Registered(const QString &name, QObject *parent = nullptr) : QObject(parent)
    {
        setObjectName(ownName() + QLatin1Char('.') + name);
    }
    ~Registered() override
    {
        if (!parent())
            appendCall(objectName() + QStringLiteral(".deleted"));
    }
};

// Tells that code of this shared object has run.
const bool loaded = [] {
    record(QStringLiteral("loaded"));
    return true;
}();

} // namespace

TestPlugin::TestPlugin()
{
    Q_UNUSED(loaded)
}

TestPlugin::~TestPlugin()
{
    record(QStringLiteral("destroyed"));
}

bool TestPlugin::initialize(const QStringList &arguments, QString *errorString)
{
    record(QStringLiteral("initialize(%1)").arg(arguments.join(QLatin1Char(','))));
#if defined(TESTPLUGIN_REGISTERS)
    addAutoReleasedObject(new Registered(QStringLiteral("first")));
    addAutoReleasedObject(new Registered(QStringLiteral("second")));
    addObject(new Registered(QStringLiteral("kept"), qApp));
#endif
    if (behaviour == InitializeFails)
        *errorString = QStringLiteral("no paper");
    return behaviour != InitializeFails;
}

void TestPlugin::extensionsInitialized()
{
    record(QStringLiteral("extensionsInitialized"));
}

bool TestPlugin::delayedInitialize()
{
    record(QStringLiteral("delayedInitialize"));
#if defined(TESTPLUGIN_UNRESOLVED)
    extern void definedNowhere();
    definedNowhere();
#endif
    return true;
}

void TestPlugin::aboutToShutdown()
{
    record(QStringLiteral("aboutToShutdown"));
}

#endif
