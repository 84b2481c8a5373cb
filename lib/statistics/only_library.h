#pragma once

namespace statistics {

/// True unless the process holds another library of this kind, as one that links `statistics::statistics` and
/// `statistics::headless` by mistake: then calls end in whichever was loaded first.
///
/// Known of shared libraries that see each other's symbols, and on Windows of those that bear their own
/// names.
bool isOnlyLibrary();

} // namespace statistics
