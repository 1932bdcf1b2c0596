#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// The session-bus name the settings window of `suite` holds while it is open, so that a second
/// start finds the first: `<appIdentifier>.Settings`, and for any other suite than
/// `defaultSuite` a hash of the suite after it, since a suite name may hold characters a bus
/// name cannot. Pure; any thread.
std::string settingsServiceName(std::string_view appIdentifier, std::string_view suite,
                                std::string_view defaultSuite);

}  // namespace corvane
