#include "screen_report.h"

#include "offscreen/frame_reader.h"
#include "save_file.h"

#include <imgui.h>

#include <cmath>

namespace demo {

void ScreenReport::tell(float dt)
{
    if (m_file.empty() || !m_period.due(dt))
        return;
    std::string report;
    for (const offscreen::Text& text : offscreen::readFrame(*ImGui::GetDrawData()).texts) {
        for (const float place : {text.center().x, text.center().y})
            report += std::to_string(std::lround(place)) + "\t";
        report += text.window + "\t" + text.text + "\n";
    }
    replaceText(m_file, report);
}

} // namespace demo
