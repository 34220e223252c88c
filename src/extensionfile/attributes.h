#pragma once

#include <QString>
#include <QVector>

namespace ExtensionFile {

/// One attribute of an element as the parser gives it: references resolved, white space at the ends not trimmed.
struct Attribute
{
    QString name;
    QString value;
};

/// The attributes of one element in the order of the file.
using Attributes = QVector<Attribute>;

/// @p value without translation marks: if it contains both "tr('" and "')", every occurrence of either is removed
/// (letter case matters); else @p value as it is.
[[nodiscard]] QString withoutTranslationMarks(const QString &value);

/// "tr('" + @p value + "')". Whether an empty value is to be marked is the caller's decision.
[[nodiscard]] QString withTranslationMarks(const QString &value);

/// A regular expression ("." is any character) with a match somewhere in exactly those values that do not come back
/// from a file as they are, since the marks, with which they are written or not, take a part of them along.
[[nodiscard]] QString brokenByTranslationMarks(bool isMarked);

} // namespace ExtensionFile
