#include "propertybrowser/propertydialogs.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QFontDialog>

#include <utility>

namespace {

struct Dialogs
{
    PropertyDialogs::FileDialog file;
    PropertyDialogs::ColorDialog color;
    PropertyDialogs::FontDialog font;
};

Dialogs &dialogs()
{
    static Dialogs instance;
    return instance;
}

} // namespace

void PropertyDialogs::setFileDialog(FileDialog dialog)
{
    dialogs().file = std::move(dialog);
}

void PropertyDialogs::setColorDialog(ColorDialog dialog)
{
    dialogs().color = std::move(dialog);
}

void PropertyDialogs::setFontDialog(FontDialog dialog)
{
    dialogs().font = std::move(dialog);
}

QString PropertyDialogs::chooseFile(QWidget *parent, const QString &title, const QString &start, const QString &filter)
{
    if (dialogs().file) {
        return dialogs().file(parent, title, start, filter);
    }
    return QFileDialog::getOpenFileName(parent, title, start, filter);
}

QColor PropertyDialogs::chooseColor(QWidget *parent, const QColor &initial)
{
    if (dialogs().color) {
        return dialogs().color(parent, initial);
    }
    return QColorDialog::getColor(initial, parent, QString(), QColorDialog::ShowAlphaChannel);
}

std::optional<QFont> PropertyDialogs::chooseFont(QWidget *parent, const QFont &initial)
{
    if (dialogs().font) {
        return dialogs().font(parent, initial);
    }
    bool accepted = false;
    const QFont font = QFontDialog::getFont(&accepted, initial, parent);
    return accepted ? std::optional<QFont>(font) : std::nullopt;
}
