#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>

namespace fuzzsupport {

// Once per process: an offscreen QApplication, silent console messages, a scratch working
// folder whose plug-in log file is /dev/null (a long run would otherwise fill the disk), and
// the plug-in's resources.
void initialise(int *argc, char ***argv);

inline QByteArray bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), int(size));
}

} // namespace fuzzsupport
