#include "host/drawing/DrawingStyle.h"

#include <cstdlib>
#include <cstring>

namespace Torvik::DXF {

namespace {

/** A key and its value between two commas; the value without its quotes. */
struct Option {
    std::string key;
    std::string value;
};

const char* readValue(const char* at, std::string& value)
{
    if (*at != '"') {
        const char* const end = at + std::strcspn(at, ",)");
        value.assign(at, end);
        return end;
    }
    for (++at; *at != '\0' && *at != '"'; ++at) {
        if (*at == '\\' && (at[1] == '"' || at[1] == '\\'))
            ++at;
        value += *at;
    }
    return *at == '"' ? at + 1 : at;
}

const char* readOption(const char* at, Option& option)
{
    option.value.clear();
    const char* const colon = at + std::strcspn(at, ":,)");
    option.key.assign(at, colon);
    return *colon == ':' ? readValue(colon + 1, option.value) : colon;
}

unsigned hexByte(const std::string& digits, std::size_t at)
{
    return unsigned(std::strtoul(digits.substr(at, 2).c_str(), nullptr, 16));
}

void takeColour(DrawingStyle& style, const std::string& value)
{
    if (value.size() < 7 || value[0] != '#')
        return;
    style.colour = colourOf(hexByte(value, 1), hexByte(value, 3), hexByte(value, 5));
    style.hidden = value.size() >= 9 && hexByte(value, 7) == 0;
}

void take(DrawingStyle& style, const Option& option)
{
    const auto number = [&] { return std::strtod(option.value.c_str(), nullptr); };
    const std::string& key = option.key;
    if (key == (style.tool == DrawingStyle::Brush ? "fc" : "c"))
        takeColour(style, option.value);
    if (style.tool != DrawingStyle::Label)
        return;
    if (key == "t")
        style.text = option.value;
    else if (key == "s")
        style.height = number();
    else if (key == "a")
        style.angleDeg = number();
    else if (key == "w")
        style.width = number();
    else if (key == "dx")
        style.dx = number();
    else if (key == "dy")
        style.dy = number();
    else if (key == "p")
        style.anchor = std::atoi(option.value.c_str());
}

} // namespace

DrawingStyle parseStyle(const char* text)
{
    DrawingStyle style;
    if (!text)
        return style;
    const char* at = std::strchr(text, '(');
    if (!at)
        return style;
    const std::string tool(text, at);
    style.tool = tool == "PEN"     ? DrawingStyle::Pen
                 : tool == "BRUSH" ? DrawingStyle::Brush
                 : tool == "LABEL" ? DrawingStyle::Label
                                   : DrawingStyle::None;
    Option option;
    do {
        at = readOption(at + 1, option);
        take(style, option);
    } while (*at == ',');
    return style;
}

} // namespace Torvik::DXF
