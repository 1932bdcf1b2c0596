#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// Appends one entry of a program's `--help` list to `text`: two spaces, `synopsis` ("--open
/// SECTION"), and `description` from the 24th column on; a synopsis too wide for its column
/// puts the description on the next line. Each line of a description written over several
/// ('\n' between them) is indented to that column too.
void appendUsageEntry(std::string& text, std::string_view synopsis, std::string_view description);

}  // namespace corvane
