#include "core/ieditor.h"

namespace Core {

IEditor::IEditor(QObject *parent) : IContext(parent) { }

IEditor::~IEditor() = default;

IEditor *IEditor::duplicate()
{
    return nullptr;
}

QByteArray IEditor::saveState() const
{
    return QByteArray();
}

bool IEditor::restoreState(const QByteArray &state)
{
    Q_UNUSED(state)
    return true;
}

int IEditor::currentLine() const
{
    return 0;
}

int IEditor::currentColumn() const
{
    return 0;
}

void IEditor::gotoLine(int line, int column, bool centerLine)
{
    Q_UNUSED(line)
    Q_UNUSED(column)
    Q_UNUSED(centerLine)
}

bool IEditor::isDesignModePreferred() const
{
    return false;
}

} // namespace Core
