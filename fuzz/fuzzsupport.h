#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>

namespace fuzzsupport {

// Once per process: an offscreen QApplication, silent console messages, the plug-in's log file
// in the working folder made a link to /dev/null (unless it exists), and the plug-in's
// resources.
void initialise(int *argc, char ***argv);

inline QByteArray bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), int(size));
}

} // namespace fuzzsupport
