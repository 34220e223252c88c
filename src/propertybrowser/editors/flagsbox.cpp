#include "propertybrowser/editors/flagsbox.h"

#include "extensionfile/showntext.h"

#include <QFrame>
#include <QKeyEvent>
#include <QListWidget>
#include <QMouseEvent>
#include <QScreen>
#include <QVBoxLayout>

#include <functional>

namespace {

/// A click anywhere on an entry ticks it, not only one on its check box.
class CheckList final : public QListWidget
{
public:
    using QListWidget::QListWidget;

protected:
    void mouseReleaseEvent(QMouseEvent *event) override
    {
        QListWidgetItem *entry = itemAt(event->pos());
        const Qt::CheckState before = entry != nullptr ? entry->checkState() : Qt::Unchecked;
        QListWidget::mouseReleaseEvent(event);
        if (entry != nullptr && entry->checkState() == before) {
            entry->setCheckState(before == Qt::Checked ? Qt::Unchecked : Qt::Checked);
        }
    }
};

class Popup final : public QFrame
{
public:
    Popup(QWidget *owner, std::function<void(bool)> closed) : QFrame(owner, Qt::Popup), m_closed(std::move(closed))
    {
        setFrameShape(QFrame::StyledPanel);
        setAttribute(Qt::WA_DeleteOnClose);
        // A click on the drop-down itself closes the list and must not open it again.
        setAttribute(Qt::WA_NoMouseReplay);
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const int key = event->key();
        m_givenUp = key == Qt::Key_Escape;
        if (m_givenUp || key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_F4 || key == Qt::Key_Tab) {
            close();
        }
    }

    void closeEvent(QCloseEvent *event) override
    {
        QFrame::closeEvent(event);
        m_closed(!m_givenUp);
    }

private:
    std::function<void(bool)> m_closed;
    bool m_givenUp = false;
};

} // namespace

FlagsBox::FlagsBox(const QList<PropertyItem::OptionItem> &options, QWidget *parent)
    : ElidingComboBox(parent), m_options(options), m_chosen(options.size(), false)
{ }

void FlagsBox::setChosen(const QVector<bool> &chosen)
{
    m_chosen = chosen;
    m_chosen.resize(m_options.size());
    setToolTip(shownText().toHtmlEscaped());
    update();
}

void FlagsBox::showPopup()
{
    if (m_open || m_options.isEmpty()) {
        return;
    }
    auto *list = new CheckList;
    list->setFrameShape(QFrame::NoFrame);
    list->setAccessibleName(accessibleName());
    for (int i = 0; i < m_options.size(); ++i) {
        auto *entry = new QListWidgetItem(QIcon(m_options.at(i).icon), m_options.at(i).text, list);
        entry->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        entry->setCheckState(m_chosen.at(i) ? Qt::Checked : Qt::Unchecked);
    }
    list->setCurrentRow(0);
    auto *popup = new Popup(this, [this, list](bool keep) {
        m_open = false;
        // The base class shows its arrow pressed until then.
        QComboBox::hidePopup();
        QVector<bool> chosen;
        for (int i = 0; i < list->count(); ++i) {
            chosen.append(list->item(i)->checkState() == Qt::Checked);
        }
        if (keep) {
            take(chosen);
        }
    });
    auto *layout = new QVBoxLayout(popup);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->addWidget(list);

    constexpr int MostRows = 12;
    const int rows = qMin(list->count(), MostRows);
    const int scrollBar = list->count() > MostRows ? style()->pixelMetric(QStyle::PM_ScrollBarExtent) : 0;
    const QSize size(qMax(width(), list->sizeHintForColumn(0) + scrollBar + 8), list->sizeHintForRow(0) * rows + 4);
    const QRect available = screen()->availableGeometry();
    QPoint corner = mapToGlobal(QPoint(0, height()));
    if (corner.y() + size.height() > available.bottom()) {
        corner.setY(mapToGlobal(QPoint(0, 0)).y() - size.height());
    }
    corner.setX(qBound(available.left(), corner.x(), qMax(available.left(), available.right() - size.width())));
    popup->setGeometry(QRect(corner, size));
    m_open = true;
    popup->show();
    list->setFocus();
}

void FlagsBox::hidePopup()
{
    // The list closes itself, and the base class knows nothing of it.
}

QString FlagsBox::shownText() const
{
    QStringList texts;
    for (int i = 0; i < m_options.size(); ++i) {
        if (m_chosen.at(i)) {
            texts.append(m_options.at(i).text);
        }
    }
    return ExtensionFile::shown(texts.join(QLatin1String(", ")));
}

void FlagsBox::take(const QVector<bool> &chosen)
{
    if (chosen != m_chosen) {
        setChosen(chosen);
        Q_EMIT choiceMade();
    }
}
