#include "Foundation/ObserverList.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane {
namespace {

TEST(ObserverList, TellsInOrderUntilEachSubscriptionEnds) {
    ObserverList<int> list;
    std::vector<std::string> told;
    Subscription first =
        list.add([&](int value) { told.emplace_back("first " + std::to_string(value)); });
    Subscription second =
        list.add([&](int value) { told.emplace_back("second " + std::to_string(value)); });
    list.notify(1);
    first.reset();
    list.notify(2);
    second = {};
    list.notify(3);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(told, (std::vector<std::string>{"first 1", "second 1", "second 2"}));
}

TEST(ObserverList, CallbacksMayChangeTheListWhileBeingTold) {
    ObserverList<> list;
    std::vector<std::string> told;
    Subscription ownEnd;
    Subscription cancelled;
    Subscription added;
    // Ends its own subscription, ends a later one, and adds one: the later one is not called,
    // the added one only from the next notification on.
    ownEnd = list.add([&] {
        told.emplace_back("ends itself");
        ownEnd.reset();
        cancelled.reset();
        added = list.add([&] { told.emplace_back("added"); });
    });
    cancelled = list.add([&] { told.emplace_back("cancelled"); });
    list.notify();
    list.notify();
    EXPECT_EQ(told, (std::vector<std::string>{"ends itself", "added"}));
}

TEST(ObserverList, SubscriptionsAndCallbacksMayOutliveOrEndTheList) {
    auto list = std::make_optional<ObserverList<>>();
    int calls = 0;
    Subscription survivor = list->add([&] { ++calls; });
    Subscription destroyer = list->add([&] { list.reset(); });
    Subscription afterDestroyer = list->add([&] { ++calls; });
    list->notify();
    // The list went away while it was being told; the callbacks after it still ran.
    EXPECT_FALSE(list);
    EXPECT_EQ(calls, 2);
    survivor.reset();
    EXPECT_FALSE(survivor.isActive());
}

}  // namespace
}  // namespace corvane
