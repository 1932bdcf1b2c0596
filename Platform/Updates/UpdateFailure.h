#pragma once

#include <string>

namespace corvane {

/// Why an update was refused, in one line for the log and the user.
struct UpdateFailure {
    std::string description;
};

}  // namespace corvane
