#pragma once

#include "propertybrowser/propertybrowser_global.h"
#include "propertybrowser/propertyitem.h"

#include <QWidget>

#include <functional>

class InvalidMark;
class RefusedTexts;

/// The editor of one row. It holds what the user has typed or chosen until it is committed, and knows when that is:
/// Enter, the focus leaving the row, a choice made. The sheet that shows it owns it. GUI thread.
///
/// The committed value is a text where the record came with a text (or with nothing, unless the kind is a number or a
/// truth value), in a form that does not depend on the user's language; otherwise it is a value of the kind's own type.
class PROPERTYBROWSER_EXPORT PropertyEditor : public QWidget
{
    Q_OBJECT

public:
    enum class End { Committed, Cancelled, FocusLeft };
    /// What is doubtful about a text for the row of this name, which is taken all the same; empty when nothing is.
    using Doubts = std::function<QString(const QString &name, const QString &text)>;

    PropertyEditor(const PropertyItem &item, QWidget *parent);

    [[nodiscard]] const PropertyItem &item() const { return m_item; }
    /// What a commit would hand out now; only meaningful while modified and acceptable.
    [[nodiscard]] virtual QVariant value() const = 0;
    /// Whether the user has changed the value, as opposed to merely typed the same one again.
    [[nodiscard]] virtual bool isModified() const = 0;
    [[nodiscard]] virtual bool isAcceptable() const { return true; }
    /// Shows the record's value again.
    virtual void restore() = 0;
    /// Opens what the editor can drop down or browse; nothing for the others.
    virtual void openPopup() { }

    /// Hands out the value if the user has changed it. False when the text is refused, which stays as it is then.
    bool commit();
    /// Ends the editor's say: nothing is committed or reported any more. It may live on until the stack has unwound.
    void retire();
    /// An in-place editor reports every Enter and Escape; one that always stands leaves an idle Escape to its window.
    void setInPlace(bool inPlace) { m_inPlace = inPlace; }
    /// May be empty.
    void setDoubts(const Doubts &doubts) { m_doubts = doubts; }
    /// Where a text that is given up goes, and comes back from; must live until the editor is retired.
    void setRefusedTexts(RefusedTexts *texts) { m_refused = texts; }
    /// Shows the record's value again. A text that is refused is kept, and the status line of the window says so.
    void giveUp();
    /// Has the text that was given up last for this row typed again, unless something else is.
    void takeBack();
    /// Runs a dialog of the row; the focus that leaves for it commits nothing. False when the sheet has dropped the
    /// editor meanwhile, which may then be gone.
    [[nodiscard]] bool runDialog(const std::function<void()> &dialog);

    /// An in-place editor asks for no room: one that is higher than its row lies over the rows below, so that these
    /// don't move away under a click that closes it.
    [[nodiscard]] QSize sizeHint() const override;
    /// The height at which the whole editor is seen.
    [[nodiscard]] int fullHeight() const { return QWidget::sizeHint().height(); }

Q_SIGNALS:
    void committed(const QString &name, const QVariant &value);
    void ended(PropertyEditor::End how);

protected:
    /// Makes @p inner the widget that has the row's focus, keys and accessible name.
    void setInner(QWidget *inner);
    [[nodiscard]] QWidget *inner() const { return m_inner; }
    /// Marks @p inner as refused, with the reason as tool tip and accessible description; an empty reason ends it.
    void mark(const QString &problem);
    /// That of the button beside a line, alike in all rows.
    [[nodiscard]] int buttonWidth() const { return fontMetrics().height() + 8; }
    /// What is typed, of an editor in which something can be refused, and the way to put it there again.
    [[nodiscard]] virtual QString typedText() const { return {}; }
    virtual void putBack(const QString & /*text*/) { }
    [[nodiscard]] QString doubtAbout(const QString &text) const;
    /// A choice was made: commit, and tell the sheet that editing is over.
    void commitChoice();
    /// Whether this Enter commits, instead of being typed.
    [[nodiscard]] virtual bool isCommitKey(const QKeyEvent & /*event*/) const { return true; }
    /// Whether the keys that open popups are typed, too.
    [[nodiscard]] virtual bool takesFunctionKeys() const { return false; }

    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool handleKey(QKeyEvent *event);
    [[nodiscard]] bool holds(const QWidget *widget) const;
    void focusLeft(Qt::FocusReason reason);

    PropertyItem m_item;
    QWidget *m_inner = nullptr;
    InvalidMark *m_mark = nullptr;
    QString m_problem;
    Doubts m_doubts;
    RefusedTexts *m_refused = nullptr;
    bool m_retired = false;
    bool m_suspended = false;
    bool m_inPlace = false;
};
