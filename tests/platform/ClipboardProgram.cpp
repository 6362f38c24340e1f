// `clipboard_program copy` copies its standard input, by data control, and stays to serve it; `clipboard_program paste`
// writes the clipboard's text. For compositors that the system's programs know too little about.

#include "Platform/Clipboard/Wayland/WaylandPasteboard.h"

#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

#include <poll.h>

namespace {

int copy(ravlin::WaylandPasteboard& pasteboard) {
    std::ostringstream text;
    text << std::cin.rdbuf();
    if (!pasteboard.setString(text.str())) return 1;
    pollfd waited = {.fd = pasteboard.fileDescriptor(), .events = POLLIN, .revents = 0};
    while (pasteboard.fileDescriptor() >= 0 && poll(&waited, 1, -1) > 0) pasteboard.processEvents();
    return 0;
}

int paste(ravlin::WaylandPasteboard& pasteboard) {
    const auto text = pasteboard.string();
    std::cout << text.value_or("") << std::flush;
    return text ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    std::string whyNot;
    const auto pasteboard = ravlin::WaylandPasteboard::open(/*displayName=*/nullptr, whyNot);
    if (!pasteboard || argc != 2) {
        std::cerr << "clipboard_program: " << whyNot << std::endl;
        return 1;
    }
    return std::string_view(argv[1]) == "copy" ? copy(*pasteboard) : paste(*pasteboard);
}
