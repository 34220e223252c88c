#pragma once

class SourceDataManager;

/// Has the siblings looked at again whenever the program comes to the front, as long as @p manager lives: who has
/// changed a point in another window, or in a text editor, comes back from there. What has changed is taken in when the
/// user is not in the middle of something: dragging, in a menu or a dialog, or with text in a field that is not
/// committed yet. GUI thread.
void watchSiblings(SourceDataManager *manager);
