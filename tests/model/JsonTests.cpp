#include "model/Json.h"
#include "model/SampleProject.h"
#include "support/TemporaryFolder.h"

#include <limits>

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
    EXPECT_EQ(Uuid::parse("0a0b0c0d-0000-4000-8000-000000000001"), sampleID('1'));
    EXPECT_EQ(decodeMetadata(expected), sampleMetadata());
}

TEST(MetadataJson, OpensRecordsFromBeforeZoomParametersAndTracksExisted) {
    const auto old = decodeMetadata(
        R"({"startTime":0,"endTime":9,"captureRect":{"x":0,"y":0,"width":8,"height":6},)"
        R"("displayID":1,"frameRate":6e1,"displayScaleFactor":1,"cursorPositions":[],)"
        R"("clickEvents":[{"x":1,"y":2,"timestamp":3,"isRightClick":true},)"
        R"({"id":"nonsense","x":1,"y":2,"timestamp":4,"isRightClick":false,)"
        R"("startOffset":"1","endOffset":null,"zoomLevel":true}],)"
        R"("hasMicrophoneAudio":1,"hasWebcam":"true","unknown":[{"deeper":{}}],"endTime":8})");
    EXPECT_FALSE(old.hasSystemAudio || old.hasMicrophoneAudio || old.hasWebcam);
    EXPECT_EQ(old.frameRate, 60);
    EXPECT_EQ(old.endTime, 8) << "the last of a repeated key";
    for (const auto& click : old.clickEvents)
        EXPECT_EQ(std::tuple(click.startOffset, click.endOffset, click.zoomLevel),
                  std::tuple(1.5, 1.5, 1.5));
    EXPECT_NE(old.clickEvents.at(0).id, old.clickEvents.at(1).id);
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

TEST(ProjectJson, IsPrettySortedAndStable) {
    auto project = sampleProject();
    const auto text = encodeProject(project);
    EXPECT_TRUE(text.starts_with("{\n  \"backgroundSettings\": {\n    \"cornerRadius\": 16,\n"));
    EXPECT_TRUE(text.ends_with("  \"version\": 1,\n  \"webcamPosition\": \"topLeft\",\n"
                               "  \"webcamSize\": 0.3\n}"));
    EXPECT_EQ(nlohmann::json::parse(text).dump(), nlohmann::ordered_json::parse(text).dump());
    EXPECT_EQ(reread(project), project);
    EXPECT_EQ(encodeProject(reread(project)), text);
    auto document = nlohmann::json::parse(text);
    document["version"] = -7; // read, never compared
    EXPECT_EQ(decodeProject(document.dump(), sampleMovie), project);
    project.name = "Ünïcode \"quoted\" \\ \n\x01 😀";
    EXPECT_EQ(reread(project).name, project.name);
    project.name = "broken \xFF\xC3";
    EXPECT_EQ(reread(project).name, "broken \uFFFD\uFFFD");
}

TEST(ProjectJson, WritesTheKeysThatCameLaterOnlyWhereTheyAreNotAtTheirDefault) {
    auto project = sampleProject();
    const auto keys = [&] { return nlohmann::json::parse(encodeProject(project)).size(); };
    EXPECT_EQ(keys(), 10U);
    project.edit.webcamHidden = true;
    project.edit.microphoneVolume = 0.5;
    EXPECT_EQ(keys(), 12U);
    EXPECT_EQ(reread(project), project);
    project.edit.webcamMirrored = true;
    project.edit.systemAudioVolume = 2;
    project.edit.microphoneNoiseReduced = true;
    EXPECT_EQ(reread(project), project);
}

TEST(ProjectJson, StoresBackgroundsByNameUnderTheirDiscriminator) {
    test::TemporaryFolder folder;
    folder.write("Backgrounds/builtin-11-mirelune.jpeg", "");
    folder.write("Backgrounds/Thumbnails/builtin-11-mirelune.jpeg", "");
    const BackgroundCatalog catalog(folder.path());
    const std::pair<BackgroundType, const char*> cases[]{
        {BackgroundColor{0.1, 0.2, 0.3},
         R"({"color":{"blue":0.3,"green":0.2,"red":0.1},"type":"color"})"},
        {BackgroundImageSource::custom("/p.vantro/my \"lake\".jpg"),
         R"({"image":{"customFilename":"my \"lake\".jpg","isBuiltIn":false},"type":"image"})"},
        {catalog.builtInBackgrounds().at(0),
         R"({"image":{"basename":"builtin-11-mirelune","isBuiltIn":true},"type":"image"})"}};
    for (const auto& [type, json] : cases) {
        auto project = sampleProject();
        project.edit.background.type = type;
        const auto text = encodeProject(project);
        EXPECT_EQ(nlohmann::json::parse(text)["backgroundSettings"]["type"].dump(), json);
        EXPECT_EQ(decodeProject(text, sampleMovie, catalog), project);
    }
}

TEST(ProjectJson, GivesRepeatedIdentifiersFreshOnesAndRefusesNoOrderOfClicks) {
    auto project = sampleProject();
    auto clicks = project.edit.clickEvents.list();
    clicks.push_back(clicks[0]);
    clicks.push_back({.id = sampleID('9'), .timestamp = 1}); // before the others
    project.edit.clickEvents = clicks;
    const auto opened = reread(project).edit.clickEvents;
    ASSERT_EQ(opened.size(), 3U);
    EXPECT_NE(opened[1].id, clicks[0].id);
    clicks[1].id = opened[1].id;
    EXPECT_EQ(opened, clicks) << "nothing else has changed";
}

} // namespace
} // namespace vantro::model
