// What programs that read X11Pasteboard's text can do to it.

#include "tests/platform/X11Clients.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

namespace ravlin::tests {
namespace {

using namespace std::literals;

/// Asks without end, and never looks at an answer.
class Flood {
public:
    /// Each request is for `target`, in a window and a property of its own as far as there are that many.
    Flood(int requestCount, const std::string& target, int windowCount)
        : process_([=] { run(requestCount, target, windowCount); }) {}

    bool hasEnded() { return process_.hasEnded(); }

private:
    static void run(int requestCount, const std::string& target, int windowCount) {
        X11Client client;
        std::vector<xcb_window_t> windows;
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(client.get())).data->root;
        for (int i = 0; i < windowCount; ++i) {
            windows.push_back(xcb_generate_id(client.get()));
            xcb_create_window(client.get(), XCB_COPY_FROM_PARENT, windows.back(), root, 0, 0, 1, 1, 0,
                              XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        }
        const xcb_atom_t clipboard = client.atom("CLIPBOARD");
        const xcb_atom_t targetAtom = client.atom(target);
        constexpr int kPropertyCount = 60;  // that every server has from the beginning
        for (int i = 0; i < requestCount; ++i) {
            const auto property = static_cast<xcb_atom_t>(1 + i / windowCount % kPropertyCount);
            xcb_convert_selection(client.get(), windows[static_cast<std::size_t>(i % windowCount)], clipboard,
                                  targetAtom, property, XCB_CURRENT_TIME);
        }
        client.synchronise();
    }

    Process process_;
};

class X11Attack : public testing::Test {
protected:
    /// The longest that the program is busy with one call, while it does what it does until `isOver`.
    template <class Condition>
    std::chrono::milliseconds longestCallUntil(Condition isOver) {
        std::chrono::milliseconds longest{0};
        const auto deadline = Clock::now() + 2 * kGenerously;
        while (!isOver() && Clock::now() < deadline) {
            longest = std::max(longest, durationOf([&] { pasteboard_->changeCount(); }));
            if (!isReadable(pasteboard_->fileDescriptor(), 2ms)) continue;
            longest = std::max(longest, durationOf([&] { pasteboard_->processEvents(); }));
        }
        EXPECT_LT(Clock::now(), deadline);
        return longest;
    }

    std::unique_ptr<X11Pasteboard> pasteboard_ = openPasteboard();
};

TEST_F(X11Attack, FloodOfRequestsLetsTheProgramGoOn) {
    ASSERT_TRUE(pasteboard_->setString("ours"));
    Flood flood(300'000, "UTF8_STRING", /*windowCount=*/1);
    const auto longest = longestCallUntil([&] { return flood.hasEnded(); });
    EXPECT_LT(longest, 1s);
    EXPECT_EQ(Requestor(*pasteboard_).read("UTF8_STRING")->bytes, "ours") << "others are served again";
}

TEST_F(X11Attack, FloodOfStalledReadersLetsTheProgramGoOn) {
    const std::string text = textOfSize(300'000);
    ASSERT_TRUE(pasteboard_->setString(text));
    Flood flood(10'000, "UTF8_STRING", /*windowCount=*/1000);
    const auto longest = longestCallUntil([&] { return flood.hasEnded(); });
    EXPECT_LT(longest, 1s);
    EXPECT_TRUE(Requestor(*pasteboard_).read("UTF8_STRING")->bytes == text);
}

TEST_F(X11Attack, CopyInTheMiddleOfAFloodCountsAtOnce) {
    ASSERT_TRUE(pasteboard_->setString("ours"));
    ForeignOwner owner("theirs");
    Flood flood(300'000, "UTF8_STRING", /*windowCount=*/1);
    while (!flood.hasEnded()) {
        ASSERT_TRUE(pasteboard_->setString("ours"));
        const std::int64_t count = pasteboard_->changeCount();
        owner.copyAgain();
        ASSERT_EQ(pasteboard_->changeCount(), count + 1);
    }
}

TEST_F(X11Attack, RequestIsAnsweredAsOfItsArrival) {
    pasteboard_->setString("first");
    X11Client client;
    for (const char* const property : {"A", "B"}) {
        xcb_convert_selection(client.get(), client.window(), client.atom("CLIPBOARD"), client.atom("UTF8_STRING"),
                              client.atom(property), XCB_CURRENT_TIME);
    }
    client.synchronise();
    pasteboard_->setString("second");
    Requestor requestor(*pasteboard_);
    EXPECT_EQ(requestor.read("UTF8_STRING")->bytes, "second");
    for (const char* const property : {"A", "B"}) {
        const auto cookie = xcb_get_property(client.get(), 0, client.window(), client.atom(property),
                                             XCB_GET_PROPERTY_TYPE_ANY, 0, 100);
        const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
            xcb_get_property_reply(client.get(), cookie, nullptr), &std::free);
        ASSERT_NE(reply, nullptr);
        EXPECT_EQ(std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                              static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))),
                  "first");
    }
}

TEST_F(X11Attack, TransferToAWindowThatIsGoneEndsAtOnce) {
    ASSERT_TRUE(pasteboard_->setString(textOfSize(3'000'000)));
    for (const bool isWatched : {false, true}) {
        auto gone = std::make_optional<X11Client>();
        xcb_convert_selection(gone->get(), gone->window(), gone->atom("CLIPBOARD"), gone->atom("UTF8_STRING"),
                              gone->atom("A"), XCB_CURRENT_TIME);
        gone->synchronise();
        if (!isWatched) gone.reset();
        ASSERT_TRUE(isReadable(pasteboard_->fileDescriptor(), kGenerously));
        pasteboard_->processEvents();  // the request; the end may come later
        gone.reset();
        EXPECT_TRUE(serveUntil(*pasteboard_, [&] { return !pasteboard_->nextDeadline(); }));
    }
}

}  // namespace
}  // namespace ravlin::tests
