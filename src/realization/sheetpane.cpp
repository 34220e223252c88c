#include "sheetpane.h"

#include "form/sheethelp.h"
#include "formatsheet.h"
#include "model/controller.h"
#include "model/nodewords.h"
#include "model/pointtreewidgetitem.h"
#include "model/problems.h"
#include "model/sourcedatamanager.h"
#include "propertybrowser/treepropertybrowser.h"
#include "recordsheet.h"
#include "sheetrows.h"

#include <algorithm>

namespace {

/// The current one of a choice is put in front when the sheet is filled; that it moves on with a choice is no reason to
/// fill the sheet again.
PropertyItem withSortedOptions(PropertyItem item)
{
    QList<PropertyItem::OptionItem> options = item.options();
    std::stable_sort(options.begin(), options.end(),
        [](const PropertyItem::OptionItem &left, const PropertyItem::OptionItem &right) {
            return left.value < right.value;
        });
    item.setOptionList({});
    for (const PropertyItem::OptionItem &option : qAsConst(options))
        item.addOption(option);
    return item;
}

bool showTheSame(const PropertyItem &left, const PropertyItem &right)
{
    return withSortedOptions(left) == withSortedOptions(right);
}

} // namespace

SheetPane::SheetPane(TreePropertyBrowser *sheet, QObject *parent) : QObject(parent), m_sheet(sheet)
{
    m_sheet->setEnabled(false);
    m_sheet->setDoubts([this](const QString &key, const QString &text) {
        const SourceDataManager *manager = Controller::instance()->sourceDataManager();
        return manager && subject() == Subject::Record ? Problems::ofTyped(*manager, m_node, key, text) : QString();
    });
}

void SheetPane::commit()
{
    if (m_sheet)
        m_sheet->commitEditor();
}

void SheetPane::show(Subject subject, PointTreeWidgetItem *node)
{
    m_node = node;
    m_subject = node ? subject : Subject::Nothing;
    if ((m_subject == Subject::Holder || m_subject == Subject::Record) && RecordSheet::storeDefaults(node))
        Controller::instance()->flushChanges();
    showAfresh();
}

void SheetPane::showAfresh()
{
    if (!m_sheet)
        return;
    m_sheet->setEnabled(m_node);
    m_sheet->showProperties(records());
    showHeading();
}

void SheetPane::refresh()
{
    if (!m_sheet)
        return;
    showHeading();
    const QList<PropertyItem> shown = m_sheet->properties();
    const QList<PropertyItem> wanted = records();
    if (!std::equal(shown.cbegin(), shown.cend(), wanted.cbegin(), wanted.cend(), showTheSame)
        || m_sheet->isEnabled() != !m_node.isNull())
        showAfresh();
}

void SheetPane::showHeading()
{
    QString heading = NodeWords::withUses(m_node);
    if (subject() == Subject::Foreign)
        heading = tr("%1; belongs to %2 and can't be changed here").arg(heading, m_node->pluginId());
    m_sheet->setHeading(heading, m_node);
}

QVariant SheetPane::standard(const QString &key) const
{
    return subject() == Subject::Record || subject() == Subject::Holder
        ? SheetRows::declared(m_node).defaults.value(key)
        : QVariant();
}

bool SheetPane::reset(const QString &key)
{
    if (subject() == Subject::Nothing || subject() == Subject::Foreign)
        return false;
    if (subject() == Subject::Entry) {
        PropertyHash left = m_node->properties();
        // A value is found under its lower-case name, too.
        const bool had = left.remove(key) || left.remove(key.toLower());
        if (had)
            m_node->setProperties(left);
        return had;
    }
    const QVariant declared = standard(key);
    m_node->setProperty(key, declared.isValid() ? declared : QVariant(QString()));
    return true;
}

void SheetPane::openEditor(const QStringList &keys)
{
    for (const QString &key : keys) {
        if (m_sheet && m_sheet->isEnabled() && m_sheet->openEditor(key))
            return;
    }
}

QList<PropertyItem> SheetPane::records() const
{
    QList<PropertyItem> rows = plainRecords();
    SheetHelp::startInPlugin(&rows);
    return rows;
}

QList<PropertyItem> SheetPane::plainRecords() const
{
    switch (subject()) {
    case Subject::Holder:
        return RecordSheet::withoutChildTypes(m_node);
    case Subject::Record:
        return RecordSheet::of(m_node);
    case Subject::Entry:
        return FormatSheet::of(m_node);
    case Subject::Foreign: {
        QList<PropertyItem> rows = FormatSheet::of(m_node);
        for (PropertyItem &row : rows)
            row.setEditable(false);
        return rows;
    }
    case Subject::Nothing:
        break;
    }
    return {};
}
