#include "controlpanel.h"

#include "celllink.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QSaveFile>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTableWidget>
#include <QTime>
#include <QTimer>
#include <QVBoxLayout>

namespace {
constexpr int kMaxTraffic = 300;
// Output values change with every sample of a weld (20 per second); the eye needs fewer.
constexpr int kOutputRefreshMs = 100;

QString compact(const QJsonValue &value)
{
    if (value.isObject())
        return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    if (value.isArray())
        return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    return QString::fromUtf8(
        QJsonDocument(QJsonArray {value}).toJson(QJsonDocument::Compact).mid(1).chopped(1));
}
} // namespace

ControlPanel::ControlPanel(CellLink *cell, QWidget *parent)
    : QWidget(parent)
    , m_cell(cell)
    , m_userLevel(new QSpinBox(this))
    , m_powered(new QCheckBox(tr("Robot powered"), this))
    , m_connected(new QCheckBox(tr("Controller connected"), this))
    , m_faultCode(new QSpinBox(this))
    , m_link(new QLabel(this))
    , m_state(new QLabel(this))
    , m_dataFile(new QLabel(this))
    , m_traffic(new QListWidget(this))
    , m_outputs(new QTableWidget(0, 3, this))
    , m_outputTimer(new QTimer(this))
    , m_historyFilter(new QComboBox(this))
    , m_history(new QTableWidget(0, 7, this))
{
    auto *layout = new QVBoxLayout(this);

    auto *cellBox = new QGroupBox(tr("Cell"), this);
    auto *cellLayout = new QFormLayout(cellBox);
    m_userLevel->setObjectName(QStringLiteral("userLevel"));
    m_userLevel->setRange(0, 5);
    m_userLevel->setValue(cell->userLevel());
    cellLayout->addRow(tr("User level"), m_userLevel);
    m_powered->setObjectName(QStringLiteral("robotPowered"));
    m_powered->setChecked(cell->state().robotPowered);
    cellLayout->addRow(m_powered);
    m_connected->setObjectName(QStringLiteral("controllerConnected"));
    m_connected->setChecked(cell->isConnected());
    cellLayout->addRow(m_connected);
    m_link->setObjectName(QStringLiteral("controllerLink"));
    m_link->setWordWrap(true);
    m_link->setTextInteractionFlags(Qt::TextSelectableByMouse);
    cellLayout->addRow(m_link);
    layout->addWidget(cellBox);

    auto *faults = new QGroupBox(tr("Next reply"), this);
    auto *faultLayout = new QFormLayout(faults);
    m_faultCode->setRange(-999, 999);
    m_faultCode->setValue(5);
    auto *failNext = new QPushButton(tr("Fail with code"), faults);
    failNext->setObjectName(QStringLiteral("failNext"));
    faultLayout->addRow(failNext, m_faultCode);
    auto *emptyNext = new QPushButton(tr("Empty reply"), faults);
    emptyNext->setObjectName(QStringLiteral("emptyNext"));
    auto *malformedNext = new QPushButton(tr("Malformed reply"), faults);
    malformedNext->setObjectName(QStringLiteral("malformedNext"));
    faultLayout->addRow(emptyNext, malformedNext);
    layout->addWidget(faults);

    auto *state = new QGroupBox(tr("Controller state"), this);
    auto *stateLayout = new QVBoxLayout(state);
    m_state->setObjectName(QStringLiteral("controllerState"));
    m_state->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_state->setWordWrap(true);
    stateLayout->addWidget(m_state);
    m_dataFile->setWordWrap(true);
    m_dataFile->setTextInteractionFlags(Qt::TextSelectableByMouse);
    stateLayout->addWidget(m_dataFile);
    layout->addWidget(state);

    auto *outputs = new QGroupBox(tr("Outputs"), this);
    auto *outputLayout = new QVBoxLayout(outputs);
    m_outputs->setObjectName(QStringLiteral("assignedOutputs"));
    m_outputs->setHorizontalHeaderLabels({tr("Signal"), tr("Port"), tr("Value")});
    m_outputs->verticalHeader()->hide();
    m_outputs->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_outputs->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_outputs->horizontalHeader()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    m_outputs->setTextElideMode(Qt::ElideMiddle);
    m_outputs->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_outputs->setSelectionMode(QAbstractItemView::NoSelection);
    outputLayout->addWidget(m_outputs);
    layout->addWidget(outputs, 1);
    m_outputTimer->setInterval(kOutputRefreshMs);
    connect(m_outputTimer, &QTimer::timeout, this, &ControlPanel::refreshOutputs);
    m_outputTimer->start();

    auto *traffic = new QGroupBox(tr("Commands"), this);
    auto *trafficLayout = new QVBoxLayout(traffic);
    m_traffic->setObjectName(QStringLiteral("controllerTraffic"));
    trafficLayout->addWidget(m_traffic);
    layout->addWidget(traffic, 1);

    auto *history = new QGroupBox(tr("Change history"), this);
    auto *historyLayout = new QVBoxLayout(history);
    auto *historyBar = new QHBoxLayout;
    m_historyFilter->setObjectName(QStringLiteral("historyFilter"));
    m_historyFilter->addItem(tr("All records"), QString());
    for (const QString &key : kelcontroller::ControllerSimulator::recordKeys())
        m_historyFilter->addItem(key, key);
    auto *exportHistory = new QPushButton(tr("Export CSV..."), history);
    exportHistory->setObjectName(QStringLiteral("historyExport"));
    historyBar->addWidget(m_historyFilter, 1);
    historyBar->addWidget(exportHistory);
    historyLayout->addLayout(historyBar);
    m_history->setObjectName(QStringLiteral("changeHistory"));
    m_history->setHorizontalHeaderLabels(
        {tr("Time"), tr("Level"), tr("Command"), tr("Key"), tr("Old"), tr("New"), tr("Client")});
    m_history->verticalHeader()->hide();
    m_history->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_history->horizontalHeader()->setStretchLastSection(true);
    historyLayout->addWidget(m_history);
    layout->addWidget(history, 1);
    connect(m_historyFilter, qOverload<int>(&QComboBox::currentIndexChanged), this,
        [this] { refreshHistory(true); });
    connect(exportHistory, &QPushButton::clicked, this, [this] {
        const QString path = QFileDialog::getSaveFileName(this, tr("Export the change history"),
            QStringLiteral("kelhistory.csv"), tr("CSV (*.csv)"));
        if (!path.isEmpty())
            exportHistoryCsv(path);
    });

    connect(m_userLevel, qOverload<int>(&QSpinBox::valueChanged), cell, &CellLink::setUserLevel);
    connect(m_userLevel, qOverload<int>(&QSpinBox::valueChanged), this,
        &ControlPanel::userLevelChanged);
    connect(m_powered, &QCheckBox::toggled, cell, &CellLink::setRobotPowered);
    connect(m_connected, &QCheckBox::toggled, cell, &CellLink::setConnected);
    connect(failNext, &QPushButton::clicked, this,
        [this] { m_cell->injectReturnCode(m_faultCode->value()); });
    connect(emptyNext, &QPushButton::clicked, cell, &CellLink::injectEmptyReply);
    connect(malformedNext, &QPushButton::clicked, cell, &CellLink::injectMalformedElement);
    connect(cell, &CellLink::stateChanged, this, &ControlPanel::refreshState);
    connect(cell, &CellLink::commandHandled, this, &ControlPanel::addTraffic);
    refreshState();
    refreshOutputs();
    refreshHistory(true);
}

