#include "Platform/Qt/DesktopColorScheme.h"

#include <QDBusVariant>

#include <gtest/gtest.h>

#include <vector>

namespace corvane {
namespace {

TEST(DesktopColorScheme, ReadsThePortalsValue) {
    using Preference = DesktopColorScheme::Preference;
    const auto wrapped = [](const QVariant& value) {
        return QVariant::fromValue(QDBusVariant(value));
    };
    struct Row {
        const char* name;
        QVariant value;
        Preference expected;
    };
    const std::vector<Row> rows = {
        {"dark", QVariant(1u), Preference::dark},
        {"light", QVariant(2u), Preference::light},
        {"no preference", QVariant(0u), Preference::none},
        {"a value of a later portal", QVariant(3u), Preference::none},
        // ReadOne answers one variant deep, the older Read two.
        {"wrapped once", wrapped(QVariant(1u)), Preference::dark},
        {"wrapped twice", wrapped(wrapped(QVariant(2u))), Preference::light},
        {"not a number", QVariant(QStringLiteral("dark")), Preference::none},
        {"nothing", QVariant(), Preference::none},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(DesktopColorScheme::fromPortalValue(row.value), row.expected) << row.name;
    }
}

}  // namespace
}  // namespace corvane
