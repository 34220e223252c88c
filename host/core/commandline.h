#pragma once

#include "core/filetarget.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

namespace Core {

/// What the program was asked for on its command line. Read twice: by the program, which answers "--help" and refuses
/// what it does not know before anything else exists, and by the Core plug-in, which carries the rest out. A plain
/// value.
struct CommandLine
{
    enum class Request {
        Start, ///< Run the workbench.
        Help,
        Version,
        Refuse ///< @p error says why.
    };
    enum class Page { Unchanged, Definition, Realization };

    Request request = Request::Start;
    QString error;
    QVector<FileTarget> files; ///< As given; a job has one at most.
    QStringList pluginPaths;   ///< Empty: the default directory.
    QString screenshot;        ///< Path of the picture, empty for none.
    QString language;          ///< Empty: the system's.
    Page page = Page::Unchanged;
    bool save = false;
    bool force = false;
    bool timings = false;
    bool dark = false;
    bool verbose = false;

    /// True when the program quits by itself once it has done what it was asked for.
    [[nodiscard]] bool isJob() const { return save || timings || !screenshot.isEmpty(); }

    /// The first one; empty without any.
    [[nodiscard]] FileTarget file() const { return files.value(0); }

    /// @p arguments without those that the toolkit takes for itself, "-style fusion" for instance.
    [[nodiscard]] static QStringList withoutToolkits(const QStringList &arguments);
    /// @p arguments without the program's name and the toolkit's. Looks at the disk for what is a file and what a place
    /// in one.
    [[nodiscard]] static CommandLine parse(const QStringList &arguments);
    /// Needs no application object.
    [[nodiscard]] static QString usage();
    [[nodiscard]] static QString help();
};

/// Writes all of @p text to the standard output. Empty, or why that failed, as a sentence without its end.
[[nodiscard]] QString printAnswer(const QByteArray &text);

} // namespace Core
