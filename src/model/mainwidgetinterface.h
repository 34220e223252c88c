#pragma once

class PointTreeWidgetItem;

/// What the model tells the main widget of an editor. Implemented by a QWidget that registers itself with the
/// Controller. GUI thread.
class MainWidgetInterface
{
public:
    virtual ~MainWidgetInterface() = default;

    /// A layout has been read; it may be known already.
    virtual void addLayout(PointTreeWidgetItem *layout) = 0;

    /// A format root has been read whose "target" was not known. Null asks for the current tab to be shown afresh.
    virtual void addFormatRoot(PointTreeWidgetItem *item) = 0;
};
