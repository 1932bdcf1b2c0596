#include "CorvaneShared/LoginItem.h"

#include <cstdlib>

#include "CorvaneShared/BuildInfo.h"

namespace corvane::LoginItem {

AutostartPlace processPlace(const std::optional<std::filesystem::path>& companion,
                            std::span<const std::string> arguments) {
    const auto directory = AutostartEntry::directory();
    return {
        .entryFile = directory ? std::optional(AutostartEntry::file(
                                     *directory, buildinfo::agentBundleIdentifier))
                               : std::nullopt,
        .agent = companion ? AutostartEntry::agentOfCompanion(*companion) : std::nullopt,
        .environment = [](const char* name) -> const char* { return std::getenv(name); },
        .arguments = arguments,
        .places = LoginItemPolicy::processPlaceLookups(),
    };
}

AutostartEntry::Status status(const AutostartPlace& place) {
    if (!place.entryFile) {
        return {};
    }
    // Without a found agent nothing on disk can be this agent's entry.
    return AutostartEntry::status(*place.entryFile, place.agent.value_or(""));
}

std::optional<std::string> set(bool on, const AutostartPlace& place) {
    if (!place.entryFile) {
        return "no configuration folder: set HOME or XDG_CONFIG_HOME";
    }
    if (LoginItemPolicy::isSuppressed(place.environment, place.arguments)) {
        return std::string("login item left alone: ") + LoginItemPolicy::suppressVariable +
               " is set or this is a test run";
    }
    if (!on) {
        return AutostartEntry::remove(*place.entryFile);
    }
    if (!place.agent) {
        return "no corvane-agent found to start at login";
    }
    if (LoginItemPolicy::isTranslocated(*place.agent, place.places)) {
        return place.agent->string() +
               " runs from a temporary or read-only place; move Corvane to a lasting folder "
               "first";
    }
    return AutostartEntry::install(*place.entryFile, *place.agent);
}

}  // namespace corvane::LoginItem
