#include "propertybrowser/editors/fileeditor.h"

#include "propertybrowser/editors/filedrop.h"
#include "propertybrowser/editors/lineeditor.h"
#include "propertybrowser/editors/textentryeditor.h"
#include "propertybrowser/propertydialogs.h"
#include "propertybrowser/propertyitem.h"
#include "propertybrowser/propertykeys.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>

namespace {

/// Where the dialog starts: at the typed file where it exists, else in the record's directory. Relative ones are meant
/// from the record's directory, and that from the working directory.
QString startOf(const PropertyItem &item, const QString &typed)
{
    const QString directory = item.data(PropertyKey::Directory).toString();
    const QDir base(directory);
    const QString file = base.absoluteFilePath(typed);
    if (!typed.isEmpty() && QFileInfo::exists(file)) {
        return QDir::cleanPath(file);
    }
    return directory.isEmpty() ? QString() : QDir::cleanPath(base.absolutePath());
}

/// A file below the record's directory goes by its place in there, and a name that was relative stays so.
QString storedPath(const PropertyItem &item, const QString &chosen)
{
    const QString directory = item.data(PropertyKey::Directory).toString();
    if (directory.isEmpty()) {
        return chosen;
    }
    const QString relative = QDir(QDir(directory).absolutePath()).relativeFilePath(chosen);
    const QString old = item.value().toString();
    const bool isBelow = !relative.startsWith(QLatin1String("../")) && QDir::isRelativePath(relative);
    return isBelow || (!old.isEmpty() && QDir::isRelativePath(old)) ? relative : chosen;
}

void choose(TextEntryEditor *editor)
{
    const PropertyItem item = editor->item();
    QString title = item.data(PropertyKey::Title).toString();
    if (title.isEmpty()) {
        title = QCoreApplication::translate("PropertyBrowser", "Choose a file");
    }
    QString chosen;
    const bool stays = editor->runDialog([&] {
        chosen = PropertyDialogs::chooseFile(
            editor->window(), title, startOf(item, editor->line()->text()), item.data(PropertyKey::Filter).toString());
    });
    // The same file under another name is no choice.
    if (stays && !chosen.isEmpty() && chosen != startOf(item, editor->line()->text())) {
        editor->choose(storedPath(item, chosen));
    }
}

} // namespace

PropertyEditor *FileEditor::create(const PropertyItem &item, QWidget *parent)
{
    auto *editor = new TextEntryEditor(item, LineEditor::codec(), parent);
    editor->addButton(QStringLiteral("\u2026"), QCoreApplication::translate("PropertyBrowser", "Browse"), choose);
    new FileDrop(editor->line(),
        [editor](const QPoint &) -> FileDrop::Taker { return [editor](const QString &path) { take(editor, path); }; });
    return editor;
}

PropertyDisplay FileEditor::display(const PropertyItem &item)
{
    return LineEditor::display(item);
}

void FileEditor::take(PropertyEditor *editor, const QString &path)
{
    if (auto *entry = qobject_cast<TextEntryEditor *>(editor)) {
        entry->choose(storedPath(entry->item(), path));
    }
}
