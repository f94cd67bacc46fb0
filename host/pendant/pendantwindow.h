#pragma once

#include "kelplugin/shellbackend.h"

#include <QHash>
#include <QMainWindow>
#include <QMultiMap>
#include <QPointer>

class CellLink;
class ControlPanel;
class KeyPanel;
class MessageList;
class QLabel;
class QTabWidget;

namespace kelcontroller {
class ControllerSimulator;
}

// The pendant simulator's main window and its shell side: plug-ins hand their centre pages,
// status-bar widgets and key lists to it, and their operator messages land in its list.
class PendantWindow : public QMainWindow, public kelplugin::ShellBackend
{
    Q_OBJECT
public:
    // The cell's controls and state come from the link, which stays the caller's.
    explicit PendantWindow(CellLink *cell, QWidget *parent = nullptr);
    // A controller simulated in this process, linked by the window itself.
    explicit PendantWindow(
        kelcontroller::ControllerSimulator *controller, QWidget *parent = nullptr);
    ~PendantWindow() override;

    // Adds a page of the pendant's own (the program editor) after the plug-ins' pages.
    void addPendantPage(QWidget *page, const QString &title);
    void setPluginLabel(const QString &pluginKey, const QString &label);

    QTabWidget *centreTabs() const { return m_centre; }
    QWidget *centreWidget(const QString &pluginKey) const;
    MessageList *messageList() const { return m_messages; }
    CellLink *cell() const { return m_cell; }
    KeyPanel *firstKeys() const { return m_firstKeys; }
    KeyPanel *secondKeys() const { return m_secondKeys; }

    int throwLog(
        const QString &pluginKey, kelplugin::enThrowLogLevel level, const QString &text) override;
    int createCenterWidget(const QString &pluginKey, QWidget *widget) override;
    int createStatusBar(const QString &pluginKey, QWidget *widget, int slot) override;
    int createPhyButtonList(const QString &pluginKey, const QString &listName,
        const QList<kelplugin::PhysicalButton> &first,
        const QList<kelplugin::PhysicalButton> &second, const QStringList &extra) override;
    int changePhyButtonStatus(
        const QString &pluginKey, const QString &listName, bool active) override;
    int changeModelWindowStatus(const QString &pluginKey, bool modal) override;

    // Operator-visible problems of the pendant itself (plug-in loading, the data file).
    void reportProblem(const QString &text);
    // Shows the visible centre page again, so that it follows a new user level.
    void reshowCentre();

protected:
    // Each centre page may keep the window open, as a plug-in page with unsaved changes does.
    void closeEvent(QCloseEvent *event) override;

private:
    CellLink *m_cell;
    QTabWidget *m_centre;
    KeyPanel *m_firstKeys;
    KeyPanel *m_secondKeys;
    MessageList *m_messages;
    ControlPanel *m_controls;
    QLabel *m_modalState;
    QHash<QString, QPointer<QWidget>> m_centreWidgets;
    QHash<QString, QString> m_activeKeyList;
    QMultiMap<int, QPointer<QWidget>> m_statusSlots;
};
