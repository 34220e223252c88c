#pragma once

#include <QObject>
#include <QPoint>
#include <QString>

#include <functional>

class QWidget;

/// Takes files that are dropped where a widget has a field for one. A host that opens what is dropped anywhere else
/// knows by the property "takesFiles" that the widget is to be asked first. Other drags pass the widget by. Owned by
/// the widget; GUI thread.
class FileDrop final : public QObject
{
    Q_OBJECT

public:
    /// What to do with the file @p path.
    using Taker = std::function<void(const QString &path)>;

    /// @p takerAt says who takes a file at a place of the widget, null for nobody. The taker is called after the drop,
    /// for which the program that the file comes from waits.
    FileDrop(QWidget *widget, std::function<Taker(const QPoint &at)> takerAt);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const std::function<Taker(const QPoint &at)> m_takerAt;
};
