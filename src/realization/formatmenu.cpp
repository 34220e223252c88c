#include "formatmenu.h"

#include "extensionfile/showntext.h"
#include "formatediting.h"
#include "model/pointtreewidgetitem.h"

#include <QMenu>

namespace {

// More than anybody looks through; a menu of a hundred thousand takes a minute to come up.
constexpr int mostTypes = 500;

} // namespace

FormatMenu::FormatMenu(QObject *parent)
    : QObject(parent), m_menu(std::make_unique<QMenu>()),
      m_childTypes(new QMenu(QObject::tr("Child Type"), m_menu.get()))
{
    m_menu->setObjectName(QStringLiteral("formatMenu"));
    m_childTypes->setObjectName(QStringLiteral("childTypeMenu"));
    m_menu->addMenu(m_childTypes);
    m_delete = m_menu->addAction(QObject::tr("Delete"));
}

FormatMenu::~FormatMenu() = default;

void FormatMenu::fitTo(PointTreeWidgetItem *row)
{
    m_childTypes->setEnabled(false);
    m_childTypes->menuAction()->setEnabled(false);
    m_childTypes->clear();
    const QStringList types = FormatEditing::childTypes(row).mid(0, mostTypes);
    for (const QString &type : types)
        m_childTypes->addAction(ExtensionFile::shown(type))->setData(type);
    const bool offers = FormatEditing::isDeletable(row) && row->kind() != QLatin1String("Format");
    if (!types.isEmpty() && offers) {
        m_childTypes->setEnabled(true);
        m_childTypes->menuAction()->setEnabled(true);
    }
    m_delete->setEnabled(offers);
    m_menu->setEnabled(offers);
}
