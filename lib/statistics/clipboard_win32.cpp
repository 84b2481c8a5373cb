#include "clipboard.h"

#include <windows.h>

#include <cstring>

namespace statistics {

namespace {

/// Hands the block to the clipboard. True if the system owns it from then on.
bool fillClipboard(HGLOBAL block, const std::string& text)
{
    if (!block || !EmptyClipboard())
        return false;
    void* address = GlobalLock(block);
    if (!address)
        return false;
    std::memcpy(address, text.c_str(), text.size() + 1);
    GlobalUnlock(block);
    return SetClipboardData(CF_TEXT, block) != nullptr;
}

} // namespace

void setClipboardText(const std::string& text)
{
    if (!OpenClipboard(nullptr))
        return;
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, text.size() + 1);
    if (!fillClipboard(block, text) && block)
        GlobalFree(block);
    CloseClipboard();
}

} // namespace statistics
