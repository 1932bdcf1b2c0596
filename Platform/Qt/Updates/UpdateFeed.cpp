#include "Platform/Qt/Updates/UpdateFeed.h"

#include <QHostAddress>
#include <QXmlStreamReader>

#include <optional>

#include "Foundation/NumberParsing.h"
#include "Foundation/TextTrimming.h"

namespace corvane::UpdateFeed {

namespace {

struct ItemFields {
    UpdateItem item;
    bool hasEnclosure = false;
    std::optional<std::string> enclosureVersion;
    std::optional<std::string> enclosureShortVersion;
};

bool isAppcast(const QXmlStreamReader& reader, QStringView name) {
    return reader.namespaceUri() == QLatin1String(appcastNamespace) && reader.name() == name;
}

std::optional<std::string> appcastAttribute(const QXmlStreamAttributes& attributes,
                                            const char* name) {
    if (!attributes.hasAttribute(QLatin1String(appcastNamespace), QLatin1String(name))) {
        return std::nullopt;
    }
    return attributes.value(QLatin1String(appcastNamespace), QLatin1String(name))
        .toString()
        .trimmed()
        .toStdString();
}

void readEnclosure(const QXmlStreamReader& reader, ItemFields& fields) {
    const QXmlStreamAttributes attributes = reader.attributes();
    fields.hasEnclosure = true;
    fields.item.archiveURL =
        attributes.value(QLatin1String("url")).toString().trimmed().toStdString();
    const std::string length = attributes.value(QLatin1String("length")).toString().toStdString();
    fields.item.archiveLength = parseNumber<std::uint64_t>(text::trim(length)).value_or(0);
    fields.item.edSignature = appcastAttribute(attributes, "edSignature").value_or("");
    fields.enclosureVersion = appcastAttribute(attributes, "version");
    fields.enclosureShortVersion = appcastAttribute(attributes, "shortVersionString");
}

// Reads one <item>; the reader stands on its start and is left on its end.
ItemFields readItem(QXmlStreamReader& reader) {
    ItemFields fields;
    std::optional<std::string> shortVersion;
    while (reader.readNextStartElement()) {
        if (isAppcast(reader, u"version")) {
            fields.item.versionString = reader.readElementText().trimmed().toStdString();
        } else if (isAppcast(reader, u"shortVersionString")) {
            shortVersion = reader.readElementText().trimmed().toStdString();
        } else if (isAppcast(reader, u"releaseNotesLink")) {
            fields.item.releaseNotesLink = reader.readElementText().trimmed().toStdString();
        } else if (reader.namespaceUri().isEmpty() && reader.name() == u"description") {
            fields.item.releaseNotes = reader.readElementText().trimmed().toStdString();
        } else if (reader.namespaceUri().isEmpty() && reader.name() == u"enclosure") {
            readEnclosure(reader, fields);
            reader.skipCurrentElement();
        } else {
            reader.skipCurrentElement();
        }
    }
    if (fields.item.versionString.empty() && fields.enclosureVersion) {
        fields.item.versionString = *fields.enclosureVersion;
    }
    if (!shortVersion) {
        shortVersion = fields.enclosureShortVersion;
    }
    fields.item.displayVersionString =
        shortVersion && !shortVersion->empty() ? *shortVersion : fields.item.versionString;
    return fields;
}

}  // namespace

bool isAllowedURL(const QUrl& url) {
    if (!url.isValid() || url.host().isEmpty()) {
        return false;
    }
    if (url.scheme() == QLatin1String("https")) {
        return true;
    }
    if (url.scheme() != QLatin1String("http")) {
        return false;
    }
    const QString host = url.host();
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

std::variant<std::vector<UpdateItem>, UpdateFailure> parse(const QByteArray& feed) {
    QXmlStreamReader reader(feed);
    std::vector<UpdateItem> items;
    bool sawChannel = false;
    if (!reader.readNextStartElement() || reader.name() != u"rss") {
        if (reader.hasError()) {
            return UpdateFailure{"the update feed is not valid XML: " +
                                 reader.errorString().toStdString()};
        }
        return UpdateFailure{"the update feed is not an RSS feed"};
    }
    while (reader.readNextStartElement()) {
        if (reader.name() != u"channel") {
            reader.skipCurrentElement();
            continue;
        }
        sawChannel = true;
        while (reader.readNextStartElement()) {
            if (reader.name() != u"item") {
                reader.skipCurrentElement();
                continue;
            }
            ItemFields fields = readItem(reader);
            if (fields.hasEnclosure && !fields.item.versionString.empty() &&
                !fields.item.archiveURL.empty()) {
                items.push_back(std::move(fields.item));
            }
        }
    }
    // Reading to the end catches damage after the last item too.
    while (!reader.atEnd()) {
        reader.readNext();
    }
    if (reader.hasError()) {
        return UpdateFailure{
            "the update feed is not valid XML: " + reader.errorString().toStdString() + " (line " +
            std::to_string(reader.lineNumber()) + ")"};
    }
    if (!sawChannel) {
        return UpdateFailure{"the update feed is not an RSS feed"};
    }
    return items;
}

}  // namespace corvane::UpdateFeed
