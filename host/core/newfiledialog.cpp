#include "core/newfiledialog.h"

#include "core/newfile.h"
#include "core/pluginids.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

namespace Core {

NewFileDialog::NewFileDialog(const QString &place, QWidget *parent) : QDialog(parent), m_ids(new PluginIds(this))
{
    setObjectName(QStringLiteral("newFileDialog"));
    setWindowTitle(tr("New Extension File"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto *form = new QFormLayout(this);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    m_id = addField("newId", tr("&Id:"));
    m_name = addField("newName", tr("&Name:"));
    m_vendor = addField("newVendor", tr("&Vendor:"));
    m_vendor->setPlaceholderText(tr("May be left out"));
    m_place = addField("newPlace", tr("&Plug-ins in:"));
    m_place->setText(QDir::toNativeSeparators(place));
    m_directory = addField("newDirectory", tr("&Directory:"));

    auto *browse = new QToolButton(this);
    browse->setObjectName(QStringLiteral("newPlaceButton"));
    browse->setText(QStringLiteral("\u2026"));
    browse->setToolTip(tr("Browse"));
    browse->setAccessibleName(tr("Browse for the directory of plug-ins"));
    connect(browse, &QToolButton::clicked, this, &NewFileDialog::choosePlace);
    auto *row = new QHBoxLayout;
    QFormLayout::TakeRowResult taken = form->takeRow(m_place);
    row->addWidget(m_place, 1);
    row->addWidget(browse);
    auto *placeLabel = qobject_cast<QLabel *>(taken.labelItem->widget());
    delete taken.labelItem;
    delete taken.fieldItem;
    form->insertRow(form->rowCount() - 1, placeLabel, row);
    placeLabel->setBuddy(m_place);
    setTabOrder(m_place, browse);
    setTabOrder(browse, m_directory);

    m_note = new QLabel(this);
    m_note->setObjectName(QStringLiteral("newFileNote"));
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    // Two lines, so that the form doesn't jump while one types.
    m_note->setMinimumHeight(2 * m_note->fontMetrics().lineSpacing());
    form->addRow(m_note);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_create = buttons->addButton(tr("C&reate"), QDialogButtonBox::AcceptRole);
    m_create->setObjectName(QStringLiteral("createFileButton"));
    form->addRow(buttons);
    resize(qMax(sizeHint().width(), 64 * fontMetrics().averageCharWidth()), sizeHint().height());

    connect(buttons, &QDialogButtonBox::accepted, this, &NewFileDialog::create);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_ids, &PluginIds::finished, this, &NewFileDialog::check);
    connect(m_id, &QLineEdit::textChanged, this, &NewFileDialog::onIdChanged);
    for (const QLineEdit *field : { m_id, m_name, m_vendor, m_place, m_directory })
        connect(field, &QLineEdit::textChanged, this, &NewFileDialog::check);
    check();
}

QLineEdit *NewFileDialog::addField(const char *name, const QString &label)
{
    auto *field = new QLineEdit(this);
    field->setObjectName(QString::fromLatin1(name));
    QString plain = label;
    field->setAccessibleName(plain.remove(QLatin1Char('&')).remove(QLatin1Char(':')));
    static_cast<QFormLayout *>(layout())->addRow(label, field);
    return field;
}

NewFile NewFileDialog::file() const
{
    return { QDir::fromNativeSeparators(m_place->text().trimmed()), m_directory->text().trimmed(),
        m_id->text().trimmed(), m_name->text().trimmed(), m_vendor->text().trimmed() };
}

void NewFileDialog::choosePlace()
{
    auto *dialog = new QFileDialog(this, tr("Directory of Plug-ins"), file().place);
    dialog->setObjectName(QStringLiteral("newPlaceDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this,
        [this](const QString &path) { m_place->setText(QDir::toNativeSeparators(path)); });
    dialog->open();
}

void NewFileDialog::onIdChanged()
{
    // Until the person has a name of their own.
    if (!m_directory->isModified())
        m_directory->setText(NewFile::directoryFor(file().id));
}

void NewFileDialog::check()
{
    const NewFile wanted = file();
    const QString objection = wanted.objection();
    m_create->setEnabled(objection.isEmpty());
    m_ids->read(wanted.place);
    const QString other = m_ids->directoryOf(wanted.id);
    const QString path = QDir::toNativeSeparators(wanted.path());
    if (!objection.isEmpty())
        m_note->setText(objection);
    else if (!other.isEmpty())
        // Somebody may want to replace it that way.
        m_note->setText(tr("The plug-in in \"%1\" has this id already.\n%2").arg(other, path));
    else
        m_note->setText(path);
}

void NewFileDialog::create()
{
    const NewFile wanted = file();
    QString error;
    if (!wanted.create(&error)) {
        check();
        m_note->setText(error);
        return;
    }
    Q_EMIT created(wanted.path());
    accept();
}

} // namespace Core
