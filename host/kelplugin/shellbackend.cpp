#include "shellbackend.h"

namespace kelplugin {

namespace {
ShellBackend *s_shell = nullptr;
}

ShellBackend::~ShellBackend()
{
    if (s_shell == this)
        s_shell = nullptr;
}

void setShellBackend(ShellBackend *shell)
{
    s_shell = shell;
}

ShellBackend *shellBackend()
{
    return s_shell;
}

} // namespace kelplugin
