#pragma once

#include "Updater/UserDriver.h"

#include <string>
#include <vector>

namespace ravlin::tests {

/// A user who sees words instead of windows, and answers when the test wants.
class RecordingUser final : public UserDriver {
public:
    void askForPermission(std::function<void(std::optional<bool>)> reply) override {
        told.emplace_back("may it check by itself?");
        answerPermission = std::move(reply);
    }
    void showChecking(Reply cancelReply) override {
        told.emplace_back("checking");
        cancel = std::move(cancelReply);
    }
    void showFound(const FoundUpdate& update, bool wasAskedFor, std::function<void(UpdateAnswer)> reply) override {
        told.push_back((wasAskedFor ? "found " : "found by itself ") + update.version.toStdString());
        found = update;
        answer = std::move(reply);
    }
    void showDownloading(Reply cancelReply) override {
        told.emplace_back("downloading");
        cancel = std::move(cancelReply);
    }
    void showProgress(qint64 receivedBytes, qint64 totalBytes) override { progress = {receivedBytes, totalBytes}; }
    void showInstalling() override { told.emplace_back("installing"); }
    void showUpToDate(const QString& currentVersion) override {
        told.push_back("up to date " + currentVersion.toStdString());
    }
    void showSystemTooOld(const QString& newVersion) override {
        told.push_back("too old for " + newVersion.toStdString());
    }
    void showUpdatesComeWithSystem(const QString& provider) override {
        told.push_back("comes with " + (provider.isEmpty() ? "the system" : provider.toStdString()));
    }
    void showFailure(const UpdateFailure& failure) override {
        told.push_back(name(failure.error) + (failure.detail.isEmpty() ? "" : ": " + failure.detail.toStdString()));
    }
    void bringToFront() override { told.emplace_back("to the front"); }
    void dismiss() override { told.emplace_back("dismissed"); }

    static std::string name(UpdateError error) {
        switch (error) {
            case UpdateError::notFetched: return "not fetched";
            case UpdateError::notGenuine: return "not genuine";
            case UpdateError::olderThanBefore: return "older than before";
            case UpdateError::outOfDate: return "out of date";
            case UpdateError::notDownloaded: return "not downloaded";
            case UpdateError::signatureIsWrong: return "signature is wrong";
            case UpdateError::notInstalled: return "not installed";
            case UpdateError::mayNotReplace: return "may not replace";
            case UpdateError::notFromASingleFile: return "not from a single file";
        }
        return {};
    }

    /// The last thing shown, or "".
    std::string last() const { return told.empty() ? "" : told.back(); }

    std::vector<std::string> told;
    FoundUpdate found;
    std::pair<qint64, qint64> progress;
    std::function<void(std::optional<bool>)> answerPermission;
    std::function<void(UpdateAnswer)> answer;
    Reply cancel;
};

}  // namespace ravlin::tests
