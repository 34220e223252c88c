#pragma once

#include "core/core_global.h"

#include <QObject>

class QSettings;

namespace Core {

class EditorManager;
class IEditor;

/// Remembers in the settings where the view of each file stood when it was closed, for editors that are ViewKeepers: of
/// the files closed last, and not of a view that takes a lot of room to say. Owned by the Core plug-in; uses the
/// settings, which must outlive it. GUI thread only.
class CORE_EXPORT ViewMemory final : public QObject
{
    Q_OBJECT

public:
    static constexpr int MostFiles = 100;

    /// To be made before the window, which takes an editor apart when it closes.
    ViewMemory(EditorManager &editors, QSettings &settings, QObject *parent = nullptr);

    /// To be called once the editor is shown.
    void restore(Core::IEditor *editor);

private:
    void remember(IEditor *editor);
    /// All but that many, in the group that is open. The time of the newest one.
    qint64 forgetOldest(int left);

    QSettings &m_settings;
};

} // namespace Core
