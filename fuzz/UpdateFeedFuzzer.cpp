// The update feed as the server sends it, and the choice of the release to offer from it.

#include <QByteArray>

#include <algorithm>
#include <limits>

#include "Platform/Qt/Updates/UpdateFeed.h"
#include "Platform/Updates/UpdateChoice.h"
#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    using fuzz::require;
    const QByteArray feed(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto parsed = UpdateFeed::parse(feed);
    const auto again = UpdateFeed::parse(feed);
    const auto* items = std::get_if<std::vector<UpdateItem>>(&parsed);
    if (!items) {
        const auto* failure = std::get_if<UpdateFailure>(&again);
        require(failure && failure->description == std::get<UpdateFailure>(parsed).description,
                "feed: refused the same way twice");
        require(!failure->description.empty(), "feed: a refusal says why");
        return 0;
    }
    require(std::get_if<std::vector<UpdateItem>>(&again) &&
                *std::get_if<std::vector<UpdateItem>>(&again) == *items,
            "feed: the same items twice");
    for (const UpdateItem& item : *items) {
        require(!item.versionString.empty() && !item.archiveURL.empty(),
                "feed: every item names a build and an archive");
        require(!item.displayVersionString.empty(), "feed: a missing display version is the build");
    }
    const auto offered =
        UpdateChoice::newest(*items, std::numeric_limits<std::int64_t>::min(), std::nullopt);
    if (offered) {
        require(std::find(items->begin(), items->end(), *offered) != items->end(),
                "choice: the offer is one of the items");
        const auto build = UpdateChoice::buildOf(offered->versionString);
        require(build.has_value(), "choice: the offer's build is a number");
        require(!UpdateChoice::newest(*items, *build, std::nullopt),
                "choice: nothing is newer than the newest");
    }
    return 0;
}
