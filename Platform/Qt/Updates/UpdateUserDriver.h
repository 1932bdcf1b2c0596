#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "Platform/Updater.h"

namespace corvane {

/// The user's side of update cycles: what an updater shows and asks. The dialogs of the menu-
/// bar agent are one driver, the one-line report of `--update-check` another. Main thread.
class UpdateUserDriver {
public:
    virtual ~UpdateUserDriver() = default;

    /// Offers `item` to the user, who runs `installedVersion`; `reply` is called once with
    /// their answer (closing the offer counts as dismiss).
    virtual void showUpdateFound(const UpdateItem& item, const std::string& installedVersion,
                                 std::function<void(UpdateUserChoice)> reply) = 0;
    /// After a check the user asked for: nothing newer than `installedVersion` exists.
    virtual void showUpToDate(const std::string& installedVersion) = 0;
    /// The download of `item` began; `cancel` stops it (and ends the cycle quietly).
    virtual void showDownloadStarted(const UpdateItem& item, std::function<void()> cancel) = 0;
    /// Bytes received so far of `total`.
    virtual void showDownloadProgress(std::uint64_t received, std::uint64_t total) = 0;
    /// The archive is verified; unpacking and installing begin.
    virtual void showInstalling() = 0;
    /// The new bundle is in place; the agent restarts from it next.
    virtual void showInstalled(const UpdateItem& item) = 0;
    /// The cycle failed where the user is involved (a check they asked for, an install they
    /// accepted); `description` is the one-line reason.
    virtual void showError(const std::string& description) = 0;
    /// The cycle is over: close whatever is still open.
    virtual void finish() = 0;
};

}  // namespace corvane
