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

Project reread(const Project& project) {
    return decodeProject(encodeProject(project), sampleMovie);
}

TEST(MetadataJson, IsCompactInTheOrderOfDeclaration) {
    const auto* expected =
        R"({"startTime":0.25,"endTime":12.5,)"
        R"("captureRect":{"x":-1920,"y":10,"width":1280,"height":720},)"
        R"("displayID":4294967295,"frameRate":30,"displayScaleFactor":2,)"
        R"("cursorPositions":[{"x":1.5,"y":2.5,"timestamp":0.016},)"
        R"({"x":-3,"y":4,"timestamp":0.032}],)"
        R"("clickEvents":[{"id":"0A0B0C0D-0000-4000-8000-000000000001","x":5,"y":6,)"
        R"("timestamp":1,"isRightClick":false,"startOffset":1.5,"endOffset":1.5,"zoomLevel":1.5}],)"
        R"("hasSystemAudio":true,"hasMicrophoneAudio":false,"hasWebcam":true})";
    EXPECT_EQ(encodeMetadata(sampleMetadata()), expected);
    EXPECT_EQ(decodeMetadata(expected), sampleMetadata());
}

TEST(MetadataJson, KeepsEveryBitOfANumber) {
    RecordingMetadata metadata;
    std::mt19937_64 random(11);
    using Limits = std::numeric_limits<double>;
    std::vector<double> numbers{0.1, 1.0 / 3, -0.0, Limits::min(), Limits::denorm_min(), -1e-7};
    while (numbers.size() < 3'000) {
        const auto number = std::bit_cast<double>(random());
        if (std::abs(number) < 1e9)
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
        R"("hasMicrophoneAudio":1,"hasWebcam":"true","unknown":[{"deeper":{}}],"endTime":8})";
    const auto first = decodeMetadata(old);
    EXPECT_FALSE(first.hasSystemAudio || first.hasMicrophoneAudio || first.hasWebcam);
    EXPECT_EQ(first.frameRate, 60);
    EXPECT_EQ(first.endTime, 8) << "the last of a repeated key";
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

TEST(MetadataJson, RefusesToWriteNumbersThatJsonDoesNotHave) {
    auto metadata = sampleMetadata();
    metadata.clickEvents.emplace_back().y = std::numeric_limits<double>::infinity();
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

TEST(ProjectJson, IsPrettySortedAndStableWithoutTheKeysThatCameLater) {
    const auto text = encodeProject(sampleProject());
    EXPECT_TRUE(text.starts_with("{\n  \"backgroundSettings\": {\n    \"cornerRadius\": 16,\n"));
    EXPECT_TRUE(text.ends_with("  \"version\": 1,\n  \"webcamPosition\": \"topLeft\",\n"
                               "  \"webcamSize\": 0.3\n}"));
    EXPECT_EQ(nlohmann::json::parse(text).dump(), nlohmann::ordered_json::parse(text).dump());
    EXPECT_EQ(reread(sampleProject()), sampleProject());
    EXPECT_EQ(encodeProject(reread(sampleProject())), text);

    auto document = nlohmann::json::parse(text);
    EXPECT_EQ(document.size(), 10U);
    document["version"] = -7; // read, never compared
    EXPECT_EQ(decodeProject(document.dump(), sampleMovie), sampleProject());
}

TEST(ProjectJson, KeepsWhatIsNotAtItsDefaultOfTheKeysThatCameLater) {
    auto project = sampleProject();
    project.edit.webcamHidden = true;
    project.edit.microphoneVolume = 0.5;
    EXPECT_EQ(reread(project), project);
    EXPECT_EQ(nlohmann::json::parse(encodeProject(project)).size(), 12U);
    project.edit.webcamMirrored = true;
    project.edit.systemAudioVolume = 2;
    EXPECT_EQ(reread(project), project);
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
    EXPECT_EQ(std::get<BackgroundImageSource>(reread(project).edit.background.type),
              BackgroundImageSource::custom("/p.vantro/my \"lake\".jpg"));
}

TEST(ProjectJson, CompletesBuiltInBackgroundsFromTheCatalog) {
    test::TemporaryFolder folder;
    folder.write("Backgrounds/builtin-11-mirelune.jpeg", "");
    folder.write("Backgrounds/Thumbnails/builtin-11-mirelune.jpeg", "");
    const BackgroundCatalog catalog(folder.path());
    auto project = sampleProject();
    project.edit.background.type = catalog.builtInBackgrounds().at(0);
    auto text = encodeProject(project);
    EXPECT_EQ(decodeProject(text, sampleMovie, catalog), project);

    const std::string name = "builtin-11-mirelune";
    text.replace(text.find(name), name.size(), "builtin-27");
    try {
        decodeProject(text, sampleMovie, catalog);
        FAIL();
    } catch (const DecodingError& error) {
        EXPECT_STREQ(error.what(), "Unknown built-in background: builtin-27");
    }
}

TEST(ProjectJson, WritesValidTextWhateverTheNameHolds) {
    auto project = sampleProject();
    project.name = "Ünïcode \"quoted\" \\ \n\x01 😀";
    EXPECT_EQ(reread(project).name, project.name);
    project.name = "broken \xFF\xC3";
    EXPECT_EQ(reread(project).name, "broken \uFFFD\uFFFD");
}

TEST(ProjectJson, GivesRepeatedIdentifiersFreshOnesAndRefusesNoOrderOfClicks) {
    auto project = sampleProject();
    auto clicks = project.edit.clickEvents.list();
    clicks.push_back(clicks[0]);
    clicks.push_back({.id = sampleID('9'), .timestamp = 1}); // before the others
    project.edit.clickEvents = clicks;
    const auto opened = reread(project).edit.clickEvents;
    ASSERT_EQ(opened.size(), 3U);
    EXPECT_EQ(opened[0], clicks[0]);
    EXPECT_NE(opened[1].id, clicks[0].id);
    EXPECT_EQ(opened[1].zoomLevel, clicks[0].zoomLevel);
    EXPECT_EQ(opened[2], clicks[2]);
}

} // namespace
} // namespace vantro::model
