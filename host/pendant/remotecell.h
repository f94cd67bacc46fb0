#pragma once

#include "celllink.h"

class QTimer;

namespace kelplugin {
class NetworkController;
}

// The cell of a controller reached over the network: its state is fetched a few times a
// second while the link is up; the run's line, state and messages come with it.
class RemoteCell : public CellLink
{
    Q_OBJECT
public:
    // Fast enough for a running line and the outputs to look live.
    static constexpr int pollMs = 200;

    explicit RemoteCell(kelplugin::NetworkController *controller, QObject *parent = nullptr);

    // Fetches the state now; the poll does it on its own.
    void poll();

    kelcontroller::CellState state() override { return m_state; }
    QVector<kelcontroller::ChangeHistory::Entry> history() override;
    QByteArray historyCsv(const QString &record) override;
    QString dataFile() override;
    QString linkText() override;
    int userLevel() override;
    void setUserLevel(int level) override;
    void setRobotPowered(bool powered) override;
    bool isConnected() override;
    void setConnected(bool connected) override;
    void injectReturnCode(int code) override;
    void injectEmptyReply() override;
    void injectMalformedElement() override;
    bool run(const QStringList &lines, const QString &programName) override;
    bool step(const QStringList &lines, const QString &programName) override;
    void stop() override;
    void setSpeedFactor(double factor) override;

private:
    bool start(const char *op, const QStringList &lines, const QString &programName);

    kelplugin::NetworkController *m_controller;
    QTimer *m_poll;
    kelcontroller::CellState m_state;
    QJsonObject m_shown;        // the last state as sent, to tell a change
    double m_messageCount = -1; // the run messages seen; -1 until the first poll
    int m_problemCount = -1;    // the controller's storage problems seen; -1 likewise
    QVector<kelcontroller::ChangeHistory::Entry> m_history;
    int m_historySize = -1;
    QDateTime m_historyLast;
    double m_speedFactor = 1.0;
};
