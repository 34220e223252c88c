#pragma once

#include "core/fileclaims.h"

#include <QObject>

namespace Core {

class EditorManager;
class IEditor;
class MainWindow;

/// Sees to it that a file has one window, whichever processes of the user open it: the second one has the first one
/// come forward instead. Only where that doesn't answer there are two, and the second one says so. Made for a window
/// that a person works in, and owned by it, as the window must outlive it. GUI thread only.
class OneWindowPerFile final : public QObject
{
    Q_OBJECT

public:
    OneWindowPerFile(MainWindow &window, EditorManager &editors);

    /// True when another window shows the file and has been told to come forward and to go to the place. Otherwise the
    /// file is this window's if it has none yet. Waits for an answer as FileClaims does.
    [[nodiscard]] bool isElsewhere(const FileTarget &target);

private:
    /// Claims what the window shows, or nothing.
    void follow();
    void show(const FileTarget &target, const QByteArray &token);

    MainWindow &m_window;
    EditorManager &m_editors;
    FileClaims m_claims;
    bool m_noAnswer = false;
};

} // namespace Core
