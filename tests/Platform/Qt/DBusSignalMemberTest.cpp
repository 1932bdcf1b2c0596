#include "Platform/Qt/DBusSignalMember.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

TEST(DBusSignalMember, EscapesEveryByteOutsideLettersAndDigitsAndHashesLongNames) {
    std::string points = "s_";
    for (int i = 0; i < 85; ++i) {
        points += "_2e";
    }
    const std::pair<std::string, std::string> rows[] = {
        {"CRVN.io.corvane.Corvane.settings", "s_CRVN_2eio_2ecorvane_2eCorvane_2esettings"},
        // The escape character is escaped too, so "a_2eb" cannot meet "a.b".
        {"a_2eb.quitAgent", "s_a_5f2eb_2equitAgent"},
        {"\"\xc3\xa9\".x", "s__22_c3_a9_22_2ex"},
        {std::string(84, '.'), points.substr(0, 254)},
        // Past 255 characters: cut, then the name's 64-bit FNV-1a, which programs built apart
        // must agree on.
        {std::string(85, '.'), points.substr(0, 238) + "_1219c0470f0bef61"},
    };
    for (const auto& [name, member] : rows) {
        EXPECT_EQ(signalMemberName(name), member) << name;
    }
}

}  // namespace
}  // namespace corvane
