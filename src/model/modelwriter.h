#pragma once

#include <QByteArray>

class Definitions;
class PointTreeWidgetItem;
class TranslatableKeys;

namespace ExtensionFile {
class Writer;
}

/// Turns the two sides of the opened file into the bytes of an extension file. GUI thread.
class ModelWriter final
{
public:
    /// @p translatable learns from every realization node before it is written.
    ModelWriter(TranslatableKeys &translatable, const Definitions &definitions);

    /// The root element is that of @p definitionRoot. With no children on either side the document is the processing
    /// instruction alone. Empty when the tree can't be written at all; the reason has been logged.
    [[nodiscard]] QByteArray write(const PointTreeWidgetItem *definitionRoot, const PointTreeWidgetItem *realizationRoot);

private:
    void writeDefinition(ExtensionFile::Writer &writer, const PointTreeWidgetItem *node);
    void writeRealization(ExtensionFile::Writer &writer, const PointTreeWidgetItem *node);

    TranslatableKeys &m_translatable;
    const Definitions &m_definitions;
};
