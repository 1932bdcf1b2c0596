#include "Platform/Qt/Updates/FeedUpdater.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <system_error>
#include <utility>

#include "CorvaneShared/BundleDirectory.h"
#include "CorvaneShared/UpdateOffer.h"
#include "Foundation/ObserverList.h"
#include "Platform/Qt/Updates/UpdateFeed.h"
#include "Platform/Updates/ArchiveChecks.h"
#include "Platform/Updates/ArchiveModule.h"
#include "Platform/Updates/BundleSwap.h"
#include "Platform/Updates/UpdateChoice.h"

namespace corvane {

namespace {

namespace fs = std::filesystem;

// How often the schedule looks whether a check is due; a day-long QTimer would drift across
// suspend and could not notice a changed setting.
constexpr std::chrono::minutes scheduleLook(60);

// Waits for this process to end, then starts the new agent: the single-instance rule of the
// new one must not see the old one still running.
constexpr const char* relaunchScript =
    "while kill -0 \"$1\" 2>/dev/null; do sleep 0.1; done; shift; exec \"$@\"";

fs::path normalFolder(const fs::path& folder) {
    const fs::path normal = folder.lexically_normal();
    return normal.has_filename() ? normal : normal.parent_path();
}

double secondsSinceEpoch() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

bool isExecutableFile(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    return !error && fs::is_regular_file(status) &&
           (status.permissions() & fs::perms::owner_exec) != fs::perms::none;
}

}  // namespace

class FeedUpdater::Session {
public:
    explicit Session(Services services) : services(std::move(services)) {}

    ~Session() {
        dropReply();
        // The driver may still hold answers to this session; they must not reach it.
        if (inCycle) {
            driver().finish();
        }
    }

    std::optional<std::string> start();
    /// Looks whether a scheduled check is due, once control is back in the event loop.
    void lookSoon() {
        QTimer::singleShot(0, &context, [this] { checkIfDue(); });
    }
    void beginCycle(bool userInitiated);
    void setCanCheck(bool value);
    void checkIfDue();

    Services services;
    bool started = false;
    bool inCycle = false;
    bool automatic = false;
    ObserverList<bool> canCheckObservers;

private:
    UpdaterDelegate& delegate() { return services.setup.delegate; }
    UpdateUserDriver& driver() { return services.driver; }

    QNetworkReply* get(const QUrl& url);
    void dropReply();
    void onFeed();
    void onChoice(UpdateUserChoice choice);
    void startDownload();
    void onDownloadData();
    void onDownloaded();
    void install(const std::string& archive);
    std::optional<UpdateFailure> loadArchiveModule();
    std::optional<UpdateFailure> checkUnpacked(const fs::path& bundle) const;
    void relaunch();
    void fail(const std::string& description);
    void endCycle();

    // Named by the build as a number, never by the feed's text, which could hold a '/'.
    fs::path downloadFile() const {
        const auto build = UpdateChoice::buildOf(offered->versionString).value_or(0);
        return services.cacheDirectory / ("Corvane-" + std::to_string(build) + ".download");
    }

    // Stated once at start from the host bundle.
    std::string hostIdentifier;
    std::int64_t runningBuild = 0;
    std::string runningVersion;
    QUrl feedURL;
    std::string publicKey;
    fs::path agentInHost;

    // The cycle under way.
    bool userInvolved = false;
    std::optional<UpdateItem> offered;
    QByteArray feed;
    std::ofstream download;
    std::uint64_t received = 0;
    // Loaded for the install only: libsodium and libarchive stay out of the running agent.
    std::optional<ArchiveModule> archiveModule;

