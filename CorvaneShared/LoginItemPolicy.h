#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "CorvaneShared/SharedSettings.h"

/// When the companion leaves the login item alone. The agent itself never registers one.
namespace corvane::LoginItemPolicy {

/// Set to anything but "" or "0", it keeps the login item as it is (test runs, packagers whose
/// session starts the agent another way).
inline constexpr const char* suppressVariable = "CORVANE_NO_LOGIN_ITEM";
/// The same as a command-line argument of the companion.
inline constexpr std::string_view suppressArgument = "--no-login-item";

/// Whether the login item must not be touched: `suppressVariable` set as above, a user-interface
/// test run (CORVANE_UI_TESTING is "1"), a unit-test host, or `suppressArgument` among
/// `arguments`.
bool isSuppressed(const SharedSettings::EnvironmentLookup& environment,
                  std::span<const std::string> arguments);

/// What the file system says about the mount holding a path.
struct MountFacts {
    dev_t device = 0;
    bool readOnly = false;
};

/// The lookups isTranslocated makes, so its rules run without touching the disk.
struct PlaceLookups {
    /// TMPDIR and XDG_RUNTIME_DIR.
    SharedSettings::EnvironmentLookup environment;
    /// The mount holding a path; absent when the path cannot be examined.
    std::function<std::optional<MountFacts>(const std::filesystem::path&)> mountOf;
};

/// Whether `program` runs from a place a login item must not point at, because the program
/// will not be there at the next login: a relative path; a path inside /tmp, /var/tmp,
/// /dev/shm, $TMPDIR or $XDG_RUNTIME_DIR (cleared at reboot or logout, and where unpacked
/// archives and mounted images land); or a read-only mount other than the one holding / or
/// /usr (a mounted disk image or medium, gone once ejected, while an immutable system keeps its
/// installed programs on a read-only /usr). The path is taken as given, links already resolved.
bool isTranslocated(const std::filesystem::path& program, const PlaceLookups& lookups);

/// This process's environment and statvfs(3)/stat(2).
PlaceLookups processPlaceLookups();

}  // namespace corvane::LoginItemPolicy
