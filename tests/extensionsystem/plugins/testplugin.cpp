#include "testplugin.h"

#if !defined(TESTPLUGIN_NO_IPLUGIN)

#include <QCoreApplication>
#include <QVariant>

namespace {

void record(const QString &call)
{
    const QString line = QStringLiteral(TESTPLUGIN_NAME ".") + call;
    qApp->setProperty("calls", qApp->property("calls").toStringList() + QStringList { line });
}

/// An object for the pool that tells when its plug-in's manager deletes it.
class Registered final : public QObject
{
public:
    explicit Registered(const char *name, QObject *parent = nullptr) : QObject(parent), m_name(QLatin1String(name))
    {
        setObjectName(QStringLiteral(TESTPLUGIN_NAME ".") + m_name);
    }
    ~Registered() override
    {
        if (!parent())
            record(m_name + QStringLiteral(".deleted"));
    }

private:
    QString m_name;
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
    addAutoReleasedObject(new Registered("first"));
    addAutoReleasedObject(new Registered("second"));
    addObject(new Registered("kept", qApp));
#endif
#if defined(TESTPLUGIN_FAILS)
    *errorString = QStringLiteral("no paper");
    return false;
#else
    Q_UNUSED(errorString)
    return true;
#endif
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

// Compiled here, since there are many of these and the headers cost more than the rest.
#include "moc_testplugin.cpp"
