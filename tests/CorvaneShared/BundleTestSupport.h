#pragma once

#include <filesystem>
#include <string>

#include "CorvaneShared/BundleDirectory.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane::testing {

/// Makes `bundle` a bundle whose bundle.json holds `info`, creating its folders.
inline void writeBundleInfo(const std::filesystem::path& bundle, const std::string& info) {
    std::filesystem::create_directories(BundleDirectory::resourceDirectory(bundle));
    writeFile(BundleDirectory::resourceDirectory(bundle) / "bundle.json", info);
}

}  // namespace corvane::testing
