#include "screen_report.h"

#include "files.h"
#include "support/frame_reader.h"

#include <imgui.h>

namespace demo {

void ScreenReport::tell(float dt)
{
    if (m_file.empty() || !m_period.due(dt))
        return;
    std::string report;
    for (const test::Text& text : test::readFrame(*ImGui::GetDrawData()).texts) {
        for (const float edge : {text.min.x, text.min.y, text.max.x, text.max.y})
            report += std::to_string(static_cast<int>(edge)) + "\t";
        report += text.window + "\t" + text.text + "\n";
    }
    replaceText(m_file, report);
}

} // namespace demo
