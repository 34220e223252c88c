#pragma once

#include <QColor>
#include <QString>

/// What a row shows while no editor is open in it.
struct PropertyDisplay
{
    QString text;
    QString problem = QString(); ///< why the value would be refused if it were typed; empty when it would not
    QColor swatch = QColor();    ///< a sample beside the text, invalid for none
    QString icon = QString();    ///< path of an icon beside the text, or empty
};
