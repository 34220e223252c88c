#include "utils/pathtext.h"

#include <QFile>

namespace Utils {

QString oneLine(const QString &text)
{
    QString line = text;
    for (QChar &character : line) {
        if (character.category() == QChar::Other_Control || character.category() == QChar::Separator_Line
            || character.category() == QChar::Separator_Paragraph)
            character = QLatin1Char('?');
    }
    return line;
}

bool isMisencoded(const QString &path)
{
    return path.contains(QChar(QChar::ReplacementCharacter)) || QFile::decodeName(QFile::encodeName(path)) != path;
}

} // namespace Utils
