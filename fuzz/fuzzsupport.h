#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>

namespace fuzzsupport {

// Once per process: an offscreen QApplication, silent console messages, the plug-in's log file
// in the working folder made a link to /dev/null (unless it exists), and the plug-in's
// resources.
void initialise();

// The input as bytes; the first call sets the process up.
inline QByteArray input(const uint8_t *data, size_t size)
{
    initialise();
    return QByteArray(reinterpret_cast<const char *>(data), int(size));
}

} // namespace fuzzsupport
