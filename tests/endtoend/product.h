#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QTemporaryDir>

/// A product in a temporary directory of its own, for one test to work on: a copy of the sample or what the test gives.
/// Aborts the test program when it can't be made. The directories are readable to every user.
class Product final
{
public:
    /// The contents of files by their names below the directory of the plug-ins.
    using Files = QMap<QString, QByteArray>;

    Product();
    explicit Product(const Files &files);
    /// Gives back the rights that a test took from the files, so that everything can be removed.
    ~Product();
    Product(const Product &) = delete;
    Product &operator=(const Product &) = delete;

    /// The directory that holds a directory for each plug-in.
    [[nodiscard]] QString plugins() const;
    [[nodiscard]] QString fileOf(const QString &plugin) const;
    /// A directory beside the product, created on the first call.
    [[nodiscard]] QString directory(const QString &name) const;

    /// Adds \a count plug-ins with \a points points each, none of which the sample has.
    void addSiblings(int count, int points) const;

    /// A number for the names and contents of all files but those of \a plugin.
    [[nodiscard]] QByteArray fingerprintWithout(const QString &plugin) const;

private:
    QTemporaryDir m_directory;
};

/// The whole content, and the other way round; both abort the test program when it doesn't work.
[[nodiscard]] QByteArray contentOf(const QString &path);
void writeFile(const QString &path, const QByteArray &content);
/// Copies a directory with everything in it; \a to need not exist.
void copyDirectory(const QString &from, const QString &to);
/// Sets the mode bits, which aborts the test program when it doesn't work.
void setMode(const QString &path, unsigned mode);
