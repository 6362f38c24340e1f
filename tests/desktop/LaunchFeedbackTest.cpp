#include "Platform/Desktop/LaunchFeedback.h"

#include <QApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace ravlin::tests {
namespace {

/// Another program that receives what is sent to every program of the desktop.
class Listener {
public:
    Listener() : connection_(xcb_connect(nullptr, nullptr), &xcb_disconnect) {
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(connection_.get(), screen->root, XCB_CW_EVENT_MASK, &mask);
        atom("ready");  // from here on nothing is missed
    }

    xcb_atom_t atom(const std::string& name) const {
        const auto cookie = xcb_intern_atom(connection_.get(), 0, std::uint16_t(name.size()), name.data());
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(connection_.get(), cookie, nullptr), &std::free);
        return reply->atom;
    }

    /// The next message about a launch, assembled from its parts.
    std::string launchMessage() const {
        const xcb_atom_t begin = atom("_NET_STARTUP_INFO_BEGIN");
        const xcb_atom_t next = atom("_NET_STARTUP_INFO");
        std::string text;
        while (text.find('\0') == std::string::npos) {
            const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event(
                xcb_wait_for_event(connection_.get()), &std::free);
            if (event == nullptr) return "the connection broke";
            if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) continue;
            const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(event.get());
            if (message->type != (text.empty() ? begin : next)) continue;
            text.append(reinterpret_cast<const char*>(message->data.data8), sizeof(message->data.data8));
        }
        return text.substr(0, text.find('\0'));
    }

private:
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection_;
};

TEST(LaunchFeedback, TellsEveryProgramThatTheLaunchIsOver) {
    const Listener listener;
    LaunchFeedback::finish("some-launcher-1234-host-ravlin-0_TIME123456");
    EXPECT_EQ(listener.launchMessage(), "remove: ID=\"some-launcher-1234-host-ravlin-0_TIME123456\"");
}

TEST(LaunchFeedback, EndsTheTextWhateverItsLengthIs) {
    const Listener listener;
    for (int length = 1; length <= 45; ++length) {
        LaunchFeedback::finish(QByteArray(length, 'x'));
        EXPECT_EQ(listener.launchMessage(), "remove: ID=\"" + std::string(size_t(length), 'x') + "\"");
    }
}

TEST(LaunchFeedback, EscapesQuotes) {
    const Listener listener;
    LaunchFeedback::finish(R"(a"b\c)");
    EXPECT_EQ(listener.launchMessage(), R"(remove: ID="a\"b\\c")");
}

/// How many requests this process has sent to the X server.
unsigned requests() {
    xcb_connection_t* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    const auto cookie = xcb_get_input_focus(x11);
    std::free(xcb_get_input_focus_reply(x11, cookie, nullptr));
    return cookie.sequence;
}

TEST(LaunchFeedback, ALongIdIsNoLongerToSendThanItsMessages) {
    const Listener listener;
    const QByteArray id(LaunchFeedback::kMaxIdSize, 'x');
    const unsigned before = requests();
    LaunchFeedback::finish(id);
    const unsigned messages = unsigned(listener.launchMessage().size()) / 20 + 1;
    EXPECT_LT(requests() - before, messages + 8);
}

TEST(LaunchFeedback, AnIdThatNoLauncherMakesIsNotSent) {
    const Listener listener;
    LaunchFeedback::finish(QByteArray(LaunchFeedback::kMaxIdSize + 1, 'x'));
    LaunchFeedback::finish(QByteArray(1 << 20, 'x'));
    LaunchFeedback::finish("next");
    EXPECT_EQ(listener.launchMessage(), "remove: ID=\"next\"");
}

TEST(LaunchFeedback, SaysNothingWithoutAnId) {
    const Listener listener;
    LaunchFeedback::finish({});
    LaunchFeedback::finish("next");
    EXPECT_EQ(listener.launchMessage(), "remove: ID=\"next\"");
}

}  // namespace
}  // namespace ravlin::tests

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
