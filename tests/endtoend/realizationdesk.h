#pragma once

#include "product.h"
#include "steps.h"

/// The realization page of the plug-in "own" in a small product of the test's own, worked on in the real program. Like
/// the driver, a step waits until it can be done; problem() says why it could not.
class RealizationDesk final
{
public:
    /// \a own is the content of the opened file; what \a others names by "id" are the files of further plug-ins.
    RealizationDesk(const QByteArray &own, const Product::Files &others);

    [[nodiscard]] WorkbenchDriver &workbench() { return m_workbench; }
    [[nodiscard]] const Product &product() const { return m_product; }
    [[nodiscard]] QString file() const { return m_product.fileOf(QStringLiteral("own")); }
    [[nodiscard]] QString problem() const { return m_workbench.problem(); }

    /// Adds plug-ins; to be called before open().
    void addSiblings(int count, int points);
    /// Opens the file on the realization page. Also after close(), to see what was saved.
    [[nodiscard]] bool open(const QStringList &options = {});
    /// The same while the plug-ins are still being read, of which \a last comes last: the reading waits for readOn()
    /// before that one.
    [[nodiscard]] bool openWhileReading(const QString &last, const QStringList &options = {});
    /// Lets the reading go on, and waits for its end.
    [[nodiscard]] bool readOn();
    [[nodiscard]] bool close() { return m_workbench.close(); }
    /// Shows a page of the form by the text of its tab.
    [[nodiscard]] bool showPage(const QString &page);
    [[nodiscard]] bool definitionPage() { return showPage(QStringLiteral("ExtPointEdit")); }
    [[nodiscard]] bool realizationPage() { return showPage(QStringLiteral("RealizationExit")); }
    /// Has the plug-in show everything that it declares.
    [[nodiscard]] bool unfold(const QString &plugin);
    [[nodiscard]] bool click(const Place &place) { return m_workbench.click(place); }
    [[nodiscard]] bool drag(const Place &from, const Place &to) { return m_workbench.drag(from, to); }
    /// The table is hidden while a plug-in is selected; it comes up when the point is pressed.
    [[nodiscard]] bool dragToTable(const Place &from) { return m_workbench.dragToWhatAppears(from, table()); }
    [[nodiscard]] bool choose(const Place &place, const QStringList &entries)
    {
        return m_workbench.chooseFromContextMenu(place, entries);
    }
    [[nodiscard]] bool showTab(const QString &label);
    [[nodiscard]] bool edit(const QString &row, const QString &text);
    /// With the keys, and waits until it is done.
    [[nodiscard]] bool save();

    [[nodiscard]] static Place point(const QVariantList &path);
    [[nodiscard]] static Place entry(const QVariantList &path);
    [[nodiscard]] static Place record(int row);
    [[nodiscard]] static Place table();

    /// With "#" for generated numbers, like all that follow.
    [[nodiscard]] QStringList saved() const;
    [[nodiscard]] QStringList tabs();
    [[nodiscard]] QStringList formats();
    [[nodiscard]] QStringList formatIcons();
    [[nodiscard]] QStringList records();
    [[nodiscard]] QStringList recordIcons();
    [[nodiscard]] QStringList sheet();
    [[nodiscard]] QStringList points();
    /// Everything that the page shows, in lines.
    [[nodiscard]] QStringList picture();

    /// True while the files of all other plug-ins are as they were at first.
    [[nodiscard]] bool othersAreUntouched() const;

    /// To be called after each test: leaves a picture of a failure, and ends the program.
    void finish();
    /// Leaves a picture of what is on the screen.
    void leavePicture(const QString &name) { m_workbench.leavePicture(name); }

private:
    Product m_product;
    QByteArray m_others;
    WorkbenchDriver m_workbench;
};

/// The text of a literal.
[[nodiscard]] QString s(const char *text);
/// The text with "#" for the numbers of generated ids of the plug-in "own".
[[nodiscard]] QString masked(QString text);
/// A file of the plug-in \a id with these sets.
[[nodiscard]] QByteArray pluginFile(const char *id, const QByteArray &sets);
/// What is saved of the plug-in "own" when its file holds these elements, each line indented as in the file.
[[nodiscard]] QStringList savedFile(const char *lines);
[[nodiscard]] QStringList linesOf(const QString &text);
/// A picture of one colour.
[[nodiscard]] QByteArray colouredIcon(const char *colour);

/// The plug-in "shell", which declares what others fill in: "Commands" with menus and tool bars, "Layouts", "Panels".
[[nodiscard]] QByteArray shellFile();
