#include "debug_message.h"

#include "format.h"
#include "stack_tracker.h"

#include <cstdarg>
#include <cstdio>
#include <string>
#include <utility>

namespace Orv {

namespace {

/// Both live on the heap for the rest of the process: reports may still come while statics are destroyed.
MessageHandler& currentHandler()
{
    static auto& handler = *new MessageHandler;
    return handler;
}

bool s_reporting = false;

struct ReportingScope {
    ReportingScope() { s_reporting = true; }
    ~ReportingScope() { s_reporting = false; }
    ReportingScope(const ReportingScope&) = delete;
    ReportingScope& operator=(const ReportingScope&) = delete;
};

void writeToStderr(const char* text)
{
    std::fputs(text, stderr);
    if (const char* scope = StackTracker::current())
        std::fprintf(stderr, "in %s\r\n", scope);
}

void deliver(const char* text)
{
    // A handler that causes a report itself must not call itself for ever.
    if (s_reporting || !currentHandler())
        return writeToStderr(text);
    const ReportingScope reporting;
    // A copy, because a handler may set another one.
    const MessageHandler handler = currentHandler();
    handler(text);
}

} // namespace

void DebugMessageHelper::criticalMessage(const char* /*file*/, unsigned /*line*/, const char* format, ...)
{
    std::string text;
    std::va_list arguments;
    va_start(arguments, format);
    formatInto(text, format, arguments);
    va_end(arguments);
    deliver(text.c_str());
}

MessageHandler DebugMessageHelper::setHandler(MessageHandler handler)
{
    return std::exchange(currentHandler(), std::move(handler));
}

} // namespace Orv
