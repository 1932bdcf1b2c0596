#include "CorvaneShared/MeterContent.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace corvane {

namespace {

// Bars and wave levels go up to 24 and bar flags add 32, so one character of this alphabet
// holds a level with its flag and the signature stays plain ASCII.
constexpr std::string_view levelDigits =
    "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ-_";
constexpr int fastFlag = 32;

std::string_view graphName(MeterGraph graph) {
    switch (graph) {
        case MeterGraph::none: return "none";
        case MeterGraph::bars: return "bars";
        case MeterGraph::wave: return "wave";
        case MeterGraph::compact: return "compact";
        case MeterGraph::fill: return "fill";
    }
    return {};
}

void appendNumber(std::string& out, double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
    out += ',';
}

void appendInteger(std::string& out, int value) {
    char buffer[16];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

// Colours as 8-bit sRGB components: the finest step a screen shows.
void appendColor(std::string& out, const SRGBColor& color) {
    constexpr std::string_view hex = "0123456789abcdef";
    for (double component : {color.red, color.green, color.blue, color.alpha}) {
        const auto byte = static_cast<int>(std::lround(std::clamp(component, 0.0, 1.0) * 255));
        out += hex[static_cast<std::size_t>(byte >> 4)];
        out += hex[static_cast<std::size_t>(byte & 15)];
    }
    out += '|';
}

void appendColumns(std::string& out, const MeterColumns& parts) {
    for (double value :
         {parts.labelX, parts.labelWidth, parts.symbolX, parts.symbolWidth, parts.graphX,
          parts.graphWidth, parts.textX, parts.textWidth, parts.width}) {
        appendNumber(out, value);
    }
    out += '|';
}

bool isMultiLevel(MeterGraph graph) {
    return graph == MeterGraph::bars || graph == MeterGraph::wave;
}

void appendLevels(std::string& out, const MeterContent& content) {
    if (!isMultiLevel(content.graph)) {
        for (std::uint8_t level : content.levels) {
            appendInteger(out, level);
            out += ',';
        }
        return;
    }
    for (std::size_t i = 0; i < content.levels.size(); ++i) {
        int digit = std::min<int>(content.levels[i], fastFlag - 1);
        if (i < content.fastCores.size() && content.fastCores[i]) {
            digit += fastFlag;
        }
        out += levelDigits[static_cast<std::size_t>(digit)];
    }
}

}  // namespace

int fullLevel(MeterGraph graph) {
    using namespace MeterLayout;
    switch (graph) {
        case MeterGraph::none: return 0;
        case MeterGraph::bars:
        case MeterGraph::wave:
            return static_cast<int>((frameHeight - 2 * graphInset) * MeterContent::stepsPerPoint);
        case MeterGraph::compact:
            return static_cast<int>((waveCompactWidth - 2 * graphInset) *
                                    MeterContent::stepsPerPoint);
        case MeterGraph::fill:
            return static_cast<int>((frameHeight - 2 * fillBarInset) * MeterContent::stepsPerPoint);
    }
    return 0;
}

std::uint8_t graphLevel(MeterGraph graph, double fraction) {
    // Written so that NaN counts as empty.
    const double clamped = fraction > 0 ? std::min(fraction, 1.0) : 0.0;
    return static_cast<std::uint8_t>(std::lround(clamped * fullLevel(graph)));
}

std::string drawSignature(const MeterContent& content) {
    std::string out;
    out.reserve(112 + content.levels.size() + content.text.size() + content.textTemplate.size());
    out += sectionKey(content.section);
    out += '|';
    out += graphName(content.graph);
    out += '|';
    out += content.palette == MeterPalette::lightOnDark ? "dark|" : "light|";
    out += rawValue(content.shape);
    out += '|';
    out += content.letters;
    out += '|';
    out += content.symbol;
    out += '|';
    appendColumns(out, content.columns);
    appendColor(out, content.accent);
    if (content.graph == MeterGraph::bars) {
        appendColor(out, content.fastAccent);
    }
    appendLevels(out, content);
    out += '|';
    out += content.text;
    out += '|';
    out += content.textTemplate;
    return out;
}

}  // namespace corvane
