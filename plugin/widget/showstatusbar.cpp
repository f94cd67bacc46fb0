#include "showstatusbar.h"

#include <QPixmap>

ShowStatusBar::ShowStatusBar(QWidget *parent) : QWidget(parent)
{
    resize(53, 25);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    m_ui.setupUi(this);
}

ShowStatusBar::~ShowStatusBar() = default;

void ShowStatusBar::showRealWelding()
{
    showIcon(QStringLiteral(":/png/LaserSwitchReal.png"));
}

void ShowStatusBar::showSimulatedWelding()
{
    showIcon(QStringLiteral(":/png/LaserSwitchSimu.png"));
}

void ShowStatusBar::showIcon(const QString &path)
{
    m_ui.label->setPixmap(QPixmap(path).scaledToHeight(25, Qt::SmoothTransformation));
}
