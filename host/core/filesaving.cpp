#include "core/filesaving.h"

#include "core/editormanager.h"
#include "core/filecare.h"
#include "core/idocument.h"
#include "core/ieditor.h"
#include "core/infobar.h"

#include <QBoxLayout>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QToolButton>
#include <QVariant>

#include <utility>

namespace Core {

namespace {

constexpr char busyProperty[] = "busy";
constexpr int LookInterval = 50; // milliseconds, all
constexpr int TimeUntilBar = 400;
constexpr int TimeUntilNames = 3000;
constexpr int RemarksMessageTime = 15000;
constexpr int MostNames = 5;

ReportingDocument *reportingDocument(IEditor *editor)
{
    return editor ? dynamic_cast<ReportingDocument *>(editor->document()) : nullptr;
}

/// "a", "b" and so on, by the directories that tell the files from each other.
QString names(const QStringList &paths)
{
    QStringList names;
    for (const QString &path : paths.mid(0, MostNames))
        names.append(QFileInfo(QFileInfo(path).path()).fileName());
    const QString list = names.join(QLatin1String(", "));
    return paths.size() > MostNames ? FileSaving::tr("%1 and %n more", nullptr, paths.size() - MostNames).arg(list)
                                    : list;
}

} // namespace

FileSaving::FileSaving(EditorManager &editors, FileCare &care, QMainWindow &window, QBoxLayout &place)
    : QObject(&window), m_editors(editors), m_care(care), m_window(window),
      m_bar(new InfoBar(QStringLiteral("saveBar"), place.parentWidget())), m_detailsButton(new QToolButton(&window))
{
    place.addWidget(m_bar);
    m_goOnButton = m_bar->addButton(QStringLiteral("saveNowButton"), tr("Save &Without Them"));
    connect(m_goOnButton, &QPushButton::clicked, this, &FileSaving::goOn);
    connect(m_bar->addButton(QStringLiteral("cancelSaveButton"), tr("&Cancel Saving")), &QPushButton::clicked, this,
        &FileSaving::giveUp);
    m_detailsButton->setObjectName(QStringLiteral("saveDetailsButton"));
    m_detailsButton->setAutoRaise(true);
    m_detailsButton->setText(tr("Details"));
    m_detailsButton->hide();
    connect(m_detailsButton, &QToolButton::clicked, this, &FileSaving::showRemarks);
    window.statusBar()->addPermanentWidget(m_detailsButton);
    m_look.setInterval(LookInterval);
    connect(&m_look, &QTimer::timeout, this, &FileSaving::look);
}

FileSaving::~FileSaving() = default;

void FileSaving::setEditor(IEditor *editor)
{
    giveUp();
    m_editor = editor;
    m_remarks.clear();
    m_detailsButton->hide();
}

void FileSaving::save(const std::function<void()> &then)
{
    if (!m_editor)
        return;
    if (then || m_step == Step::None)
        m_then = then;
    if (m_step == Step::Asking && m_question) {
        m_question->raise();
        m_question->activateWindow();
    }
    if (m_step != Step::None)
        return;
    m_step = Step::Waiting;
    m_waiting.start();
    m_look.start();
    look();
}

void FileSaving::look()
{
    const auto *reporting = reportingDocument(m_editor);
    if (!reporting || !m_editor->document()->property(busyProperty).toBool()) {
        goOn();
        return;
    }
    if (!m_waiting.hasExpired(TimeUntilBar))
        return;
    const QStringList awaited = reporting->awaitedFiles();
    const bool takesLong = m_waiting.hasExpired(TimeUntilNames) && !awaited.isEmpty();
    m_goOnButton->setVisible(takesLong);
    if (takesLong)
        m_bar->tell(
            tr("Saving waits for the plug-ins that are still being read: %1. Without them it is not known which "
               "texts of theirs are translatable.")
                .arg(names(awaited)));
    else
        m_bar->tell(tr("The file is saved as soon as the other plug-ins have been read."));
}

void FileSaving::goOn()
{
    m_look.stop();
    m_bar->hide();
    // Not in the middle of a reload: the editor that is to be saved may be about to go.
    if (m_editors.isWorking()) {
        giveUp();
        return;
    }
    const QString path = m_editor->document()->filePath().toString();
    if (!m_care.maySave()) {
        m_window.statusBar()->showMessage(
            tr("Not saved: %1 was changed by another program").arg(QDir::toNativeSeparators(path)));
        giveUp();
        return;
    }
    auto *reporting = reportingDocument(m_editor);
    const SaveReport report = reporting ? reporting->saveReport() : SaveReport();
    if (report.question.isEmpty() || report.question == m_accepted)
        write(report);
    else
        ask(report);
}

void FileSaving::ask(const SaveReport &report)
{
    m_step = Step::Asking;
    m_question = new QMessageBox(QMessageBox::Warning, tr("Save"), report.question, QMessageBox::Cancel, &m_window);
    m_question->setObjectName(QStringLiteral("saveReportPrompt"));
    m_question->setAttribute(Qt::WA_DeleteOnClose);
    m_question->setTextFormat(Qt::PlainText);
    m_question->setInformativeText(report.advice);
    m_question->setDetailedText(report.remarks.join(QLatin1Char('\n')));
    const QAbstractButton *anyway = m_question->addButton(tr("&Save Anyway"), QMessageBox::AcceptRole);
    m_question->setDefaultButton(QMessageBox::Cancel);
    connect(m_question, &QDialog::finished, this, [this, report, anyway, box = m_question.data()] {
        if (m_step != Step::Asking)
            return;
        if (box->clickedButton() != anyway) {
            giveUp();
            return;
        }
        // After the box is gone: saving may take a while, and may be followed by closing the window. Meanwhile another
        // program may have written, or what could not be read have come: all is looked at once more.
        m_step = Step::Waiting;
        m_accepted = report.question;
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_step == Step::Waiting)
                    goOn();
            },
            Qt::QueuedConnection);
    });
    m_question->open();
}

