#pragma once

#include "Platform/Clipboard/ReadLimits.h"
#include "Platform/Clipboard/SystemPasteboard.h"
#include "Platform/Clipboard/Wayland/DataControl.h"
#include "Platform/Clipboard/Wayland/PipeWriter.h"
#include "Platform/Clipboard/Wayland/WaylandConnection.h"
#include "Platform/Clipboard/Wayland/WaylandInput.h"

#include <chrono>
#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ravlin {

/// The clipboard of a Wayland compositor.
///
/// The compositor tells every change of the clipboard, our own included, and answers in the order of what happened. So
/// after any answer the events before it say how many changes there were: nothing is missed.
///
/// By data control that needs neither a window nor the keyboard's focus. Without it, the compositor tells nothing, and
/// takes nothing, while no window of the program has the focus. What cannot be known then is not told, either: nothing
/// is there to read, each look at the counter finds another number, and nothing is written. Only text of our own is
/// known to be there for as long as nobody has copied.
///
/// A clipboard belongs to a seat: this is that of the first one, and of the next when that goes.
///
/// Once the connection is lost every operation returns at once with nothing or false.
class WaylandPasteboard final : public SystemPasteboard {
public:
    /// Connects to `displayName` (null: to the one that WAYLAND_DISPLAY names), to use its data control. Null where
    /// that fails, with the reason in `whyNot`, for example "the compositor offers no data control".
    static std::unique_ptr<WaylandPasteboard> open(const char* displayName, std::string& whyNot,
                                                   ReadLimits limits = {});

    /// Does without data control, on the connection of the program's windows, which must outlive this object and may
    /// have other readers: see `WaylandConnection::share`. Null where that fails.
    static std::unique_ptr<WaylandPasteboard> openOn(wl_display* display, std::string& whyNot, ReadLimits limits = {});

    WaylandPasteboard(const WaylandPasteboard&) = delete;
    WaylandPasteboard& operator=(const WaylandPasteboard&) = delete;
    WaylandPasteboard(WaylandPasteboard&&) = delete;
    WaylandPasteboard& operator=(WaylandPasteboard&&) = delete;
    ~WaylandPasteboard() override;

    /// Counts the changes since this object was made. A compositor that does not answer in time is assumed to have
    /// changed something.
    std::int64_t changeCount() override;

    /// Plain text in the best encoding that its program offers. A program that did not write is asked again only by the
    /// next call of this function: `data` does not wait for it a second time.
    std::optional<std::string> string() override;
    std::optional<std::string> data(Type type) override;
    std::optional<std::size_t> itemCount() override;
    void clearContents() override;

    /// False where there is no seat, or no focus where it is needed, where the compositor did not answer or somebody
    /// else was faster. What was on the clipboard stays there then. Called right after `changeCount`, it overwrites no
    /// copy that the number did not include, but for one in the very moment of the write.
    bool setString(std::string_view text) override;

    int fileDescriptor() const override { return connection_->fileDescriptor(); }
    void processEvents() override;

    /// On the connection of the program's windows nothing lingers: it ends with them.
    void lingerIfOwner() override;

    /// Whether the text on the clipboard is ours, as far as this object has been told.
    bool isOwner() const { return own_ && own_->text && own_->isAccepted; }

    /// Goes on serving until everybody who has asked for our text has it, or until `deadline`.
    void finishTransfers(WaylandConnection::TimePoint deadline);

    /// After this time without a step a reader is given up, as soon as anything else happens.
    static constexpr std::chrono::seconds kTransferLimit{30};

private:
    struct Seat {
        std::uint32_t name;
        std::unique_ptr<wl_proxy, DataControl::ProxyDeleter> proxy;
        std::unique_ptr<DataControl::Device> device;
        std::unique_ptr<WaylandInput> input;  // null where no focus is needed
    };

    /// What another program has copied.
    struct Foreign {
        std::shared_ptr<DataControl::Offer> offer;
        bool isTold = false;    // by the compositor, which may tell nothing before a window has the focus
        bool isSilent = false;  // did not write in time, or too much
    };

    /// What we have copied.
    struct Own {
        std::unique_ptr<DataControl::Source> source;
        std::shared_ptr<const std::string> text;  // null once somebody else has copied
        std::string mark;                         // the type that tells it from every other copy, where that is needed
        bool isAccepted = false;
    };

    WaylandPasteboard(bool isShared, ReadLimits limits) : isShared_(isShared), limits_(limits) {}
    WaylandConnection::Globals globals();
    bool start(std::string& whyNot);
    void noteGlobal(std::uint32_t name, std::string_view interface, std::uint32_t version);
    void noteRemoval(std::uint32_t name);
    bool bindManager();
    bool chooseSeat();
    void noteSelection(std::shared_ptr<DataControl::Offer> offer);

    bool catchUp();
    bool synchronise();
    bool update();
    void completeClear();
    bool hasAccess() const;
    /// Whether there is a copy that `count` does not include. A program that has ended leaves none.
    bool isOvertaken(std::int64_t count) const { return changeCount_ != count && !isOwner() && foreign_.offer; }
    std::unique_ptr<Own> copyOf(std::string_view text);
    void select(const DataControl::Source* source);
    void serve(std::string_view type, int descriptor, const std::shared_ptr<const std::string>& text);
    void proceedWithTransfers();
    void serveToTheEnd();

    std::optional<std::string> offeredAs(Type type) const;
    std::optional<std::string> read(const std::string& name);

    bool isShared_;
    ReadLimits limits_;
    std::unique_ptr<WaylandConnection> connection_;
    std::vector<std::pair<std::uint32_t, DataControl::Dialect>> managerNames_;
    std::vector<std::uint32_t> seatNames_;
    std::unique_ptr<DataControl::Manager> manager_;
    std::optional<Seat> seat_;
    bool isSeatFinished_ = false;
    std::int64_t changeCount_ = 0;
    std::optional<std::int64_t> toldCount_;  // by the operation before
    int ownCount_ = 0;
    Foreign foreign_;
    std::unique_ptr<Own> own_;
    std::list<PipeWriter> transfers_;
    bool isClearPending_ = false;
};

}  // namespace ravlin
