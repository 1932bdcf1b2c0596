#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/SignalBus.h"

namespace corvane::testing {

/// A signal bus inside one process: a post runs every live subscriber of its name at once, in
/// subscription order, and is recorded.
class LocalSignalBus final : public SignalBus {
public:
    void post(std::string_view name) override {
        posts.emplace_back(name);
        std::vector<std::function<void()>> handlers;
        for (const auto& [token, subscription] : subscriptions) {
            if (subscription.first == name) {
                handlers.push_back(subscription.second);
            }
        }
        for (const auto& handler : handlers) {
            handler();
        }
    }
    std::optional<SignalToken> subscribe(std::string_view name,
                                         std::function<void()> handler) override {
        subscriptions.emplace(nextToken, std::pair(std::string(name), std::move(handler)));
        return nextToken++;
    }
    void cancel(SignalToken token) override { subscriptions.erase(token); }

    /// How many posts of `name` were made.
    std::size_t postsOf(std::string_view name) const {
        std::size_t count = 0;
        for (const std::string& posted : posts) {
            count += posted == name ? 1 : 0;
        }
        return count;
    }

    std::vector<std::string> posts;
    std::map<SignalToken, std::pair<std::string, std::function<void()>>> subscriptions;

private:
    SignalToken nextToken = 1;
};

}  // namespace corvane::testing
