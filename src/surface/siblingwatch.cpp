#include "siblingwatch.h"

#include "model/sourcedatamanager.h"
#include "propertybrowser/editors/propertyeditor.h"

#include <QApplication>

namespace {

bool isUserIdle()
{
    if (QApplication::mouseButtons() != Qt::NoButton || QApplication::activePopupWidget()
        || QApplication::activeModalWidget())
        return false;
    for (QWidget *widget = QApplication::focusWidget(); widget; widget = widget->parentWidget()) {
        if (const auto *editor = qobject_cast<PropertyEditor *>(widget))
            return !editor->isModified();
    }
    return true;
}

} // namespace

void watchSiblings(SourceDataManager *manager)
{
    manager->siblings().setReadiness(isUserIdle);
    QObject::connect(qApp, &QGuiApplication::applicationStateChanged, manager, [manager](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            manager->siblings().lookAgain();
    });
}
