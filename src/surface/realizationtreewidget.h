#pragma once

#include <QTreeWidget>

/// The tree of the realization page: every point of the product. Owned by the form; it only borrows the rows that it
/// shows.
class RealizationTreeWidget : public QTreeWidget
{
    Q_OBJECT

public:
    explicit RealizationTreeWidget(QWidget *parent = nullptr);
    ~RealizationTreeWidget() override;
};
