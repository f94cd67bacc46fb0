#pragma once

#include "kelplugin/controllerbackend.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonValue>
#include <QList>
#include <QQueue>

#include <functional>

// A controller stand-in for unit tests: answers from a script and records what it was sent.
// Installs itself as the controller backend on construction and removes itself on destruction.
class ScriptedController : public kelplugin::ControllerBackend
{
    Q_OBJECT
public:
    struct Sent
    {
        QObject *sender;
        QString pluginKey;
        QString command;  // the request's single key, or the string overload's command
        QJsonValue value; // the payload, or the string overload's value as a JSON string
        bool stringOverload;
    };

    ScriptedController();
    ~ScriptedController() override;

    // The success envelope {"kellaserweld": {command: {"return": code}}} in a one-element array.
    static QJsonArray reply(const QString &command, const QJsonValue &returnValue = 0);

    // Replies: a queued reply is used first; then one scripted for the command; else
    // reply(command, 0).
    void queueReply(const QJsonArray &reply) { replies.enqueue(reply); }
    QQueue<QJsonArray> replies;
    QHash<QString, QJsonArray> repliesByCommand;
    // Called for every command after it is recorded, to mimic the controller's effects.
    std::function<void(const Sent &)> onCommand;

    QHash<QString, QJsonValue> serviceData;
    QHash<QString, QStringList> ports;
    QHash<QString, QStringList> registers;
    int userLevel = 3;
    bool powered = false;
    QStringList points {QStringLiteral("p10"), QStringLiteral("p20")};
    QStringList zones {QStringLiteral("fine"), QStringLiteral("z1"), QStringLiteral("z10")};
    QStringList speeds {QStringLiteral("v100"), QStringLiteral("v500")};
    QStringList wobjs {QStringLiteral("wobj0"), QStringLiteral("wobj1")};
    QStringList tools {QStringLiteral("tool0"), QStringLiteral("tool1")};
    QString curWobj = QStringLiteral("wobj0");
    QString curTool = QStringLiteral("tool0");

    QList<Sent> sent;
    QStringList disconnected;
    QStringList readKeys;

    // Commands sent, by name, in order.
    QStringList sentCommands() const;
    void clearSent() { sent.clear(); }
    void emitConnectionRestored() { emit connectionRestored(); }

    QJsonArray commandCustomData(
        QObject *sender, const QString &pluginKey, const QJsonObject &command) override;
    QJsonArray commandCustomData(QObject *sender, const QString &pluginKey, const QString &command,
        const QString &value) override;
    QJsonValue getKelServiceData(const QString &key) override;
    bool disconnectKelServiceData(
        const QString &pluginKey, const QString &key, const QString &third) override;
    int getUserOperateLevel() override { return userLevel; }
    bool getRobotEleStatus() override { return powered; }
    QStringList getIOByType(const QString &type) override { return ports.value(type); }
    QHash<QString, QStringList> getRegisterHash() override { return registers; }
    QStringList getPointNameList() override { return points; }
    bool addCurrentPoint(
        const QString &name, bool overwrite, const QString &tool, const QString &wobj) override;
    QStringList getZoneList() override { return zones; }
    QStringList getSpeedList() override { return speeds; }
    QStringList getWobjList() override { return wobjs; }
    QStringList getToolList() override { return tools; }
    QString getCurWobj() override { return curWobj; }
    QString getCurTool() override { return curTool; }

private:
    QJsonArray answer(const Sent &sent);
};
