#pragma once

#include "Updater/Feed.h"
#include "Updater/UserDriver.h"
#include "Updater/Version.h"

#include <QDateTime>
#include <QString>

#include <optional>
#include <variant>

namespace ravlin {

/// What determines, together with the feed, whether there is an update.
struct UpdateCircumstances {
    Version current;
    Version system;        // of the C library
    QString architecture;  // for example "x86_64"
    QDateTime now;
    QDateTime newestFeed;           // the newest date of any feed so far; invalid before the first one
    QString skippedVersion;         // the user does not want it offered again
    bool isAskedForByUser = false;  // then a skipped version counts, too
};

/// A release newer than this one. Without an enclosure it cannot be installed, only read about.
struct ChosenUpdate {
    FeedItem item;
    std::optional<Enclosure> enclosure;
};
struct NothingNewer {};
struct NeedsNewerSystem {
    QString version;
};

using UpdateChoice = std::variant<ChosenUpdate, NothingNewer, NeedsNewerSystem, UpdateError>;

/// Chooses the newest release for this machine. A feed that is older than the last one, that has expired, or whose date
/// lies more than a day ahead is an error, whatever it offers.
UpdateChoice chooseUpdate(const Feed& feed, const UpdateCircumstances& circumstances);

}  // namespace ravlin
