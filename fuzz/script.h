#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

namespace fuzz {

/// Reads a part of the input. Past its end everything is zero, or it begins again.
class Script {
public:
    enum class End { Zeros, Repeats };

    Script(const std::uint8_t* data, std::size_t size, End end)
        : m_begin(data), m_data(data), m_end(data + size), m_repeats(end == End::Repeats)
    {
    }

    bool isOver() const { return m_data == m_end; }
    unsigned byte()
    {
        if (isOver() && m_repeats)
            m_data = m_begin;
        return isOver() ? 0u : *m_data++;
    }
    unsigned id() { return byte() % 32 == 31 ? byte() * 1000u : byte() % 128; }
    float number()
    {
        static const float odd[] = {0.0f, -1.0f, 1e38f, -1e38f, 1e-30f, 1.0f / 3.0f};
        using Limits = std::numeric_limits<float>;
        static const float last[] = {-Limits::infinity(), Limits::max(), Limits::denorm_min(),
                                     Limits::infinity(), Limits::quiet_NaN()};
        const unsigned choice = byte();
        if (choice > 250)
            return last[choice - 251];
        return choice % 2 ? odd[choice % 6] : static_cast<float>(choice);
    }
    std::string text()
    {
        const unsigned choice = byte();
        if (choice > 240)
            return longText(choice);
        std::string result;
        for (unsigned length = choice % 8; length > 0; --length)
            result += static_cast<char>(byte());
        return result;
    }

private:
    /// A short one many times.
    std::string longText(unsigned choice)
    {
        static const std::string parts[] = {"##",   "###",          "%",    "\n",
                                            "\xc3", "\xf4\x8f\xbf", "a b ", std::string(1, '\0')};
        const std::string& part = parts[choice % 8];
        std::string result;
        for (unsigned times = byte() % 16 == 15 ? 50000 : byte(); times > 0; --times)
            result += part;
        return result;
    }

    const std::uint8_t* m_begin;
    const std::uint8_t* m_data;
    const std::uint8_t* m_end;
    bool m_repeats;
};

} // namespace fuzz
