#include "buttonmonitorpage.h"

#include "core/commandchannel.h"
#include "core/logline.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

#include <QDoubleSpinBox>
#include <QJsonObject>
#include <QLineEdit>
#include <QTimer>

#include <cmath>

namespace {

const QString kPluginKey = QStringLiteral("kellaserweld");
const QString kMonitorKey = QStringLiteral("weld_monitor_data");
const QString kStartCommand = QStringLiteral("start_laserweld_monitor");

} // namespace

ButtonMonitorPage::ButtonMonitorPage(QWidget *parent)
    : QDialog(parent), m_pollTimer(new QTimer(this))
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
}

void ButtonMonitorPage::initStyle()
{
    setStyleSheet(QStringLiteral(
        "QFrame{border:1px solid #c8c8c8;border-radius:8px;}"
        "QFrame QLabel{border:none;font:400 12pt \"Microsoft YaHei UI\";}"
        "QFrame QLabel[type=\"title\"]{border:none;font:600 12pt \"Microsoft YaHei UI\";}"
        "QFrame QDoubleSpinBox,QFrame QSpinBox{border:1px solid #c8c8c8;border-radius:4px;"
        "padding:2px 4px;}"
        "QFrame QAbstractSpinBox::up-button,QFrame QAbstractSpinBox::down-button{"
        "width:10px;border:none;}"
        "QComboBox{font-size:14px;}"
        "QComboBox::down-arrow{image:url(:/kellaserweld/png/arrow/down_arrow_white.png);}"));
}