void FileSaving::write(const SaveReport &report)
{
    m_step = Step::None;
    m_accepted.clear();
    const std::function<void()> then = std::exchange(m_then, {});
    const QString path = m_editor->document()->filePath().toString();
    const SaveOutcome outcome = m_editors.save(m_editor);
    if (!outcome.written) {
        showMessage(QStringLiteral("errorMessage"), tr("The file could not be saved."), path, outcome.error);
        return;
    }
    m_care.saved();
    if (!outcome.warning.isEmpty()) {
        showMessage(QStringLiteral("warningMessage"), tr("The file was saved, but it will not open again."), path,
            outcome.warning);
        return;
    }
    tell(path, report);
    if (then)
        then();
}

void FileSaving::tell(const QString &path, const SaveReport &report)
{
    m_remarks = report.remarks;
    m_detailsButton->setVisible(!m_remarks.isEmpty());
    const QString saved = tr("Saved %1").arg(QDir::toNativeSeparators(path));
    if (m_remarks.isEmpty())
        m_window.statusBar()->showMessage(saved, StatusMessageTime);
    else
        m_window.statusBar()->showMessage(
            (m_remarks.size() == 1 ? tr("%1, and not everything as it was: one remark")
                                   : tr("%1, and not everything as it was: %n remarks", nullptr, m_remarks.size()))
                .arg(saved),
            RemarksMessageTime);
}

void FileSaving::giveUp()
{
    m_look.stop();
    m_bar->hide();
    m_then = {};
    m_accepted.clear();
    m_step = Step::None;
    if (m_question)
        m_question->close();
}

void FileSaving::showRemarks()
{
    auto *dialog = new QDialog(&m_window);
    dialog->setObjectName(QStringLiteral("saveDetails"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("What the last save changed beside"));
    auto *text = new QPlainTextEdit(m_remarks.join(QLatin1Char('\n')), dialog);
    text->setReadOnly(true);
    text->setAccessibleName(dialog->windowTitle());
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::close);
    auto *layout = new QVBoxLayout(dialog);
    layout->addWidget(text);
    layout->addWidget(buttons);
    dialog->resize(640, 320);
    dialog->open();
}

void FileSaving::explainSaveAs()
{
    if (!m_editor)
        return;
    const QFileInfo file(m_editor->document()->filePath().toString());
    auto *box = new QMessageBox(QMessageBox::Information, tr("Save As"),
        tr("A file keeps its name and its place: \"%1\" is what every plug-in calls it, and its directory says whose "
           "it is.")
            .arg(file.fileName()),
        QMessageBox::Ok, &m_window);
    box->setObjectName(QStringLiteral("saveAsMessage"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(tr("To begin a plug-in from this one, save it, copy its directory\n%1\nunder another name "
                               "beside it, and change the id in the copy before you open it. An empty plug-in is made "
                               "with File > New.")
                                .arg(QDir::toNativeSeparators(file.absolutePath())));
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box->open();
}

void FileSaving::showMessage(const QString &objectName, const QString &text, const QString &path, const QString &reason)
{
    const auto icon = objectName == QLatin1String("errorMessage") ? QMessageBox::Critical : QMessageBox::Warning;
    auto *box = new QMessageBox(icon, tr("ExtPoint Workbench"), text, QMessageBox::Ok, &m_window);
    box->setObjectName(objectName);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(reason.isEmpty() ? QDir::toNativeSeparators(path)
                                             : QDir::toNativeSeparators(path) + QLatin1String("\n\n") + reason);
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box->open();
}

} // namespace Core
