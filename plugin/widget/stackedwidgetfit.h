#pragma once

#include <QStackedWidget>

// A stacked widget that sizes itself to its current page, so that a scroll area around it
// scrolls exactly the page on show.
class StackedWidgetFit : public QStackedWidget
{
    Q_OBJECT
public:
    explicit StackedWidgetFit(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private slots:
    void recomputeSize();
};
