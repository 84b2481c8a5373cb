#include "debug_message.h"

#include "format.h"
#include "stack_tracker.h"

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>

namespace Orv {

namespace {

using SharedHandler = std::shared_ptr<MessageHandler>;

/// Both live on the heap for the rest of the process: reports may still come while statics are destroyed.
/// Shared with the report that runs it, because a handler may set another one. Null without a handler.
SharedHandler& currentHandler()
{
    static auto& handler = *new SharedHandler;
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
    const SharedHandler handler = currentHandler();
    (*handler)(text);
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
    SharedHandler next = handler ? std::make_shared<MessageHandler>(std::move(handler)) : nullptr;
    const SharedHandler before = std::exchange(currentHandler(), std::move(next));
    if (!before)
        return {};
    if (s_reporting) // it may be the one that runs
        return [before](const char* text) { (*before)(text); };
    return std::move(*before);
}

} // namespace Orv
