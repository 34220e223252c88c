#include "core/icontext.h"

namespace Core {

IContext::IContext(QObject *parent) : QObject(parent) { }

IContext::~IContext() = default;

Context IContext::context() const
{
    return m_context;
}

void IContext::setContext(const Context &context)
{
    m_context = context;
}

QWidget *IContext::widget() const
{
    return m_widget;
}

void IContext::setWidget(QWidget *widget)
{
    m_widget = widget;
}

} // namespace Core
