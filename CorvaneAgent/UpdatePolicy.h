#pragma once

#include <map>
#include <string>
#include <string_view>

/// Whether the updater runs at all in this process. Pure; any thread.
namespace corvane::UpdatePolicy {

/// Turns the updater off for one run when set to exactly "1".
inline constexpr const char* disableVariable = "CORVANE_DISABLE_UPDATER";
/// Marks a user-interface test run when set to exactly "1".
inline constexpr const char* uiTestingVariable = "CORVANE_UI_TESTING";
/// Marks a unit-test host by its mere presence.
inline constexpr const char* unitTestVariable = "XCTestConfigurationFilePath";

/// True when the environment turns updates off (CORVANE_DISABLE_UPDATER or CORVANE_UI_TESTING
/// exactly "1", or XCTestConfigurationFilePath present with any value), else exactly when
/// `publicKey` is empty: an update that cannot be verified must never be installed.
bool isDisabled(const std::map<std::string, std::string>& environment, std::string_view publicKey);

}  // namespace corvane::UpdatePolicy
