#include "propertybrowser/treepropertybrowser.h"

#include "propertybrowser/editors/propertyeditor.h"
#include "propertybrowser/propertytree.h"

#include <QVBoxLayout>

TreePropertyBrowser::TreePropertyBrowser(QWidget *parent)
    : QWidget(parent), m_heading(new SheetHeading(this)), m_tree(new PropertyTree(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_heading);
    layout->addWidget(m_tree);
    setFocusProxy(m_tree);
    connect(m_tree, &PropertyTree::propertyChanged, this, &TreePropertyBrowser::propertyChanged);
    connect(m_tree, &PropertyTree::resetRequested, this, &TreePropertyBrowser::resetRequested);
}

void TreePropertyBrowser::showProperties(const QList<PropertyItem> &items)
{
    m_tree->showProperties(items);
}

void TreePropertyBrowser::setHeading(const QString &text, const QObject *subject)
{
    m_heading->setText(text);
    m_tree->setSubject(subject);
}

void TreePropertyBrowser::setDoubts(const std::function<QString(const QString &, const QString &)> &doubts)
{
    m_tree->setDoubts(doubts);
}

QList<PropertyItem> TreePropertyBrowser::properties() const
{
    return m_tree->properties();
}

bool TreePropertyBrowser::openEditor(const QString &name)
{
    return m_tree->openEditor(m_tree->rowOf(name));
}

bool TreePropertyBrowser::commitEditor()
{
    return m_tree->commitEditor();
}

bool TreePropertyBrowser::isEditing() const
{
    return m_tree->isEditing();
}

QWidget *TreePropertyBrowser::editorFor(const QString &name) const
{
    return m_tree->editorAt(m_tree->rowOf(name));
}