    QNetworkAccessManager network;
    QTimer scheduleTimer;
    // Declared last, so it goes first: no reply or timer callback outlives the session.
    QObject context;
    QPointer<QNetworkReply> reply;
};

std::optional<std::string> FeedUpdater::Session::start() {
    const fs::path host = normalFolder(services.setup.hostBundle);
    const std::optional<BundleInfo> info = BundleDirectory::readInfo(host);
    if (!info) {
        return "the bundle at " + host.string() + " has no bundle information";
    }
    const std::optional<std::int64_t> build =
        info->build ? UpdateChoice::buildOf(*info->build) : std::nullopt;
    if (!build) {
        return "the bundle at " + host.string() + " has no build number";
    }
    const QUrl url(QString::fromStdString(info->feedURL.value_or("")), QUrl::StrictMode);
    if (!UpdateFeed::isAllowedURL(url)) {
        return "SUFeedURL \"" + info->feedURL.value_or("") +
               "\" is not an https address (or http to this computer)";
    }
    if (!ArchiveChecks::decodePublicKey(info->publicEDKey.value_or(""))) {
        return "SUPublicEDKey is not a base64 Ed25519 public key";
    }
    hostIdentifier = info->identifier;
    runningBuild = *build;
    runningVersion = info->version.value_or(*info->build);
    feedURL = url;
    publicKey = *info->publicEDKey;
    agentInHost = normalFolder(services.setup.applicationBundle).lexically_relative(host);
    started = true;

    scheduleTimer.setInterval(
        std::min<std::chrono::milliseconds>(scheduleLook, services.checkInterval));
    QObject::connect(&scheduleTimer, &QTimer::timeout, &context, [this] { checkIfDue(); });
    scheduleTimer.start();
    QTimer::singleShot(services.firstScheduledCheck, &context, [this] { checkIfDue(); });
    setCanCheck(true);
    return std::nullopt;
}

void FeedUpdater::Session::setCanCheck(bool value) {
    canCheckObservers.notify(value);
}

void FeedUpdater::Session::checkIfDue() {
    if (!started || inCycle || !automatic) {
        return;
    }
    const double last = services.ownStore.number(lastCheckKey);
    const double interval = std::chrono::duration<double>(services.checkInterval).count();
    const double now = secondsSinceEpoch();
    // A last check in the future means the clock was set back: check rather than wait.
    if (last > 0 && now >= last && now - last < interval) {
        return;
    }
    beginCycle(false);
}

QNetworkReply* FeedUpdater::Session::get(const QUrl& url) {
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setTransferTimeout(static_cast<int>(services.transferTimeout.count()));
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      QStringLiteral("Corvane/%1").arg(QString::fromStdString(runningVersion)));
    QNetworkReply* made = network.get(request);
    reply = made;
    // A redirect must obey the same rule as the address it came from.
    QObject::connect(made, &QNetworkReply::redirected, &context, [this, made](const QUrl& to) {
        if (UpdateFeed::isAllowedURL(to)) {
            emit made->redirectAllowed();
        } else {
            fail("the update server redirected to " + to.toString().toStdString() +
                 ", which is not an https address");
        }
    });
    return made;
}

void FeedUpdater::Session::dropReply() {
    if (QNetworkReply* current = reply.data()) {
        reply = nullptr;
        QObject::disconnect(current, nullptr, &context, nullptr);
        current->abort();
        current->deleteLater();
    }
}

void FeedUpdater::Session::beginCycle(bool userInitiated) {
    inCycle = true;
    userInvolved = userInitiated;
    offered.reset();
    feed.clear();
    setCanCheck(false);
    QNetworkReply* made = get(feedURL);
    QObject::connect(made, &QNetworkReply::readyRead, &context, [this, made] {
        feed += made->readAll();
        if (feed.size() > UpdateFeed::maximumFeedBytes) {
            fail("the update feed is larger than 1 MiB");
        }
    });
    QObject::connect(made, &QNetworkReply::finished, &context, [this] { onFeed(); });
}

void FeedUpdater::Session::onFeed() {
    QNetworkReply* done = reply.data();
    reply = nullptr;
    done->deleteLater();
    if (done->error() != QNetworkReply::NoError) {
        fail("the update feed cannot be read: " + done->errorString().toStdString());
        return;
    }
    feed += done->readAll();
    if (feed.size() > UpdateFeed::maximumFeedBytes) {
        fail("the update feed is larger than 1 MiB");
        return;
    }
    auto parsed = UpdateFeed::parse(feed);
    if (const auto* failure = std::get_if<UpdateFailure>(&parsed)) {
        fail(failure->description);
        return;
    }
    services.ownStore.set(lastCheckKey, secondsSinceEpoch());
    // A version the user skipped stays quiet on schedule, but a check they ask for shows it.
    const std::optional<std::int64_t> skipped =
        userInvolved
            ? std::nullopt
            : UpdateChoice::buildOf(services.ownStore.string(skippedBuildKey).value_or(""));
    offered =
        UpdateChoice::newest(std::get<std::vector<UpdateItem>>(parsed), runningBuild, skipped);
    if (!offered) {
        delegate().updaterDidNotFindUpdate("no build newer than " + std::to_string(runningBuild) +
                                           " in the feed");
        if (userInvolved) {
            driver().showUpToDate(runningVersion);
        }
        endCycle();
        return;
    }
    delegate().didFindValidUpdate(*offered);
    driver().showUpdateFound(*offered, runningVersion,
                             [this](UpdateUserChoice choice) { onChoice(choice); });
}

