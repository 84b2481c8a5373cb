#pragma once

// What a renderer would be given, byte by byte.

#include <imgui.h>

#include <algorithm>
#include <string>

namespace test {

/// All of the last frame of the current context: vertices, indices and commands, but for texture ids.
inline std::string drawData()
{
    std::string bytes;
    const auto append = [&](const void* data, int size) {
        bytes.append(static_cast<const char*>(data), static_cast<std::size_t>(size));
    };
    const ImDrawData& data = *ImGui::GetDrawData();
    for (int i = 0; i < data.CmdListsCount; ++i) {
        const ImDrawList& list = *data.CmdLists[i];
        append(list.VtxBuffer.Data, list.VtxBuffer.size_in_bytes());
        append(list.IdxBuffer.Data, list.IdxBuffer.size_in_bytes());
        for (const ImDrawCmd& command : list.CmdBuffer) {
            append(&command.ClipRect, sizeof(command.ClipRect));
            for (const unsigned number : {command.VtxOffset, command.IdxOffset, command.ElemCount})
                append(&number, sizeof(number));
        }
    }
    return bytes;
}

/// Where the second has other bytes than the first; "" for none.
inline std::string firstDifference(const std::string& first, const std::string& second)
{
    const auto [at, other] = std::mismatch(first.begin(), first.end(), second.begin(), second.end());
    if (at == first.end() && other == second.end())
        return {};
    return "byte " + std::to_string(at - first.begin()) + " of " + std::to_string(first.size()) + " and " +
           std::to_string(second.size());
}

} // namespace test
