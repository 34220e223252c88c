#pragma once

#include <QByteArray>
#include <QPair>
#include <QSet>
#include <QString>

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
    /// @p path is only named in the log.
    ModelWriter(TranslatableKeys &translatable, const Definitions &definitions, const QString &path);

    /// The root element is that of @p definitionRoot. With no children on either side the document is the processing
    /// instruction alone. Empty when the tree can't be written at all; the reason has been logged.
    [[nodiscard]] QByteArray write(
        const PointTreeWidgetItem *definitionRoot, const PointTreeWidgetItem *realizationRoot);

private:
    void startDefinition(ExtensionFile::Writer &writer, const PointTreeWidgetItem *node);
    void startRealization(ExtensionFile::Writer &writer, const PointTreeWidgetItem *node);

    void learn(const PointTreeWidgetItem *node);

    TranslatableKeys &m_translatable;
    const Definitions &m_definitions;
    QString m_path;
    QSet<QPair<QString, QString>> m_learned; ///< kind in lower case and point id: nodes share their definitions
};
