#include "CorvaneShared/UpdateOffer.h"

#include "Foundation/NumberParsing.h"
#include "Foundation/TextTrimming.h"

namespace corvane::UpdateOffer {

std::string name(std::string_view version, std::string_view build) {
    std::string text(version);
    if (version != build) {
        text += " (";
        text += build;
        text += ')';
    }
    return text;
}

std::optional<std::int64_t> buildNumber(std::string_view text) {
    const std::size_t open = text.rfind('(');
    const std::size_t close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open) {
        return std::nullopt;
    }
    return parseNumber<std::int64_t>(text::trim(text.substr(open + 1, close - open - 1)));
}

}  // namespace corvane::UpdateOffer