void ControlPanel::refreshHistory(bool force)
{
    const auto entries = m_cell->history();
    // Most state changes are no configuration change; the table is rebuilt only for those.
    const QDateTime last = entries.isEmpty() ? QDateTime() : entries.last().time;
    if (!force && entries.size() == m_historyShown && last == m_historyLast)
        return;
    m_historyShown = entries.size();
    m_historyLast = last;
    const QString record = m_historyFilter->currentData().toString();
    m_history->setRowCount(0);
    // Newest first: the change just made is the one looked for.
    for (auto entry = entries.crbegin(); entry != entries.crend(); ++entry) {
        if (!record.isEmpty() && entry->record != record)
            continue;
        for (const auto &change : entry->changes) {
            const int row = m_history->rowCount();
            if (row == CellLink::historyShown)
                return;
            m_history->insertRow(row);
            const QStringList cells {
                entry->time.toLocalTime().toString(QStringLiteral("MM-dd hh:mm:ss")),
                QString::number(entry->userLevel), entry->command,
                entry->record + QLatin1Char('.') + change.key, compact(change.before),
                compact(change.after), entry->client};
            for (int column = 0; column < cells.size(); ++column)
                m_history->setItem(row, column, new QTableWidgetItem(cells.at(column)));
        }
    }
}

