#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "Platform/Updater.h"

namespace corvane {

/// Which release of a feed to offer. Pure; any thread.
namespace UpdateChoice {

/// A build as the feed and the bundle info write it: a whole base-10 number, blanks around it
/// ignored; absent for anything else.
std::optional<std::int64_t> buildOf(std::string_view text);

/// The item with the highest build above `runningBuild`, leaving out `skippedBuild`; absent
/// when there is none. Items whose build is not a number are never offered. Of two items with
/// the same build the first listed wins.
std::optional<UpdateItem> newest(const std::vector<UpdateItem>& items, std::int64_t runningBuild,
                                 std::optional<std::int64_t> skippedBuild);

}  // namespace UpdateChoice

}  // namespace corvane
