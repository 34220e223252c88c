#pragma once

#include "core/recoverystore.h"

#include <QDialog>

#include <memory>
#include <vector>

class QLabel;
class QPushButton;
class QTableWidget;

namespace Core {

/// Lists the recovery copies of all processes that are gone, and discards them after a question. It is accepted when
/// one of them is to be opened, which is up to its user. Shares the store; GUI thread.
class RecoveredFilesDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit RecoveredFilesDialog(std::shared_ptr<const RecoveryStore> store, QWidget *parent = nullptr);
    ~RecoveredFilesDialog() override;

    /// Once it is accepted: the copy to open, and for which file, which need not exist.
    [[nodiscard]] const RecoveryCopy &chosenCopy() const { return m_chosenCopy; }
    [[nodiscard]] QString chosenPath() const { return m_chosenPath; }

private:
    void fill();
    void fillRow(int row, const RecoveryCopy &copy);
    void updateState();
    /// Null when none is selected.
    [[nodiscard]] const RecoveryCopy *selected() const;
    void openSelected();
    void chooseFile();
    void choose(const QString &path);
    void askToDiscard();
    void discard(const RecoveryCopy &copy);

    const std::shared_ptr<const RecoveryStore> m_store;
    std::vector<RecoveryCopy> m_copies;
    RecoveryCopy m_chosenCopy;
    QString m_chosenPath;
    QTableWidget *m_table;
    QLabel *m_note;
    QPushButton *m_open;
    QPushButton *m_openFor;
    QPushButton *m_discard;
};

} // namespace Core
