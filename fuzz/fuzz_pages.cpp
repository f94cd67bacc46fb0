// Any JSON value as the controller's records: every page loads its record when shown and must
// cope with any shape, type or size, then be shown and laid out offscreen.
// Input: a JSON object whose members under the record keys become the records (anything
// else, a single value, stands for every record) and whose "ports" object, {type: [names]},
// becomes the controller's port lists.

#include "fuzzsupport.h"

#include "page/laserweldpage.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStackedWidget>
#include <QToolButton>

#include <algorithm>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    fuzzsupport::initialise(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QStringList recordKeys {QStringLiteral("weld_io_config"),
        QStringLiteral("weld_setting_config"), QStringLiteral("weld_curve_config"),
        QStringLiteral("weld_param_config"), QStringLiteral("weld_param_match")};

    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(fuzzsupport::bytes(data, size), &error);
    if (error.error != QJsonParseError::NoError)
        return 0;
    const QJsonObject root = doc.object();
    const bool perKey = doc.isObject()
        && std::any_of(recordKeys.cbegin(), recordKeys.cend(),
            [&root](const QString &k) { return root.contains(k); });

    ScriptedController controller;
    RecordingShell shell;
    for (const QString &key : recordKeys) {
        controller.serviceData.insert(key,
            perKey ? root.value(key)
                   : (doc.isArray() ? QJsonValue(doc.array()) : QJsonValue(root)));
    }
    const QJsonObject ports = root.value(QStringLiteral("ports")).toObject();
    for (auto it = ports.constBegin(); it != ports.constEnd(); ++it) {
        QStringList names;
        const QJsonArray list = it.value().toArray();
        for (const QJsonValue &name : list)
            names.append(name.toString());
        controller.ports.insert(it.key(), names);
    }

    LaserWeldPage page;
    page.resize(1024, 768);
    page.show();
    // Each navigation button shows one page, which loads its record on show.
    QWidget *nav = page.findChild<QWidget *>(QStringLiteral("wgtNav"));
    const QList<QToolButton *> buttons
        = nav ? nav->findChildren<QToolButton *>() : QList<QToolButton *>();
    for (QToolButton *button : buttons) {
        button->click();
        QCoreApplication::processEvents();
    }
    page.hide();
    page.show();
    QCoreApplication::processEvents();
    return 0;
}
