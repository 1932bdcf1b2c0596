#include "CorvaneShared/BundleDirectory.h"

#include <algorithm>
#include <system_error>
#include <variant>

#include <nlohmann/json.hpp>

#include "Foundation/BoundedFileRead.h"
#include "Foundation/DirectoryListing.h"

namespace corvane::BundleDirectory {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view translationPrefix = "corvane_";
constexpr std::string_view translationExtension = ".qm";
// Bundle info is a few lines; anything much larger is not one.
constexpr std::size_t largestInfoBytes = 1024 * 1024;

fs::path infoFile(const fs::path& bundle) {
    return resourceDirectory(bundle) / "bundle.json";
}

std::optional<std::string> stringMember(const nlohmann::json& object, const char* name) {
    const auto found = object.find(name);
    if (found == object.end() || !found->is_string()) {
        return std::nullopt;
    }
    return found->get<std::string>();
}

// "corvane_pt_BR.qm" → "pt-BR"; absent for every other file name.
std::optional<std::string> languageOfTranslationFile(const std::string& name) {
    if (!name.starts_with(translationPrefix) || !name.ends_with(translationExtension) ||
        name.size() == translationPrefix.size() + translationExtension.size()) {
        return std::nullopt;
    }
    std::string language =
        name.substr(translationPrefix.size(),
                    name.size() - translationPrefix.size() - translationExtension.size());
    std::replace(language.begin(), language.end(), '_', '-');
    return language;
}

}  // namespace

fs::path resourceDirectory(const fs::path& bundle) {
    return bundle / "share" / "corvane";
}

fs::path translationFile(const fs::path& bundle, std::string_view language) {
    std::string name(translationPrefix);
    name += language;
    std::replace(name.begin(), name.end(), '-', '_');
    name += translationExtension;
    return resourceDirectory(bundle) / "translations" / name;
}

std::function<fs::path(std::string_view)> translationFiles(const std::optional<fs::path>& bundle) {
    if (!bundle) {
        return {};
    }
    return
        [bundle = *bundle](std::string_view language) { return translationFile(bundle, language); };
}

std::optional<BundleInfo> readInfo(const fs::path& bundle) {
    const auto text = readFileAtMost(infoFile(bundle), largestInfoBytes);
    if (!std::holds_alternative<std::string>(text)) {
        return std::nullopt;
    }
    const nlohmann::json info = nlohmann::json::parse(std::get<std::string>(text), nullptr, false);
    if (!info.is_object()) {
        return std::nullopt;
    }
    std::optional<std::string> identifier = stringMember(info, "identifier");
    if (!identifier || identifier->empty()) {
        return std::nullopt;
    }
    return BundleInfo{
        .identifier = std::move(*identifier),
        .executable = stringMember(info, "executable"),
        .developmentLocalization = stringMember(info, "developmentLocalization"),
        .version = stringMember(info, "version"),
        .build = stringMember(info, "build"),
        .feedURL = stringMember(info, "SUFeedURL"),
        .publicEDKey = stringMember(info, "SUPublicEDKey"),
    };
}

std::vector<std::string> localizations(const fs::path& bundle) {
    std::vector<std::string> languages;
    DirectoryListing listing((resourceDirectory(bundle) / "translations").c_str());
    while (const auto name = listing.next()) {
        if (auto language = languageOfTranslationFile(std::string(*name))) {
            languages.push_back(std::move(*language));
        }
    }
    // Directory order is whatever the file system keeps; the shipped list must not change
    // between two runs of the same install.
    std::sort(languages.begin(), languages.end());
    return languages;
}

std::optional<fs::path> bundleOfExecutable(const fs::path& executable) {
    const fs::path folder = executable.parent_path();
    for (const fs::path& candidate : {folder, folder.parent_path()}) {
        std::error_code error;
        if (fs::is_regular_file(infoFile(candidate), error)) {
            return candidate;
        }
    }
    return std::nullopt;
}

}  // namespace corvane::BundleDirectory
