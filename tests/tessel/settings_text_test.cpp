// The text of settings files: what is read, what is refused, what is written.

#include "TSLCLI/settings_text.h"

#include "support/text.h"

namespace {

/// table.table|key=value,value|line; for each setting.
std::string Told(const std::string& text) {
    std::string told;
    for (const SettingsEntry& entry : ReadSettingsText(text, "a.toml")) {
        for (const std::string& table : entry.table) told += table + "/";
        told += entry.key + "=";
        for (const std::string& value : entry.values) told += "<" + value + ">";
        told += "@" + std::to_string(entry.line) + " ";
    }
    return told;
}

}  // namespace

TEST(SettingsText, ReadsWhatOptionsNeed) {
    const std::pair<const char*, const char*> cases[] = {
        {"\xEF\xBB\xBF# a remark\r\n\r\n[rank] # more\r\nsizes = 1-6\r\n", "rank/sizes=<1-6>@4 "},
        {"[ a.\"b c\" ]\n'x y' = 'C:\\dir' # \n", "a/b c/x y=<C:\\dir>@2 "},
        {"a.b = +1e-3", "a/b=<+1e-3>@1 "},
        {"t=[ 'a,#', \"b\\\"\\\\\\t\\u00e9\\U0001F331\",\n # remark\n c ,]\nu=[]",
         "t=<a,#><b\"\\\t\u00e9\U0001F331><c>@1 u=@4 "},
        {"k=\"\"\n[x]\nk=true", "k=<>@1 x/k=<true>@3 "},
        {"", ""}};
    for (const auto& [text, told] : cases) EXPECT_EQ(Told(text), told) << text;
}

TEST(SettingsText, WritesWhatItReadsBack) {
    const std::vector<std::string> values = {"",     "1.5",    "-3",     "1-6", "true", "a b", "\"",
                                             "'\\#", "[1, 2]", "\n\x01", "1e5", ".",    "0x1f"};
    for (const std::string& value : values) {
        const auto read = ReadSettingsText("k = " + SettingsValue(value), "");
        EXPECT_EQ(read.at(0).values, std::vector{value});
    }
    EXPECT_EQ(ReadSettingsText("k = " + SettingsList(values), "").at(0).values, values);
    EXPECT_EQ(SettingsList({"-3", "1e5", "true", "1-6", "x"}), "[-3, 1e5, true, \"1-6\", \"x\"]");
}
