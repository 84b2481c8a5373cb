#include "clipboard.h"

#include <imgui.h>

namespace statistics {

void setClipboardText(const std::string& text)
{
    // The host's platform backend connects ImGui to the system's clipboard.
    if (ImGui::GetCurrentContext())
        ImGui::SetClipboardText(text.c_str());
}

} // namespace statistics
