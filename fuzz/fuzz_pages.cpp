// Any JSON value as the controller's records: every page loads its record when shown and must
// cope with any shape, type or size, then be shown and laid out offscreen.
// Input: a JSON object whose members under the record keys become the records (anything
// else, a single value, stands for every record) and whose "ports" object, {type: [names]},
// becomes the controller's port lists, and whose "compute" array answers every curve fit.

#include "fuzzsupport.h"

#include "page/laserweldpage.h"
#include "support/recordingshell.h"
#include "support/scriptedcontroller.h"

#include <QAbstractButton>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolButton>

#include <algorithm>

namespace {

// Building the pages costs far more than loading a record, so one main page serves every
// input; each input hides and shows it, which reloads every page as the pendant would.
ScriptedController *g_controller = nullptr;
LaserWeldPage *g_page = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    fuzzsupport::initialise(argc, argv);
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
    const QJsonDocument doc = QJsonDocument::fromJson(fuzzsupport::bytes(data, size), &error);
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
    // Each navigation button shows one page, which loads its record on show; then every tab,
    // every curve fit, and the editor of each list's first set.
    QWidget *nav = page.findChild<QWidget *>(QStringLiteral("wgtNav"));
    auto *stack = page.findChild<QStackedWidget *>(QStringLiteral("stackedWidget"));
    const QList<QToolButton *> buttons
        = nav ? nav->findChildren<QToolButton *>() : QList<QToolButton *>();
    for (QToolButton *button : buttons) {
        button->click();
        QCoreApplication::processEvents();
        QWidget *current = stack ? stack->currentWidget() : nullptr;
        auto *tabs = current ? current->findChild<QTabWidget *>() : nullptr;
        for (int tab = 0; tabs && tab < tabs->count(); ++tab) {
            tabs->setCurrentIndex(tab);
            const QList<QAbstractButton *> actions
                = tabs->currentWidget()->findChildren<QAbstractButton *>();
            for (QAbstractButton *action : actions) {
                if (action->objectName().startsWith(QLatin1String("pushButton_compute")))
                    action->click();
            }
            const QList<QTableWidget *> tables
                = tabs->currentWidget()->findChildren<QTableWidget *>();
            auto *detailed
                = current->findChild<QAbstractButton *>(QStringLiteral("pushButton_detailed"));
            auto *back = current->findChild<QAbstractButton *>(QStringLiteral("pushButton_back"));
            if (detailed && back && !tables.isEmpty() && tables.constFirst()->rowCount() > 0) {
                tables.constFirst()->selectRow(0);
                detailed->click();
                QCoreApplication::processEvents();
                back->click();
            }
        }
    }
    QCoreApplication::processEvents();
    return 0;
}
