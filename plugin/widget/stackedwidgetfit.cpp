#include "stackedwidgetfit.h"

StackedWidgetFit::StackedWidgetFit(QWidget *parent) : QStackedWidget(parent)
{
    connect(this, &QStackedWidget::currentChanged, this, &StackedWidgetFit::recomputeSize);
}

QSize StackedWidgetFit::sizeHint() const
{
    if (const QWidget *page = currentWidget())
        return page->sizeHint();
    return QStackedWidget::sizeHint();
}

QSize StackedWidgetFit::minimumSizeHint() const
{
    if (const QWidget *page = currentWidget())
        return page->minimumSizeHint();
    return QStackedWidget::minimumSizeHint();
}

void StackedWidgetFit::recomputeSize()
{
    updateGeometry();
}
