#include "Platform/Updates/UpdateChoice.h"

#include "Foundation/NumberParsing.h"
#include "Foundation/TextTrimming.h"

namespace corvane::UpdateChoice {

std::optional<std::int64_t> buildOf(std::string_view text) {
    return parseNumber<std::int64_t>(text::trim(text));
}

std::optional<UpdateItem> newest(const std::vector<UpdateItem>& items, std::int64_t runningBuild,
                                 std::optional<std::int64_t> skippedBuild) {
    const UpdateItem* best = nullptr;
    std::int64_t bestBuild = runningBuild;
    for (const UpdateItem& item : items) {
        const std::optional<std::int64_t> build = buildOf(item.versionString);
        if (build && *build > bestBuild && build != skippedBuild) {
            best = &item;
            bestBuild = *build;
        }
    }
    return best ? std::optional(*best) : std::nullopt;
}

}  // namespace corvane::UpdateChoice
