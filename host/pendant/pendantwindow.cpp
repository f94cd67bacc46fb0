#include "pendantwindow.h"

#include "controlpanel.h"
#include "keypanel.h"
#include "messagelist.h"

#include "localcell.h"

#include "controller/controllersimulator.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDockWidget>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QVBoxLayout>

PendantWindow::PendantWindow(kelcontroller::ControllerSimulator *controller, QWidget *parent)
    : PendantWindow(new LocalCell(controller), parent)
{
    m_cell->setParent(this);
}

PendantWindow::PendantWindow(CellLink *cell, QWidget *parent)
    : QMainWindow(parent)
    , m_cell(cell)
    , m_centre(new QTabWidget(this))
    , m_firstKeys(new KeyPanel(this))
    , m_secondKeys(new KeyPanel(this))
    , m_messages(new MessageList(this))
    , m_controls(new ControlPanel(cell, this))
    , m_modalState(new QLabel(this))
{
    setObjectName(QStringLiteral("PendantWindow"));
    setWindowTitle(tr("kelpendant — teach pendant simulator"));

    m_centre->setObjectName(QStringLiteral("centreTabs"));
    m_firstKeys->setObjectName(QStringLiteral("firstKeys"));
    m_secondKeys->setObjectName(QStringLiteral("secondKeys"));

    // Keys left and right of the screen, as on the pendant's housing.
    auto *screen = new QWidget(this);
    auto *screenLayout = new QHBoxLayout(screen);
    screenLayout->setContentsMargins(0, 0, 0, 0);
    screenLayout->addWidget(m_firstKeys);
    auto *splitter = new QSplitter(Qt::Vertical, screen);
    splitter->addWidget(m_centre);
    splitter->addWidget(m_messages);
    splitter->setStretchFactor(0, 4);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({640, 150});
    screenLayout->addWidget(splitter, 1);
    screenLayout->addWidget(m_secondKeys);
    setCentralWidget(screen);

    auto *dock = new QDockWidget(tr("Cell and controller"), this);
    dock->setObjectName(QStringLiteral("controlDock"));
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    auto *scroll = new QScrollArea(dock);
    scroll->setWidgetResizable(true);
    scroll->setWidget(m_controls);
    dock->setWidget(scroll);
    addDockWidget(Qt::RightDockWidgetArea, dock);

    m_modalState->setObjectName(QStringLiteral("modalState"));
    statusBar()->addWidget(m_modalState);

    connect(m_controls, &ControlPanel::userLevelChanged, this, &PendantWindow::reshowCentre);
    connect(cell, &CellLink::problem, this, &PendantWindow::reportProblem);
    connect(cell, &CellLink::notice, this, [this](const QString &text) {
        m_messages->addMessage(QStringLiteral("kelpendant"), 0, text);
    });

    kelplugin::setShellBackend(this);
}

PendantWindow::~PendantWindow()
{
    kelplugin::setShellBackend(nullptr);
}

void PendantWindow::reshowCentre()
{
    // Pages enable themselves from the user level when they are shown, as after a new login.
    QWidget *page = m_centre->currentWidget();
    if (!page || !page->isVisible())
        return;
    page->hide();
    page->show();
}

void PendantWindow::addPendantPage(QWidget *page, const QString &title)
{
    m_centre->addTab(page, title);
}

void PendantWindow::setPluginLabel(const QString &pluginKey, const QString &label)
{
    QWidget *widget = centreWidget(pluginKey);
    const int index = widget ? m_centre->indexOf(widget) : -1;
    if (index >= 0 && !label.isEmpty())
        m_centre->setTabText(index, label);
}

QWidget *PendantWindow::centreWidget(const QString &pluginKey) const
{
    return m_centreWidgets.value(pluginKey);
}

int PendantWindow::throwLog(
    const QString &pluginKey, kelplugin::enThrowLogLevel level, const QString &text)
{
    m_messages->addMessage(pluginKey, int(level), text);
    return 0;
}

int PendantWindow::createCenterWidget(const QString &pluginKey, QWidget *widget)
{
    if (!widget)
        return -1;
    // The pendant owns the page from now on: the tab widget reparents it.
    m_centre->insertTab(m_centreWidgets.size(), widget, pluginKey);
    m_centreWidgets.insert(pluginKey, widget);
    m_centre->setCurrentWidget(widget);
    return 0;
}

int PendantWindow::createStatusBar(const QString &pluginKey, QWidget *widget, int slot)
{
    if (!widget)
        return -1;
    widget->setToolTip(pluginKey);
    // Lower slots sit further left; the message of the modal state stays first.
    int position = 1;
    for (auto it = m_statusSlots.constBegin(); it != m_statusSlots.constEnd(); ++it) {
        if (it.value() && it.key() <= slot)
            ++position;
    }
    m_statusSlots.insert(slot, widget);
    statusBar()->insertPermanentWidget(position, widget);
    widget->show();
    return 0;
}

int PendantWindow::createPhyButtonList(const QString &pluginKey, const QString &listName,
    const QList<kelplugin::PhysicalButton> &first, const QList<kelplugin::PhysicalButton> &second,
    const QStringList &extra)
{
    Q_UNUSED(extra)
    m_activeKeyList.insert(pluginKey, listName);
    m_firstKeys->setButtons(first);
    m_secondKeys->setButtons(second);
    return 0;
}

int PendantWindow::changePhyButtonStatus(
    const QString &pluginKey, const QString &listName, bool active)
{
    if (m_activeKeyList.value(pluginKey) != listName)
        return -1;
    m_firstKeys->setKeysActive(active);
    m_secondKeys->setKeysActive(active);
    return 0;
}

int PendantWindow::changeModelWindowStatus(const QString &pluginKey, bool modal)
{
    m_modalState->setText(modal ? tr("%1: modal window open").arg(pluginKey) : QString());
    return 0;
}

void PendantWindow::closeEvent(QCloseEvent *event)
{
    for (int i = 0; i < m_centre->count(); ++i) {
        QCloseEvent pageClose;
        QCoreApplication::sendEvent(m_centre->widget(i), &pageClose);
        if (!pageClose.isAccepted()) {
            event->ignore();
            return;
        }
    }
    QMainWindow::closeEvent(event);
}

void PendantWindow::reportProblem(const QString &text)
{
    m_messages->addMessage(QStringLiteral("kelpendant"), 2, text);
}
