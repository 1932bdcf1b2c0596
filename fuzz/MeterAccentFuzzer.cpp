// Accent strings from the settings file: named accents and "custom:srgb:R,G,B".

#include <cmath>

#include "CorvaneShared/MeterAccent.h"
#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    using fuzz::require;
    const auto accent = MeterAccent::fromRawValue(fuzz::textOf(data, size));
    if (!accent) {
        return 0;
    }
    const auto color = accent->color();
    for (const double component : {color.red, color.green, color.blue, color.alpha}) {
        require(std::isfinite(component) && component >= 0.0 && component <= 1.0,
                "accent: a colour component outside 0...1");
    }
    const auto raw = accent->rawValue();
    const auto reread = MeterAccent::fromRawValue(raw);
    require(reread.has_value(), "accent: its raw value does not parse");
    require(*reread == *accent, "accent: its raw value reads back as another accent");
    require(reread->rawValue() == raw, "accent: the raw value is not stable");
    return 0;
}
