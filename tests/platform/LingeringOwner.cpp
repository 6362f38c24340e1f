// Puts its standard input on the clipboard, and ends like the program does: leaving a child that goes on serving it.

#include "Platform/X11Pasteboard.h"

#include <iostream>
#include <sstream>
#include <string>

int main() {
    std::ostringstream text;
    text << std::cin.rdbuf();
    std::string whyNot;
    const auto pasteboard = ravlin::X11Pasteboard::open(nullptr, whyNot);
    if (!pasteboard || !pasteboard->setString(text.str())) {
        std::cout << "not on the clipboard: " << whyNot << std::endl;
        return 1;
    }
    pasteboard->lingerIfOwner();
    std::cout << "descriptor " << pasteboard->fileDescriptor() << std::endl;
    return 0;
}
