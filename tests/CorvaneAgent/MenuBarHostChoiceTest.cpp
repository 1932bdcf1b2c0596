#include "CorvaneAgent/MenuBarHostChoice.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(MenuBarHostChoice, FollowsTheRequestAndWhatTheSessionOffers) {
    using enum MenuBarHostRequest;
    struct Row {
        const char* name;
        MenuBarHostRequest request;
        MenuBarEnvironment environment;
        std::optional<MenuBarHostKind> expected;
        /// What a refusal must name.
        const char* mentions = "";
    };
    const Row rows[] = {
        {"auto with a watcher on X11", automatic, {true, true, true}, MenuBarHostKind::tray},
        {"auto with a watcher under Wayland",
         automatic,
         {true, true, false},
         MenuBarHostKind::tray},
        {"auto without a watcher on X11", automatic, {true, false, true}, MenuBarHostKind::strip},
        {"auto without a bus on X11", automatic, {false, false, true}, MenuBarHostKind::strip},
        {"auto with nothing", automatic, {true, false, false}, std::nullopt, "DISPLAY"},
        {"auto without a bus or display",
         automatic,
         {false, false, false},
         std::nullopt,
         "no StatusNotifierWatcher"},
        {"tray before its watcher starts", tray, {true, false, false}, MenuBarHostKind::tray},
        {"tray without a bus", tray, {false, false, true}, std::nullopt, "session bus"},
        {"strip beside a watcher", strip, {true, true, true}, MenuBarHostKind::strip},
        {"strip without X11", strip, {true, true, false}, std::nullopt, "X11"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto chosen = chooseMenuBarHost(row.request, row.environment);
        if (row.expected) {
            ASSERT_TRUE(std::holds_alternative<MenuBarHostKind>(chosen));
            EXPECT_EQ(std::get<MenuBarHostKind>(chosen), *row.expected);
        } else {
            ASSERT_TRUE(std::holds_alternative<MenuBarHostRefusal>(chosen));
            const std::string& message = std::get<MenuBarHostRefusal>(chosen).message;
            EXPECT_NE(message.find(row.mentions), std::string::npos) << message;
            EXPECT_EQ(message.find('\n'), std::string::npos);
        }
    }
}

}  // namespace
}  // namespace corvane
