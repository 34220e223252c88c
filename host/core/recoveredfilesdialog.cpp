#include "core/recoveredfilesdialog.h"

#include "core/diskstate.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QStyle>
#include <QTableWidget>
#include <QVBoxLayout>

namespace Core {

namespace {

enum Column { FileColumn, DirectoryColumn, TimeColumn, SizeColumn, ColumnCount };

constexpr int FileWidth = 220; // pixels

/// With the directory that holds it, which is what tells plug-ins apart.
QString shortName(const RecoveryCopy &copy)
{
    const QFileInfo file(copy.key.path);
    return copy.key.path.isEmpty() ? RecoveredFilesDialog::tr("Unknown file")
                                   : QFileInfo(file.path()).fileName() + QLatin1Char('/') + file.fileName();
}

QString noteOn(const RecoveryCopy &copy)
{
    if (copy.damaged)
        return RecoveredFilesDialog::tr("This copy is damaged and can't be opened. It is kept as %1.")
            .arg(QDir::toNativeSeparators(copy.fileName));
    if (copy.key.path.isEmpty())
        return RecoveredFilesDialog::tr("This copy doesn't tell which file it is of.");
    const DiskState now = DiskState::of(copy.key.path);
    if (now.kind == DiskState::Missing)
        return RecoveredFilesDialog::tr(
            "The file is no longer there. If it was moved, or a directory above it renamed, open the copy for the file "
            "in its new place; otherwise saving writes it again.");
    if (now.hash != copy.originalHash)
        return RecoveredFilesDialog::tr(
            "The file was changed since. Saving the opened copy replaces what was written then.");
    return RecoveredFilesDialog::tr("The file is as it was before these changes.");
}

} // namespace

RecoveredFilesDialog::RecoveredFilesDialog(std::shared_ptr<const RecoveryStore> store, QWidget *parent)
    : QDialog(parent), m_store(std::move(store)), m_table(new QTableWidget(0, ColumnCount, this)),
      m_note(new QLabel(this))
{
    setObjectName(QStringLiteral("recoveredFilesDialog"));
    setWindowTitle(tr("Recovered Files"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(820, 380);

    auto *explanation = new QLabel(
        tr("&Unsaved changes that were kept when the workbench ended unexpectedly. They stay here until they are saved "
           "or discarded."),
        this);
    explanation->setWordWrap(true);
    explanation->setBuddy(m_table);
    m_table->setObjectName(QStringLiteral("recoveredFilesTable"));
    m_table->setAccessibleName(tr("Recovered files"));
    m_table->setHorizontalHeaderLabels({ tr("File"), tr("Directory"), tr("Kept on"), tr("Size") });
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setTextElideMode(Qt::ElideMiddle);
    m_table->setTabKeyNavigation(false);
    m_table->setWordWrap(false);
    m_table->setShowGrid(false);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setSectionResizeMode(DirectoryColumn, QHeaderView::Stretch);
    m_note->setObjectName(QStringLiteral("recoveredFilesNote"));
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Two lines, so that the table doesn't jump from row to row.
    m_note->setMinimumHeight(2 * m_note->fontMetrics().lineSpacing());
    m_note->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    m_open = buttons->addButton(tr("&Open"), QDialogButtonBox::ActionRole);
    m_open->setObjectName(QStringLiteral("openRecoveredButton"));
    m_openFor = buttons->addButton(tr("Open &for Another File…"), QDialogButtonBox::ActionRole);
    m_openFor->setObjectName(QStringLiteral("openRecoveredForButton"));
    m_discard = buttons->addButton(tr("&Discard…"), QDialogButtonBox::ActionRole);
    m_discard->setObjectName(QStringLiteral("discardRecoveredButton"));
    m_open->setDefault(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(explanation);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_note);
    layout->addWidget(buttons);

    connect(m_open, &QPushButton::clicked, this, &RecoveredFilesDialog::openSelected);
    connect(m_openFor, &QPushButton::clicked, this, &RecoveredFilesDialog::chooseFile);
    connect(m_discard, &QPushButton::clicked, this, &RecoveredFilesDialog::askToDiscard);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_table, &QTableWidget::itemSelectionChanged, this, &RecoveredFilesDialog::updateState);
    connect(m_table, &QTableWidget::itemDoubleClicked, m_open, &QPushButton::click);
    fill();
    m_table->setFocus();
}

RecoveredFilesDialog::~RecoveredFilesDialog() = default;

void RecoveredFilesDialog::fill()
{
    const int row = qMax(0, m_table->currentRow());
    m_copies = m_store->abandoned();
    m_table->setRowCount(0);
    m_table->setRowCount(int(m_copies.size()));
    for (int i = 0; i < m_table->rowCount(); ++i)
        fillRow(i, m_copies[std::size_t(i)]);
    for (const int column : { FileColumn, TimeColumn, SizeColumn })
        m_table->resizeColumnToContents(column);
    m_table->setColumnWidth(FileColumn, qMax(FileWidth, m_table->columnWidth(FileColumn)));
    if (m_table->rowCount() > 0)
        m_table->selectRow(qMin(row, m_table->rowCount() - 1));
    updateState();
}

void RecoveredFilesDialog::fillRow(int row, const RecoveryCopy &copy)
{
    const QString directory = QDir::toNativeSeparators(QFileInfo(copy.key.path).path());
    const QStringList texts { shortName(copy), copy.key.path.isEmpty() ? QString() : directory,
        QLocale().toString(copy.time.toLocalTime(), QLocale::ShortFormat),
        QLocale().formattedDataSize(copy.data.size()) };
    for (int column = 0; column < texts.size(); ++column) {
        auto *item = new QTableWidgetItem(texts.at(column));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        item->setToolTip(QDir::toNativeSeparators(copy.key.path));
        m_table->setItem(row, column, item);
    }
    m_table->item(row, SizeColumn)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    if (!copy.damaged)
        return;
    QTableWidgetItem *first = m_table->item(row, FileColumn);
    first->setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning));
    first->setText(tr("%1 (damaged)").arg(first->text()));
}

