#pragma once

#include <QSize>
#include <QString>

#include <memory>

class ExtPointWidget;
class PointTreeWidgetItem;
class QTreeWidget;
class QWidget;
class SourceDataManager;

/// An opened extension file with its model and the real main widget in a window of its own, put together in the order
/// in which the editor does it. GUI thread.
class OpenedProduct final
{
public:
    OpenedProduct();
    ~OpenedProduct();
    OpenedProduct(const OpenedProduct &) = delete;
    OpenedProduct &operator=(const OpenedProduct &) = delete;

    static constexpr QSize size { 1280, 900 };

    /// Makes the model and the widget, loads @p fileName and shows it; false when it can't be read.
    [[nodiscard]] bool open(const QString &fileName);
    /// Waits until the window has been activated and painted; false when that does not happen.
    [[nodiscard]] bool becomesActive() const;
    void startScan() const;
    /// Runs the event loop until the scan is over and all is quiet.
    void waitForScan() const;

    [[nodiscard]] SourceDataManager *manager() const { return m_manager.get(); }
    [[nodiscard]] ExtPointWidget *widget() const { return m_widget.get(); }
    /// A widget of the form; a missing one ends the program.
    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const
    {
        return static_cast<Widget *>(found(name));
    }
    void showPage(const char *name) const;

    /// The row of the opened plug-in's point with this id on the page named: the realization page's tree or the
    /// definition page's; null without one.
    [[nodiscard]] static PointTreeWidgetItem *pointRow(const QTreeWidget *tree, const QString &id);
    /// A press and a release of the left button on a row, which is scrolled to first.
    static void click(QTreeWidget *tree, PointTreeWidgetItem *row);

private:
    [[nodiscard]] QWidget *found(const char *name) const;

    QString m_fileName;
    std::unique_ptr<SourceDataManager> m_manager;
    std::unique_ptr<ExtPointWidget> m_widget;
};
