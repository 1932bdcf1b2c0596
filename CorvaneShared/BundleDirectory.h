#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// What a bundle says about itself in its info file.
struct BundleInfo {
    std::string identifier;
    /// The program to start, relative to the bundle; absent when the bundle has none.
    std::optional<std::string> executable;
    /// The language its text keys are written in; absent when the info does not say.
    std::optional<std::string> developmentLocalization;
    /// The version people read ("2.1") and the build ("57"); absent when the info lacks them.
    std::optional<std::string> version;
    std::optional<std::string> build;
    /// The main bundle's update feed and the base64 Ed25519 key its archives are signed with.
    std::optional<std::string> feedURL;
    std::optional<std::string> publicEDKey;
};

/// The bundle layout on Linux: a bundle is a directory whose `share/corvane/` holds the bundle
/// info (`bundle.json`: "identifier", "executable", "developmentLocalization", "version",
/// "build", "SUFeedURL", "SUPublicEDKey") and the compiled
/// translations (`translations/corvane_<language>.qm`). An install prefix, the build tree and
/// each `.app` folder of the portable layout are bundles. Every call reads the disk afresh;
/// nothing throws; any thread.
namespace BundleDirectory {

/// `<bundle>/share/corvane`.
std::filesystem::path resourceDirectory(const std::filesystem::path& bundle);

/// The compiled translation of `language` ("de", "pt-BR"); it need not exist.
std::filesystem::path translationFile(const std::filesystem::path& bundle,
                                      std::string_view language);

/// `translationFile` of `bundle` for any language; an empty function without a bundle (a
/// program run from outside one has no translations).
std::function<std::filesystem::path(std::string_view language)> translationFiles(
    const std::optional<std::filesystem::path>& bundle);

/// The bundle's info; absent when the file is missing, larger than 1 MiB (bundle info takes a
/// few lines), is not a JSON object, or has no non-empty string "identifier" (the directory
/// then does not open as a bundle). Members of another type than string read as absent.
std::optional<BundleInfo> readInfo(const std::filesystem::path& bundle);

/// The languages of the bundle's translation files, sorted by name; '_' in a file's language
/// reads as '-' ("corvane_pt_BR.qm" gives "pt-BR"). Empty when the folder is missing.
std::vector<std::string> localizations(const std::filesystem::path& bundle);

/// The bundle that `executable` runs from: its own folder when that holds bundle info (a build
/// tree), else the folder above it (`<prefix>/bin/`); absent when neither does.
std::optional<std::filesystem::path> bundleOfExecutable(const std::filesystem::path& executable);

}  // namespace BundleDirectory

}  // namespace corvane
