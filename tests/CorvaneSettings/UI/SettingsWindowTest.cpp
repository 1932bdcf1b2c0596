#include "CorvaneSettings/UI/SettingsWindow.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>

#include <vector>

#include "CorvaneShared/JSONFileSettingsStore.h"
#include "CorvaneShared/SettingsChanges.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

using Signal = SharedSettings::Signal;

/// A window on a settings file, English only, recording its posts; outside changes reach it
/// the way the program passes them on (a change check, then a reload).
class SettingsWindowTest : public ::testing::Test {
protected:
    SettingsWindowTest() { store.registerDefaults(SharedSettings::factoryDefaults()); }

    template <typename Widget>
    Widget& find(const char* name) {
        auto* widget = window.findChild<Widget*>(name);
        EXPECT_NE(widget, nullptr) << name;
        return *widget;
    }
    QListWidgetItem* orderItem(const QString& title) {
        const auto items = find<QListWidget>("meterOrder").findItems(title, Qt::MatchExactly);
        return items.size() == 1 ? items.front() : nullptr;
    }
    void choose(const char* comboName, const QVariant& data) {
        auto& combo = find<QComboBox>(comboName);
        const int index = combo.findData(data);
        ASSERT_GE(index, 0) << comboName;
        combo.setCurrentIndex(index);
        emit combo.activated(index);
    }

    testing::TemporaryDirectory folder;
    JSONFileSettingsStore store{folder / "suite.json"};
    InMemorySettingsStore own;
    AppLanguage language{{.environment = [](const char*) -> const char* { return nullptr; },
                          .setEnvironment = [](const char*, const char*) {},
                          .shared = store,
                          .own = own}};
    std::vector<Signal> posts;
    SettingsModel model{{.store = store, .post = [this](Signal s) { posts.push_back(s); }}};
    SettingsChanges changes{store};
    Subscription outside = changes.observe([this] { model.reload(); });
    SettingsWindow window{model, language, {.runningVersion = "0.1.0 (1)"}};
};

TEST_F(SettingsWindowTest, ControlsWriteTheirKeysWithTheirTypesAndPostOnce) {
    struct Row {
        const char* key;
        std::function<void()> act;
        SettingValue expected;
    };
    const std::vector<Row> rows = {
        {"showMemoryItem", [&] { orderItem("Memory")->setCheckState(Qt::Unchecked); }, false},
        {"cpuReadout", [&] { choose("readout-cpu", "usage"); }, "usage"},
        {"meterShape", [&] { choose("meterShape", static_cast<int>(MeterShape::square)); },
         "square"},
        {"memoryAccent", [&] { choose("accent-memoryAccent", "teal"); }, "teal"},
        {"refreshInterval", [&] { choose("refreshInterval", 2.0); }, 2.0},
        {"popoverBackground", [&] { choose("popoverBackground", "opaque"); }, "opaque"},
        {"updatesCheckAutomatically", [&] { find<QCheckBox>("updatesCheckAutomatically").click(); },
         false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.key);
        posts.clear();
        row.act();
        const SettingValue stored = store.object(row.key);
        EXPECT_EQ(stored, row.expected);
        EXPECT_EQ(stored.type(), row.expected.type());
        EXPECT_EQ(posts, std::vector<Signal>{Signal::settings});
    }
    // The hidden meter left the preview, the others stayed.
    EXPECT_EQ(window.findChild<QLabel*>("preview-memory"), nullptr);
    EXPECT_NE(window.findChild<QLabel*>("preview-cpu"), nullptr);
}

TEST_F(SettingsWindowTest, AnOutsideChangeOfTheFileShowsInTheWindow) {
    JSONFileSettingsStore other(folder / "suite.json");
    other.set("showCPUItem", false);
    other.set("sensorsReadout", "hottest");
    other.set("menuBarOrder", "cpu,memory,storage,sensors");
    other.set("updatesAvailable", "2.1 (57)");
    changes.check();

    auto& order = find<QListWidget>("meterOrder");
    ASSERT_EQ(order.count(), 4);
    EXPECT_EQ(order.item(0)->text(), "CPU");
    EXPECT_EQ(order.item(0)->checkState(), Qt::Unchecked);
    // A hidden meter keeps its slot, so the list does not let it be dragged.
    EXPECT_FALSE(order.item(0)->flags() & Qt::ItemIsDragEnabled);
    EXPECT_TRUE(order.item(1)->flags() & Qt::ItemIsDragEnabled);
    EXPECT_EQ(find<QComboBox>("readout-sensors").currentData(), "hottest");
    EXPECT_TRUE(find<QLabel>("offer").text().contains("2.1 (57)"));
    EXPECT_EQ(window.findChild<QLabel*>("preview-cpu"), nullptr);
    EXPECT_TRUE(posts.empty());
}

// The keyboard reorders as a drag does: Alt+Up and Alt+Down move the selected meter past a
// hidden one's slot, keep it selected, and do nothing at either end.
TEST_F(SettingsWindowTest, AltUpAndDownMoveTheSelectedMeter) {
    store.set("menuBarOrder", "storage,sensors,memory,cpu");
    store.set("showSensorsItem", false);
    model.reload();
    auto& order = find<QListWidget>("meterOrder");
    const auto press = [&order](Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::AltModifier);
        QCoreApplication::sendEvent(&order, &event);
    };
    order.setCurrentItem(orderItem("Memory"));
    press(Qt::Key_Up);
    EXPECT_EQ(store.string("menuBarOrder"), "memory,sensors,storage,cpu");
    EXPECT_EQ(order.currentItem(), orderItem("Memory"));
    posts.clear();
    press(Qt::Key_Up);
    EXPECT_EQ(store.string("menuBarOrder"), "memory,sensors,storage,cpu");
    EXPECT_TRUE(posts.empty());
    press(Qt::Key_Down);
    EXPECT_EQ(store.string("menuBarOrder"), "storage,sensors,memory,cpu");
    EXPECT_EQ(posts, std::vector<Signal>{Signal::settings});
}

TEST_F(SettingsWindowTest, AFileThatCannotBeWrittenIsSaidAndTheChoiceStays) {
    auto& banner = find<QLabel>("unsaved");
    EXPECT_TRUE(banner.isHidden());
    // The folder is replaced by a file, so neither the settings nor their lock can be made.
    std::filesystem::remove_all(folder.path());
    testing::writeFile(folder.path(), "not a folder");
    orderItem("Storage")->setCheckState(Qt::Unchecked);

    EXPECT_FALSE(banner.isHidden());
    EXPECT_EQ(orderItem("Storage")->checkState(), Qt::Unchecked);
    EXPECT_TRUE(posts.empty());
    std::filesystem::remove(folder.path());
}

}  // namespace
}  // namespace corvane