void FeedUpdater::Session::onChoice(UpdateUserChoice choice) {
    if (!inCycle || !offered) {
        return;
    }
    delegate().userDidMake(choice);
    switch (choice) {
        case UpdateUserChoice::skip:
            services.ownStore.set(skippedBuildKey, offered->versionString);
            endCycle();
            return;
        case UpdateUserChoice::dismiss: endCycle(); return;
        case UpdateUserChoice::install:
            userInvolved = true;
            startDownload();
            return;
    }
}

void FeedUpdater::Session::startDownload() {
    const QUrl url(QString::fromStdString(offered->archiveURL), QUrl::StrictMode);
    if (!UpdateFeed::isAllowedURL(url)) {
        fail("the update archive's address \"" + offered->archiveURL + "\" is not https");
        return;
    }
    std::error_code error;
    fs::create_directories(services.cacheDirectory, error);
    download.open(downloadFile(), std::ios::binary | std::ios::trunc);
    if (!download) {
        fail("cannot write the download into " + services.cacheDirectory.string());
        return;
    }
    received = 0;
    delegate().willDownloadUpdate();
    driver().showDownloadStarted(*offered, [this] {
        if (!inCycle) {
            return;
        }
        dropReply();
        download.close();
        std::error_code ignored;
        fs::remove(downloadFile(), ignored);
        endCycle();
    });
    QNetworkReply* made = get(url);
    QObject::connect(made, &QNetworkReply::readyRead, &context, [this] { onDownloadData(); });
    QObject::connect(made, &QNetworkReply::finished, &context, [this] { onDownloaded(); });
}

void FeedUpdater::Session::onDownloadData() {
    const QByteArray chunk = reply->readAll();
    received += static_cast<std::uint64_t>(chunk.size());
    if (received > offered->archiveLength) {
        fail("the download is longer than the " + std::to_string(offered->archiveLength) +
             " bytes the feed states");
        return;
    }
    download.write(chunk.constData(), chunk.size());
    if (!download) {
        fail("cannot write the download into " + services.cacheDirectory.string() +
             " (is the disk full?)");
        return;
    }
    driver().showDownloadProgress(received, offered->archiveLength);
}

void FeedUpdater::Session::onDownloaded() {
    QNetworkReply* done = reply.data();
    if (done->error() != QNetworkReply::NoError) {
        fail("the download failed: " + done->errorString().toStdString());
        return;
    }
    onDownloadData();
    if (!inCycle) {
        return;
    }
    reply = nullptr;
    done->deleteLater();
    download.close();
    auto archive = ArchiveChecks::readExactly(downloadFile(), offered->archiveLength);
    std::error_code ignored;
    fs::remove(downloadFile(), ignored);
    if (const auto* failure = std::get_if<UpdateFailure>(&archive)) {
        fail(failure->description);
        return;
    }
    if (auto missing = loadArchiveModule()) {
        fail(missing->description);
        return;
    }
    const std::string& bytes = std::get<std::string>(archive);
    if (auto refused = archiveModule->verify(bytes, offered->edSignature, publicKey)) {
        fail(refused->description);
        return;
    }
    install(bytes);
}

std::optional<UpdateFailure> FeedUpdater::Session::loadArchiveModule() {
    if (archiveModule) {
        return std::nullopt;
    }
    auto loaded = ArchiveModule::load(services.archiveModule);
    if (auto* failure = std::get_if<UpdateFailure>(&loaded)) {
        return std::move(*failure);
    }
    archiveModule.emplace(std::move(std::get<ArchiveModule>(loaded)));
    return std::nullopt;
}

std::optional<UpdateFailure> FeedUpdater::Session::checkUnpacked(const fs::path& bundle) const {
    const std::optional<BundleInfo> info = BundleDirectory::readInfo(bundle);
    if (!info) {
        return UpdateFailure{"the update holds no bundle information"};
    }
    if (info->identifier != hostIdentifier) {
        return UpdateFailure{"the update is " + info->identifier + ", not " + hostIdentifier};
    }
    const std::optional<std::int64_t> build =
        info->build ? UpdateChoice::buildOf(*info->build) : std::nullopt;
    if (!build || build != UpdateChoice::buildOf(offered->versionString)) {
        return UpdateFailure{"the update holds build " + info->build.value_or("(none)") +
                             ", not the offered " + offered->versionString};
    }
    const fs::path agent = bundle / agentInHost;
    const std::optional<BundleInfo> agentInfo = BundleDirectory::readInfo(agent);
    if (!agentInfo || !agentInfo->executable || !isExecutableFile(agent / *agentInfo->executable)) {
        return UpdateFailure{"the update holds no agent to start at " + agentInHost.string()};
    }
    return std::nullopt;
}

