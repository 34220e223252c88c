#pragma once

#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/ieditorfactory.h"
#include "core/recoverabledocument.h"
#include "core/searchableeditor.h"
#include "core/viewkeeper.h"

#include <QAbstractItemView>
#include <QFile>
#include <QPointer>
#include <QProcess>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QWidget>

#include <initializer_list>
#include <memory>

inline QString s(const char *text)
{
    return QString::fromUtf8(text);
}

inline QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

/// Null @p bytes take the file away.
inline void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (bytes.isNull() ? !file.remove() : !file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s cannot be written", qPrintable(path));
}

/// A copy of the sample product.
struct Sample
{
    Sample() { QProcess::execute(s("cp"), { s("-r"), s(EXTPOINT_SOURCE_DIR "/samples/product/plugins"), dir.path() }); }
    [[nodiscard]] QString path(const char *plugin) const
    {
        return dir.path() + s("/plugins/") + s(plugin) + s("/extension.xml");
    }

    QTemporaryDir dir;
};

/// An editor as a host holds it: it deletes the editor, then the widget.
class OpenedEditor final
{
public:
    explicit OpenedEditor(Core::IEditorFactory *factory)
        : m_editor(factory->createEditor()), m_widget(m_editor->widget())
    { }
    OpenedEditor(const OpenedEditor &) = delete;
    OpenedEditor &operator=(const OpenedEditor &) = delete;
    ~OpenedEditor()
    {
        m_editor.reset();
        delete m_widget.data();
    }

    Core::IEditor *operator->() const { return m_editor.get(); }
    [[nodiscard]] Core::IDocument *document() const { return m_editor->document(); }
    [[nodiscard]] QWidget *widget() const { return m_widget; }
    [[nodiscard]] Core::RecoverableDocument *recoverable() const
    {
        return dynamic_cast<Core::RecoverableDocument *>(document());
    }
    [[nodiscard]] bool busy() const { return document()->property("busy").toBool(); }
    [[nodiscard]] Core::IDocument::OpenResult open(const QString &path, QString *error = nullptr) const
    {
        return document()->open(error, path, path);
    }
    [[nodiscard]] QAbstractItemView *view(const char *name) const
    {
        return m_widget->findChild<QAbstractItemView *>(s(name));
    }
    [[nodiscard]] QTabWidget *tabs(const char *name) const { return m_widget->findChild<QTabWidget *>(s(name)); }
    [[nodiscard]] Core::SearchableEditor *searchable() const
    {
        return dynamic_cast<Core::SearchableEditor *>(m_editor.get());
    }
    [[nodiscard]] Core::ViewKeeper *keeper() const { return dynamic_cast<Core::ViewKeeper *>(m_editor.get()); }
    /// By the numbers of the rows, from the top down.
    [[nodiscard]] static QModelIndex row(const QAbstractItemView *view, std::initializer_list<int> path)
    {
        QModelIndex index;
        for (const int number : path)
            index = view->model()->index(number, 0, index);
        return index;
    }
    /// Makes the first row of this text current.
    static void choose(QAbstractItemView *view, const QString &text)
    {
        const QAbstractItemModel *model = view->model();
        view->setCurrentIndex(
            model->match(model->index(0, 0), Qt::DisplayRole, text, 1, Qt::MatchExactly | Qt::MatchRecursive).value(0));
    }

    /// The page, the tab and the current row where a person is now.
    [[nodiscard]] QString place() const
    {
        const QWidget *focus = m_widget->focusWidget();
        const auto *view = qobject_cast<const QAbstractItemView *>(focus);
        const QString row = view ? view->currentIndex().siblingAtColumn(0).data().toString() : s("nowhere");
        const bool entry = focus && focus->objectName() == s("formatTree");
        return QString::number(tabs("tabWidget")->currentIndex()) + s(" ") + (focus ? focus->objectName() : QString())
            + s(" ") + (entry ? tabs("formatTab")->currentWidget()->objectName() + s(" ") : QString()) + row;
    }

private:
    std::unique_ptr<Core::IEditor> m_editor;
    QPointer<QWidget> m_widget;
};
