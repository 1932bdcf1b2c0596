#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/SignalBus.h"

namespace corvane::testing {

/// A signal bus inside one process: a post runs every live subscriber of its name at once, in
/// subscription order, and is recorded.
class LocalSignalBus final : public SignalBus {
public:
    using Subscribers = std::map<int, std::pair<std::string, std::function<void()>>>;

    void post(std::string_view name) override {
        posts.emplace_back(name);
        std::vector<std::function<void()>> handlers;
        for (const auto& [token, subscriber] : *subscriptions) {
            if (subscriber.first == name) {
                handlers.push_back(subscriber.second);
            }
        }
        for (const auto& handler : handlers) {
            handler();
        }
    }
    Subscription subscribe(std::string_view name, std::function<void()> handler) override {
        const int token = nextToken++;
        subscriptions->emplace(token, std::pair(std::string(name), std::move(handler)));
        // The subscribers are shared, so a subscription that outlives the bus ends harmlessly.
        return Subscription([subscribers = std::weak_ptr(subscriptions), token] {
            if (auto live = subscribers.lock()) {
                live->erase(token);
            }
        });
    }

    /// How many posts of `name` were made.
    std::size_t postsOf(std::string_view name) const {
        std::size_t count = 0;
        for (const std::string& posted : posts) {
            count += posted == name ? 1 : 0;
        }
        return count;
    }

    std::vector<std::string> posts;
    std::shared_ptr<Subscribers> subscriptions = std::make_shared<Subscribers>();

private:
    int nextToken = 1;
};

}  // namespace corvane::testing
