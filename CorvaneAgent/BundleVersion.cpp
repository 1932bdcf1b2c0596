#include "CorvaneAgent/BundleVersion.h"

#include "CorvaneShared/UpdateOffer.h"

namespace corvane::BundleVersion {

std::string text(const std::optional<BundleInfo>& info) {
    const std::string unknown = "?";
    return UpdateOffer::name(info && info->version ? *info->version : unknown,
                             info && info->build ? *info->build : unknown);
}

}  // namespace corvane::BundleVersion
