#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Foundation/Subscription.h"

namespace corvane {

/// One release the update feed lists.
struct UpdateItem {
    /// The version people read, "2.1".
    std::string displayVersionString;
    /// The build, "57"; what decides which release is newer.
    std::string versionString;
    /// Release notes given in the feed itself (HTML or plain text); empty when there are none.
    std::string releaseNotes;
    /// Where release notes are published instead; absent when the feed gives none.
    std::optional<std::string> releaseNotesLink;
    /// Where the archive is downloaded from.
    std::string archiveURL;
    /// The archive's size as the feed states it, in bytes.
    std::uint64_t archiveLength = 0;
    /// The Ed25519 signature of the archive, base64.
    std::string edSignature;

    friend bool operator==(const UpdateItem&, const UpdateItem&) = default;
};

/// What the user answered to an offered update.
enum class UpdateUserChoice {
    /// Never offer this build again.
    skip,
    /// Download and install it now.
    install,
    /// Not now; offer it again at the next check.
    dismiss,
};

/// What an updater tells its owner during an update cycle. Main thread.
class UpdaterDelegate {
public:
    virtual ~UpdaterDelegate() = default;

    /// A check found `item`, newer than the running build.
    virtual void didFindValidUpdate(const UpdateItem& item) = 0;
    /// A check found nothing newer; `reason` says why, in one line.
    virtual void updaterDidNotFindUpdate(const std::string& reason) = 0;
    /// The cycle stopped on a failure (feed, download, signature, unpacking, install).
    virtual void didAbortWithError(const std::string& description) = 0;
    virtual void userDidMake(UpdateUserChoice choice) = 0;
    /// The download of an accepted update begins.
    virtual void willDownloadUpdate() = 0;
    /// The cycle is over, whatever its outcome.
    virtual void didFinishUpdateCycle() = 0;
    /// Whether to start the agent again from the new bundle once it is in place.
    virtual bool updaterShouldRelaunchApplication() = 0;
    /// The new bundle is verified and unpacked and is about to replace the installed one.
    virtual void willInstallUpdate() = 0;
};

/// The update framework: checks a signed feed on a schedule or on request and installs what
/// the user accepts. Main thread only.
class Updater {
public:
    virtual ~Updater() = default;

    /// Makes the updater ready to check; the description of the failure when it cannot be.
    virtual std::optional<std::string> startUpdater() = 0;
    /// Whether a check may begin now (false before start and during a cycle).
    virtual bool canCheckForUpdates() const = 0;
    /// Calls `observer` with the current value at once and again with every new value, until
    /// the subscription ends.
    virtual Subscription observeCanCheckForUpdates(std::function<void(bool)> observer) = 0;
    /// Begins a check the user asked for: its outcome is always shown to them.
    virtual void checkForUpdates() = 0;
    virtual bool automaticallyChecksForUpdates() const = 0;
    virtual void setAutomaticallyChecksForUpdates(bool automatically) = 0;
};

/// What an updater is created for: the product it updates, the bundle of the program that runs
/// it, and who it reports to (outlives the updater).
struct UpdaterSetup {
    std::filesystem::path hostBundle;
    std::filesystem::path applicationBundle;
    UpdaterDelegate& delegate;
};

using UpdaterFactory = std::function<std::unique_ptr<Updater>(const UpdaterSetup& setup)>;

}  // namespace corvane
