#pragma once

#include <QJsonArray>
#include <QJsonValue>
#include <QString>

class QObject;

namespace kellaser {

// The one way the plug-in talks to the controller: it sends {command: payload} under the
// plug-in's key and judges the reply array. Both judging rules live here and nowhere else.
class CommandChannel
{
public:
    enum class Outcome { NotFound, Success, Failure };

    struct Entry
    {
        Outcome outcome = Outcome::NotFound;
        int code = 0;
    };

    // Sends {command: payload} with the JSON overload.
    static QJsonArray send(QObject *sender, const QString &command, const QJsonValue &payload);

    // The search check without side effects: the first element whose "kellaserweld" object
    // holds an object under command with a "return" member decides; a non-number counts as 0.
    static Entry findReturn(const QJsonArray &reply, const QString &command);

    // The search check with its operator message and log lines. logPrefix is the sender's
    // prefix ending in a blank, such as "WeldioPage::checkSaveResult failed. "; the texts
    // are already translated in the sender's context.
    static Outcome checkReply(const QJsonArray &reply, const QString &command,
        const QString &logPrefix, const QString &successText, const QString &failureText);

    // The first-element check: 0 for an empty reply or a first element that is not an object;
    // otherwise first["kellaserweld"][command]["return"] as a code (strings parsed base 10,
    // numbers truncated, true 1, anything else 0). Non-zero means failure.
    static int firstElementReturn(const QJsonArray &reply, const QString &command);
};

} // namespace kellaser
