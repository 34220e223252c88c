#include "changetexts.h"

#include "extensionfile/showntext.h"
#include "model/ownchange.h"

#include <QCoreApplication>

namespace PointEditor::Internal {

namespace {

QString told(const char *source, int number = -1)
{
    return QCoreApplication::translate("ChangeTexts", source, nullptr, number);
}

/// What people call it: "point", "attribute", or the element's own name for what stands in formats and tables.
QString nounOf(const OwnChange &change)
{
    if (change.root)
        return told(QT_TRANSLATE_NOOP("ChangeTexts", "plug-in"));
    const QString kind = change.kind.toLower();
    if (kind == QLatin1String("extpoint"))
        return told(QT_TRANSLATE_NOOP("ChangeTexts", "point"));
    if (kind == QLatin1String("subextpoint"))
        return told(QT_TRANSLATE_NOOP("ChangeTexts", "sub point"));
    if (kind == QLatin1String("extdata"))
        return told(QT_TRANSLATE_NOOP("ChangeTexts", "records of"));
    if (!change.definition)
        return kind;
    if (kind == QLatin1String("data"))
        return told(QT_TRANSLATE_NOOP("ChangeTexts", "choice"));
    return told(QT_TRANSLATE_NOOP("ChangeTexts", "attribute"));
}

QString thingOf(const OwnChange &change)
{
    if (change.number > 1)
        return told(QT_TRANSLATE_N_NOOP("ChangeTexts", "%n items"), change.number);
    return change.name.isEmpty() ? nounOf(change)
                                 : QStringLiteral("%1 '%2'").arg(nounOf(change), ExtensionFile::shown(change.name));
}

} // namespace

QString ChangeTexts::of(const OwnChange &change)
{
    switch (change.what) {
    case OwnChange::What::Removed:
        if (change.number > 1 || change.below == 0)
            return told(QT_TRANSLATE_NOOP("ChangeTexts", "Deleted %1")).arg(thingOf(change));
        if (change.below == 1)
            return told(QT_TRANSLATE_NOOP("ChangeTexts", "Deleted %1 with one entry")).arg(thingOf(change));
        return told(QT_TRANSLATE_N_NOOP("ChangeTexts", "Deleted %1 with %n entries"), change.below)
            .arg(thingOf(change));
    case OwnChange::What::Added:
        return told(QT_TRANSLATE_NOOP("ChangeTexts", "Added %1")).arg(thingOf(change));
    case OwnChange::What::Moved:
        return told(QT_TRANSLATE_NOOP("ChangeTexts", "Moved %1")).arg(thingOf(change));
    case OwnChange::What::Edited:
        return told(QT_TRANSLATE_NOOP("ChangeTexts", "Changed '%1' of %2"))
            .arg(ExtensionFile::shown(change.key), thingOf(change));
    case OwnChange::What::Nothing:
        break;
    }
    return {};
}

} // namespace PointEditor::Internal
