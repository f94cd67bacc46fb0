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
    const QPixmap pixmap(path);
    // A missing icon clears the label rather than warning on every mode change.
    m_ui.label->setPixmap(
        pixmap.isNull() ? pixmap : pixmap.scaledToHeight(25, Qt::SmoothTransformation));
}
