// Puts its standard input on the clipboard, and ends as the program does: leaving a child that keeps serving it.

#include "Platform/Clipboard/PasteboardFactory.h"

#include <array>
#include <iostream>
#include <sstream>
#include <string>

#include <unistd.h>

int main() {
    std::ostringstream text;
    text << std::cin.rdbuf();
    // What else a program has open: its bus, its lock, its pipes.
    std::array<int, 2> before = {};
    std::array<int, 2> after = {};
    std::string log;
    if (pipe(before.data()) != 0) return 1;
    const auto pasteboard =
        ravlin::openSystemPasteboard([&log](const std::string& line) { log = line; }, ravlin::pasteboardBackEnds());
    if (!pasteboard || !pasteboard->setString(text.str())) {
        std::cout << "not on the clipboard; " << log << std::endl;
        return 1;
    }
    if (pipe(after.data()) != 0) return 1;
    pasteboard->lingerIfOwner();
    std::cout << "descriptor " << pasteboard->fileDescriptor() << std::endl;
    return 0;
}
