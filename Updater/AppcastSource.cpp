#include "Updater/AppcastSource.h"

#include "Updater/Signature.h"

#include <QNetworkProxyFactory>
#include <QSysInfo>

#include <utility>

#include <gnu/libc-version.h>

namespace ravlin {
namespace {

/// Verifies what was fetched and puts it in place. Both work on the same bytes in memory, so what is written is what
/// was verified.
std::optional<UpdateFailure> verifyAndReplace(const QString& file, const QByteArray& contents,
                                              const Enclosure& expected, const std::vector<PublicKey>& keys) {
    const bool isGenuine =
        contents.size() == expected.byteSize && Signature::isGenuine(contents, expected.signature, keys);
    if (!isGenuine) return UpdateFailure{.error = UpdateError::signatureIsWrong, .detail = {}};
    const std::optional<QString> cause = SingleFileInstaller::replace(file, contents);
    if (cause) return UpdateFailure{.error = UpdateError::notInstalled, .detail = *cause};
    return std::nullopt;
}

}  // namespace

AppcastSource::AppcastSource(UpdateSettings settings, UpdateState& state, Version current)
    : settings_(std::move(settings)),
      state_(state),
      current_(std::move(current)),
      surroundings_(SingleFileInstaller::Surroundings::current()),
      feedDownloader_(current_.text()),
      fileDownloader_(current_.text()) {
    const auto target = SingleFileInstaller::target(surroundings_);
    if (const auto* const file = std::get_if<QString>(&target)) SingleFileInstaller::removeRemains(*file);
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    connect(&feedDownloader_, &Downloader::finished, this,
            [this](const QByteArray& document) { Q_EMIT checked(choose(document)); });
    connect(&feedDownloader_, &Downloader::failed, this,
            [this] { Q_EMIT checked(UpdateFailure{.error = UpdateError::notFetched, .detail = {}}); });
    connect(&fileDownloader_, &Downloader::progressed, this,
            [this](qint64 bytes) { Q_EMIT progressed(bytes, found_->enclosure->byteSize); });
    connect(&fileDownloader_, &Downloader::finished, this, &AppcastSource::put);
    connect(&fileDownloader_, &Downloader::failed, this,
            [this] { Q_EMIT failed({.error = UpdateError::notDownloaded, .detail = {}}); });
}

AppcastSource::~AppcastSource() {
    if (worker_ != nullptr) worker_->wait();
}

void AppcastSource::check(bool isAskedForByUser) {
    isAskedForByUser_ = isAskedForByUser;
    found_.reset();
    feedDownloader_.start(settings_.feed, {.byteSize = kMaxFeedSize, .idle = patience_.idle, .total = patience_.feed});
}

UpdateCircumstances AppcastSource::circumstances() const {
    return {.current = current_,
            // The GNU C library counts in two numbers.
            .system = Version::parse(QString::fromLatin1(gnu_get_libc_version())).value_or(Version()),
            .architecture = QSysInfo::buildCpuArchitecture(),
            .now = QDateTime::currentDateTimeUtc(),
            .newestFeed = state_.newestFeed(),
            .skippedVersion = state_.skippedVersion(),
            .isAskedForByUser = isAskedForByUser_};
}

CheckResult AppcastSource::choose(const QByteArray& document) {
    const std::optional<Feed> feed = Feed::read(document, settings_.keys);
    if (!feed) return UpdateFailure{.error = UpdateError::notGenuine, .detail = {}};
    const UpdateChoice choice = chooseUpdate(*feed, circumstances());
    if (const auto* const error = std::get_if<UpdateError>(&choice))
        return UpdateFailure{.error = *error, .detail = {}};
    state_.setNewestFeed(feed->buildDate);
    if (const auto* const tooNew = std::get_if<NeedsNewerSystem>(&choice)) return SystemTooOld{tooNew->version};
    if (const auto* const update = std::get_if<ChosenUpdate>(&choice)) return offer(*update);
    return UpToDate{};
}

FoundUpdate AppcastSource::offer(const ChosenUpdate& update) {
    found_ = update;
    return {.version = update.item.displayVersion,
            .currentVersion = current_.text(),
            .notes = update.item.notes,
            .notesAreMarkdown = update.item.notesAreMarkdown,
            .isCritical = update.item.isCritical,
            .canBeSkipped = !update.item.isCritical,
            .canBeInstalled = update.enclosure.has_value(),
            .link = update.item.link};
}

void AppcastSource::install() {
    const auto target = SingleFileInstaller::target(surroundings_);
    if (const auto* const failure = std::get_if<UpdateFailure>(&target)) {
        Q_EMIT failed(*failure);
        return;
    }
    file_ = std::get<QString>(target);
    const Enclosure& enclosure = *found_->enclosure;
    fileDownloader_.start(enclosure.url,
                          {.byteSize = enclosure.byteSize, .idle = patience_.idle, .total = patience_.file});
}

/// In a separate thread, since disks may be slow and the panel has to stay usable.
void AppcastSource::put(const QByteArray& contents) {
    Q_EMIT installing();
    const auto result = std::make_shared<std::optional<UpdateFailure>>();
    worker_.reset(
        QThread::create([result, contents, file = file_, enclosure = *found_->enclosure, keys = settings_.keys] {
            *result = verifyAndReplace(file, contents, enclosure, keys);
        }));
    connect(worker_.get(), &QThread::finished, this, [this, result] {
        if (*result) {
            Q_EMIT failed(**result);
        } else {
            Q_EMIT installed(file_);
        }
    });
    worker_->start();
}

void AppcastSource::skip() {
    if (found_) state_.setSkippedVersion(found_->item.version.text());
}

void AppcastSource::cancel() {
    feedDownloader_.cancel();
    fileDownloader_.cancel();
}

}  // namespace ravlin
