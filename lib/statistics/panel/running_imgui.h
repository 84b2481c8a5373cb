#pragma once

namespace statistics {

/// Whether the process runs the release of Dear ImGui that the library was compiled with, laid out alike in
/// memory. Asks the current context, and goes on where ImGui's own check ends the process.
bool isRunningImGuiTheCompiledOne();

} // namespace statistics
