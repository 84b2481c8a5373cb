#include "text_field.h"

#include <imgui.h>
#include <imgui_internal.h>

#include <cstddef>
#include <type_traits>
#include <vector>

namespace statistics::widgets {

std::string editable(const std::string& text)
{
    constexpr std::size_t kLongest = 4; // bytes of a character
    std::vector<ImWchar> characters(text.size() + 1);
    const int count = ImTextStrFromUtf8(characters.data(), static_cast<int>(characters.size()), text.data(),
                                        text.data() + text.size());
    std::string result(static_cast<std::size_t>(count) * kLongest + 1, '\0');
    const int length = ImTextStrToUtf8(result.data(), static_cast<int>(result.size()), characters.data(),
                                       characters.data() + count);
    result.resize(static_cast<std::size_t>(length));
    return result;
}

namespace {

auto& clipboardReader()
{
#if IMGUI_VERSION_NUM >= 19110
    return ImGui::GetPlatformIO().Platform_GetClipboardTextFn;
#else
    return ImGui::GetIO().GetClipboardTextFn;
#endif
}

/// ImGui reads on behind the end of a clipboard that ends within a character: while it lives, it gets
/// another.
class [[nodiscard]] PasteScope {
public:
    PasteScope() : m_before(clipboardReader())
    {
        s_host = m_before;
        if (m_before)
            clipboardReader() = read;
    }
    ~PasteScope() { clipboardReader() = m_before; }
    PasteScope(const PasteScope&) = delete;
    PasteScope& operator=(const PasteScope&) = delete;

private:
    using Reader = std::decay_t<decltype(clipboardReader())>;

    template<typename Data>
    static const char* read(Data* data)
    {
        static std::string pasted; // until the next one, as ImGui's own
        const char* copied = s_host(data);
        pasted = editable(copied ? copied : "");
        return pasted.c_str();
    }

    static inline Reader s_host = nullptr;
    const Reader m_before;
};

int resizeText(ImGuiInputTextCallbackData* data)
{
    if (data->EventFlag != ImGuiInputTextFlags_CallbackResize)
        return 0;
    std::string& text = *static_cast<std::string*>(data->UserData);
    text.resize(static_cast<std::size_t>(data->BufTextLen));
    data->Buf = text.data();
    return 0;
}

/// Earlier releases undo what the user did before leaving the field in whatever text stands there now, and
/// write outside of it where that is shorter.
void forgetLeftField([[maybe_unused]] const char* id)
{
#if IMGUI_VERSION_NUM < 18800
    const ImGuiID field = ImGui::GetID(id);
    ImGuiInputTextState* state = ImGui::GetInputTextState(field);
    if (state && ImGui::GetActiveID() != field)
        state->ID = 0;
#endif
}

} // namespace

bool textField(const char* id, const char* hint, std::string& text)
{
    const PasteScope paste;
    forgetLeftField(id);
    return ImGui::InputTextWithHint(id, hint, text.data(), text.capacity() + 1,
                                    ImGuiInputTextFlags_CallbackResize, resizeText, &text);
}

void leaveTextField(const char* id)
{
    if (ImGui::GetActiveID() == ImGui::GetID(id))
        ImGui::ClearActiveID();
}

} // namespace statistics::widgets
