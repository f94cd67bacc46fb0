#pragma once

namespace kelplugin {

// Severity of an operator message shown by the pendant.
enum enThrowLogLevel {
    THROW_LOG_INFO = 0,
    THROW_LOG_WARNING = 1,
    THROW_LOG_ERROR = 2,
};

} // namespace kelplugin
