#include "propertybrowser/editors/multilineeditor.h"

#include "extensionfile/textpattern.h"
#include "propertybrowser/editors/propertyeditor.h"
#include "propertybrowser/wholematch.h"

#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QVBoxLayout>

namespace {

constexpr int ShownLines = 4;

bool matches(const PropertyItem &item, const QString &text)
{
    return TextPattern::matches(WholeMatch::patternOf(item), text, TextPattern::Lines::Many);
}

/// Characters without a meaning of their own, which the widget uses for the ends of frames and breaks the line at.
constexpr QChar FrameBegin(0xfdd0);
constexpr QChar FrameEnd(0xfdd1);

/// How long the line break at @p at is, which the widget turns into one line feed; 0 where there is none.
int breakLength(const QString &text, int at)
{
    const QChar c = text.at(at);
    if (c == QLatin1Char('\r') && at + 1 < text.size() && text.at(at + 1) == QLatin1Char('\n')) {
        return 2;
    }
    const bool breaks = c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::LineSeparator
        || c == QChar::ParagraphSeparator || c == FrameBegin || c == FrameEnd;
    return breaks ? 1 : 0;
}

/// With line feeds for all line breaks.
QString unified(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); i += qMax(1, breakLength(text, i))) {
        result.append(breakLength(text, i) > 0 ? QChar(QLatin1Char('\n')) : text.at(i));
    }
    return result;
}

/// The place in a text of the one in `unified(text)`.
int placeIn(const QString &text, int unifiedPlace)
{
    int place = 0;
    for (int i = 0; i < unifiedPlace; ++i) {
        place += qMax(1, breakLength(text, place));
    }
    return place;
}

/// A carriage return and a line feed that come together would be one line break instead of two.
QString joined(const QString &head, QString tail)
{
    if (head.endsWith(QLatin1Char('\r')) && tail.startsWith(QLatin1Char('\n'))) {
        tail[0] = QLatin1Char('\r');
    }
    return head + tail;
}

/// @p edited, which came about from `unified(old)`, with the line breaks that @p old has around what has changed.
QString withBreaksOf(const QString &old, const QString &edited)
{
    const QString before = unified(old);
    const int shorter = qMin(before.size(), edited.size());
    int head = 0;
    while (head < shorter && before.at(head) == edited.at(head)) {
        ++head;
    }
    int tail = 0;
    while (tail < shorter - head && before.at(before.size() - tail - 1) == edited.at(edited.size() - tail - 1)) {
        ++tail;
    }
    const QString changed = edited.mid(head, edited.size() - head - tail);
    return joined(joined(old.left(placeIn(old, head)), changed), old.mid(placeIn(old, before.size() - tail)));
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

    [[nodiscard]] QVariant value() const override { return withBreaksOf(item().value().toString(), text()); }
    [[nodiscard]] bool isModified() const override { return text() != m_shown; }
    [[nodiscard]] bool isAcceptable() const override { return matches(item(), value().toString()); }

    void restore() override
    {
        const QString shown = unified(item().value().toString());
        if (shown != text()) {
            m_edit->setPlainText(shown);
        }
        m_shown = text();
        check();
    }

protected:
    [[nodiscard]] bool isCommitKey(const QKeyEvent &event) const override
    {
        return (event.modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
    }

    [[nodiscard]] QString typedText() const override { return text(); }
    void putBack(const QString &text) override { m_edit->setPlainText(text); }

    void changeEvent(QEvent *event) override
    {
        if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
            fixHeight();
        }
        PropertyEditor::changeEvent(event);
    }

private:
    void check() { mark(isAcceptable() ? doubtAbout(text()) : WholeMatch::hint(item())); }

    void fixHeight()
    {
        const int frame = 2 * (m_edit->frameWidth() + static_cast<int>(m_edit->document()->documentMargin()));
        m_edit->setFixedHeight(fontMetrics().lineSpacing() * ShownLines + frame);
    }

    /// As toPlainText(), which would also turn no-break spaces into blanks.
    [[nodiscard]] QString text() const { return unified(m_edit->document()->toRawText()); }

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
    return { text, matches(item, text) ? WholeMatch::doubtAbout(item, text) : WholeMatch::hint(item) };
}
