// Any JSON value as the controller's records: every page loads its record when shown and must
// cope with any shape, type or size, then be shown and laid out offscreen.
// Input: a JSON object whose members under the record keys become the records (anything
// else, a single value, stands for every record) and whose "ports" object, {type: [names]},
// becomes the controller's port lists, and whose "compute" array answers every curve fit.

#include "fuzzsupport.h"

#include "page/laserweldpage.h"
#include "support/pagewalk.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"

#include <QAbstractButton>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTabWidget>

#include <algorithm>

namespace {

// Building the pages costs far more than loading a record, so one main page serves every
// input; each input hides and shows it, which reloads every page as the pendant would.
ScriptedController *g_controller = nullptr;
LaserWeldPage *g_page = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzzsupport::initialise();
    g_controller = new ScriptedController;
    static RecordingShell shell;
    g_page = new LaserWeldPage;
    g_page->resize(1024, 768);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QStringList recordKeys {QStringLiteral("weld_io_config"),
        QStringLiteral("weld_setting_config"), QStringLiteral("weld_curve_config"),
        QStringLiteral("weld_param_config"), QStringLiteral("weld_param_match")};

    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(fuzzsupport::input(data, size), &error);
    if (error.error != QJsonParseError::NoError)
        return 0;
    const QJsonObject root = doc.object();
    const bool perKey = doc.isObject()
        && std::any_of(recordKeys.cbegin(), recordKeys.cend(),
            [&root](const QString &k) { return root.contains(k); });

    ScriptedController &controller = *g_controller;
    controller.serviceData.clear();
    controller.ports.clear();
    controller.repliesByCommand.clear();
    controller.replies.clear();
    controller.sent.clear();
    controller.readKeys.clear();
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

    // The curve fit's answer is the controller's too.
    const QJsonValue compute = root.value(QStringLiteral("compute"));
    if (compute.isArray())
        controller.repliesByCommand.insert(
            QStringLiteral("compute_curve_config"), compute.toArray());

    LaserWeldPage &page = *g_page;
    page.hide();
    page.show();
    // Each page loads its record on show; then every tab, every curve fit, and the editor of
    // each list's first set.
    for (const pagewalk::View &view : pagewalk::views(&page)) {
        pagewalk::show(&page, view);
        QCoreApplication::processEvents();
        auto *tabs = pagewalk::currentPage(&page)->findChild<QTabWidget *>();
        const QList<QAbstractButton *> actions = tabs && !view.editor
            ? tabs->currentWidget()->findChildren<QAbstractButton *>()
            : QList<QAbstractButton *>();
        for (QAbstractButton *action : actions) {
            if (action->objectName().startsWith(QLatin1String("pushButton_compute")))
                action->click();
        }
    }
    QCoreApplication::processEvents();
    return 0;
}
