#include "core/fakeplugin.h"

#include "core/fakeeditor.h"

bool FakePlugin::initialize(const QStringList &arguments, QString *errorString)
{
    Q_UNUSED(arguments)
    Q_UNUSED(errorString)
    addAutoReleasedObject(new FakeFactory);
    return true;
}

void FakePlugin::extensionsInitialized() { }
