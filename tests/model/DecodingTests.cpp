// Documents that cannot be read, or hold what no work must begin with.
#include "model/Json.h"
#include "model/SampleProject.h"

#include <algorithm>

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

/// Whether what cannot be read under this key is taken for the default.
bool isLenient(const json::json_pointer& place) {
    const auto& key = place.back();
    return key.starts_with("has") || key.ends_with("Offset") || key == "zoomLevel" ||
           (key == "id" && place.to_string().find("lickEvents") != std::string::npos);
}

json sampleJson() {
    return json::parse(encodeProject(sampleProject()));
}

TEST(Decoding, NamesTheKeyAndWhatIsWrongWithItsValue) {
    const std::string displayRange = "out of range, must be from 0 to 4294967295";
    const std::string positions = "must be from -1000000000 to 1000000000, is ";
    const struct {
        std::string path;
        json value;
        std::string error;
    } cases[]{
        {"metadata.clickEvents[0].x", "7", "expected a number, found a string"},
        {"metadata.frameRate", 59.5, "expected an integer, found 59.5"},
        {"metadata.displayID", 4294967296, displayRange},
        {"segments[1].id", "abc", "expected a UUID, found \"abc\""},
        {"canvasAspectRatio", "2:1",
         R"(expected one of "Auto", "16:9", "4:3", "1:1", "9:16", found "2:1")"},
        {"segments", json::array(), "nothing is left of the recording"},
        {"segments[0].speed", 0, "must be greater than 0, is 0"},
        {"segments[0].speed", 1e-300, "must be at least 0.001, is 1e-300"},
        {"segments[0].startFraction", -0.1, "must be from 0 to 1, is -0.1"},
        {"segments[0].endFraction", 0, "must lie after startFraction"},
        {"segments[1].startFraction", 0.4, "must not lie before the end of the segment before it"},
        {"metadata.endTime", 1e300, "must be from 0 to 1000000000, is 1e+300"},
        {"metadata.endTime", 0.125, "must not lie before startTime"},
        {"metadata.cursorPositions[1].timestamp", 1e300, positions + "1e+300"},
        {"editableClickEvents[0].zoomLevel", 0, "must be greater than 0, is 0"},
        {"backgroundSettings.padding", 0.5, "must be at least 0 and below 0.5, is 0.5"},
        {"backgroundSettings.type.color.green", 2, "must be from 0 to 1, is 2"},
        {"cursorScale", -1, "must be from 0 to 1000, is -1"},
        {"webcamSize", 1.5, "must be at most 1, is 1.5"},
        {"microphoneVolume", 2.5, "must be from 0 to 2, is 2.5"},
    };
    for (const auto& [path, value, error] : cases) {
        std::string pointer = "/" + path; // metadata.clickEvents[0].x is /metadata/clickEvents/0/x
        std::erase(pointer, ']');
        std::ranges::replace_if(pointer, [](char c) { return c == '.' || c == '['; }, '/');
        auto document = sampleJson();
        document[json::json_pointer(pointer)] = value;
        EXPECT_EQ(errorOf(document.dump()), path + ": " + error);
    }
}

TEST(Decoding, RefusesAnyValueOfAnotherTypeAndAnyAbsurdNumberByItsKey) {
    const auto members = sampleJson().flatten();
    for (const auto& [path, value] : members.items()) {
        const json::json_pointer pointer(path);
        const auto errorWith = [&, &path = path](const json& other) {
            auto document = sampleJson();
            document[json::json_pointer(path)] = other;
            return errorOf(document.dump());
        };
        const auto names = HasSubstr(pointer.back() + ": ");
        const auto other = value.is_string() ? json(7) : json("seven");
        for (const auto& wrong : {other, json(nullptr), json::array(), json::object()})
            EXPECT_THAT(errorWith(wrong), isLenient(pointer) ? HasSubstr("no error") : names)
                << path << " of " << wrong;
        for (const double absurd : {1e300, -1e300}) {
            const bool isNumber = value.is_number();
            EXPECT_THAT(errorWith(absurd), isNumber || !isLenient(pointer) ? names : HasSubstr(""))
                << path;
        }
    }
}

TEST(Decoding, RefusesABackgroundThatIsNotThere) {
    auto document = sampleJson();
    document["backgroundSettings"]["type"] = {
        {"type", "image"}, {"image", {{"isBuiltIn", true}, {"basename", "builtin-27"}}}};
    EXPECT_EQ(errorOf(document.dump()), "Unknown built-in background: builtin-27");
}

TEST(Decoding, NamesAnyMissingKeyButTheLenientOnes) {
    const auto members = sampleJson().flatten();
    for (const auto& [path, value] : members.items()) {
        const json::json_pointer pointer(path);
        const auto& key = pointer.back();
        auto document = sampleJson();
        document[pointer.parent_pointer()].erase(key);
        EXPECT_THAT(errorOf(document.dump()),
                    HasSubstr(isLenient(pointer) ? "no error" : key + ": missing"))
            << path;
    }
    EXPECT_EQ(errorOf("{}"), "version: missing");
}

TEST(Decoding, TellsWhereTextIsNotJsonAndQuotesNotTooMuch) {
    EXPECT_EQ(errorOf("{\n  \"a\": 1,\n  \"b\": tru\n}"),
              "not valid JSON at line 3, column 11: unexpected text");
    EXPECT_EQ(errorOf(""), "not valid JSON at line 1, column 1: the text ends here");
    EXPECT_EQ(errorOf("{} x"), "not valid JSON at line 1, column 4: unexpected text");
    EXPECT_THAT(errorOf("{\"a\": 1e999}"), HasSubstr("the number is too large"));
    for (const auto* text : {"{\"a\": \"\xFF\"}", "{\"a\": NaN}"})
        EXPECT_THAT(errorOf(text), StartsWith("not valid JSON at line 1, column "));
    auto document = sampleJson();
    document["segments"][0]["id"] = std::string(29, 'x') + "ü" + std::string(28, 'x') + "ü";
    EXPECT_THAT(errorOf(document.dump()), testing::EndsWith("xü" + std::string(28, 'x') + "…\""))
        << "cut between characters";
    const auto whole = encodeProject(sampleProject());
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_THAT(errorOf(whole.substr(0, length)), StartsWith("not valid JSON")) << length;
}

} // namespace
} // namespace vantro::model
