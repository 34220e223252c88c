#include "committedvalue.h"

QVariant CommittedValue::of(const QVariant &typed)
{
    return typed.userType() == QMetaType::QString ? QVariant(typed.toString().trimmed()) : typed;
}