void FeedUpdater::Session::install(const std::string& archive) {
    driver().showInstalling();
    const fs::path host = normalFolder(services.setup.hostBundle);
    auto staging = BundleSwap::makeStagingFolder(host);
    if (const auto* failure = std::get_if<UpdateFailure>(&staging)) {
        fail(failure->description);
        return;
    }
    const fs::path folder = std::get<fs::path>(staging);
    // Whatever happens below, the staging folder goes: it holds either the refused update or,
    // after the swap, the old bundle.
    struct RemoveStaging {
        fs::path folder;
        ~RemoveStaging() { BundleSwap::removeFolder(folder); }
    } removeStaging{folder};

    if (auto failure = archiveModule->unpack(archive, folder)) {
        fail(failure->description);
        return;
    }
    auto unpacked = BundleSwap::unpackedBundle(folder);
    if (const auto* failure = std::get_if<UpdateFailure>(&unpacked)) {
        fail(failure->description);
        return;
    }
    const fs::path bundle = std::get<fs::path>(unpacked);
    if (auto refused = checkUnpacked(bundle)) {
        fail(refused->description);
        return;
    }
    delegate().willInstallUpdate();
    if (auto failure = BundleSwap::swap(host, bundle)) {
        fail(failure->description);
        return;
    }
    const UpdateItem installed = *offered;
    driver().showInstalled(installed);
    const bool relaunching = delegate().updaterShouldRelaunchApplication();
    if (relaunching) {
        relaunch();
    }
    endCycle();
    if (relaunching && services.quit) {
        services.quit();
    }
}

void FeedUpdater::Session::relaunch() {
    const fs::path agent = normalFolder(services.setup.hostBundle) / agentInHost;
    const std::optional<BundleInfo> info = BundleDirectory::readInfo(agent);
    if (!info || !info->executable || !services.launch) {
        return;
    }
    DetachedLaunch launch{
        .program = "/bin/sh",
        .arguments = {"-c", relaunchScript, "corvane-relaunch", std::to_string(::getpid()),
                      (agent / *info->executable).string()},
    };
    launch.arguments.insert(launch.arguments.end(), services.relaunchArguments.begin(),
                            services.relaunchArguments.end());
    services.launch(launch);
}

void FeedUpdater::Session::fail(const std::string& description) {
    if (!inCycle) {
        return;
    }
    dropReply();
    if (download.is_open()) {
        download.close();
        std::error_code ignored;
        fs::remove(downloadFile(), ignored);
    }
    delegate().didAbortWithError(description);
    if (userInvolved) {
        driver().showError(description);
    }
    endCycle();
}

void FeedUpdater::Session::endCycle() {
    if (!inCycle) {
        return;
    }
    inCycle = false;
    dropReply();
    archiveModule.reset();
    delegate().didFinishUpdateCycle();
    driver().finish();
    setCanCheck(true);
}

FeedUpdater::FeedUpdater(Services services)
    : session(std::make_unique<Session>(std::move(services))) {}

FeedUpdater::~FeedUpdater() = default;

std::optional<std::string> FeedUpdater::startUpdater() {
    if (session->started) {
        return std::nullopt;
    }
    return session->start();
}

bool FeedUpdater::canCheckForUpdates() const {
    return session->started && !session->inCycle;
}

Subscription FeedUpdater::observeCanCheckForUpdates(std::function<void(bool)> observer) {
    observer(canCheckForUpdates());
    return session->canCheckObservers.add(std::move(observer));
}

void FeedUpdater::checkForUpdates() {
    if (canCheckForUpdates()) {
        session->beginCycle(true);
    }
}

bool FeedUpdater::automaticallyChecksForUpdates() const {
    return session->automatic;
}

void FeedUpdater::setAutomaticallyChecksForUpdates(bool automatically) {
    session->automatic = automatically;
    if (automatically && session->started) {
        session->lookSoon();
    }
}

}  // namespace corvane
