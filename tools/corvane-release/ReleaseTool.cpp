#include "tools/corvane-release/ReleaseTool.h"

#include <fcntl.h>
#include <sodium.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <map>
#include <optional>
#include <ostream>
#include <variant>
#include <vector>

#include "Foundation/ArgumentText.h"
#include "Foundation/FileDescriptor.h"
#include "Platform/Updates/ArchiveSignature.h"
#include "Platform/Updates/UpdateChoice.h"

namespace corvane::ReleaseTool {

namespace {

namespace fs = std::filesystem;

constexpr const char* usage = R"(Usage: corvane-release COMMAND

  keys SECRET_KEY_FILE
      make an Ed25519 key pair for signing updates: the secret key goes into the new file
      SECRET_KEY_FILE (readable by you only; an existing file is never overwritten), the
      public key is printed, for "SUPublicEDKey" in the main bundle's information
  sign ARCHIVE --key SECRET_KEY_FILE
      print the archive's signature and length as the feed's enclosure carries them
  feed-item ARCHIVE --key SECRET_KEY_FILE --version VERSION --build BUILD --url URL
            [--notes FILE | --notes-link URL]
      print the feed <item> that offers ARCHIVE, downloaded from URL, as VERSION (BUILD)
)";

struct Failure {
    std::string message;
    int status = 1;
};

Failure usageError(const std::string& message) {
    return {message + " (see corvane-release --help)", 2};
}

std::string quoted(const fs::path& path) {
    return quotedArgument(path.string());
}

// A path where a file to read belongs that names something else; a missing file is left to
// the read, which says so.
bool namesSomethingElseThanAFile(const fs::path& path) {
    return namesOtherKindThan(path, fs::file_type::regular);
}

std::variant<std::string, Failure> readFile(const fs::path& path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen()) {
        return Failure{"cannot read " + quoted(path) + ": " + std::strerror(errno)};
    }
    std::string content;
    char buffer[1 << 16];
    for (;;) {
        const ssize_t count = ::read(file.get(), buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return Failure{"cannot read " + quoted(path) + ": " + std::strerror(errno)};
        }
        if (count == 0) {
            return content;
        }
        content.append(buffer, static_cast<std::size_t>(count));
    }
}

std::variant<std::string, Failure> readSecretKey(const fs::path& path) {
    auto text = readFile(path);
    if (auto* failure = std::get_if<Failure>(&text)) {
        return *failure;
    }
    auto key =
        ArchiveSignature::decodeBase64(std::get<std::string>(text), crypto_sign_SECRETKEYBYTES);
    if (!key) {
        return Failure{quoted(path) + " does not hold a secret key made by corvane-release keys"};
    }
    return *key;
}

std::string signatureOf(std::string_view archive, const std::string& secretKey) {
    unsigned char signature[crypto_sign_BYTES];
    crypto_sign_detached(signature, nullptr, reinterpret_cast<const unsigned char*>(archive.data()),
                         archive.size(), reinterpret_cast<const unsigned char*>(secretKey.data()));
    return ArchiveSignature::encodeBase64(
        std::string_view(reinterpret_cast<const char*>(signature), sizeof signature));
}

std::string rfc822Now() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    ::gmtime_r(&now, &utc);
    char text[64];
    // Day and month names in English whatever the locale: the format fixes them.
    static constexpr const char* days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::snprintf(text, sizeof text, "%s, %02d %s %04d %02d:%02d:%02d +0000", days[utc.tm_wday],
                  utc.tm_mday, months[utc.tm_mon], utc.tm_year + 1900, utc.tm_hour, utc.tm_min,
                  utc.tm_sec);
    return text;
}