bool ControlPanel::exportHistoryCsv(const QString &path)
{
    const QByteArray csv = m_cell->historyCsv(m_historyFilter->currentData().toString());
    QSaveFile file(path);
    if (csv.isEmpty()) {
        QMessageBox::warning(
            this, tr("Export the change history"), tr("The controller is not reachable."));
        return false;
    }
    if (file.open(QIODevice::WriteOnly)) {
        file.write(csv);
        if (file.commit())
            return true;
    }
    QMessageBox::warning(this, tr("Export the change history"), file.errorString());
    return false;
}

void ControlPanel::refreshState()
{
    refreshHistory();
    using Sim = kelcontroller::ControllerSimulator;
    const kelcontroller::CellState cell = m_cell->state();
    const auto onOff = [this](bool on) { return on ? tr("on") : tr("off"); };
    QString feeder;
    switch (cell.feeder) {
    case Sim::Feeder::Idle:
        feeder = tr("idle");
        break;
    case Sim::Feeder::Feeding:
        feeder = tr("feeding");
        break;
    case Sim::Feeder::Retracting:
        feeder = tr("retracting");
        break;
    }
    QStringList lines;
    if (!cell.connected)
        lines.append(tr("Not connected"));
    lines.append(
        tr("Work mode: %1").arg(cell.virtualWelding ? tr("virtual welding") : tr("real welding")));
    lines.append(tr("Laser welding enabled: %1").arg(onOff(cell.weldingEnabled)));
    lines.append(tr("Guide laser: %1").arg(onOff(cell.redLight)));
    lines.append(tr("Assist gas: %1").arg(cell.gasOpen ? tr("open") : tr("closed")));
    lines.append(tr("Wire feeder: %1").arg(feeder));
    lines.append(tr("Monitor stream: %1").arg(onOff(cell.monitorRunning)));
    switch (cell.run) {
    case kelcontroller::ProgramRunner::State::Idle:
        lines.append(tr("Program: idle"));
        break;
    case kelcontroller::ProgramRunner::State::Running:
        lines.append(tr("Program: running, line %1").arg(cell.runLine + 1));
        break;
    case kelcontroller::ProgramRunner::State::Stepping:
        lines.append(tr("Program: stepping, line %1").arg(cell.runLine + 1));
        break;
    }
    m_state->setText(lines.join(QLatin1Char('\n')));
    m_dataFile->setText(tr("Data file: %1").arg(QDir::toNativeSeparators(m_cell->dataFile())));
    m_link->setText(m_cell->linkText());
    // Showing the state is no operator action: a link that dropped must not be told to stay
    // down, nor a robot to power off, because the box follows it.
    const QSignalBlocker levelBlocker(m_userLevel);
    const QSignalBlocker poweredBlocker(m_powered);
    const QSignalBlocker connectedBlocker(m_connected);
    m_userLevel->setValue(m_cell->userLevel());
    m_powered->setChecked(cell.robotPowered);
    m_connected->setChecked(m_cell->isConnected());
}

void ControlPanel::refreshOutputs()
{
    if (!isVisible() && m_outputs->rowCount() > 0)
        return;
    // The round trip changes with every request; the outputs' timer shows it too.
    const QString link = m_cell->linkText();
    if (m_link->text() != link)
        m_link->setText(link);
    const auto ports = m_cell->state().outputs;
    m_outputs->setRowCount(ports.size());
    for (int row = 0; row < ports.size(); ++row) {
        const auto &port = ports.at(row);
        const QStringList cells {port.signal, port.port, QLocale().toString(port.value, 'g', 4)};
        for (int column = 0; column < cells.size(); ++column) {
            QTableWidgetItem *item = m_outputs->item(row, column);
            if (!item) {
                item = new QTableWidgetItem;
                m_outputs->setItem(row, column, item);
            }
            if (item->text() != cells.at(column))
                item->setText(cells.at(column));
        }
    }
}

void ControlPanel::addTraffic(
    const QString &command, const QJsonValue &payload, const QJsonArray &reply)
{
    auto *item = new QListWidgetItem(
        QStringLiteral("%1  %2 %3 → %4")
            .arg(QTime::currentTime().toString(QStringLiteral("hh:mm:ss")), command,
                compact(payload).left(120), compact(reply).left(160)),
        nullptr);
    item->setToolTip(compact(payload));
    m_traffic->insertItem(0, item);
    while (m_traffic->count() > kMaxTraffic)
        delete m_traffic->takeItem(m_traffic->count() - 1);
}
