#pragma once

#include "Engine/Support/NonCopyable.h"
#include "Platform/Clipboard/Wayland/WaylandPasteboard.h"
#include "tests/platform/BackEnd.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlin::tests {

/// The Wayland pasteboard of the compositor that the test runs on; the test fails if there is none.
std::unique_ptr<WaylandPasteboard> openPasteboard(ReadLimits limits = {}, const char* displayName = nullptr);

/// Another program, a process of its own, which owns the clipboard as soon as this object exists. It writes in pieces
/// of `incrementSize`, and does not know PRIMARY.
class ForeignSource : public ForeignProgram {
public:
    explicit ForeignSource(const OwnerPlan& plan);
    /// The source of one plain UTF-8 text.
    explicit ForeignSource(const std::string& text)
        : ForeignSource(OwnerPlan{.content = {{"text/plain;charset=utf-8", text}}}) {}
};

/// A program that pastes, step by step, in the test's own process.
class Paster {
public:
    Paster();

    /// The types on the clipboard, sorted.
    std::vector<std::string> types();

    /// Requests the clipboard as `type`; the answer can be read from the descriptor.
    Descriptor begin(const std::string& type);

    /// The same, into a descriptor of the caller's.
    void beginInto(const std::string& type, int descriptor);

    /// Everything that arrives as `type` while `pasteboard` serves it.
    std::optional<std::string> read(const std::string& type, SystemPasteboard& pasteboard);

private:
    std::unique_ptr<WaylandConnection> connection_;
    std::unique_ptr<WaylandSelection::Manager> manager_;
    std::unique_ptr<wl_proxy, WaylandSelection::ProxyDeleter> seat_;
    std::unique_ptr<WaylandSelection::Device> device_;
    std::shared_ptr<WaylandSelection::Offer> offer_;
};

class StallingPaster final : public StallingReader {
public:
    explicit StallingPaster(SystemPasteboard& pasteboard) : pasteboard_(pasteboard) {}
    void ask(const std::string& target) override { pipes_.push_back(paster_.begin(target)); }
    void begin(const std::string& target) override;

private:
    SystemPasteboard& pasteboard_;
    Paster paster_;
    std::vector<Descriptor> pipes_;
};

/// Takes what has arrived in a pipe so far; false once it is at its end.
bool takeFrom(int pipe, std::string& bytes);

/// A private compositor, for tests that do something to it.
class PrivateCompositor : NonCopyable {
public:
    PrivateCompositor();
    ~PrivateCompositor();

    const std::string& display() const { return display_; }
    void stop();
    void resume();
    void kill();

private:
    pid_t id() const;

    Process desktop_;
    std::string display_;
    bool isStopped_ = false;
};

}  // namespace ravlin::tests