std::optional<Failure> makeKeys(const fs::path& secretFile, std::ostream& out) {
    unsigned char publicKey[crypto_sign_PUBLICKEYBYTES];
    unsigned char secretKey[crypto_sign_SECRETKEYBYTES];
    crypto_sign_keypair(publicKey, secretKey);
    const std::string secretText = ArchiveSignature::encodeBase64(std::string_view(
                                       reinterpret_cast<char*>(secretKey), sizeof secretKey)) +
                                   "\n";
    sodium_memzero(secretKey, sizeof secretKey);
    const FileDescriptor file(
        ::open(secretFile.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file.isOpen()) {
        return Failure{"cannot create " + quoted(secretFile) + ": " + std::strerror(errno)};
    }
    if (::write(file.get(), secretText.data(), secretText.size()) !=
        static_cast<ssize_t>(secretText.size())) {
        ::unlink(secretFile.c_str());
        return Failure{"cannot write " + quoted(secretFile) + ": " + std::strerror(errno)};
    }
    out << ArchiveSignature::encodeBase64(
               std::string_view(reinterpret_cast<char*>(publicKey), sizeof publicKey))
        << '\n';
    return std::nullopt;
}

/// `--name value` options after the command's one positional argument.
struct Options {
    std::string positional;
    std::map<std::string, std::string, std::less<>> values;
};

std::variant<Options, Failure> parseOptions(std::span<const std::string_view> arguments,
                                            std::initializer_list<std::string_view> allowed) {
    Options options;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string_view argument = arguments[index];
        if (!argument.starts_with("--")) {
            if (!options.positional.empty()) {
                return usageError("one archive only, not also " + quotedArgument(argument));
            }
            options.positional = argument;
            continue;
        }
        if (std::find(allowed.begin(), allowed.end(), argument) == allowed.end()) {
            return usageError("unknown option " + quotedArgument(argument));
        }
        if (index + 1 >= arguments.size()) {
            return usageError(std::string(argument) + " needs a value");
        }
        options.values[std::string(argument)] = arguments[++index];
    }
    if (options.positional.empty()) {
        return usageError("no archive named");
    }
    return options;
}

std::optional<Failure> signOrDescribe(std::span<const std::string_view> arguments, bool item,
                                      std::ostream& out) {
    auto parsed = item ? parseOptions(arguments, {"--key", "--version", "--build", "--url",
                                                  "--notes", "--notes-link"})
                       : parseOptions(arguments, {"--key"});
    if (auto* failure = std::get_if<Failure>(&parsed)) {
        return *failure;
    }
    const Options& options = std::get<Options>(parsed);
    std::vector<const char*> required = {"--key"};
    if (item) {
        required.insert(required.end(), {"--version", "--build", "--url"});
    }
    for (const char* name : required) {
        if (!options.values.contains(name) || options.values.at(name).empty()) {
            return usageError(std::string(name) + " is needed");
        }
    }
    if (options.values.contains("--notes") && options.values.contains("--notes-link")) {
        return usageError("--notes and --notes-link exclude each other");
    }
    // The updater orders releases by build and never offers one whose build is not a number.
    if (item && !UpdateChoice::buildOf(options.values.at("--build"))) {
        return usageError("--build: " + quotedArgument(options.values.at("--build")) +
                          " is not a whole number");
    }
    for (const auto* name : {"--key", "--notes"}) {
        if (const auto file = options.values.find(name);
            file != options.values.end() && namesSomethingElseThanAFile(file->second)) {
            return usageError(std::string(name) + ": " + quotedArgument(file->second) +
                              " is not a file");
        }
    }
    if (namesSomethingElseThanAFile(options.positional)) {
        return usageError(quotedArgument(options.positional) + " is not a file");
    }
    auto secretKey = readSecretKey(options.values.at("--key"));
    if (auto* failure = std::get_if<Failure>(&secretKey)) {
        return *failure;
    }
    auto archive = readFile(options.positional);
    if (auto* failure = std::get_if<Failure>(&archive)) {
        return *failure;
    }
    const std::string& bytes = std::get<std::string>(archive);
    const std::string signature = signatureOf(bytes, std::get<std::string>(secretKey));
    if (!item) {
        out << "sparkle:edSignature=\"" << signature << "\" length=\"" << bytes.size() << "\"\n";
        return std::nullopt;
    }
    Release release{
        .version = options.values.at("--version"),
        .build = options.values.at("--build"),
        .url = options.values.at("--url"),
        .length = bytes.size(),
        .signature = signature,
        .date = rfc822Now(),
    };
    if (auto notes = options.values.find("--notes"); notes != options.values.end()) {
        auto text = readFile(notes->second);
        if (auto* failure = std::get_if<Failure>(&text)) {
            return *failure;
        }
        release.notes = std::get<std::string>(text);
    }
    if (auto link = options.values.find("--notes-link"); link != options.values.end()) {
        release.notesLink = link->second;
    }
    out << feedItem(release);
    return std::nullopt;
}

}  // namespace

