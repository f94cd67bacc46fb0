#pragma once

#include "celllink.h"

namespace kelcontroller {
class ControllerSimulator;
}

// The cell of a controller simulated in the pendant's own process.
class LocalCell : public CellLink
{
    Q_OBJECT
public:
    explicit LocalCell(kelcontroller::ControllerSimulator *controller, QObject *parent = nullptr);

    kelcontroller::ControllerSimulator *controller() const { return m_controller; }

    kelcontroller::CellState state() override;
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
    kelcontroller::ControllerSimulator *m_controller;
};
