#include "terminal/json.h"

#include <gtest/gtest.h>

// Copies of a value have what is in it in common; nobody is to notice.

namespace {

JSON shared_values() {
    return {{"name", "W25Q128JV"}, {"bytes", JSON(std::vector<unsigned>{0xEF, 0x40})}, {"size", {{"mbit", 128U}}}};
}

constexpr const char* SHARED_VALUES = R"({"name":"W25Q128JV","bytes":[239,64],"size":{"mbit":128}})";

}  // namespace

TEST(Json, ACopyIsChangedByItself) {
    const JSON original = shared_values();
    JSON copy = original;
    copy["bytes"].push_back(0x18U);
    copy["size"]["mbit"] = 256U;
    copy["maker"] = "Winbond";
    EXPECT_EQ(json_text(copy), R"({"name":"W25Q128JV","bytes":[239,64,24],"size":{"mbit":256},"maker":"Winbond"})");
    EXPECT_EQ(json_text(original), SHARED_VALUES);
}

TEST(Json, ACopyStaysWhenTheOriginalIsChanged) {
    JSON original = shared_values();
    const JSON copy = original;
    original["size"]["mbit"] = 256U;
    original["bytes"].push_back(nullptr);
    EXPECT_EQ(json_text(copy), SHARED_VALUES);
    EXPECT_EQ(json_text(original), R"({"name":"W25Q128JV","bytes":[239,64,null],"size":{"mbit":256}})");
}

TEST(Json, AnObjectHoldsACopyOfWhatIsPutIntoIt) {
    JSON part = shared_values();
    JSON whole{{"chip", part}};
    part["name"] = "other";
    whole["chip"]["size"] = nullptr;
    EXPECT_EQ(json_text(part), R"({"name":"other","bytes":[239,64],"size":{"mbit":128}})");
    EXPECT_EQ(json_text(whole), R"({"chip":{"name":"W25Q128JV","bytes":[239,64],"size":null}})");
}

TEST(Json, AppendedMembersComeLastOrReplaceThoseOfTheirName) {
    JSON object = shared_values();
    object.append({{"name", "W25Q64JV"}, {"maker", "Winbond"}});
    EXPECT_EQ(json_text(object), R"({"name":"W25Q64JV","bytes":[239,64],"size":{"mbit":128},"maker":"Winbond"})");
    object.append(object);
    EXPECT_EQ(json_text(object), R"({"name":"W25Q64JV","bytes":[239,64],"size":{"mbit":128},"maker":"Winbond"})");
}
