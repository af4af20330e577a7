// Documents that cannot be read, or hold what no work must begin with.
#include "model/Json.h"
#include "model/SampleProject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace vantro::model {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

std::string errorOf(const std::string& text) {
    try {
        decodeProject(text, sampleMovie);
    } catch (const DecodingError& error) {
        return error.what();
    }
    return "no error";
}

json sampleJson() {
    return json::parse(encodeProject(sampleProject()));
}

TEST(Decoding, NamesTheKeyAndWhatIsWrongWithItsValue) {
    const std::string displayRange = "out of range, must be from 0 to 4294967295";
    const std::string positions = "must be from -1000000000 to 1000000000, is ";
    const struct {
        const char* pointer;
        json value;
        std::string error; ///< after the key
    } cases[]{
        {"/metadata/clickEvents/0/x", "7", "expected a number, found a string"},
        {"/metadata/cursorPositions/1", json::array(), "expected an object, found a list"},
        {"/metadata/captureRect/width", nullptr, "expected a number, found null"},
        {"/editableClickEvents/0/isRightClick", 1, "expected a Boolean, found a number"},
        {"/webcamHidden", 0, "expected a Boolean, found a number"},
        {"/systemAudioVolume", "loud", "expected a number, found a string"},
        {"/metadata/frameRate", true, "expected an integer, found a Boolean"},
        {"/metadata/frameRate", 59.5, "expected an integer, found 59.5"},
        {"/metadata/displayID", 4294967296, displayRange},
        {"/metadata/displayID", -1, displayRange},
        {"/metadata/displayID", 1e300, displayRange},
        {"/metadata/displayID", UINT64_MAX, displayRange},
        {"/segments", json::object(), "expected a list, found an object"},
        {"/recordingName", 4, "expected a string, found a number"},
        {"/backgroundSettings/type", "color", "expected an object, found a string"},
        {"/segments/1/id", "abc", "expected a UUID, found \"abc\""},
        {"/canvasAspectRatio", "2:1",
         R"(expected one of "Auto", "16:9", "4:3", "1:1", "9:16", found "2:1")"},

        {"/segments", json::array(), "nothing is left of the recording"},
        {"/segments/0/speed", 0, "must be greater than 0, is 0"},
        {"/segments/0/speed", 1e300, "must be at most 1000, is 1e+300"},
        {"/segments/0/speed", 1e-300, "must be at least 0.001, is 1e-300"},
        {"/segments/0/startFraction", -0.1, "must be from 0 to 1, is -0.1"},
        {"/segments/1/endFraction", 1e300, "must be from 0 to 1, is 1e+300"},
        {"/segments/0/endFraction", 0, "must lie after startFraction"},
        {"/segments/1/startFraction", 0.4, "must not lie before the end of the segment before it"},
        {"/metadata/startTime", -1e300, positions + "-1e+300"},
        {"/metadata/endTime", 1e300, "must be from 0 to 1000000000, is 1e+300"},
        {"/metadata/endTime", 0.125, "must not lie before startTime"},
        {"/metadata/frameRate", 0, "must be from 1 to 1000, is 0"},
        {"/metadata/displayScaleFactor", 0, "must be greater than 0, is 0"},
        {"/metadata/captureRect/height", -1, "must be from 0 to 1000000000, is -1"},
        {"/metadata/cursorPositions/1/timestamp", 1e300, positions + "1e+300"},
        {"/metadata/clickEvents/0/x", -1e300, positions + "-1e+300"},
        {"/editableClickEvents/0/endOffset", -1e300, positions + "-1e+300"},
        {"/editableClickEvents/0/zoomLevel", 0, "must be greater than 0, is 0"},
        {"/backgroundSettings/padding", 0.5, "must be at least 0 and below 0.5, is 0.5"},
        {"/backgroundSettings/cornerRadius", -1, "must be from 0 to 1000000000, is -1"},
        {"/backgroundSettings/type/color/green", 2, "must be from 0 to 1, is 2"},
        {"/cursorScale", -1, "must be from 0 to 1000, is -1"},
        {"/webcamSize", 1.5, "must be at most 1, is 1.5"},
        {"/microphoneVolume", 2.5, "must be from 0 to 2, is 2.5"},
    };
    for (const auto& [pointer, value, error] : cases) {
        auto document = sampleJson();
        document[json::json_pointer(pointer)] = value;
        std::string path; // "/metadata/clickEvents/0/x" is metadata.clickEvents[0].x
        for (std::string_view rest(pointer); !rest.empty();) {
            rest.remove_prefix(1);
            const auto part = rest.substr(0, rest.find('/'));
            const bool isIndex = part == "0" || part == "1";
            path += isIndex ? "[" + std::string(part) + "]"
                            : (path.empty() ? "" : ".") + std::string(part);
            rest.remove_prefix(part.size());
        }
        EXPECT_EQ(errorOf(document.dump()), path + ": " + error);
    }
}

TEST(Decoding, CutsLongQuotationsBetweenCharacters) {
    auto document = sampleJson();
    std::string umlauts = "x";
    for (int i = 0; i < 1'000; ++i)
        umlauts += "ü";
    document["segments"][0]["id"] = umlauts;
    const auto error = errorOf(document.dump());
    EXPECT_LT(error.size(), 150U);
    EXPECT_EQ(json(error).dump().find("\\ufffd"), std::string::npos); // throws where not UTF-8
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

TEST(Decoding, NamesAnyMissingKeyButTheLenientOnes) {
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
        EXPECT_THAT(errorOf(document.dump()), HasSubstr(isLenient ? "no error" : key + ": missing"))
            << pointer;
    }
}

TEST(Decoding, TellsTheLineAndColumnOfTextThatIsNotJson) {
    EXPECT_EQ(errorOf("{\n  \"a\": 1,\n  \"b\": tru\n}"),
              "not valid JSON at line 3, column 11: unexpected text");
    EXPECT_EQ(errorOf(""), "not valid JSON at line 1, column 1: the text ends here");
    EXPECT_EQ(errorOf("{} x"), "not valid JSON at line 1, column 4: unexpected text");
    EXPECT_THAT(errorOf("{\"a\": 1e999}"), HasSubstr("the number is too large"));
    for (const auto* text : {"{\"a\": \"\xFF\"}", "{\"a\": NaN}"})
        EXPECT_THAT(errorOf(text), StartsWith("not valid JSON at line 1, column "));
    const auto whole = encodeProject(sampleProject());
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_THAT(errorOf(whole.substr(0, length)), StartsWith("not valid JSON")) << length;
}

} // namespace
} // namespace vantro::model
