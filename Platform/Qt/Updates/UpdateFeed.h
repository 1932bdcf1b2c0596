#pragma once

#include <QByteArray>
#include <QUrl>

#include <variant>
#include <vector>

#include "Platform/Updater.h"
#include "Platform/Updates/UpdateFailure.h"

namespace corvane {

/// The update feed: an RSS 2.0 channel whose items carry, in the appcast namespace, the build
/// (`sparkle:version`), the display version (`sparkle:shortVersionString`), release notes
/// (`description` or `sparkle:releaseNotesLink`) and an `enclosure` with `url`, `length` and
/// `sparkle:edSignature`. Any thread.
namespace UpdateFeed {

/// The namespace of the appcast elements and attributes.
inline constexpr const char* appcastNamespace =
    "http://www.andymatuschak.org/xml-namespaces/sparkle";

/// The most of a feed that is read, in bytes; a longer one is refused.
inline constexpr qint64 maximumFeedBytes = 1 << 20;

/// Whether updates may come from `url`: https, or http to a loopback host (for tests and
/// local mirrors); never anything else.
bool isAllowedURL(const QUrl& url);

/// The items of `feed` that name a build and an archive, in feed order; the failure when
/// the text is not well-formed XML or not an RSS channel. A build given only on the enclosure
/// counts; a missing display version is the build.
std::variant<std::vector<UpdateItem>, UpdateFailure> parse(const QByteArray& feed);

}  // namespace UpdateFeed

}  // namespace corvane
