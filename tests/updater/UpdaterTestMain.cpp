#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // These tests' servers are on this machine, which no proxy leads to.
    for (const char* const name : {"http_proxy", "https_proxy", "all_proxy", "HTTP_PROXY", "HTTPS_PROXY", "ALL_PROXY"})
        qunsetenv(name);
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
