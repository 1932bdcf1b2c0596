#include "CorvaneAgent/UpdatePolicy.h"

namespace corvane::UpdatePolicy {

namespace {

bool isExactlyOne(const std::map<std::string, std::string>& environment, const char* name) {
    const auto found = environment.find(name);
    return found != environment.end() && found->second == "1";
}

}  // namespace

bool isDisabled(const std::map<std::string, std::string>& environment, std::string_view publicKey) {
    if (isExactlyOne(environment, disableVariable) ||
        isExactlyOne(environment, uiTestingVariable) || environment.contains(unitTestVariable)) {
        return true;
    }
    return publicKey.empty();
}

}  // namespace corvane::UpdatePolicy
