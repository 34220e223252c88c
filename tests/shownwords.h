#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QSet>
#include <QTabWidget>
#include <QTranslator>

/// Which of the words that a window shows come from no catalogue.
namespace ShownWords {

/// A language in which every text has brackets around it.
class Brackets final : public QTranslator
{
public:
    using QTranslator::QTranslator;
    [[nodiscard]] QString translate(const char *, const char *source, const char *, int) const override
    {
        return QChar(0x27e6) + QString::fromUtf8(source) + QChar(0x27e7);
    }
    [[nodiscard]] bool isEmpty() const override { return false; }
};

/// All that @p window shows, or tells who points at it or hears it, but what stands in the rows of its views.
inline QSet<QString> all(const QWidget *window)
{
    QSet<QString> words { window->windowTitle() };
    auto widgets = window->findChildren<QWidget *>();
    for (const QWidget *widget : qAsConst(widgets)) {
        words += QSet<QString> { widget->toolTip(), widget->statusTip(), widget->accessibleName() };
        for (const char *property : { "text", "title", "placeholderText", "windowTitle" })
            words.insert(qobject_cast<const QLineEdit *>(widget) && qstrcmp(property, "text") == 0
                    ? QString()
                    : widget->property(property).toString());
        if (const auto *tabs = qobject_cast<const QTabWidget *>(widget)) {
            for (int i = 0; i < tabs->count(); ++i)
                words += QSet<QString> { tabs->tabText(i), tabs->tabToolTip(i) };
        }
        const auto *view = qobject_cast<const QAbstractItemView *>(widget);
        for (int i = 0; view && view->model() && i < view->model()->columnCount(); ++i)
            words += QSet<QString> { view->model()->headerData(i, Qt::Horizontal).toString(),
                view->model()->headerData(i, Qt::Horizontal, Qt::ToolTipRole).toString() };
    }
    const auto actions = window->findChildren<QAction *>();
    for (const QAction *action : actions)
        words += QSet<QString> { action->text(), action->toolTip() };
    return words;
}

/// Those of them that have letters, stand in no brackets and are no piece of @p data.
inline QStringList untranslated(const QWidget *window, const QString &data)
{
    static const QRegularExpression letter(QStringLiteral("\\pL{2}"));
    QStringList found;
    const QSet<QString> words = all(window);
    for (const QString &word : words) {
        if (word.contains(letter) && !word.contains(QChar(0x27e6)) && !data.contains(word))
            found.append(word);
    }
    found.sort();
    return found;
}

} // namespace ShownWords
