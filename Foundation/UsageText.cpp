#include "Foundation/UsageText.h"

namespace corvane {

namespace {

constexpr std::string_view entryIndent = "  ";
constexpr std::size_t descriptionColumn = 23;
// The synopsis keeps at least one space before its description.
constexpr std::size_t widestSynopsis = descriptionColumn - entryIndent.size() - 1;

}  // namespace

void appendUsageEntry(std::string& text, std::string_view synopsis, std::string_view description) {
    text += entryIndent;
    text += synopsis;
    if (synopsis.size() > widestSynopsis) {
        text += '\n';
        text.append(descriptionColumn, ' ');
    } else {
        text.append(descriptionColumn - entryIndent.size() - synopsis.size(), ' ');
    }
    while (true) {
        const auto lineEnd = description.find('\n');
        text += description.substr(0, lineEnd);
        text += '\n';
        if (lineEnd == std::string_view::npos) {
            return;
        }
        description.remove_prefix(lineEnd + 1);
        text.append(descriptionColumn, ' ');
    }
}

}  // namespace corvane
