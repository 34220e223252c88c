#include "extensionfile/logging.h"

namespace ExtensionFile {

Q_LOGGING_CATEGORY(fileLog, "extpoint.file", QtInfoMsg)

QString oneLine(const QString &text)
{
    const int maximumLength = 500;
    QString line = text.size() > maximumLength ? text.left(maximumLength) + QLatin1String("...") : text;
    for (QChar &character : line) {
        if (character.category() == QChar::Other_Control || character.category() == QChar::Separator_Line
            || character.category() == QChar::Separator_Paragraph)
            character = QLatin1Char('?');
    }
    return line;
}

} // namespace ExtensionFile
