#include "App/RavlinApp.h"

#include <iostream>
#include <string_view>

namespace {

constexpr const char* kVersion = "ravlin " RAVLIN_VERSION "\n";
constexpr const char* kHelp =
    "Usage: ravlin\n"
    "\n"
    "Puts an icon into the tray, whose panel rewrites the text on the clipboard.\n"
    "Where Ravlin runs already, opens its panel.\n"
    "\n"
    "  -h, --help     show this and end\n"
    "  -v, --version  show the version and end\n";

}  // namespace

int main(int argc, char** argv) {
    const std::string_view argument = argc == 2 ? argv[1] : "";
    const bool asksForVersion = argument == "-v" || argument == "--version";
    const bool asksForHelp = argument == "-h" || argument == "--help";
    // Neither needs a desktop.
    if (asksForVersion || asksForHelp) {
        std::cout << (asksForVersion ? kVersion : kHelp);
        return 0;
    }
    return ravlin::RavlinApp::main(argc, argv);
}
