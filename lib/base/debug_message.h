#pragma once

#include <functional>

namespace Orv {

/// Receives the formatted text of a report.
using MessageHandler = std::function<void(const char* text)>;

/// Reports programming errors of the caller. One is made on the stack for each report.
class DebugMessageHelper {
public:
    /// Formats the report and hands it to the handler. May return: the code behind a report goes on. `format`
    /// already names `file` and takes `line`; both come separately for handlers to come.
    void criticalMessage(const char* file, unsigned line, const char* format, ...);

    /// Sets the handler for the process and gives back the one before. Empty: the text goes to stderr.
    static MessageHandler setHandler(MessageHandler handler);
};

} // namespace Orv
