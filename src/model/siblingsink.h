#pragma once

#include "announcement.h"
#include "extensionfile/sink.h"
#include "propertyhash.h"

#include <QString>
#include <QVector>

#include <memory>

class QThread;

/// The rules by which the file of a sibling plug-in becomes nodes and announcements. Used on a pool thread by one
/// reading task; owns what it built until that is taken.
class SiblingSink final : public ExtensionFile::Sink
{
public:
    /// What happens at the end of a second data set with the formats of the first.
    enum class EarlierFormats {
        Repeat, ///< they are announced again
        Omit    ///< for a receiver that would ignore them; the number of announcements grows with the file only
    };

    /// @p basePath is the directory of the file with a trailing "/". The two roots are only passed on.
    SiblingSink(const QString &basePath, PointTreeWidgetItem *pointsRoot, PointTreeWidgetItem *dataRoot,
        EarlierFormats earlierFormats);
    ~SiblingSink() override;

    [[nodiscard]] bool wantsLocations() const override { return false; }
    void restart() override;
    void startElement(const QString &name, const ExtensionFile::Attributes &attributes,
        const ExtensionFile::Location &where) override;
    void endElement() override;

    /// What was built, its nodes moved to @p thread. Only for a file that was read to its end without a fault.
    [[nodiscard]] std::unique_ptr<ScannedFile> take(QThread *thread);

private:
    enum Side { Root, DefinitionSide, RealizationSide };

    struct Level
    {
        Side side;
        PointTreeWidgetItem *node;
    };

    PointTreeWidgetItem *startSet(Side side);
    PointTreeWidgetItem *startDefinition(
        PointTreeWidgetItem *parent, const QString &tag, const ExtensionFile::Attributes &attributes);
    PointTreeWidgetItem *startRealization(
        PointTreeWidgetItem *parent, const QString &tag, const ExtensionFile::Attributes &attributes);
    PointTreeWidgetItem *newNode(const QString &text, const PropertyHash &properties);
    void announce(Announcement::Kind kind, PointTreeWidgetItem *parent, PointTreeWidgetItem *node, const QString &key);

    QString m_basePath;
    PointTreeWidgetItem *m_pointsRoot;
    PointTreeWidgetItem *m_dataRoot;
    std::unique_ptr<ScannedFile> m_file;
    PropertyHash m_rootProperties;
    QVector<Level> m_levels;
    QVector<PointTreeWidgetItem *> m_nodes;
    QVector<PointTreeWidgetItem *> m_formats;
    EarlierFormats m_earlierFormats;
    int m_ignoredDepth = 0;
};
