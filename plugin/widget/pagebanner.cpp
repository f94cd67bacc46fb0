#include "pagebanner.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QTabBar>
#include <QTabWidget>

PageBanner::PageBanner(QWidget *parent)
    : QWidget(parent), m_reason(new QLabel(this)), m_tabs(new QTabBar(this))
{
    setObjectName(QStringLiteral("widget_pageBanner"));
    m_reason->setObjectName(QStringLiteral("label_pageBanner"));
    m_tabs->setObjectName(QStringLiteral("tabBar_view"));
    m_reason->setStyleSheet(QStringLiteral(
        "QLabel#label_pageBanner{background-color:#fff4ce;color:black;border:1px solid #e0c060;"
        "border-radius:4px;padding:4px 8px;}"));
    m_tabs->setExpanding(false);
    m_tabs->setDrawBase(false);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 2, 0, 2);
    layout->setSpacing(2);
    layout->addWidget(m_reason);
    layout->addWidget(m_tabs, 0, Qt::AlignLeft);
    connect(m_tabs, &QTabBar::currentChanged, this, [this](int index) {
        if (m_followed && index >= 0)
            m_followed->setCurrentIndex(index);
    });
    updateVisibility();
}

void PageBanner::setReason(const QString &reason)
{
    m_reason->setText(reason);
    updateVisibility();
}

QString PageBanner::reason() const
{
    return m_reason->text();
}

void PageBanner::followTabs(QTabWidget *tabs)
{
    disconnect(m_followConnection);
    m_followed = (tabs && !tabs->isEnabled()) ? tabs : nullptr;
    {
        const QSignalBlocker blocker(m_tabs);
        while (m_tabs->count() > 0)
            m_tabs->removeTab(0);
        if (m_followed) {
            for (int i = 0; i < m_followed->count(); ++i)
                m_tabs->addTab(m_followed->tabText(i));
            m_tabs->setCurrentIndex(m_followed->currentIndex());
        }
    }
    if (m_followed) {
        m_followConnection = connect(m_followed, &QTabWidget::currentChanged, m_tabs,
            [this](int index) { m_tabs->setCurrentIndex(index); });
    }
    updateVisibility();
}

void PageBanner::updateVisibility()
{
    m_reason->setVisible(!m_reason->text().isEmpty());
    m_tabs->setVisible(m_followed != nullptr);
    setVisible(!m_reason->text().isEmpty() || m_followed);
}
