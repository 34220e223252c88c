#pragma once

namespace PointEditor::Internal::Constants {

constexpr char editorId[] = "Qt4.ExtPointEditor";
constexpr char mimeType[] = "application/vnd.qt.xml.extpoint";

} // namespace PointEditor::Internal::Constants
