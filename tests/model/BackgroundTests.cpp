#include "model/BackgroundCatalog.h"
#include "support/TemporaryFolder.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::model {
namespace {

TEST(BackgroundColor, WritesHexWithComponentsRoundedAndKeptInRange) {
    EXPECT_EQ((BackgroundColor{1, 1, 1}).hexString(), "#FFFFFF");
    EXPECT_EQ((BackgroundColor{0.5, 0.5, 0.5}).hexString(), "#808080");
    EXPECT_EQ((BackgroundColor{0, 10 / 255.0, 171 / 255.0}).hexString(), "#000AAB");
    constexpr auto nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ((BackgroundColor{-1, 1e300, nan}).hexString(), "#00FF00");
}

TEST(BackgroundImageSource, NamesPicturesForReading) {
    EXPECT_EQ(backgroundDisplayName("builtin-11-mirelune"), "builtin 11");
    EXPECT_EQ(backgroundDisplayName("My-mirelune_Big-mirelune-Lake"), "My Big Lake");
    const auto own = BackgroundImageSource::custom("/pictures/blue_sky-2.final.png");
    EXPECT_EQ(own.name, "blue sky 2.final");
    EXPECT_FALSE(own.isBuiltIn);
    EXPECT_FALSE(own.thumbnail);
}

/// A resource folder with some of the pictures, both files each unless told otherwise.
class BackgroundCatalogTest : public testing::Test {
  protected:
    BackgroundCatalogTest() {
        for (const auto* name : {"builtin-26-mirelune", "builtin-02", "builtin-11-mirelune"}) {
            m_folder.write(std::string("Backgrounds/") + name + ".jpeg", "picture");
            m_folder.write(std::string("Backgrounds/Thumbnails/") + name + ".jpeg", "preview");
        }
        m_folder.write("Backgrounds/builtin-03.jpeg", "picture without preview");
        m_folder.write("Backgrounds/Thumbnails/builtin-04.jpeg", "preview without picture");
        m_folder.write("Backgrounds/builtin-12.jpeg", "not a name of the catalogue");
        m_folder.write("Backgrounds/Thumbnails/builtin-12.jpeg", "");
    }

    test::TemporaryFolder m_folder;
};

TEST_F(BackgroundCatalogTest, HoldsTheWholeEntriesInOrder) {
    const BackgroundCatalog catalog(m_folder.path());
    std::vector<std::string> names;
    for (const auto& background : catalog.builtInBackgrounds()) {
        names.push_back(background.name);
        EXPECT_TRUE(background.isBuiltIn);
        EXPECT_EQ(test::contentOf(background.path), "picture");
        EXPECT_EQ(test::contentOf(background.thumbnail.value()), "preview");
    }
    EXPECT_THAT(names, testing::ElementsAre("builtin 02", "builtin 11", "builtin 26"));
}

TEST_F(BackgroundCatalogTest, FindsEntriesByBaseNameWithOrWithoutThePhotographMark) {
    const BackgroundCatalog catalog(m_folder.path());
    const auto photograph = catalog.builtIn("builtin-11-mirelune");
    ASSERT_TRUE(photograph);
    EXPECT_EQ(photograph->path, m_folder.path() / "Backgrounds/builtin-11-mirelune.jpeg");
    EXPECT_EQ(catalog.builtIn("builtin-11"), photograph);
    EXPECT_TRUE(catalog.builtIn("builtin-02"));
    for (const auto* name : {"", "builtin", "builtin-01", "builtin-02-mirelune", "builtin-03",
                             "builtin-04", "builtin-12", "../builtin-02"})
        EXPECT_FALSE(catalog.builtIn(name)) << name;
}

TEST_F(BackgroundCatalogTest, IsEmptyWithoutResources) {
    EXPECT_TRUE(BackgroundCatalog("/nonexistent").builtInBackgrounds().empty());
}

} // namespace
} // namespace vantro::model