std::string xmlEscaped(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (char c : text) {
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            case '\'': escaped += "&apos;"; break;
            default: escaped += c;
        }
    }
    return escaped;
}

std::string feedItem(const Release& release) {
    std::string item = "<item>\n";
    item += "    <title>Corvane " + xmlEscaped(release.version) + "</title>\n";
    item += "    <sparkle:version>" + xmlEscaped(release.build) + "</sparkle:version>\n";
    item += "    <sparkle:shortVersionString>" + xmlEscaped(release.version) +
            "</sparkle:shortVersionString>\n";
    if (!release.notes.empty()) {
        item += "    <description>" + xmlEscaped(release.notes) + "</description>\n";
    }
    if (!release.notesLink.empty()) {
        item += "    <sparkle:releaseNotesLink>" + xmlEscaped(release.notesLink) +
                "</sparkle:releaseNotesLink>\n";
    }
    if (!release.date.empty()) {
        item += "    <pubDate>" + xmlEscaped(release.date) + "</pubDate>\n";
    }
    item += "    <enclosure url=\"" + xmlEscaped(release.url) + "\" length=\"" +
            std::to_string(release.length) +
            "\" type=\"application/octet-stream\" sparkle:edSignature=\"" +
            xmlEscaped(release.signature) + "\"/>\n";
    item += "</item>\n";
    return item;
}

int run(std::span<const std::string_view> arguments, std::ostream& out, std::ostream& errors) {
    if (sodium_init() < 0) {
        errors << "corvane-release: libsodium cannot start\n";
        return 1;
    }
    if (arguments.empty()) {
        errors << "corvane-release: missing command (see corvane-release --help)\n";
        return 2;
    }
    if (arguments[0] == "--help" || arguments[0] == "-h") {
        out << usage;
        return 0;
    }
    // Paths and versions end up in messages and in the feed's XML, which is UTF-8.
    if (const auto argument = firstArgumentNotUTF8(arguments)) {
        errors << "corvane-release: " << quotedArgument(*argument)
               << " is not valid UTF-8 (see corvane-release --help)\n";
        return 2;
    }
    const std::string_view command = arguments[0];
    const auto rest = arguments.subspan(1);
    std::optional<Failure> failure;
    if (command == "keys") {
        if (rest.size() != 1 || rest[0].starts_with("--")) {
            failure = usageError("keys needs the file to keep the secret key in");
        } else if (namesSomethingElseThanAFile(fs::path(rest[0]))) {
            failure = usageError(quoted(fs::path(rest[0])) + " is not a file");
        } else {
            failure = makeKeys(fs::path(rest[0]), out);
        }
    } else if (command == "sign" || command == "feed-item") {
        failure = signOrDescribe(rest, command == "feed-item", out);
    } else {
        failure = usageError("unknown command " + quotedArgument(command));
    }
    if (failure) {
        errors << "corvane-release: " << failure->message << '\n';
        return failure->status;
    }
    return 0;
}

}  // namespace corvane::ReleaseTool
