#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The name of an offered update as the companion shows it ("2.1 (57)"), and the build number
/// read back out of such a name. Pure; any thread.
namespace corvane::UpdateOffer {

/// `version` alone when it equals `build`, else "version (build)".
std::string name(std::string_view version, std::string_view build);

/// The integer between the last '(' and the last ')' of `text`, blanks around it ignored;
/// absent when either bracket is missing, they are out of order, or the inside is not a whole
/// base-10 number.
std::optional<std::int64_t> buildNumber(std::string_view text);

}  // namespace corvane::UpdateOffer
