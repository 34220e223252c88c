#include "core/ieditorfactory.h"

namespace Core {

IEditorFactory::IEditorFactory(QObject *parent) : QObject(parent) { }

IEditorFactory::~IEditorFactory() = default;

} // namespace Core