const RecoveryCopy *RecoveredFilesDialog::selected() const
{
    const int row = m_table->currentRow();
    return row < 0 || std::size_t(row) >= m_copies.size() ? nullptr : &m_copies[std::size_t(row)];
}

void RecoveredFilesDialog::updateState()
{
    const RecoveryCopy *copy = selected();
    m_open->setEnabled(copy && !copy->damaged && !copy->key.path.isEmpty());
    m_openFor->setEnabled(copy && !copy->damaged);
    m_discard->setEnabled(copy);
    m_note->setText(copy ? noteOn(*copy) : tr("Nothing is kept."));
    m_table->setAccessibleDescription(m_note->text());
}

void RecoveredFilesDialog::openSelected()
{
    choose(selected()->key.path);
}

void RecoveredFilesDialog::chooseFile()
{
    auto *dialog = new QFileDialog(this, tr("Open the Copy for a File"));
    dialog->setObjectName(QStringLiteral("openRecoveredForDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    // It may be a file that is to be written anew; nothing is written before the user saves.
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setOption(QFileDialog::DontConfirmOverwrite);
    // The nearest directory above that is still there.
    QString directory = QFileInfo(selected()->key.path).path();
    while (!QFileInfo(directory).isDir() && !QDir::isRelativePath(directory))
        directory = QFileInfo(directory).path();
    dialog->setDirectory(directory);
    connect(dialog, &QFileDialog::fileSelected, this, &RecoveredFilesDialog::choose);
    dialog->open();
}

void RecoveredFilesDialog::choose(const QString &path)
{
    m_chosenCopy = *selected();
    m_chosenPath = path;
    accept();
}

void RecoveredFilesDialog::askToDiscard()
{
    const RecoveryCopy copy = *selected();
    auto *question = new QMessageBox(QMessageBox::Question, windowTitle(),
        tr("Discard the changes to %1 that were kept on %2? They can't be brought back.")
            .arg(shortName(copy), QLocale().toString(copy.time.toLocalTime(), QLocale::ShortFormat)),
        QMessageBox::Discard | QMessageBox::Cancel, this);
    question->setObjectName(QStringLiteral("discardRecoveredPrompt"));
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setTextFormat(Qt::PlainText);
    question->setDefaultButton(QMessageBox::Cancel);
    connect(question, &QDialog::finished, this, [this, copy](int answer) {
        if (answer == QMessageBox::Discard)
            discard(copy);
    });
    question->open();
}

void RecoveredFilesDialog::discard(const RecoveryCopy &copy)
{
    m_store->remove(copy);
    fill();
}

} // namespace Core
