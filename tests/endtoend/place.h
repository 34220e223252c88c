#pragma once

#include "files.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVariantList>

/// Something on the screen that the pointer can go to, as the probe is asked for it.
struct Place
{
    QJsonObject request;

    [[nodiscard]] static Place widget(const QString &name) { return { { { s("widget"), name } } }; }
    /// A row of a tree or a table; @p path holds the texts of the first column from the root on, or numbers of rows.
    [[nodiscard]] static Place row(const QString &view, const QVariantList &path, int column = 0)
    {
        return { { { s("widget"), view }, { s("path"), QJsonArray::fromVariantList(path) }, { s("column"), column } } };
    }
    [[nodiscard]] static Place tab(const QString &tabs, const QString &text)
    {
        return { { { s("widget"), tabs }, { s("tab"), text } } };
    }
    /// The value in a row of a property sheet.
    [[nodiscard]] static Place sheetRow(const QString &sheet, const QString &row)
    {
        return { { { s("widget"), sheet }, { s("row"), row } } };
    }
    /// An entry of the list that has dropped down.
    [[nodiscard]] static Place listEntry(const QString &text) { return { { { s("path"), QJsonArray { text } } } }; }
    /// A button of a dialog; the dialog by its object name.
    [[nodiscard]] static Place button(const QString &dialog, const QString &text)
    {
        return { { { s("widget"), dialog }, { s("button"), text } } };
    }
    /// An entry of a menu that is open, or of the menu bar.
    [[nodiscard]] static Place menuEntry(const QString &text) { return { { { s("menu"), text } } }; }

    // On the realization page.

    [[nodiscard]] static Place point(const QVariantList &path)
    {
        return row(s("realizationTree"), QVariantList { s("Realization") } + path);
    }
    [[nodiscard]] static Place entry(const QVariantList &path) { return row(s("formatTree"), path); }
    [[nodiscard]] static Place record(int number) { return row(s("realizTable"), { number }); }
    [[nodiscard]] static Place table() { return widget(s("realizTable")); }
};
