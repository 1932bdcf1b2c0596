#pragma once

#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

/// `corvane-release`: makes the Ed25519 key pair that signs updates, signs an archive, and
/// writes the feed item that offers it. Framework-free; the secret key never leaves its file.
namespace ReleaseTool {

/// Runs the command line after the program name; prints results on `out` and one-line
/// errors on `errors`. Answers the exit status: 0 done, 1 failed, 2 bad command line.
int run(std::span<const std::string_view> arguments, std::ostream& out, std::ostream& errors);

/// `text` with the five XML special characters escaped, for element text and attributes.
std::string xmlEscaped(std::string_view text);

/// What a feed item says about one release.
struct Release {
    std::string version;
    std::string build;
    std::string url;
    std::uint64_t length = 0;
    std::string signature;
    /// Inline release notes (HTML); empty for none.
    std::string notes;
    /// Where the notes are published instead; empty for none.
    std::string notesLink;
    /// The publication date, as RFC 822 text.
    std::string date;
};

/// The `<item>` of an appcast feed that offers `release`.
std::string feedItem(const Release& release);

}  // namespace ReleaseTool

}  // namespace corvane
