#include "Updater/UpdateChoice.h"

#include "Updater/Address.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace ravlin {
namespace {

constexpr qint64 kClockTolerance = qint64{24} * 60 * 60;  // seconds, for clocks that are wrong

/// Why the feed as a whole cannot be trusted.
std::optional<UpdateError> objectionTo(const Feed& feed, const UpdateCircumstances& circumstances) {
    // If accepted, it would make every later feed an older one.
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

/// Links open in the user's browser, so they may only lead to the web.
bool hasUsableLink(const FeedItem& item) {
    return item.link.scheme() == QLatin1String("https") && Address::isSafe(item.link);
}

bool isWanted(const FeedItem& item, const UpdateCircumstances& circumstances) {
    if (item.isForAChannel || item.version <= circumstances.current) return false;
    const bool isSkipped = !item.isCritical && item.version.text() == circumstances.skippedVersion;
    return circumstances.isAskedForByUser || !isSkipped;
}

bool runsOn(const FeedItem& item, const Version& system) {
    return !item.minimumSystem || *item.minimumSystem <= system;
}

/// The newer releases that can be installed or read about, the newest first.
std::vector<ChosenUpdate> candidates(const Feed& feed, const UpdateCircumstances& circumstances) {
    std::vector<ChosenUpdate> found;
    for (const FeedItem& item : feed.items) {
        ChosenUpdate update = {.item = item, .enclosure = enclosureFor(item, circumstances.architecture)};
        const bool isUsable = update.enclosure || hasUsableLink(item);
        if (isUsable && isWanted(item, circumstances)) found.push_back(std::move(update));
    }
    std::ranges::stable_sort(found, std::ranges::greater(), [](const ChosenUpdate& each) { return each.item.version; });
    return found;
}

}  // namespace

UpdateChoice chooseUpdate(const Feed& feed, const UpdateCircumstances& circumstances) {
    if (const auto objection = objectionTo(feed, circumstances)) return *objection;
    const std::vector<ChosenUpdate> newer = candidates(feed, circumstances);
    if (newer.empty()) return NothingNewer{};
    const auto best =
        std::ranges::find_if(newer, [&](const ChosenUpdate& each) { return runsOn(each.item, circumstances.system); });
    if (best == newer.end()) return NeedsNewerSystem{newer.front().item.displayVersion};
    return *best;
}

}  // namespace ravlin
