#include "propertybrowser/editors/textentryeditor.h"

#include "extensionfile/showntext.h"
#include "propertybrowser/editors/steppingedit.h"
#include "propertybrowser/editors/textcodec.h"

#include <QHBoxLayout>
#include <QHelpEvent>
#include <QLineEdit>
#include <QToolButton>
#include <QToolTip>

#include <limits>
#include <utility>

TextEntryEditor::TextEntryEditor(const PropertyItem &item, const TextCodec &codec, QWidget *parent)
    : PropertyEditor(item, parent), m_codec(codec)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    if (codec.step != nullptr) {
        auto *stepping = new SteppingEdit(item, codec, this);
        m_line = stepping->line();
        layout->addWidget(stepping, 1);
        setInner(stepping);
    } else {
        m_line = new QLineEdit(this);
        m_line->setMinimumWidth(fontMetrics().averageCharWidth() * 6);
        layout->addWidget(m_line, 1);
        setInner(m_line);
    }
    // The toolkit would cut a long text.
    m_line->setMaxLength(std::numeric_limits<int>::max());
    restore();
    connect(m_line, &QLineEdit::textChanged, this, &TextEntryEditor::onTextChanged);
}

QToolButton *TextEntryEditor::addButton(
    const QString &text, const QString &name, std::function<void(TextEntryEditor *)> choose)
{
    m_choose = std::move(choose);
    auto *button = new QToolButton(this);
    button->setText(text);
    button->setToolTip(tr("%1 (F4)").arg(name));
    button->setAccessibleName(name);
    // Tab goes from row to row; the keyboard reaches the button with F4.
    button->setFocusPolicy(Qt::NoFocus);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    button->setFixedWidth(buttonWidth());
    layout()->addWidget(button);
    // In a narrow sheet the text needs the room more; the arrow keys still step.
    if (auto *stepping = qobject_cast<SteppingEdit *>(inner())) {
        stepping->setButtonSymbols(QAbstractSpinBox::NoButtons);
    }
    connect(button, &QToolButton::clicked, this, &TextEntryEditor::openPopup);
    return button;
}

QVariant TextEntryEditor::typedValue() const
{
    const QString text = m_line->text();
    return text.isEmpty() && !m_codec.emptyIsText ? QVariant() : m_codec.parse(item(), text);
}

void TextEntryEditor::choose(const QString &text)
{
    m_line->setText(text);
    commitChoice();
}

QVariant TextEntryEditor::value() const
{
    const QVariant typed = typedValue();
    return m_codec.handsOutText(item()) ? m_codec.storedText(item(), typed) : typed;
}

bool TextEntryEditor::isModified() const
{
    if (m_line->text() == m_shown) {
        return false;
    }
    const QVariant typed = typedValue();
    const QVariant old = m_codec.ownValue(item());
    // The same value written in another way, 007 for 7, is no change. A text that is no value always is one.
    return !typed.isValid() || !old.isValid() || m_codec.format(typed) != m_codec.format(old);
}

bool TextEntryEditor::isAcceptable() const
{
    return m_codec.accepts(item(), m_line->text());
}

void TextEntryEditor::restore()
{
    m_shown = m_codec.shownText(item());
    if (m_line->text() != m_shown) {
        m_line->setText(m_shown);
        m_line->setCursorPosition(0);
    }
    // What the line shows may differ from what it was given: it has no line breaks.
    m_shown = m_line->text();
    onTextChanged();
}

void TextEntryEditor::putBack(const QString &text)
{
    m_line->setText(text);
}

QString TextEntryEditor::typedText() const
{
    return m_line->text();
}

void TextEntryEditor::openPopup()
{
    if (m_choose) {
        m_choose(this);
    }
}

bool TextEntryEditor::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == inner() && event->type() == QEvent::ToolTip && inner()->toolTip().isEmpty()
        && m_line->fontMetrics().horizontalAdvance(m_line->text()) > m_line->contentsRect().width()) {
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
            ExtensionFile::shown(m_line->text()).toHtmlEscaped(), m_line);
        return true;
    }
    return PropertyEditor::eventFilter(watched, event);
}

void TextEntryEditor::onTextChanged()
{
    const bool refused = !isAcceptable();
    if (refused) {
        mark(m_codec.hint != nullptr ? m_codec.hint(item()) : QString());
    } else {
        mark(doubtAbout(m_line->text()));
    }
}
