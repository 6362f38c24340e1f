#include <QFile>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

TEST(Icons, EveryPictureIsCompiledIntoThePrograms) {
    for (const char* const name :
         {"arrow-right-circle", "check-circle", "clear-circle", "info-circle", "magnifying-glass", "wand-and-stars",
          "org.ravlin.ravlin", "org.ravlin.ravlin-symbolic"}) {
        QFile file(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name)));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        EXPECT_TRUE(file.readAll().startsWith("<svg ")) << name;
    }
}

}  // namespace
}  // namespace ravlin
