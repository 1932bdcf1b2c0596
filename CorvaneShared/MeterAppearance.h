#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "CorvaneShared/TextLookup.h"

namespace corvane {

/// How a meter's label column is drawn. Raw values "icons", "letters".
enum class MeterLabelStyle { icons, letters };
/// The outline of a meter. Raw values "pill", "square".
enum class MeterShape { pill, square };
/// How the CPU meter draws its graph. Raw values "bars", "wave", "compact".
enum class MeterStyle { bars, wave, compact };

/// Exact, case-sensitive matches of the raw values; absent otherwise.
std::optional<MeterLabelStyle> meterLabelStyleFromRaw(std::string_view raw);
std::optional<MeterShape> meterShapeFromRaw(std::string_view raw);
std::optional<MeterStyle> meterStyleFromRaw(std::string_view raw);

/// The raw settings value, which is also the case's identifier.
std::string_view rawValue(MeterLabelStyle style);
std::string_view rawValue(MeterShape shape);
std::string_view rawValue(MeterStyle style);

/// The name shown in the settings screens, translated through `translate`.
std::string title(MeterLabelStyle style, const TextLookup& translate);
std::string title(MeterShape shape, const TextLookup& translate);
std::string title(MeterStyle style, const TextLookup& translate);

/// The corner radius of the meter's outline, in points: `square` for a square meter, else
/// `pill`.
double frameRadius(MeterShape shape, double square, double pill);
/// The corner radius of a fill of `width` × `height` points inside the outline: a pill's fill
/// is fully rounded, a square meter's keeps small corners; never negative.
double fillRadius(MeterShape shape, double width, double height);

}  // namespace corvane
