#pragma once

#include "files.h"

#include <QMap>
#include <QTemporaryDir>

/// A product in a temporary directory of its own, for one test to work on. Aborts the test program when it can't be
/// made. The directories are readable to every user.
class Product final
{
public:
    /// The contents of files by their names below the directory of the plug-ins.
    using Files = QMap<QString, QByteArray>;

    /// A copy of the sample.
    Product();
    explicit Product(const Files &files);
    /// Gives back the rights that a test took from the files, so that everything can be removed.
    ~Product();
    Product(const Product &) = delete;
    Product &operator=(const Product &) = delete;

    /// The directory that holds a directory for each plug-in.
    [[nodiscard]] QString plugins() const { return m_directory.filePath(s("plugins")); }
    [[nodiscard]] QString fileOf(const QString &plugin) const;

    /// What is in all files but those of @p plugin, by their paths.
    [[nodiscard]] Files filesWithout(const QString &plugin) const;

private:
    QTemporaryDir m_directory;
};

/// Writes the files below the directory, which need not exist.
void writeFiles(const QString &directory, const Product::Files &files);
[[nodiscard]] Product::Files sampleFiles();
/// Adds @p count plug-ins with @p points points each, none of which the sample has.
void addSiblings(Product::Files *files, int count, int points);
/// A file of the plug-in @p id with these sets.
[[nodiscard]] QByteArray pluginFile(const char *id, const QByteArray &sets);
/// The plug-in "shell", which declares what others fill in: "Commands" with menus and tool bars, "Panels".
[[nodiscard]] QByteArray shellFile();
/// Sets the mode bits, which aborts the test program when it doesn't work.
void setMode(const QString &path, unsigned mode);
