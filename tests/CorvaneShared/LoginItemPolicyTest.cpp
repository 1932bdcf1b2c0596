#include "CorvaneShared/LoginItemPolicy.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace corvane {
namespace {

SharedSettings::EnvironmentLookup environmentOf(const std::map<std::string, std::string>& values) {
    return [values](const char* name) -> const char* {
        const auto found = values.find(name);
        return found == values.end() ? nullptr : found->second.c_str();
    };
}

TEST(LoginItemPolicy, SuppressedByTheVariableTestRunsAndTheArgument) {
    struct Row {
        std::map<std::string, std::string> environment;
        std::vector<std::string> arguments;
        bool suppressed;
    };
    const Row rows[] = {
        {{}, {}, false},
        {{{"CORVANE_NO_LOGIN_ITEM", "1"}}, {}, true},
        {{{"CORVANE_NO_LOGIN_ITEM", "yes"}}, {}, true},
        {{{"CORVANE_NO_LOGIN_ITEM", "0"}}, {}, false},
        {{{"CORVANE_NO_LOGIN_ITEM", ""}}, {}, false},
        {{{"CORVANE_UI_TESTING", "1"}}, {}, true},
        {{{"CORVANE_UI_TESTING", "0"}}, {}, false},
        {{{"XCTestConfigurationFilePath", ""}}, {}, true},
        {{}, {"--no-login-item"}, true},
        {{}, {"--no-login-items"}, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.environment) + " " +
                     testing::PrintToString(row.arguments));
        EXPECT_EQ(LoginItemPolicy::isSuppressed(environmentOf(row.environment), row.arguments),
                  row.suppressed);
    }
}

TEST(LoginItemPolicy, TranslocatedInTemporaryPlacesAndRemovableReadOnlyMounts) {
    // Devices: 1 holds / and /usr (read-only on an immutable system), 2 is a writable /home,
    // 3 a read-only medium under /media.
    const LoginItemPolicy::PlaceLookups lookups{
        .environment =
            environmentOf({{"TMPDIR", "/home/me/scratch/"}, {"XDG_RUNTIME_DIR", "/run/user/1000"}}),
        .mountOf =
            [](const std::filesystem::path& path) -> std::optional<LoginItemPolicy::MountFacts> {
            const std::string text = path.string();
            if (text.starts_with("/media/")) {
                return LoginItemPolicy::MountFacts{.device = 3, .readOnly = true};
            }
            if (text.starts_with("/home/")) {
                return LoginItemPolicy::MountFacts{.device = 2, .readOnly = false};
            }
            if (text.starts_with("/gone/")) {
                return std::nullopt;
            }
            return LoginItemPolicy::MountFacts{.device = 1, .readOnly = true};
        },
    };
    struct Row {
        const char* path;
        bool translocated;
    };
    const Row rows[] = {
        {"/usr/bin/corvane-agent", false},
        {"/home/me/Apps/Corvane.app/bin/corvane-agent", false},
        {"/tmp/Corvane.app/bin/corvane-agent", true},
        {"/tmp/../opt/corvane-agent", false},
        {"/tmpfoo/corvane-agent", false},
        {"/var/tmp/x/corvane-agent", true},
        {"/dev/shm/corvane-agent", true},
        {"/home/me/scratch/corvane-agent", true},
        {"/home/me/scratchpad/corvane-agent", false},
        {"/run/user/1000/.mount_abc/corvane-agent", true},
        {"/media/me/CORVANE/corvane-agent", true},
        {"/gone/corvane-agent", false},
        {"corvane-agent", true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.path);
        EXPECT_EQ(LoginItemPolicy::isTranslocated(row.path, lookups), row.translocated);
    }
}

TEST(LoginItemPolicy, ARootTemporaryFolderDoesNotMakeEveryPlaceTemporary) {
    const LoginItemPolicy::PlaceLookups lookups{.environment = environmentOf({{"TMPDIR", "/"}}),
                                                .mountOf = nullptr};
    EXPECT_FALSE(LoginItemPolicy::isTranslocated("/usr/bin/corvane-agent", lookups));
}

}  // namespace
}  // namespace corvane
