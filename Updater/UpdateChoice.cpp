#include "Updater/UpdateChoice.h"

#include "Updater/Address.h"

#include <algorithm>

namespace ravlin {
namespace {

constexpr qint64 kClockTolerance = qint64{24} * 60 * 60;  // s, for clocks that are wrong

/// Why the feed as a whole is not to be believed.
std::optional<UpdateError> objectionTo(const Feed& feed, const UpdateCircumstances& circumstances) {
    // Once accepted, it would make every later feed an older one.
    if (feed.buildDate > circumstances.now.addSecs(kClockTolerance)) return UpdateError::notGenuine;
    if (circumstances.newestFeed.isValid() && feed.buildDate < circumstances.newestFeed)
        return UpdateError::olderThanBefore;
    if (feed.expires && *feed.expires < circumstances.now) return UpdateError::outOfDate;
    return std::nullopt;
}

std::optional<Enclosure> enclosureFor(const FeedItem& item, const QString& architecture) {
    const QString precise = QStringLiteral("linux-") + architecture;
    const auto fits = [&](const Enclosure& each) {
        return (each.os == QLatin1String("linux") || each.os == precise) &&
               each.installationType == QLatin1String("appimage") && Address::isSafe(each.url);
    };
    const auto found = std::ranges::find_if(item.enclosures, fits);
    return found == item.enclosures.end() ? std::nullopt : std::optional(*found);
}

/// Links are opened by the user's browser, so that they are for the web only.
bool hasUsableLink(const FeedItem& item) {
    return item.link.scheme() == QLatin1String("https") && Address::isSafe(item.link);
}

bool isWanted(const FeedItem& item, const UpdateCircumstances& circumstances) {
    if (item.isForAChannel || item.version <= circumstances.current) return false;
    const bool isSkipped = !item.isCritical && item.version.text() == circumstances.skippedVersion;
    return circumstances.isAskedForByUser || !isSkipped;
}

}  // namespace

UpdateChoice chooseUpdate(const Feed& feed, const UpdateCircumstances& circumstances) {
    if (const auto objection = objectionTo(feed, circumstances)) return *objection;
    std::optional<ChosenUpdate> best;
    const FeedItem* tooNew = nullptr;
    for (const FeedItem& item : feed.items) {
        std::optional<Enclosure> enclosure = enclosureFor(item, circumstances.architecture);
        if (!isWanted(item, circumstances) || (!enclosure && !hasUsableLink(item))) continue;
        if (item.minimumSystem && *item.minimumSystem > circumstances.system) {
            if (tooNew == nullptr || item.version > tooNew->version) tooNew = &item;
        } else if (!best || item.version > best->item.version) {
            best = ChosenUpdate{.item = item, .enclosure = std::move(enclosure)};
        }
    }
    if (best) return *best;
    if (tooNew != nullptr) return NeedsNewerSystem{tooNew->displayVersion};
    return NothingNewer{};
}

}  // namespace ravlin
