#include "App/RavlinApp.h"

int main(int argc, char** argv) {
    return ravlin::RavlinApp::main(argc, argv);
}
