#include "CorvaneShared/LoginItemPolicy.h"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "CorvaneShared/AppLinks.h"

namespace corvane::LoginItemPolicy {

namespace {

namespace fs = std::filesystem;

// Component-wise, so that /tmpfoo is not inside /tmp.
bool isWithin(const fs::path& path, const fs::path& directory) {
    const fs::path normalDirectory = directory.lexically_normal();
    auto directoryEnd = normalDirectory.end();
    // "/tmp/" ends in an empty component that no path inside it shares.
    if (directoryEnd != normalDirectory.begin() && std::prev(directoryEnd)->empty()) {
        --directoryEnd;
    }
    const fs::path normalPath = path.lexically_normal();
    return std::mismatch(normalDirectory.begin(), directoryEnd, normalPath.begin(),
                         normalPath.end())
               .first == directoryEnd;
}

// A variable naming a temporary folder counts only when it is absolute and not the root, which
// would make every place temporary.
std::optional<fs::path> temporaryFolder(const SharedSettings::EnvironmentLookup& environment,
                                        const char* name) {
    const char* value = environment ? environment(name) : nullptr;
    if (value == nullptr || value[0] != '/') {
        return std::nullopt;
    }
    fs::path folder = fs::path(value).lexically_normal();
    if (folder == folder.root_path()) {
        return std::nullopt;
    }
    return folder;
}

}  // namespace

bool isSuppressed(const SharedSettings::EnvironmentLookup& environment,
                  std::span<const std::string> arguments) {
    if (std::find(arguments.begin(), arguments.end(), suppressArgument) != arguments.end()) {
        return true;
    }
    if (!environment) {
        return false;
    }
    const char* suppress = environment(suppressVariable);
    const char* uiTesting = environment("CORVANE_UI_TESTING");
    return (suppress != nullptr && !std::string_view(suppress).empty() &&
            std::string_view(suppress) != "0") ||
           (uiTesting != nullptr && std::string_view(uiTesting) == "1") ||
           environment(AppLinks::unitTestVariable) != nullptr;
}

bool isTranslocated(const fs::path& program, const PlaceLookups& lookups) {
    if (!program.is_absolute()) {
        return true;
    }
    for (const char* fixed : {"/tmp", "/var/tmp", "/dev/shm"}) {
        if (isWithin(program, fixed)) {
            return true;
        }
    }
    for (const char* variable : {"TMPDIR", "XDG_RUNTIME_DIR"}) {
        if (auto folder = temporaryFolder(lookups.environment, variable);
            folder && isWithin(program, *folder)) {
            return true;
        }
    }
    if (!lookups.mountOf) {
        return false;
    }
    const std::optional<MountFacts> mount = lookups.mountOf(program);
    if (!mount || !mount->readOnly) {
        return false;
    }
    for (const char* system : {"/", "/usr"}) {
        if (auto systemMount = lookups.mountOf(system);
            systemMount && systemMount->device == mount->device) {
            return false;
        }
    }
    return true;
}

PlaceLookups processPlaceLookups() {
    return {
        .environment = [](const char* name) -> const char* { return std::getenv(name); },
        .mountOf = [](const fs::path& path) -> std::optional<MountFacts> {
            struct stat status {};
            struct statvfs volume {};
            if (::stat(path.c_str(), &status) != 0 || ::statvfs(path.c_str(), &volume) != 0) {
                return std::nullopt;
            }
            return MountFacts{.device = status.st_dev,
                              .readOnly = (volume.f_flag & ST_RDONLY) != 0};
        },
    };
}

}  // namespace corvane::LoginItemPolicy
