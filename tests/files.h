#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstdio>

// Files as tests make and look at them. Making one aborts the test program when it doesn't work.

/// The text of a literal.
[[nodiscard]] inline QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// The whole content, "unreadable" where there is none.
[[nodiscard]] inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

inline void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        qFatal("%s cannot be written", qPrintable(path));
}

/// As a careful program saves, and a version control system brings another version: nobody sees a half.
inline void replaceFile(const QString &path, const QByteArray &content)
{
    const QString beside = path + s(".new");
    writeFile(beside, content);
    if (std::rename(QFile::encodeName(beside).constData(), QFile::encodeName(path).constData()) != 0)
        qFatal("%s cannot be replaced", qPrintable(path));
}
