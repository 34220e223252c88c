#pragma once

// What the workbench asks for beyond the interfaces that every host has. Built against another host, which knows
// nothing of them, the editor has the same functions and nobody calls them.

#if __has_include(<core/problemsource.h>) && __has_include(<core/recoverabledocument.h>) \
    && __has_include(<core/reportingdocument.h>) && __has_include(<core/searchableeditor.h>) \
    && __has_include(<core/undoabledocument.h>) && __has_include(<core/viewkeeper.h>)
#include <core/problemsource.h>
#include <core/recoverabledocument.h>
#include <core/reportingdocument.h>
#include <core/searchableeditor.h>
#include <core/undoabledocument.h>
#include <core/viewkeeper.h>
#else

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>
#include <QVector>

#include <functional>
#include <memory>

class QObject;

namespace Core {

struct FileProblem
{
    enum class Severity { Warning, Error };

    Severity severity = Severity::Warning;
    QString text;
    QString place;
    QVariant key;
};

class ProblemSource
{
public:
    virtual ~ProblemSource() = default;
    [[nodiscard]] virtual QVector<FileProblem> problems(int most) const = 0;
    [[nodiscard]] virtual int problemCount() const = 0;
    virtual void showProblem(const QVariant &key) = 0;
    virtual void whenProblemsChange(QObject *context, const std::function<void()> &action) = 0;
};

class RecoverableDocument
{
public:
    virtual ~RecoverableDocument() = default;
    [[nodiscard]] virtual QByteArray recoveryData() const = 0;
    [[nodiscard]] virtual bool openRecovered(QString *errorString, const QString &fileName, const QByteArray &data) = 0;
};

struct SaveReport
{
    QString question;
    QString advice;
    QStringList remarks;
};

struct UnreadableFile
{
    QString path;
    QString reason;
};

class ReportingDocument
{
public:
    virtual ~ReportingDocument() = default;
    [[nodiscard]] virtual QStringList awaitedFiles() const = 0;
    [[nodiscard]] virtual QVector<UnreadableFile> unreadableFiles() const = 0;
    [[nodiscard]] virtual SaveReport saveReport() = 0;
    [[nodiscard]] virtual bool saveNow(QString *errorString) = 0;
};

class DocumentState
{
public:
    virtual ~DocumentState() = default;
    [[nodiscard]] virtual qint64 size() const = 0;
};

class UndoableDocument
{
public:
    virtual ~UndoableDocument() = default;

    using State = std::shared_ptr<const DocumentState>;

    struct Change
    {
        QString text;
        bool isDeletion = false;
    };

    [[nodiscard]] virtual State documentState() = 0;
    virtual void setDocumentState(const State &state) = 0;
    [[nodiscard]] virtual Change changeBetween(const State &before, const State &after) const = 0;
};

struct SearchResult
{
    QString what;
    QString id;
    QString label;
    QString plugin;
    QString place;
    QVariant target;
};

class ProductSearch
{
public:
    virtual ~ProductSearch() = default;
    [[nodiscard]] virtual bool advance(int milliseconds) = 0;
    [[nodiscard]] virtual QVector<SearchResult> results(int most) const = 0;
    [[nodiscard]] virtual int count() const = 0;
};

class SearchableEditor
{
public:
    using Presenter = std::function<void(const QString &title, std::shared_ptr<ProductSearch> search)>;
    virtual ~SearchableEditor() = default;
    [[nodiscard]] virtual std::shared_ptr<ProductSearch> search(const QString &needle) = 0;
    virtual bool goTo(const SearchResult &result) = 0;
    virtual void setPresenter(const Presenter &presenter) = 0;
};

class ViewKeeper
{
public:
    virtual ~ViewKeeper() = default;
    [[nodiscard]] virtual QVariantMap viewState() const = 0;
    virtual void setViewState(const QVariantMap &state) = 0;
};

} // namespace Core

#endif
