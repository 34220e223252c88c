#include "savereporttexts.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace PointEditor::Internal {

namespace {

using Kind = ::SaveReport::Kind;
using Reason = ::SaveReport::Reason;

constexpr int longestValue = 60;
constexpr int mostNames = 5;
constexpr int mostRemarks = 500;

QString text(const char *source, int number = -1)
{
    return QCoreApplication::translate("SaveReport", source, nullptr, number);
}

QString shown(const QString &value)
{
    const QString line = value.left(longestValue).simplified();
    return value.size() > longestValue ? line + QChar(0x2026) : line;
}

/// Of the plug-in directories, by which files of one name are told from each other.
QString names(const QStringList &paths)
{
    QStringList names;
    for (const QString &path : paths.mid(0, mostNames))
        names.append(QLatin1Char('"') + QFileInfo(QFileInfo(path).path()).fileName() + QLatin1Char('"'));
    const QString list = names.join(QLatin1String(", "));
    return paths.size() > mostNames
        ? text(QT_TRANSLATE_N_NOOP("SaveReport", "%1 and %n more"), paths.size() - mostNames).arg(list)
        : list;
}

QString why(Reason reason, const QStringList &unread)
{
    switch (reason) {
    case Reason::NotDeclared:
        return text(QT_TRANSLATE_NOOP("SaveReport", "the point does not declare it translatable"));
    case Reason::Unknown:
        return text(QT_TRANSLATE_NOOP("SaveReport", "no plug-in declares the point"));
    case Reason::Unread:
        return text(QT_TRANSLATE_NOOP("SaveReport", "the plug-in that may declare it could not be read: %1"))
            .arg(names(unread));
    case Reason::None:
        break;
    }
    return {};
}

QString describe(const ::SaveReport::Remark &remark, const QStringList &unread)
{
    const QString place = QStringLiteral("%1, %2=\"%3\"").arg(remark.element, remark.key, shown(remark.value));
    switch (remark.kind) {
    case Kind::MarksLost:
        return text(QT_TRANSLATE_NOOP("SaveReport", "%1: written without translation marks; %2"))
            .arg(place, why(remark.reason, unread));
    case Kind::MarksGained:
        return text(QT_TRANSLATE_NOOP("SaveReport", "%1: written with translation marks")).arg(place);
    case Kind::ReadOtherwise:
        return text(QT_TRANSLATE_NOOP("SaveReport", "%1: will be read again as \"%2\""))
            .arg(place, shown(remark.detail));
    case Kind::CannotBeWritten:
        return text(QT_TRANSLATE_NOOP("SaveReport", "XML can't hold: %1")).arg(remark.detail);
    case Kind::AttributeDropped:
        return text(QT_TRANSLATE_NOOP("SaveReport", "%1: not written, the format has no such attribute here"))
            .arg(place);
    case Kind::Dropped:
    case Kind::SetDropped:
        return text(QT_TRANSLATE_NOOP("SaveReport", "not kept: %1")).arg(shown(remark.detail));
    case Kind::NothingLeft:
        return text(QT_TRANSLATE_NOOP("SaveReport", "nothing is written but the XML declaration"));
    case Kind::LooksLikeUtf8:
        return text(QT_TRANSLATE_NOOP("SaveReport",
            "the file looks like UTF-8, but declares another encoding and was read in that: letters beyond ASCII are "
            "written as they were read"));
    }
    return {};
}

} // namespace

Core::SaveReport SaveReportTexts::of(const ::SaveReport &report)
{
    Core::SaveReport texts;
    const auto &remarks = report.remarks();
    for (const ::SaveReport::Remark &remark : remarks) {
        if (texts.remarks.size() == mostRemarks) {
            texts.remarks.append(text(QT_TRANSLATE_N_NOOP("SaveReport", "and %n more"), remarks.size() - mostRemarks));
            break;
        }
        texts.remarks.append(describe(remark, report.unread()));
    }
    QStringList questions;
    QStringList advice;
    if (report.count(Kind::NothingLeft) > 0) {
        questions.append(text(QT_TRANSLATE_NOOP("SaveReport",
            "Everything in the file but the XML declaration would be lost, and it would not open again: it holds no "
            "\"ExtPointSet\" and no \"ExtDataSet\".")));
        advice.append(text(QT_TRANSLATE_NOOP(
            "SaveReport", "Look at the names of its elements with a text editor, or create something here first.")));
    } else if (report.count(Kind::SetDropped) > 0) {
        questions.append(text(QT_TRANSLATE_NOOP("SaveReport",
            "A part of the file would be lost, since its name is not written as \"ExtPointSet\" or \"ExtDataSet\", or "
            "it stands in the wrong place.")));
        advice.append(text(QT_TRANSLATE_NOOP("SaveReport",
            "Correct the name with a text editor; the file is read again here by itself once nothing is unsaved.")));
    }
    if (const int lost = report.count(Kind::MarksLost, Reason::Unread)) {
        questions.append(
            (lost == 1 ? text(QT_TRANSLATE_NOOP(
                 "SaveReport", "A text would lose its translation marks, since not every plug-in could be read: %1."))
                       : text(QT_TRANSLATE_N_NOOP("SaveReport",
                                  "%n texts would lose their translation marks, since not every plug-in could be "
                                  "read: %1."),
                           lost))
                .arg(names(report.unread())));
        advice.append(text(QT_TRANSLATE_NOOP("SaveReport",
            "Repair the files of these plug-ins and open this one again, or wait until they have been read.")));
    }
    texts.question = questions.join(QLatin1Char(' '));
    texts.advice = advice.join(QLatin1Char(' '));
    return texts;
}

} // namespace PointEditor::Internal
