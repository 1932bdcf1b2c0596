#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "CorvaneShared/TextLookup.h"

namespace corvane {

/// A colour as sRGB components in 0...1; the UI layer turns it into its own colour type.
struct SRGBColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    friend bool operator==(const SRGBColor&, const SRGBColor&) = default;
};

/// The eight accents with a name, in the order the settings screens list them.
enum class NamedAccent { signal, blue, indigo, purple, teal, pine, amber, graphite };

inline constexpr std::array<NamedAccent, 8> allNamedAccents = {
    NamedAccent::signal, NamedAccent::blue, NamedAccent::indigo, NamedAccent::purple,
    NamedAccent::teal,   NamedAccent::pine, NamedAccent::amber,  NamedAccent::graphite};

/// The colour of a meter's fill: a named accent, or a custom sRGB colour stored as
/// "custom:srgb:R,G,B" with four decimals per component.
class MeterAccent {
public:
    constexpr MeterAccent(NamedAccent name) : accent(name) {}

    /// A custom accent from a colour's components, each clamped to 0...1 and quantised to the
    /// four decimals of the raw value, so that storing and reading it back gives it unchanged.
    static MeterAccent custom(double red, double green, double blue);
    /// The accent a settings value names, or absent: a name matched exactly, or "custom:srgb:"
    /// followed by exactly three finite numbers, each clamped to 0...1 and quantised as `custom`
    /// does.
    [[nodiscard]] static std::optional<MeterAccent> fromRawValue(std::string_view raw);

    /// The settings value: the name, or "custom:srgb:%.4f,%.4f,%.4f" with a point as the
    /// decimal mark whatever the process locale.
    std::string rawValue() const;
    /// The accent's name; absent for a custom accent.
    std::optional<NamedAccent> name() const;
    bool isCustom() const { return std::holds_alternative<SRGBColor>(accent); }
    /// The fill colour, alpha 1.
    SRGBColor color() const;
    /// The name shown in the settings screens ("Custom" for a custom colour), translated.
    std::string title(const TextLookup& translate) const;

    friend bool operator==(const MeterAccent&, const MeterAccent&) = default;

private:
    explicit MeterAccent(SRGBColor color) : accent(color) {}

    std::variant<NamedAccent, SRGBColor> accent;
};

/// The four places a meter accent is chosen for.
enum class MeterAccentSlot { cpu, cpuFastCore, memory, storage };

inline constexpr std::array<MeterAccentSlot, 4> allMeterAccentSlots = {
    MeterAccentSlot::cpu, MeterAccentSlot::cpuFastCore, MeterAccentSlot::memory,
    MeterAccentSlot::storage};

/// The slot's settings key: "cpuAccent", "cpuFastCoreAccent", "memoryAccent", "storageAccent".
std::string_view accentKey(MeterAccentSlot slot);

}  // namespace corvane
