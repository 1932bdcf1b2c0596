#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <variant>

#include "Platform/Updates/UpdateFailure.h"

namespace corvane {

/// Putting a new bundle in place of an installed one so that a failure at any step leaves the
/// installed one working: the new bundle is unpacked into a hidden staging folder beside the
/// installed one (same file system, so a rename moves it), then the two trade places. Main
/// thread.
namespace BundleSwap {

/// The renames a swap is made of; each answers 0 or the errno of its failure. Tests replace
/// them to fail at a chosen step.
struct Renames {
    /// Trades the two paths atomically (renameat2 RENAME_EXCHANGE).
    std::function<int(const std::filesystem::path&, const std::filesystem::path&)> exchange;
    /// Moves the first path to the second (rename(2)).
    std::function<int(const std::filesystem::path&, const std::filesystem::path&)> move;
};

/// The system calls.
Renames systemRenames();

/// A fresh, empty, hidden folder beside `bundle` (".<name>.update-XXXXXX"); the failure when
/// that folder cannot be written.
std::variant<std::filesystem::path, UpdateFailure> makeStagingFolder(
    const std::filesystem::path& bundle);

/// The one folder ending in ".app" at the top of `staging` (not a link); the failure when
/// there is none, or anything else beside it.
std::variant<std::filesystem::path, UpdateFailure> unpackedBundle(
    const std::filesystem::path& staging);

/// Puts `replacement` where `installed` is, and the installed bundle where `replacement` was.
/// With an atomic exchange there is no moment without a bundle; where the file system has none
/// it moves the installed bundle aside and the new one in, moving the old one back when the
/// second step fails. On failure `installed` is untouched.
std::optional<UpdateFailure> swap(const std::filesystem::path& installed,
                                  const std::filesystem::path& replacement,
                                  const Renames& renames = systemRenames());

/// Removes `folder` and everything in it; what cannot be removed stays (it is hidden and
/// harmless, and the next update uses a fresh name).
void removeFolder(const std::filesystem::path& folder);

}  // namespace BundleSwap

}  // namespace corvane
