#pragma once

#include <statistics/export.h>

#include <functional>

namespace statistics {

/// Receives the text of one report. A report is a programming error of the host, noticed by the library (an
/// id that doesn't exist, a call that isn't allowed now): the failed expression, a message if there is one,
/// and the place in the library, as lines. The library goes on behind it in a defined way.
using ReportHandler = std::function<void(const char* text)>;

/// Sets the handler for the whole process and gives back the one before. An empty handler restores the
/// default, which writes the text to stderr. Works with and without an instance. A handler runs on the thread
/// that drives the library, inside the call that noticed the error; what it throws leaves through that call.
/// A report made while the handler runs goes to stderr. It is called in place and keeps its state from report
/// to report. It must not call the library but to set another handler: the call that reports may be halfway.
STATISTICS_EXPORT ReportHandler setReportHandler(ReportHandler handler);

} // namespace statistics
