#include "core/fakeeditor.h"

#include "extensionsystem/iplugin.h"

/// Brings the FakeFactory into the real program.
class FakePlugin final : public ExtensionSystem::IPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID EXTENSIONSYSTEM_PLUGIN_IID FILE "fakeplugin.json")

public:
    bool initialize(const QStringList & /*arguments*/, QString * /*errorString*/) override
    {
        addAutoReleasedObject(new FakeFactory);
        return true;
    }
    void extensionsInitialized() override { }
};

#include "fakeplugin.moc"
