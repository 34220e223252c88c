#include "propertybrowser/editors/propertyeditor.h"

#include "extensionfile/showntext.h"
#include "propertybrowser/invalidmark.h"
#include "propertybrowser/refusedtexts.h"
#include "propertybrowser/wholematch.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QStatusTipEvent>
#include <QToolTip>

PropertyEditor::PropertyEditor(const PropertyItem &item, QWidget *parent) : QWidget(parent), m_item(item)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

bool PropertyEditor::commit()
{
    if (m_retired || m_suspended) {
        return true;
    }
    if (!isModified()) {
        // The same value may have been typed in another way.
        restore();
        return true;
    }
    if (!isAcceptable()) {
        return false;
    }
    const QVariant committedValue = value();
    m_item.setVal(committedValue);
    restore();
    Q_EMIT committed(m_item.name(), committedValue);
    return true;
}

void PropertyEditor::retire()
{
    m_retired = true;
    blockSignals(true);
}

QSize PropertyEditor::sizeHint() const
{
    const QSize size = QWidget::sizeHint();
    return m_inPlace ? QSize(size.width(), 0) : size;
}

void PropertyEditor::setInner(QWidget *inner)
{
    m_inner = inner;
    setFocusProxy(inner);
    // Of one that takes no focus the toolkit would change no place in the order of Tab, and go through it all the same.
    setFocusPolicy(inner->focusPolicy());
    inner->setAccessibleName(m_item.displayText());
    inner->setAccessibleDescription(WholeMatch::help(m_item));
    inner->installEventFilter(this);
    m_mark = new InvalidMark(inner);
}

void PropertyEditor::mark(const QString &problem)
{
    m_mark->setVisible(!problem.isEmpty());
    const QString shown = ExtensionFile::shown(problem);
    if (m_problem != shown) {
        m_problem = shown;
        m_inner->setToolTip(shown.toHtmlEscaped());
        m_inner->setAccessibleDescription(shown.isEmpty() ? WholeMatch::help(m_item) : shown);
    }
}

void PropertyEditor::giveUp()
{
    // As much as a status line shows.
    constexpr int mostShown = 120;
    const QString text = isModified() && !isAcceptable() ? typedText() : QString();
    if (!text.isEmpty()) {
        const QString shown = text.size() > mostShown ? text.left(mostShown) + QChar(0x2026) : text;
        QStatusTipEvent tip(tr("%1 was not taken: %2 (%3)").arg(m_item.displayText(), shown, m_problem));
        QApplication::sendEvent(parentWidget(), &tip);
        if (m_refused != nullptr) {
            m_refused->keep(m_item.name(), text);
        }
    }
    restore();
}

void PropertyEditor::takeBack()
{
    const QString text = m_refused != nullptr && !isModified() ? m_refused->take(m_item.name()) : QString();
    if (!text.isEmpty()) {
        putBack(text);
    }
}

QString PropertyEditor::doubtAbout(const QString &text) const
{
    const QString doubt = WholeMatch::doubtAbout(m_item, text);
    return doubt.isEmpty() && m_doubts ? m_doubts(m_item.name(), text) : doubt;
}

void PropertyEditor::commitChoice()
{
    const QPointer<PropertyEditor> self(this);
    commit();
    if (self) {
        Q_EMIT ended(End::Committed);
    }
}

bool PropertyEditor::runDialog(const std::function<void()> &dialog)
{
    const QPointer<PropertyEditor> self(this);
    m_suspended = true;
    dialog();
    if (self) {
        m_suspended = false;
    }
    return self && !m_retired;
}

bool PropertyEditor::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_inner && !m_retired) {
        switch (event->type()) {
        case QEvent::KeyPress:
            if (handleKey(static_cast<QKeyEvent *>(event))) {
                return true;
            }
            break;
        case QEvent::FocusIn:
            // By the user; where the sheet has just been shown anew, it may be about something else by now.
            if (static_cast<QFocusEvent *>(event)->reason() != Qt::OtherFocusReason) {
                takeBack();
            }
            break;
        case QEvent::FocusOut:
            focusLeft(static_cast<QFocusEvent *>(event)->reason());
            break;
        case QEvent::Wheel:
            // A sheet that is scrolled through must not change the values under the pointer.
            if (!m_inner->hasFocus()) {
                event->ignore();
                return true;
            }
            break;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void PropertyEditor::keyPressEvent(QKeyEvent *event)
{
    // What the inner widget leaves, an arrow in a one-line text for instance, would otherwise reach the tree under the
    // editor and move its current row away.
    const Qt::KeyboardModifiers commands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    event->setAccepted(m_inPlace && (event->modifiers() & commands) == 0);
}

bool PropertyEditor::handleKey(QKeyEvent *event)
{
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const int key = event->key();
    event->accept();
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && isCommitKey(*event)) {
        const QPointer<PropertyEditor> self(this);
        if (!commit()) {
            QToolTip::showText(m_inner->mapToGlobal(QPoint(0, m_inner->height())), m_problem.toHtmlEscaped(), m_inner);
        } else if (self) {
            Q_EMIT ended(End::Committed);
        }
        return true;
    }
    if (key == Qt::Key_Escape && plain) {
        // Where there is nothing to give up, the window may close on it.
        event->setAccepted(m_inPlace || isModified());
        restore();
        Q_EMIT ended(End::Cancelled);
        return true;
    }
    const bool opens = (key == Qt::Key_F4 && plain) || (key == Qt::Key_Down && event->modifiers() == Qt::AltModifier);
    if (opens && !takesFunctionKeys()) {
        openPopup();
        return true;
    }
    return false;
}

bool PropertyEditor::holds(const QWidget *widget) const
{
    // Through window borders, unlike isAncestorOf(): a list that the editor drops down is a window.
    while (widget != nullptr && widget != this) {
        widget = widget->parentWidget();
    }
    return widget != nullptr;
}

void PropertyEditor::focusLeft(Qt::FocusReason reason)
{
    // Another window or a menu borrows the focus; and where the focus goes because the row is hidden or disabled, the
    // page may already be about something else.
    const bool stays = reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason
        || reason == Qt::ActiveWindowFocusReason || m_suspended || !isVisible() || !isEnabled();
    if (stays || holds(QApplication::focusWidget())) {
        return;
    }
    const QPointer<PropertyEditor> self(this);
    if (!commit()) {
        giveUp();
    }
    if (self) {
        Q_EMIT ended(End::FocusLeft);
    }
}
