#pragma once

#include <QTableWidget>

/// The table of the records of one point, on the realization page. Owned by the form.
class RealizationTableWidget : public QTableWidget
{
    Q_OBJECT

public:
    explicit RealizationTableWidget(QWidget *parent = nullptr);
    ~RealizationTableWidget() override;
};
