#include "model/Json.h"
#include "model/SampleProject.h"

#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace vantro::model {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

std::string errorOf(const std::string& text) {
    try {
        decodeProject(text, "/p.vantro/recording.mov");
    } catch (const DecodingError& error) {
        return error.what();
    }
    return "no error";
}

json sampleJson() {
    return json::parse(encodeProject(sampleProject()));
}

/// What decoding says once the value at `pointer` is another one.
std::string errorWith(const char* pointer, const json& value) {
    auto document = sampleJson();
    document[json::json_pointer(pointer)] = value;
    return errorOf(document.dump());
}

TEST(DecodingErrors, NameTheKeyAndBothTypes) {
    EXPECT_EQ(errorWith("/metadata/clickEvents/0/x", "7"),
              "metadata.clickEvents[0].x: expected a number, found a string");
    EXPECT_EQ(errorWith("/metadata/cursorPositions/1", json::array()),
              "metadata.cursorPositions[1]: expected an object, found a list");
    EXPECT_EQ(errorWith("/metadata/captureRect/width", nullptr),
              "metadata.captureRect.width: expected a number, found null");
    EXPECT_EQ(errorWith("/editableClickEvents/0/isRightClick", 1),
              "editableClickEvents[0].isRightClick: expected a Boolean, found a number");
    EXPECT_EQ(errorWith("/cursorScale", true), "cursorScale: expected a number, found a Boolean");
    EXPECT_EQ(errorWith("/metadata/frameRate", true),
              "metadata.frameRate: expected an integer, found a Boolean");
    EXPECT_EQ(errorWith("/segments", json::object()), "segments: expected a list, found an object");
    EXPECT_EQ(errorWith("/recordingName", 4), "recordingName: expected a string, found a number");
    EXPECT_EQ(errorWith("/backgroundSettings/type/color/green", "#00FF00"),
              "backgroundSettings.type.color.green: expected a number, found a string");
    EXPECT_EQ(errorWith("/backgroundSettings/type", "color"),
              "backgroundSettings.type: expected an object, found a string");
    EXPECT_EQ(errorOf("[]"), "expected an object, found a list");
}

TEST(DecodingErrors, QuoteTextsThatMeanNothing) {
    EXPECT_EQ(errorWith("/segments/1/id", "abc"), "segments[1].id: expected a UUID, found \"abc\"");
    EXPECT_EQ(errorWith("/canvasAspectRatio", "2:1"),
              "canvasAspectRatio: expected one of \"Auto\", \"16:9\", \"4:3\", \"1:1\", \"9:16\", "
              "found \"2:1\"");
    EXPECT_EQ(errorWith("/webcamPosition", "centre"),
              "webcamPosition: expected one of \"topLeft\", \"topRight\", \"bottomLeft\", "
              "\"bottomRight\", found \"centre\"");
    std::string umlauts = "x";
    for (int i = 0; i < 1'000; ++i)
        umlauts += "ü";
    const auto error = errorWith("/segments/0/id", umlauts);
    EXPECT_LT(error.size(), 150U);
    EXPECT_EQ(json(error).dump().find("\\ufffd"), std::string::npos); // throws where not UTF-8
}

TEST(DecodingErrors, NameIntegersThatDoNotFit) {
    const auto* displayRange = "metadata.displayID: out of range, must be from 0 to 4294967295";
    for (const json& value : {json(4294967296), json(-1), json(1e300), json(UINT64_MAX)})
        EXPECT_EQ(errorWith("/metadata/displayID", value), displayRange);
    EXPECT_EQ(errorWith("/metadata/frameRate", 59.5),
              "metadata.frameRate: expected an integer, found 59.5");
    EXPECT_THAT(errorWith("/metadata/frameRate", UINT64_MAX),
                StartsWith("metadata.frameRate: out of range"));
    EXPECT_THAT(errorWith("/version", 9223372036854775808.0), StartsWith("version: out of range"));
}

/// Pointers to all members of all objects, in the first element of each list.
void collectMembers(const json& value, const std::string& pointer, std::vector<std::string>& into) {
    if (value.is_array() && !value.empty())
        collectMembers(value[0], pointer + "/0", into);
    if (!value.is_object())
        return;
    for (const auto& [key, member] : value.items()) {
        into.push_back(pointer + "/" + key);
        collectMembers(member, pointer + "/" + key, into);
    }
}

TEST(DecodingErrors, NameAnyMissingKeyButTheLenientOnes) {
    std::vector<std::string> members;
    collectMembers(sampleJson(), "", members);
    ASSERT_GT(members.size(), 50U);
    for (const auto& pointer : members) {
        const auto key = pointer.substr(pointer.rfind('/') + 1);
        const bool isLenient = key.starts_with("has") || key.ends_with("Offset") ||
                               key == "zoomLevel" ||
                               (key == "id" && pointer.find("lickEvents") != std::string::npos);
        auto document = sampleJson();
        document[json::json_pointer(pointer).parent_pointer()].erase(key);
        const auto error = errorOf(document.dump());
        if (isLenient)
            EXPECT_EQ(error, "no error") << pointer;
        else
            EXPECT_THAT(error, AllOf(HasSubstr(key + ": missing"))) << pointer;
    }
}

TEST(DecodingErrors, TellTheLineAndColumnOfTextThatIsNotJson) {
    EXPECT_THAT(errorOf("{\n  \"a\": 1,\n  \"b\": tru\n}"),
                StartsWith("not valid JSON at line 3, column 11: "));
    EXPECT_THAT(errorOf(""), AllOf(StartsWith("not valid JSON at line 1, column 1: "),
                                   HasSubstr("unexpected end of input")));
    EXPECT_THAT(errorOf("{} x"), StartsWith("not valid JSON at line 1, column 4: "));
    EXPECT_THAT(errorOf("{\"a\": 1e999}"), HasSubstr("number overflow"));
    EXPECT_THAT(errorOf("{\"a\": \"\xFF\"}"), HasSubstr("ill-formed UTF-8"));
    EXPECT_THAT(errorOf("{\"a\": NaN}"), StartsWith("not valid JSON"));
    EXPECT_LT(errorOf("{\"a\": " + std::string(100'000, 'x')).size(), 200U);
}

TEST(DecodingErrors, ComeForEveryTruncationOfADocument) {
    const auto text = encodeProject(sampleProject());
    for (std::size_t length = 0; length < text.size(); ++length)
        EXPECT_THAT(errorOf(text.substr(0, length)), StartsWith("not valid JSON")) << length;
}

TEST(ProjectJson, OpensAnyVersion) {
    auto document = sampleJson();
    for (const auto version : {std::int64_t{7}, std::int64_t{0}, std::int64_t{-3}}) {
        document["version"] = version;
        EXPECT_EQ(decodeProject(document.dump(), "/p.vantro/recording.mov"), sampleProject());
    }
}

} // namespace
} // namespace vantro::model
