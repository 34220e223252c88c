#include "propertybrowser/editors/multilineeditor.h"

#include "propertybrowser/editors/propertyeditor.h"
#include "propertybrowser/wholematch.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QVBoxLayout>

namespace {

constexpr int ShownLines = 4;

QString hint(const PropertyItem &item)
{
    return QCoreApplication::translate("PropertyBrowser", "Must match %1").arg(WholeMatch::patternOf(item));
}

bool matches(const PropertyItem &item, const QString &text)
{
    return WholeMatch::matches(WholeMatch::patternOf(item), text, WholeMatch::Lines::Many);
}

class Editor final : public PropertyEditor
{
public:
    Editor(const PropertyItem &item, QWidget *parent) : PropertyEditor(item, parent), m_edit(new QPlainTextEdit(this))
    {
        m_edit->setTabChangesFocus(true);
        m_edit->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        fixHeight();
        auto *layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(m_edit);
        setInner(m_edit);
        Editor::restore();
        connect(m_edit, &QPlainTextEdit::textChanged, this, &Editor::check);
    }

    [[nodiscard]] QVariant value() const override { return text(); }
    [[nodiscard]] bool isModified() const override { return text() != m_shown; }
    [[nodiscard]] bool isAcceptable() const override { return matches(item(), text()); }

    void restore() override
    {
        const QString value = item().value().toString();
        if (value != text()) {
            m_edit->setPlainText(value);
        }
        m_shown = text();
        check();
    }

protected:
    [[nodiscard]] bool isCommitKey(const QKeyEvent &event) const override
    {
        return (event.modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
    }

    void changeEvent(QEvent *event) override
    {
        if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
            fixHeight();
        }
        PropertyEditor::changeEvent(event);
    }

private:
    void check() { mark(isAcceptable() ? QString() : hint(item())); }

    void fixHeight()
    {
        const int frame = 2 * (m_edit->frameWidth() + static_cast<int>(m_edit->document()->documentMargin()));
        m_edit->setFixedHeight(fontMetrics().lineSpacing() * ShownLines + frame);
    }

    /// As toPlainText(), which would also turn no-break spaces into blanks.
    [[nodiscard]] QString text() const
    {
        QString raw = m_edit->document()->toRawText();
        for (QChar &c : raw) {
            if (c == QChar::ParagraphSeparator || c == QChar::LineSeparator) {
                c = QLatin1Char('\n');
            }
        }
        return raw;
    }

    QPlainTextEdit *m_edit;
    QString m_shown;
};

} // namespace

PropertyEditor *MultiLineEditor::create(const PropertyItem &item, QWidget *parent)
{
    return new Editor(item, parent);
}

PropertyDisplay MultiLineEditor::display(const PropertyItem &item)
{
    const QString text = item.value().toString();
    return { text, matches(item, text) ? QString() : hint(item) };
}
