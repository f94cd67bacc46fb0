#include "pagesave.h"

#include "recordstate.h"

#include "kelplugin/hostfunctions.h"
#include "kelplugin/interfacemanager.h"

#include <QMessageBox>
#include <QPushButton>

namespace kellaser {

namespace {

const QString &pluginKey()
{
    static const QString key = QStringLiteral("kellaserweld");
    return key;
}

} // namespace

int PageSave::userLevel()
{
    return kelplugin::kelPluginInterface().getUserOperateLevel();
}

bool PageSave::levelPermits()
{
    return userLevel() >= configureLevel;
}

bool PageSave::mayChange(const QString &permissionText, bool recordRead)
{
    // Asked at the action, not taken from the page's enabling: the level may have dropped
    // since the page was shown.
    if (!levelPermits()) {
        kelplugin::ThrowLog(pluginKey(), kelplugin::THROW_LOG_WARNING, permissionText);
        return false;
    }
    if (!recordRead) {
        kelplugin::ThrowLog(pluginKey(), kelplugin::THROW_LOG_WARNING, unreadText());
        return false;
    }
    return true;
}

QString PageSave::unreadText()
{
    return tr("The controller's values could not be read; nothing can be saved until they are");
}

QString PageSave::readOnlyReason(bool recordRead, bool lockedByWelding)
{
    // Form defaults shown as if they were the controller's would mislead most, so this first.
    if (!recordRead)
        return unreadText();
    const int level = userLevel();
    if (level < configureLevel)
        return tr("Level %1 is needed to change the welding equipment; you are logged in at "
                  "level %2")
            .arg(configureLevel)
            .arg(level);
    if (lockedByWelding)
        return tr("Locked while welding is enabled");
    return QString();
}

CommandChannel::Entry PageSave::send(const Save &save)
{
    for (;;) {
        const QJsonArray reply = CommandChannel::send(save.page, save.command, save.payload);
        if (save.check)
            save.check(reply);
        const CommandChannel::Entry entry = CommandChannel::findReturn(reply, save.command);
        if (entry.outcome == CommandChannel::Outcome::Success && save.state)
            save.state->markFilled();
        if (entry.outcome != CommandChannel::Outcome::Failure || entry.code != changedSinceRead)
            return entry;
        switch (askConflict(save.page)) {
        case Conflict::Reload:
            if (save.reload)
                save.reload();
            return entry;
        case Conflict::Overwrite:
            // Reading the record again is what tells the controller this pendant has seen
            // the other change; the form keeps the operator's values.
            kelplugin::kelPluginInterface().getKelServiceData(save.recordKey);
            break;
        case Conflict::Cancel:
            return entry;
        }
    }
}

PageSave::Conflict PageSave::askConflict(QWidget *parent)
{
    QMessageBox box(QMessageBox::Question, tr("Save"),
        tr("Changed on another pendant since you opened it: reload?"), QMessageBox::NoButton,
        parent);
    box.setObjectName(QStringLiteral("saveConflictQuestion"));
    QPushButton *reload = box.addButton(tr("Reload"), QMessageBox::AcceptRole);
    QPushButton *overwrite = box.addButton(tr("Overwrite"), QMessageBox::DestructiveRole);
    QPushButton *cancel = box.addButton(QMessageBox::Cancel);
    box.setDefaultButton(reload);
    box.setEscapeButton(cancel);
    box.exec();
    if (box.clickedButton() == reload)
        return Conflict::Reload;
    if (box.clickedButton() == overwrite)
        return Conflict::Overwrite;
    return Conflict::Cancel;
}

} // namespace kellaser
