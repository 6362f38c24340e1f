#pragma once

#include "Updater/Downloader.h"
#include "Updater/Feed.h"
#include "Updater/SingleFileInstaller.h"
#include "Updater/UpdateChoice.h"
#include "Updater/UpdateSettings.h"
#include "Updater/UpdateSource.h"
#include "Updater/UpdateState.h"
#include "Updater/Version.h"

#include <QThread>

#include <chrono>
#include <memory>
#include <optional>

namespace ravlin {

/// Updates of a copy that is a single file: a signed feed announces them, and the program replaces its own file.
class AppcastSource final : public UpdateSource {
    Q_OBJECT

public:
    /// How long to wait for servers.
    struct Patience {
        std::chrono::milliseconds idle = std::chrono::seconds(30);
        std::chrono::milliseconds feed = std::chrono::seconds(60);
        std::chrono::milliseconds file = std::chrono::minutes(30);
    };

    /// `state` must outlive the source.
    AppcastSource(UpdateSettings settings, UpdateState& state, Version current);
    ~AppcastSource() override;

    void setPatience(const Patience& patience) { patience_ = patience; }
    void setSurroundings(const SingleFileInstaller::Surroundings& surroundings) { surroundings_ = surroundings; }

    void check(bool isAskedForByUser) override;
    void install() override;
    void skip() override;
    void cancel() override;

private:
    static constexpr qint64 kMaxFeedSize = qint64{1} << 20;  // bytes

    UpdateCircumstances circumstances() const;
    CheckResult choose(const QByteArray& document);
    FoundUpdate offer(const ChosenUpdate& update);
    void put(const QByteArray& contents);

    UpdateSettings settings_;
    UpdateState& state_;
    Version current_;
    SingleFileInstaller::Surroundings surroundings_;
    Patience patience_;
    bool isAskedForByUser_ = false;
    std::optional<ChosenUpdate> found_;
    QString file_;  // the one that is replaced
    Downloader feedDownloader_;
    Downloader fileDownloader_;
    std::unique_ptr<QThread> worker_;
};

}  // namespace ravlin
