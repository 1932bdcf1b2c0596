#pragma once

#include <map>
#include <string>

#include "CorvaneShared/AppLanguage.h"
#include "CorvaneShared/SharedSettings.h"

namespace corvane::testing {

/// A process environment in a map, read and changed through the lookup and setter it hands out.
struct FakeEnvironment {
    std::map<std::string, std::string> variables;

    SharedSettings::EnvironmentLookup lookup() {
        return [this](const char* name) -> const char* {
            const auto found = variables.find(name);
            return found == variables.end() ? nullptr : found->second.c_str();
        };
    }
    AppLanguage::EnvironmentSetter setter() {
        return [this](const char* name, const char* value) {
            if (value == nullptr) {
                variables.erase(name);
            } else {
                variables[name] = value;
            }
        };
    }
};

}  // namespace corvane::testing
