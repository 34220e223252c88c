#include "propertybrowser/sheetheading.h"

SheetHeading::SheetHeading(QWidget *sheet) : QLabel(sheet)
{
    setObjectName(QStringLiteral("sheetHeading"));
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setMargin(4);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    hide();
}

void SheetHeading::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    QString broken = text;
    broken.replace(QLatin1Char('.'), QStringLiteral(".\u200b"));
    QLabel::setText(broken);
    setAccessibleName(text);
    setVisible(!text.isEmpty());
}
