#include "model/Json.h"
#include "model/SampleProject.h"
#include "support/TemporaryFolder.h"

#include <bit>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace vantro::model {
namespace {

TEST(MetadataJson, IsCompactInTheOrderOfDeclaration) {
    const auto metadata = sampleMetadata();
    const auto* expected =
        R"({"startTime":0.25,"endTime":12.5,)"
        R"("captureRect":{"x":-1920,"y":10,"width":1280,"height":720},)"
        R"("displayID":4294967295,"frameRate":30,"displayScaleFactor":2,)"
        R"("cursorPositions":[{"x":1.5,"y":2.5,"timestamp":0.016},)"
        R"({"x":-3,"y":4,"timestamp":0.032}],)"
        R"("clickEvents":[{"id":"0A0B0C0D-0000-4000-8000-000000000001","x":5,"y":6,)"
        R"("timestamp":1,"isRightClick":false,"startOffset":1.5,"endOffset":1.5,"zoomLevel":1.5}],)"
        R"("hasSystemAudio":true,"hasMicrophoneAudio":false,"hasWebcam":true})";
    EXPECT_EQ(encodeMetadata(metadata), expected);
    EXPECT_EQ(decodeMetadata(expected), metadata);
}

TEST(MetadataJson, KeepsEveryBitOfANumber) {
    RecordingMetadata metadata;
    std::mt19937_64 random(11);
    using Limits = std::numeric_limits<double>;
    std::vector<double> numbers{0.1,           1.0 / 3,
                                -0.0,          Limits::max(),
                                Limits::min(), Limits::denorm_min(),
                                1e15,          9007199254740993.0,
                                1e22,          -1e-7,
                                123456789.0,   18446744073709551616.0};
    while (numbers.size() < 3'000) {
        const auto number = std::bit_cast<double>(random());
        if (std::isfinite(number))
            numbers.push_back(number);
    }
    for (const auto number : numbers)
        metadata.cursorPositions.push_back({.x = number, .y = 0, .timestamp = 0});
    const auto decoded = decodeMetadata(encodeMetadata(metadata));
    ASSERT_EQ(decoded.cursorPositions.size(), numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i)
        EXPECT_EQ(std::bit_cast<std::uint64_t>(decoded.cursorPositions[i].x),
                  std::bit_cast<std::uint64_t>(numbers[i]))
            << numbers[i];
}

TEST(MetadataJson, OpensRecordsFromBeforeZoomParametersAndTracksExisted) {
    const std::string old =
        R"({"startTime":0,"endTime":9,"captureRect":{"x":0,"y":0,"width":8,"height":6},)"
        R"("displayID":1,"frameRate":6e1,"displayScaleFactor":1,"cursorPositions":[],)"
        R"("clickEvents":[{"x":1,"y":2,"timestamp":3,"isRightClick":true},)"
        R"({"id":"nonsense","x":1,"y":2,"timestamp":4,"isRightClick":false,)"
        R"("startOffset":"1","endOffset":null,"zoomLevel":true}],)"
        R"("hasMicrophoneAudio":1,"hasWebcam":"true","unknown":[{"deeper":{}}]})";
    const auto first = decodeMetadata(old);
    EXPECT_FALSE(first.hasSystemAudio || first.hasMicrophoneAudio || first.hasWebcam);
    EXPECT_EQ(first.frameRate, 60);
    ASSERT_EQ(first.clickEvents.size(), 2U);
    for (const auto& click : first.clickEvents) {
        EXPECT_EQ(click.startOffset, 1.5);
        EXPECT_EQ(click.endOffset, 1.5);
        EXPECT_EQ(click.zoomLevel, 1.5);
    }
    const auto second = decodeMetadata(old);
    EXPECT_NE(first.clickEvents[0].id, first.clickEvents[1].id);
    EXPECT_NE(first.clickEvents[0].id, second.clickEvents[0].id);
    EXPECT_NE(first.clickEvents[1].id, second.clickEvents[1].id);
}

TEST(MetadataJson, TakesTheLastOfARepeatedKey) {
    auto text = encodeMetadata(sampleMetadata());
    text.insert(1, R"("endTime":"early",)");
    EXPECT_EQ(decodeMetadata(text).endTime, 12.5);
}

TEST(MetadataJson, RefusesToWriteNumbersThatJsonDoesNotHave) {
    auto metadata = sampleMetadata();
    metadata.clickEvents.push_back(ClickEvent{});
    metadata.clickEvents[1].y = std::numeric_limits<double>::infinity();
    try {
        encodeMetadata(metadata);
        FAIL();
    } catch (const EncodingError& error) {
        EXPECT_STREQ(error.what(), "clickEvents[1].y: not a finite number, which cannot be saved");
    }
}

TEST(MetadataJson, ReadsALongRecordingAndDeepNestingWithoutTrouble) {
    RecordingMetadata metadata;
    metadata.cursorPositions.resize(200'000, {.x = 1.25, .y = 2.5, .timestamp = 3.125});
    metadata.clickEvents.resize(50'000);
    EXPECT_EQ(decodeMetadata(encodeMetadata(metadata)), metadata);
    const std::string deep(1'000'000, '[');
    EXPECT_THROW(decodeMetadata(deep), DecodingError);
    auto text = encodeMetadata(sampleMetadata());
    text.insert(1, "\"unknown\":" + deep + std::string(deep.size(), ']') + ",");
    EXPECT_EQ(decodeMetadata(text), sampleMetadata());
}

/// Whether the keys of every object in the text come in ascending order.
bool hasSortedKeys(const std::string& text) {
    const auto inFileOrder = nlohmann::ordered_json::parse(text);
    return nlohmann::json::parse(text).dump() == inFileOrder.dump();
}

TEST(ProjectJson, IsPrettySortedAndStable) {
    const auto project = sampleProject();
    const auto text = encodeProject(project);
    EXPECT_TRUE(text.starts_with("{\n  \"backgroundSettings\": {\n    \"cornerRadius\": 16,\n"));
    EXPECT_TRUE(text.ends_with("  \"webcamPosition\": \"topLeft\",\n  \"webcamSize\": 0.3\n}"));
    EXPECT_TRUE(hasSortedKeys(text));
    const auto decoded = decodeProject(text, "/p.vantro/recording.mov");
    EXPECT_EQ(decoded, project);
    EXPECT_EQ(encodeProject(decoded), text);
}

TEST(ProjectJson, StoresBackgroundsUnderTheirDiscriminator) {
    auto project = sampleProject();
    const auto type = [&] {
        return nlohmann::json::parse(encodeProject(project))["backgroundSettings"]["type"].dump();
    };
    EXPECT_EQ(type(), R"({"color":{"blue":0.3,"green":0.2,"red":0.1},"type":"color"})");

    project.edit.background.type = BackgroundImageSource::custom("/home/me/my \"lake\".jpg");
    EXPECT_EQ(type(), R"({"image":{"customFilename":"my \"lake\".jpg","isBuiltIn":false},)"
                      R"("type":"image"})");
    const auto decoded = decodeProject(encodeProject(project), "/p.vantro/recording.mov");
    EXPECT_EQ(std::get<BackgroundImageSource>(decoded.edit.background.type),
              BackgroundImageSource::custom("/p.vantro/my \"lake\".jpg"));
}

TEST(ProjectJson, CompletesBuiltInBackgroundsFromTheCatalogue) {
    test::TemporaryFolder folder;
    folder.write("Backgrounds/builtin-11-mirelune.jpeg", "");
    folder.write("Backgrounds/Thumbnails/builtin-11-mirelune.jpeg", "");
    const BackgroundCatalog catalog(folder.path());
    auto project = sampleProject();
    project.edit.background.type = catalog.builtInBackgrounds().at(0);
    auto text = encodeProject(project);
    EXPECT_EQ(decodeProject(text, "/p.vantro/recording.mov", catalog), project);

    const std::string name = "builtin-11-mirelune";
    text.replace(text.find(name), name.size(), "builtin-27");
    try {
        decodeProject(text, "/p.vantro/recording.mov", catalog);
        FAIL();
    } catch (const DecodingError& error) {
        EXPECT_STREQ(error.what(), "Unknown built-in background: builtin-27");
        EXPECT_EQ(error.path(), "backgroundSettings.type.image.basename");
    }
}

TEST(ProjectJson, WritesValidTextWhateverTheNameHolds) {
    auto project = sampleProject();
    project.name = "Ünïcode \"quoted\" \\ \n\x01 😀";
    EXPECT_EQ(decodeProject(encodeProject(project), "/p.vantro/recording.mov").name, project.name);
    project.name = "broken \xFF\xC3";
    EXPECT_EQ(decodeProject(encodeProject(project), "/p.vantro/recording.mov").name,
              "broken \uFFFD\uFFFD");
}

} // namespace
} // namespace vantro::model
