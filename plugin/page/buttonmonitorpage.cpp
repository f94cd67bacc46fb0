#include "buttonmonitorpage.h"

#include "weldrecordsdialog.h"

#include "core/commandchannel.h"
#include "core/logline.h"
#include "core/styledescription.h"
#include "widget/stylesheet.h"
#include "widget/trendchart.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

#include <QDoubleSpinBox>
#include <QJsonObject>
#include <QLineEdit>
#include <QStyle>
#include <QTimer>

#include <cmath>

namespace {

const QString kPluginKey = QStringLiteral("kellaserweld");
const QString kMonitorKey = QStringLiteral("weld_monitor_data");
const QString kStartCommand = QStringLiteral("start_laserweld_monitor");

const struct
{
    const char *phase;
    const char *text;
} kPhases[] {
    {"idle", QT_TRANSLATE_NOOP("ButtonMonitorPage", "Idle")},
    {"start", QT_TRANSLATE_NOOP("ButtonMonitorPage", "Start")},
    {"weld", QT_TRANSLATE_NOOP("ButtonMonitorPage", "Weld")},
    {"end", QT_TRANSLATE_NOOP("ButtonMonitorPage", "End")},
    {"wire", QT_TRANSLATE_NOOP("ButtonMonitorPage", "Wire")},
    {"motion", QT_TRANSLATE_NOOP("ButtonMonitorPage", "Motion")},
};

} // namespace

ButtonMonitorPage::ButtonMonitorPage(QWidget *parent)
    : QDialog(parent), m_pollTimer(new QTimer(this)), m_records(new WeldRecordsDialog(this))
{
    m_ui.setupUi(this);
    setWindowFlags(Qt::Dialog | Qt::WindowCloseButtonHint);
    // The values are the controller's: readable, never editable.
    for (const Field &field : fields()) {
        QDoubleSpinBox *spin = box(field);
        spin->setFocusPolicy(Qt::NoFocus);
        if (auto *edit = spin->findChild<QLineEdit *>())
            edit->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    setFixedSize(width(), height());
    setWindowTitle(tr("Monitor"));
    m_pollTimer->setObjectName(QStringLiteral("monitorPollTimer"));
    m_pollTimer->setInterval(pollInterval);
    connect(m_pollTimer, &QTimer::timeout, this, &ButtonMonitorPage::pollStream);
    connect(m_ui.pushButton_welds, &QPushButton::clicked, m_records, &QDialog::open);
    // A list just read is newer than the totals read when the phase last changed.
    connect(m_records, &QDialog::finished, this, &ButtonMonitorPage::showTotals);
    m_clock.start();
    showRun(QJsonObject());
    initConnect();
}

ButtonMonitorPage::~ButtonMonitorPage() = default;

const QList<ButtonMonitorPage::Field> &ButtonMonitorPage::fields()
{
    static const QList<Field> table {
        {"power", "doubleSpinBox_Power"},
        {"frequency", "doubleSpinBox_Frequency"},
        {"duty_cycle", "doubleSpinBox_3"},
        {"wire_speed", "doubleSpinBox_4"},
        {"weld_speed", "doubleSpinBox_5"},
    };
    return table;
}

QDoubleSpinBox *ButtonMonitorPage::box(const Field &field) const
{
    return findChild<QDoubleSpinBox *>(QLatin1String(field.box));
}

void ButtonMonitorPage::initConnect()
{
    kellaser::logStatus() << "["
                          << "page\\buttonmonitorpage"
                          << ":" << 42 << "]"
                          << "ButtonMonitorPage initConnect";
    connect(this, &QDialog::finished, this, &ButtonMonitorPage::onFinished);
}

void ButtonMonitorPage::openMonitor()
{
    // A refused start leaves the boxes at their last values; the stop on close is sent anyway.
    kellaser::CommandChannel::send(this, kStartCommand, true);
    kelplugin::ChangeModelWindowStatus(kPluginKey, true);
    m_ui.trendChart->clear();
    m_phase.clear();
    showTotals();
    pollStream();
    m_pollTimer->start();
    open();
}

void ButtonMonitorPage::onFinished()
{
    m_pollTimer->stop();
    kellaser::CommandChannel::send(this, kStartCommand, false);
    kelplugin::kelPluginInterface().disconnectKelServiceData(kPluginKey, kMonitorKey, QString());
    kelplugin::ChangeModelWindowStatus(kPluginKey, false);
    kellaser::logStatus() << "["
                          << "page\\buttonmonitorpage"
                          << ":" << 49 << "]"
                          << "ChangeModelWindowStatus false";
}

void ButtonMonitorPage::pollStream()
{
    showSample(kelplugin::kelPluginInterface().getKelServiceData(kMonitorKey));
}

void ButtonMonitorPage::showSample(const QJsonValue &sample)
{
    if (!sample.isObject())
        return;
    const QJsonObject values = sample.toObject();
    for (const Field &field : fields()) {
        const QJsonValue value = values.value(QLatin1String(field.key));
        // Anything but a finite number shows as 0 rather than a stale value.
        const double number
            = value.isDouble() && std::isfinite(value.toDouble()) ? value.toDouble() : 0.0;
        box(field)->setValue(number);
    }
    m_ui.trendChart->addSamples(kellaser::trend::samplesFromStream(values, m_clock.elapsed()));
    showRun(values);
}

void ButtonMonitorPage::showRun(const QJsonObject &stream)
{
    const int line = stream.value(QLatin1String("line")).toInt(0);
    const QString phase = stream.value(QLatin1String("phase")).toString();
    QString phaseText = phase;
    for (const auto &known : kPhases) {
        if (phase == QLatin1String(known.phase))
            phaseText = tr(known.text);
    }
    const QString lineText = line > 0 ? tr("Line %1").arg(line) : tr("No program running");
    m_ui.label_run->setText(
        phaseText.isEmpty() ? lineText : lineText + QStringLiteral(" · ") + phaseText);

    const QString laser = stream.value(QLatin1String("laser")).toString();
    const QString state = laser == QLatin1String("on") || laser == QLatin1String("simulated")
        ? laser
        : QStringLiteral("off");
    m_ui.label_laser->setText(state == QLatin1String("on") ? tr("Laser on")
            : state == QLatin1String("simulated")          ? tr("Laser SIMULATED")
                                                           : tr("Laser off"));
    // The style description marks the laser state, above all a simulated one, by this property.
    if (m_ui.label_laser->property("laser").toString() != state) {
        m_ui.label_laser->setProperty("laser", state);
        m_ui.label_laser->style()->unpolish(m_ui.label_laser);
        m_ui.label_laser->style()->polish(m_ui.label_laser);
    }

    // Welds are recorded as the laser goes off, so the totals are read again at each change
    // of phase rather than with every sample.
    if (phase != m_phase) {
        m_phase = phase;
        showTotals();
    }
}

void ButtonMonitorPage::showTotals()
{
    m_ui.label_totals->setText(WeldRecordsDialog::totalsText(WeldRecordsDialog::totalsFrom(
        kelplugin::kelPluginInterface().getKelServiceData(QStringLiteral("weld_records")))));
}

void ButtonMonitorPage::initStyle()
{
    kellaser::applyStyleSheet(
        this, kellaser::StyleDescription::fromResource().styleSheet(objectName()));
}
