#pragma once

#include "announcement.h"
#include "extensionfile/sink.h"
#include "propertyhash.h"

#include <QString>
#include <QVector>

#include <functional>
#include <memory>

class QThread;

/// The rules by which the file of a sibling plug-in becomes nodes and announcements; the opened file's definitions are
/// offered by the same rules (see OwnPoints). Used on a pool thread by one reading task, or on the GUI thread; owns
/// what it built until that is taken.
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

    /// What a definition says about itself by its tag, its attributes and the node above it: its row's text, its
    /// plug-in and its point. What the attributes of either change is to be told again.
    static void describe(PointTreeWidgetItem *node, PointTreeWidgetItem *parent);
    /// The key that a definition stands under in the point index; empty for a node that is in none.
    [[nodiscard]] static QString indexKey(const QString &tag, const PropertyHash &properties);

    /// As the start tags of a file's root, with these attributes, and of a set of definitions in it.
    void startDefinitions(const PropertyHash &rootProperties);
    /// As the start tag of a definition among others.
    void startDefinition(const QString &tag, const PropertyHash &properties);
    /// Goes on in the middle of a file, among the definitions under @p parent, which stays the caller's.
    void resume(PointTreeWidgetItem *parent);
    /// What the start tag that came last was made into; it must be a definition.
    [[nodiscard]] PointTreeWidgetItem *current() const { return m_levels.last().node; }

    /// Has @p call made once the bytes of the file are there.
    void whenRead(const std::function<void()> &call) { m_whenRead = call; }

    void fileRead() override;
    void startElement(
        const QString &name, const ExtensionFile::Attributes &attributes, const ExtensionFile::Locator &where) override;
    void endElement() override;

    [[nodiscard]] int nodeCount() const { return m_nodes.size(); }
    /// Characters of all attributes' values.
    [[nodiscard]] qint64 textSize() const { return m_textSize; }

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
    std::function<void()> m_whenRead;
    qint64 m_textSize = 0;
    int m_ignoredDepth = 0;
};
