#pragma once

#include <nlohmann/json.hpp>

namespace corvane {

/// Properties by name, with values as the source reports them (numbers, booleans, or anything
/// else, which readers skip): the form in which GPU statistics and battery properties arrive.
using StatisticsDictionary = nlohmann::json;

}  // namespace corvane
