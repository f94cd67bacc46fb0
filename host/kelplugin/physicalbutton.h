#pragma once

#include <QString>

#include <functional>

namespace kelplugin {

// One hardware key a plug-in defines; the host draws it and calls back on press (true) and
// release (false).
struct PhysicalButton
{
    QString name;
    QString pressedIcon;
    QString unpressedIcon;
    std::function<void(bool)> callback;
};

} // namespace kelplugin
