#pragma once

#include "controller/cellstate.h"
#include "controller/changehistory.h"

#include <QJsonArray>
#include <QObject>

// What the pendant's own panels need of the controller beside the plug-ins' host calls: the
// cell's state, its change history, the controls a real cell decides elsewhere, and program
// runs. The controller is either simulated in this process or reached over the network.
class CellLink : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    virtual kelcontroller::CellState state() = 0;
    // The change history's entries the cell panel shows at most: the controller keeps up to
    // 12,000, more than a table rebuilt after every change (and a network answer fetched
    // after every change) should carry. Export CSV... writes them all.
    static constexpr int historyShown = 1000;
    // Oldest first, as the controller keeps them; over the network the newest historyShown.
    virtual QVector<kelcontroller::ChangeHistory::Entry> history() = 0;
    virtual QByteArray historyCsv(const QString &record) = 0;
    virtual QString dataFile() = 0;
    // Where the controller is and how the link is: embedded, or address and round trip.
    virtual QString linkText() = 0;

    virtual int userLevel() = 0;
    virtual void setUserLevel(int level) = 0;
    virtual void setRobotPowered(bool powered) = 0;
    virtual bool isConnected() = 0;
    virtual void setConnected(bool connected) = 0;

    // One-shot faults for the controller's next command reply.
    virtual void injectReturnCode(int code) = 0;
    virtual void injectEmptyReply() = 0;
    virtual void injectMalformedElement() = 0;

    virtual bool run(const QStringList &lines, const QString &programName) = 0;
    virtual bool step(const QStringList &lines, const QString &programName) = 0;
    virtual void stop() = 0;
    virtual void setSpeedFactor(double factor) = 0;

signals:
    // Something the cell panel shows may have changed.
    void stateChanged();
    void problem(const QString &text);
    void notice(const QString &text);
    void commandHandled(const QString &command, const QJsonValue &payload, const QJsonArray &reply);
    void runLineChanged(int line);
    void runStateChanged(kelcontroller::ProgramRunner::State state);
    void runMessage(int level, const QString &text, int line);
};
