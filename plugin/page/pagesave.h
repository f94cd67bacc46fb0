#pragma once

#include "core/commandchannel.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonValue>
#include <QString>

#include <functional>

class QWidget;

namespace kellaser {

class RecordState;

// The one way a page changes the controller: the user level and the record are checked at the
// moment of the action, the save is judged by the page's own result check, and a save the
// controller refuses because the record changed since it was read asks the operator what to do.
class PageSave
{
    Q_DECLARE_TR_FUNCTIONS(PageSave)
public:
    // The lowest user level that may change the welding equipment.
    static constexpr int configureLevel = 3;
    // The controller's answer when the record changed since this pendant read it.
    static constexpr int changedSinceRead = 8;

    enum class Conflict { Reload, Overwrite, Cancel };

    static int userLevel();
    // True when the user logged in now may change the equipment.
    static bool levelPermits();

    // Checks, now, that the user may change the equipment and that the form holds the
    // controller's values; tells the operator why not. permissionText is the caller's own
    // translation of "Insufficient user permissions!".
    static bool mayChange(const QString &permissionText, bool recordRead = true);

    // The one line above a page that cannot be changed, or empty when it can.
    static QString readOnlyReason(bool recordRead, bool lockedByWelding);
    static QString unreadText();

    struct Save
    {
        QWidget *page = nullptr;
        QString recordKey; // the record the save changes, read again before an overwrite
        QString command;
        QJsonValue payload;
        std::function<void(const QJsonArray &)> check; // the page's own result check
        std::function<void()> reload;                  // reads the record and fills the form
        RecordState *state = nullptr;                  // marked filled after a success
    };
    // Sends, judges and, on a conflict, asks Reload / Overwrite / Cancel.
    static CommandChannel::Entry send(const Save &save);

    // The question asked on a conflict, as a modal message box ("saveConflictQuestion").
    static Conflict askConflict(QWidget *parent);
};

} // namespace kellaser
