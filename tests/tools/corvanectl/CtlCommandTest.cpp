#include <gtest/gtest.h>

#include <vector>

#include "tools/corvanectl/CtlCommand.h"

namespace corvane {
namespace {

using Verb = CtlCommand::Verb;
using SharedSettings::Signal;

TEST(CtlCommand, ParsesEveryCommandAndTypesValues) {
    struct Row {
        std::vector<std::string_view> arguments;
        Verb verb;
        const char* key;
        SettingValue value;
        std::vector<Signal> signalCases = {};
        CtlCommand::AutostartAction autostart = CtlCommand::AutostartAction::status;
    };
    const Row rows[] = {
        {{"get", "refreshInterval"}, Verb::get, "refreshInterval", nullptr},
        {{"set", "showCPUItem", "false"}, Verb::set, "showCPUItem", false},
        {{"set", "refreshInterval", "-2.5"}, Verb::set, "refreshInterval", -2.5},
        {{"set", "ratio", "inf"}, Verb::set, "ratio", "inf"},
        {{"set", "--string", "language", "true"}, Verb::set, "language", "true"},
        {{"set", "flag", "YES", "--bool"}, Verb::set, "flag", true},
        {{"set", "ratio", "1e3", "--double"}, Verb::set, "ratio", 1000.0},
        {{"delete", "language"}, Verb::remove, "language", nullptr},
        {{"list"}, Verb::list, "", nullptr},
        {{"post", "quitAgent"}, Verb::post, "", nullptr, {Signal::quitAgent}},
        {{"watch"},
         Verb::watch,
         "",
         nullptr,
         std::vector(std::begin(SharedSettings::allSignals), std::end(SharedSettings::allSignals))},
        {{"watch", "settings", "menuBarChanged", "settings"},
         Verb::watch,
         "",
         nullptr,
         {Signal::settings, Signal::menuBarChanged}},
        {{"get", "--help"}, Verb::help, "", nullptr},
        {{"autostart", "on"}, Verb::autostart, "", nullptr, {}, CtlCommand::AutostartAction::on},
        {{"autostart", "off"}, Verb::autostart, "", nullptr, {}, CtlCommand::AutostartAction::off},
        {{"autostart", "status"}, Verb::autostart, "", nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.arguments.front()) + " " + row.key);
        auto parsed = parseCtlArguments(row.arguments);
        ASSERT_TRUE(std::holds_alternative<CtlCommand>(parsed));
        const auto& command = std::get<CtlCommand>(parsed);
        EXPECT_EQ(command.verb, row.verb);
        EXPECT_EQ(command.key, row.key);
        // Typed: a Boolean must not arrive as the text "false", nor 2.5 as "2.5".
        EXPECT_EQ(command.value.type(), row.value.type());
        EXPECT_EQ(command.value, row.value);
        EXPECT_EQ(command.signalCases, row.signalCases);
        EXPECT_EQ(command.autostart, row.autostart);
    }
}

TEST(CtlCommand, AutostartNeedsOneKnownAction) {
    for (const std::vector<std::string_view>& arguments :
         {std::vector<std::string_view>{"autostart"},
          {"autostart", "yes"},
          {"autostart", "on", "off"}}) {
        const auto parsed = parseCtlArguments(arguments);
        ASSERT_TRUE(std::holds_alternative<CtlUsageError>(parsed));
        EXPECT_EQ(std::get<CtlUsageError>(parsed).message,
                  "autostart needs one of on, off, status");
    }
}

}  // namespace
}  // namespace corvane
