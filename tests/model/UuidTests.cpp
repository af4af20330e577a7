#include "model/Uuid.h"

#include <gtest/gtest.h>

namespace vantro::model {
namespace {

TEST(Uuid, ReadsEitherCaseWritesUpperCaseAndRefusesEveryOtherText) {
    const auto id = Uuid::parse("0123abcd-EF45-6789-aBcD-0f1e2d3c4b5a");
    ASSERT_TRUE(id);
    EXPECT_EQ(id->toString(), "0123ABCD-EF45-6789-ABCD-0F1E2D3C4B5A");
    EXPECT_EQ(Uuid::parse(id->toString()), id);
    for (const auto* text :
         {"", "0123abcd-ef45-6789-abcd-0f1e2d3c4b5", "0123abcdef45-6789-abcd-0f1e2d3c4b5a0",
          "0123abcd-ef45-6789-abcd-0f1e2d3c4b5aa", "g123abcd-ef45-6789-abcd-0f1e2d3c4b5a"})
        EXPECT_FALSE(Uuid::parse(text)) << text;
}

} // namespace
} // namespace vantro::model
