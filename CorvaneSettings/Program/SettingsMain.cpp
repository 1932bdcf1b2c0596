#include <unistd.h>

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CorvaneSettings/SettingsModel.h"
#include "CorvaneSettings/SingleWindow.h"
#include "CorvaneSettings/UI/SettingsWindow.h"
#include "CorvaneShared/AppLanguage.h"
#include "CorvaneShared/AutostartEntry.h"
#include "CorvaneShared/BuildInfo.h"
#include "CorvaneShared/BundleDirectory.h"
#include "CorvaneShared/LoginItem.h"
#include "CorvaneShared/SettingsChanges.h"
#include "CorvaneShared/SharedSettings.h"
#include "CorvaneShared/SignalListener.h"
#include "Foundation/ArgumentText.h"
#include "Platform/Linux/CompiledTranslations.h"
#include "Platform/Linux/ExecutablePath.h"
#include "Platform/ProcessLauncher.h"
#include "Platform/Qt/QtDBusSignalBus.h"
#include "Platform/Qt/QtFileChangeWatcher.h"
#include "Platform/Qt/QtProcessLauncher.h"

namespace {

namespace fs = std::filesystem;
using namespace corvane;
using namespace std::chrono_literals;

// Folds the write, rename and lock-file events of one save into one re-read.
constexpr auto settingsSettle = 50ms;
constexpr const char* pageNames[] = {"meters", "general", "updates", "about"};

constexpr const char* usage =
    "Usage: corvane-settings [options]\n"
    "\n"
    "Opens the Corvane Settings window, or brings the open one forward.\n"
    "\n"
    "Options:\n"
    "  --page NAME      show that page first: meters, general, updates or about\n"
    "  --render DIR     draw each page into DIR/settings-NAME.png and exit (no display needed)\n"
    "  --no-login-item  leave the login item as it is\n"
    "  -h, --help       show this text\n";

struct Options {
    int page = 0;
    std::optional<fs::path> renderDirectory;
};

/// The options, or the one line that says what is wrong with them.
struct ParsedOptions {
    std::optional<Options> options;
    std::string error;
};

ParsedOptions parseOptions(const std::vector<std::string>& arguments) {
    if (const auto argument = firstArgumentNotUTF8(arguments)) {
        return {std::nullopt, "an argument is not UTF-8: " + quotedArgument(*argument)};
    }
    Options options;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string& argument = arguments[index];
        const bool takesValue = argument == "--page" || argument == "--render";
        if (takesValue && index + 1 == arguments.size()) {
            return {std::nullopt, argument + " needs a value"};
        }
        if (argument == "--page") {
            const std::string& name = arguments[++index];
            const auto found = std::find(std::begin(pageNames), std::end(pageNames), name);
            if (found == std::end(pageNames)) {
                return {std::nullopt,
                        "no page " + quotedArgument(name) + " (meters, general, updates or about)"};
            }
            options.page = static_cast<int>(found - std::begin(pageNames));
        } else if (argument == "--render") {
            const std::string& folder = arguments[++index];
            if (namesOtherKindThan(folder, fs::file_type::directory)) {
                return {std::nullopt, "--render needs a folder: " + quotedArgument(folder)};
            }
            options.renderDirectory = folder;
        } else if (argument != LoginItemPolicy::suppressArgument) {
            return {std::nullopt, "unknown option " + quotedArgument(argument) + " (see --help)"};
        }
    }
    return {options, {}};
}

QString versionText(const std::optional<BundleInfo>& info) {
    return QString::fromStdString(info && info->version ? *info->version : CORVANE_VERSION);
}

QString buildText(const std::optional<BundleInfo>& info) {
    return QString::fromStdString(info && info->build ? *info->build : CORVANE_BUILD_NUMBER);
}

std::vector<std::pair<std::string, QString>> documentation() {
    for (const char* folder : {CORVANE_INSTALLED_DOCS, CORVANE_SOURCE_DOCS}) {
        const fs::path readme = fs::path(folder) / "README.md";
        std::error_code error;
        if (fs::is_regular_file(readme, error)) {
            return {
                {"Read me",
                 QUrl::fromLocalFile(QString::fromStdString(readme.string())).toString()},
                {"How readings are made on Linux",
                 QUrl::fromLocalFile(
                     QString::fromStdString((fs::path(folder) / "docs" / "linux-port.md").string()))
                     .toString()},
            };
        }
    }
    return {};
}

