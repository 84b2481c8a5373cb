#pragma once

// What a renderer would be given, byte by byte.

#include <imgui.h>

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

} // namespace test
