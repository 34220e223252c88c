#pragma once

#include "core/context.h"
#include "core/core_global.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace Core {

/// Something with a widget and the context that holds while the widget has the focus. Does not own its widget.
class CORE_EXPORT IContext : public QObject
{
    Q_OBJECT

public:
    explicit IContext(QObject *parent = nullptr);
    ~IContext() override;

    [[nodiscard]] virtual Context context() const;
    virtual void setContext(const Context &context);

    /// Null before the first setWidget() and once the widget was destroyed.
    [[nodiscard]] virtual QWidget *widget() const;
    virtual void setWidget(QWidget *widget);

private:
    Context m_context;
    QPointer<QWidget> m_widget;
};

} // namespace Core
