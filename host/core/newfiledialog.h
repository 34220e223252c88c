#pragma once

#include "core/core_global.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace Core {

class PluginIds;
struct NewFile;

/// The form for a new extension file. Makes the file and tells its path; deletes itself when it is closed. To be shown
/// with open().
class CORE_EXPORT NewFileDialog final : public QDialog
{
    Q_OBJECT

public:
    /// @p place is the directory of plug-ins that is offered first.
    NewFileDialog(const QString &place, QWidget *parent);

Q_SIGNALS:
    void created(const QString &path);

private:
    [[nodiscard]] QLineEdit *addField(const char *name, const QString &label);
    [[nodiscard]] NewFile file() const;
    void choosePlace();
    void onIdChanged();
    void check();
    void create();

    QLineEdit *m_id;
    QLineEdit *m_name;
    QLineEdit *m_vendor;
    QLineEdit *m_place;
    QLineEdit *m_directory;
    QLabel *m_note;
    QPushButton *m_create;
    PluginIds *m_ids;
};

} // namespace Core
