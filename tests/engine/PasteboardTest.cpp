#include "Engine/Pasteboard.h"
#include "tests/support/FakePasteboard.h"

#include <gtest/gtest.h>

namespace ravlin {
namespace {

TEST(Pasteboard, IsAlwaysThereAndEmptyWhereNoneIsInstalled) {
    Pasteboard& general = Pasteboard::general();
    EXPECT_EQ(general.changeCount(), general.changeCount());
    EXPECT_EQ(general.string(), std::nullopt);
    EXPECT_EQ(general.data(Pasteboard::Type::html), std::nullopt);
    EXPECT_EQ(general.itemCount(), std::nullopt);
    general.clearContents();
    EXPECT_FALSE(general.setString("x"));
    EXPECT_EQ(general.string(), std::nullopt);
}

TEST(Pasteboard, IsTheInstalledOneUntilThatIsTakenAway) {
    const Pasteboard& absent = Pasteboard::general();
    {
        tests::FakePasteboard first;
        EXPECT_EQ(&Pasteboard::general(), &first);
        tests::FakePasteboard second;
        EXPECT_EQ(&Pasteboard::general(), &second);
        Pasteboard::setGeneral(&first);
        EXPECT_EQ(&Pasteboard::general(), &first);
    }
    EXPECT_EQ(&Pasteboard::general(), &absent);
}

}  // namespace
}  // namespace ravlin
