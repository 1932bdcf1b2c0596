#pragma once

#include <optional>
#include <string>

#include "CorvaneShared/BundleDirectory.h"

/// The name of a running version, in the form update offers use. Pure; any thread.
namespace corvane::BundleVersion {

/// The offer name of the bundle's version and build (see UpdateOffer::name), each "?" when the
/// bundle info lacks it or there is no info.
std::string text(const std::optional<BundleInfo>& info);

}  // namespace corvane::BundleVersion