int renderPages(SettingsWindow& window, const fs::path& directory) {
    std::error_code error;
    fs::create_directories(directory, error);
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.show();
    for (int page = 0; page < 4; ++page) {
        window.showPage(page);
        const fs::path file = directory / (std::string("settings-") + pageNames[page] + ".png");
        if (!window.grab().save(QString::fromStdString(file.string()))) {
            std::cerr << "corvane-settings: cannot write " << file.string() << '\n';
            return 2;
        }
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (std::find(arguments.begin(), arguments.end(), "--help") != arguments.end() ||
        std::find(arguments.begin(), arguments.end(), "-h") != arguments.end()) {
        std::cout << usage;
        return 0;
    }
    const auto [options, error] = parseOptions(arguments);
    if (!options) {
        std::cerr << "corvane-settings: " << error << '\n';
        return 2;
    }
    const auto executable = currentExecutablePath();
    const auto bundle =
        executable ? BundleDirectory::bundleOfExecutable(*executable) : std::nullopt;
    CompiledTranslations translations(BundleDirectory::translationFiles(bundle));
    AppLanguage language(processLanguageSources(bundle, translations.lookup()));
    language.recordLaunchCode();
    // The window's own texts follow the choice as well as Qt's (the colour picker).
    language.applyChoiceToProcessDefaults();

    QApplication application(argc, argv);
    QApplication::setApplicationName("corvane-settings");
    QApplication::setDesktopFileName(
        QString::fromStdString(std::string(buildinfo::appBundleIdentifier)));

    QtDBusSignalBus bus;
    const std::string suite = SharedSettings::suiteName();
    if (!options->renderDirectory && bus.isConnected()) {
        // One window per user: the name is taken by the open one, which the signal brings
        // forward.
        const QString service = QString::fromStdString(settingsServiceName(
            buildinfo::appBundleIdentifier, suite, SharedSettings::appGroupIdentifier()));
        if (!QDBusConnection::sessionBus().registerService(service)) {
            SharedSettings::post(bus, SharedSettings::Signal::openSettings);
            bus.flush();
            return 0;
        }
    }

    SettingsStore& store = SharedSettings::store();
    store.registerDefaults(SharedSettings::factoryDefaults());
    const AutostartPlace loginPlace = LoginItem::processPlace(executable, arguments);
    SettingsModel model({
        .store = store,
        .post = [&bus](SharedSettings::Signal signal) { SharedSettings::post(bus, signal); },
        .loginItemStatus = [&loginPlace] { return LoginItem::status(loginPlace); },
        .setLoginItem = [&loginPlace](bool on) { return LoginItem::set(on, loginPlace); },
        .startAgent =
            [&executable] {
                const auto agent =
                    executable ? AutostartEntry::agentOfCompanion(*executable) : std::nullopt;
                return agent && launchDetached({.program = agent->string()});
            },
    });

    const auto& folder = SharedSettings::settingsDirectory();
    const std::optional<fs::path> settingsFile =
        folder ? std::optional(SharedSettings::storeFile(suite, *folder)) : std::nullopt;
    const auto info = bundle ? BundleDirectory::readInfo(*bundle) : std::nullopt;
    SettingsWindow window(
        model, language,
        {.about = {.version = versionText(info),
                   .build = buildText(info),
                   .settingsFile = settingsFile
                                       ? QString::fromStdString(settingsFile->string())
                                       : QString::fromStdString(language.string("Not saved")),
                   .documentation = documentation()},
         .runningVersion = versionText(info) + " (" + buildText(info) + ")"});
    window.showPage(options->page);
    window.resize(window.sizeHint().expandedTo(QSize(760, 560)));
    if (options->renderDirectory) {
        return renderPages(window, *options->renderDirectory);
    }

    // A new language shows after a restart, as the agent's does: the window starts again in
    // it, on the page it shows, once this copy has ended, so the new copy is the one window.
    const Subscription restartInNewLanguage = model.observe([&] {
        if (!language.processIsStale() || !executable) {
            return;
        }
        language.applyChoiceToProcessDefaults();
        std::vector<std::string> again{"--page", pageNames[std::max(window.currentPage(), 0)]};
        if (std::ranges::find(arguments, LoginItemPolicy::suppressArgument) != arguments.end()) {
            again.emplace_back(LoginItemPolicy::suppressArgument);
        }
        if (launchDetached(relaunchCommand(::getpid(), executable->string(), again))) {
            QApplication::quit();
        }
    });

    SettingsChanges changes(store);
    const Subscription outsideChanges = changes.observe([&model] { model.reload(); });
    std::unique_ptr<QtFileChangeWatcher> watch;
    if (settingsFile) {
        watch = std::make_unique<QtFileChangeWatcher>(*settingsFile, settingsSettle,
                                                      [&changes] { changes.check(); });
    }
    SignalListener listener(bus, suite);
    listener.listen(SharedSettings::Signal::openSettings, [&window] { window.raiseWindow(); });
    listener.listen(SharedSettings::Signal::menuBarChanged, [&model] { model.reload(); });
    listener.listen(SharedSettings::Signal::updateAvailable, [&model] { model.reload(); });
    window.raiseWindow();
    return QApplication::exec();
}
