#pragma once

#include <QJsonObject>
#include <QVariantList>

/// Something on the screen that the pointer can go to, named the way the probe finds it.
class Place final
{
public:
    [[nodiscard]] static Place widget(const QString &name);
    /// A row of a tree; \a path holds the texts of the first column from the root on, or numbers of rows.
    [[nodiscard]] static Place row(const QString &view, const QVariantList &path, int column = 0);
    [[nodiscard]] static Place cell(const QString &table, int row, int column);
    [[nodiscard]] static Place tab(const QString &tabs, const QString &text);
    /// The value in a row of a property sheet.
    [[nodiscard]] static Place sheetRow(const QString &sheet, const QString &row);
    /// An entry of the list that has dropped down.
    [[nodiscard]] static Place listEntry(const QString &text);
    /// A button of a dialog; the dialog by its object name.
    [[nodiscard]] static Place button(const QString &dialog, const QString &text);
    /// An entry of the menu bar or of a menu that is open.
    [[nodiscard]] static Place menuEntry(const QString &text);

    /// What the probe is asked.
    [[nodiscard]] const QJsonObject &request() const { return m_request; }
    /// The place in the reply, an object with "rect" and "reachable"; with "error" when it isn't there.
    [[nodiscard]] QJsonObject find(const QJsonObject &reply) const;
    [[nodiscard]] QString toString() const;

private:
    explicit Place(const QJsonObject &request) : m_request(request) { }

    QJsonObject m_request;
};
