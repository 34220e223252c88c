#pragma once

#include "model/mainwidgetinterface.h"

#include <QString>
#include <QWidget>

class Controller;
class DefintionPageBuilder;
class FindActions;
class RealizationPageBuilder;

namespace Ui {
class ExtPointWidget;
}

/// The one widget that an opened extension file shows: the form with its two pages and the builders that fill them.
/// It holds no data of its own and forwards what the builders say of changes.
///
/// Owned by the host that shows it. The builders have no parent and stay alive after the widget. GUI thread.
class ExtPointWidget final : public QWidget, public MainWidgetInterface
{
    Q_OBJECT

public:
    explicit ExtPointWidget(QWidget *parent = nullptr);
    ~ExtPointWidget() override;

    /// To be called after a file was loaded: builds the tabs of the plug-in's formats and refreshes the definition
    /// page's list of attribute types.
    void reloadPages();

    /// Formats of a large product go on coming in for a moment after it was read; this puts them all into the bar.
    void showAllFormats();

    /// Commits what is typed in a sheet and not committed yet; what a sheet refuses stays in it, marked.
    void commitEditors();

    /// Where the point that was current on the definition page has gone, the plug-in is current.
    void keepPointCurrent();

    /// Goes to what shows @p node best and to its field @p key, if one is named; see GoToNode. False for null and when
    /// nothing shows it.
    bool goTo(PointTreeWidgetItem *node, const QString &key = {});
    [[nodiscard]] FindActions *findActions() const { return finding; }

    void addFormatRoot(PointTreeWidgetItem *item) override;
    void addLayout(PointTreeWidgetItem *layout) override;

    [[nodiscard]] DefintionPageBuilder *defintionPageBuilder() const { return defintionBuilder; }
    [[nodiscard]] RealizationPageBuilder *realizationPageBuilder() const { return realizationBuilder; }

protected:
    /// Whoever gives the focus to the editor gives it to the tree of the page in sight.
    void focusInEvent(QFocusEvent *event) override;

Q_SIGNALS:
    void modified(bool flag);

private:
    Ui::ExtPointWidget *ui;
    Controller *controller;
    DefintionPageBuilder *defintionBuilder;
    RealizationPageBuilder *realizationBuilder;
    FindActions *finding;
};
