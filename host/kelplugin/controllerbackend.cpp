#include "controllerbackend.h"

#include "interfacemanager.h"

#include "controller/controllersimulator.h"

#include <QCoreApplication>
#include <QPointer>

namespace kelplugin {

namespace {
QPointer<ControllerBackend> s_backend;
ControllerBackend *s_default = nullptr;
} // namespace

ControllerBackend::ControllerBackend(QObject *parent) : QObject(parent)
{ }

ControllerBackend::~ControllerBackend() = default;

void setControllerBackend(ControllerBackend *backend)
{
    s_backend = backend;
    kelPluginInterface().attach(backend);
}

ControllerBackend *controllerBackend()
{
    if (s_backend)
        return s_backend;
    // Nothing installed: the embedded simulator answers, with its data in the user's folder.
    if (!s_default) {
        s_default = new kelcontroller::ControllerSimulator(QString(), QCoreApplication::instance());
        QObject::connect(s_default, &QObject::destroyed, [] { s_default = nullptr; });
        kelPluginInterface().attach(s_default);
    }
    return s_default;
}

} // namespace kelplugin
