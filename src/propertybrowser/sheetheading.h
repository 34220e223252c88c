#pragma once

#include "propertybrowser/propertybrowser_global.h"

#include <QLabel>

/// The line over the rows of a sheet that says whom they are about. It takes as many lines as it needs, breaks ids at
/// their dots, and never asks the sheet for width. Hidden without a text. Owned by its sheet.
class PROPERTYBROWSER_EXPORT SheetHeading final : public QLabel
{
    Q_OBJECT

public:
    explicit SheetHeading(QWidget *sheet);

    /// Plain text.
    void setText(const QString &text);
    /// As it was set.
    [[nodiscard]] QString text() const { return m_text; }

private:
    QString m_text;
};
