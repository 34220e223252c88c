#pragma once

namespace Ui {
class ExtPointWidget;
}

/// What the two page builders have in common: each fills and drives one page of the form. GUI thread.
class ExtPointWidgetBuilder
{
public:
    virtual ~ExtPointWidgetBuilder();

    /// Configures the page's widgets.
    virtual void initWidgets(Ui::ExtPointWidget *ui) = 0;

    /// Shows the page's root node, with everything under it expanded; does nothing when the model has none.
    virtual void loadTree() = 0;

    /// Connects the page's widgets to the builder's slots.
    virtual void createConnections() = 0;

    /// The three of them, in this order.
    void build(Ui::ExtPointWidget *ui);

protected:
    ExtPointWidgetBuilder() = default;
    ExtPointWidgetBuilder(const ExtPointWidgetBuilder &) = delete;
    ExtPointWidgetBuilder &operator=(const ExtPointWidgetBuilder &) = delete;
};
