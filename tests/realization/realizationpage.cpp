#include "realizationpage.h"

#include <QCheckBox>
#include <QToolButton>

QString RealizationTesting::Page::cellText(int line, int column) const
{
    QWidget *cell = table()->cellWidget(line, column);
    const auto as = [cell](auto *type) -> decltype(type) {
        using Widget = std::remove_pointer_t<decltype(type)>;
        auto *found = qobject_cast<Widget *>(cell);
        return found || !cell ? found : cell->findChild<Widget *>();
    };
    if (const auto *box = as(static_cast<QCheckBox *>(nullptr)))
        return box->isChecked() ? s("[x]") : s("[ ]");
    if (const auto *button = as(static_cast<QToolButton *>(nullptr)))
        return button->icon().isNull() ? s("()") : s("(icon)");
    return table()->item(line, column)->text();
}
