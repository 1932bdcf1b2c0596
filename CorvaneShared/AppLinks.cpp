#include "CorvaneShared/AppLinks.h"

#include <cstdlib>
#include <utility>

#include "CorvaneShared/BuildInfo.h"
#include "CorvaneShared/BundleDirectory.h"
#include "CorvaneShared/BundleEmbedding.h"
#include "CorvaneShared/DesktopEntry.h"

namespace corvane {

namespace {

namespace fs = std::filesystem;

/// The companion program built or installed with the agent of `bundle`: at the top of a build
/// tree, or in `bin/` of an install prefix.
std::optional<fs::path> companionBeside(const fs::path& bundle) {
    for (const fs::path& candidate :
         {bundle / AppLinks::companionProgram, bundle / "bin" / AppLinks::companionProgram}) {
        std::error_code error;
        if (fs::is_regular_file(candidate, error)) {
            return candidate;
        }
    }
    return std::nullopt;
}

}  // namespace

AppLinks::AppLinks(Sources sources)
    : sources(std::move(sources)),
      unitTestHost(this->sources.environment &&
                   this->sources.environment(unitTestVariable) != nullptr) {}

std::optional<fs::path> AppLinks::containingAppURL() const {
    if (sources.agentBundle) {
        std::optional<fs::path> candidate = embeddingAppBundle(*sources.agentBundle);
        const std::optional<BundleInfo> info =
            candidate ? BundleDirectory::readInfo(*candidate) : std::nullopt;
        if (info && info->identifier == sources.appBundleIdentifier) {
            return candidate;
        }
    }
    if (sources.environment) {
        if (auto entry = DesktopEntries::find(sources.appBundleIdentifier, sources.environment)) {
            return entry;
        }
    }
    if (sources.agentBundle) {
        return companionBeside(*sources.agentBundle);
    }
    return std::nullopt;
}

std::map<std::string, std::string> AppLinks::testEnvironment() const {
    std::map<std::string, std::string> variables;
    if (!sources.environment) {
        return variables;
    }
    for (const char* name :
         {"CORVANE_SETTINGS_SUITE", "CORVANE_UI_TESTING", "CORVANE_DISABLE_UPDATER",
          "CORVANE_NO_LOGIN_ITEM", "CORVANE_LANGUAGE"}) {
        if (const char* value = sources.environment(name)) {
            variables.emplace(name, value);
        }
    }
    return variables;
}

std::optional<DetachedLaunch> AppLinks::launchOf(const fs::path& app) const {
    if (app.extension() == ".desktop") {
        const std::optional<DesktopEntry> entry = DesktopEntries::read(app);
        return entry ? DesktopEntries::launch(*entry) : std::nullopt;
    }
    std::error_code error;
    if (fs::is_regular_file(app, error)) {
        return DetachedLaunch{.program = app.string()};
    }
    const std::optional<BundleInfo> info = BundleDirectory::readInfo(app);
    if (!info || !info->executable || info->executable->empty()) {
        return std::nullopt;
    }
    return DetachedLaunch{.program = (app / *info->executable).string()};
}

void AppLinks::openSettingsApp() const {
    if (sources.post) {
        sources.post(SharedSettings::Signal::openSettings);
    }
    const std::optional<fs::path> app = containingAppURL();
    if (!app || !sources.launch) {
        return;
    }
    std::optional<DetachedLaunch> request = launchOf(*app);
    if (!request) {
        return;
    }
    request->environment = testEnvironment();
    sources.launch(*request);
}

AppLinks::Sources processLinkSources(std::optional<fs::path> agentBundle,
                                     std::function<void(SharedSettings::Signal)> post,
                                     ProcessLauncher launch) {
    return {
        .environment = [](const char* name) -> const char* { return std::getenv(name); },
        .agentBundle = std::move(agentBundle),
        .appBundleIdentifier = std::string(buildinfo::appBundleIdentifier),
        .post = std::move(post),
        .launch = std::move(launch),
    };
}

}  // namespace corvane
