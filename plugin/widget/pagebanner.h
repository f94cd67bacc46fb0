#pragma once

#include <QMetaObject>
#include <QPointer>
#include <QWidget>

class QLabel;
class QTabBar;
class QTabWidget;

// One line above a page that cannot be changed now, saying why, and, when the page's own tabs
// are disabled with it, a row of tabs that still lets the operator look at each of them.
class PageBanner : public QWidget
{
    Q_OBJECT
public:
    explicit PageBanner(QWidget *parent = nullptr);

    // Empty hides the line.
    void setReason(const QString &reason);
    QString reason() const;
    // Mirrors tabs while they cannot be used themselves; nullptr or usable tabs hide the row.
    void followTabs(QTabWidget *tabs);
    QTabBar *viewTabs() const { return m_tabs; }

private:
    void updateVisibility();

    QLabel *m_reason;
    QTabBar *m_tabs;
    QPointer<QTabWidget> m_followed;
    QMetaObject::Connection m_followConnection;
};
