#include <functional>
#include <set>

#include "tools/command_fixture.h"

// Every name and index that the command prints is accepted where such a name is asked for.

namespace {

using NAMES = std::set<std::string>;

JSON list(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "--json");
    const PROCESS_RESULT result = run_command(arguments);
    EXPECT_EQ(result.exit_code, DONE) << testing::PrintToString(arguments) << result.errors;
    return json_of(result.output);
}

/// What the rows have under the key.
NAMES column(const JSON& rows, const std::string& key) {
    NAMES names;
    for (const JSON& row : rows) {
        if (const JSON& value = row.at(key); !value.is_null() && value != "") {
            names.insert(text_of(value));
        }
    }
    return names;
}

std::string lines_with(const NAMES& names) {
    std::string lines;
    for (const std::string& name : names) {
        lines += " \t" + name + "  \n";  // blanks around a name do not count
    }
    return lines;
}

/// Asks for every name by a batch, and for one as an argument.
void expect_accepted(const NAMES& names, std::vector<std::string> question) {
    SCOPED_TRACE(testing::PrintToString(question));
    ASSERT_FALSE(names.empty());
    question.insert(question.begin(), "--json");
    question.emplace_back("-");
    const PROCESS_RESULT batch = run_command(question, lines_with(names));
    EXPECT_EQ(batch.exit_code, DONE) << batch.errors.substr(0, 1000);
    EXPECT_EQ(lines_of(batch.output).size(), names.size());
    question.back() = "  " + *names.begin() + " ";
    const PROCESS_RESULT single = run_command(question);
    EXPECT_EQ(single.exit_code, DONE) << single.errors;
}

TEST(NamesFedBack, OfParts) {
    const JSON rows = list({"part", "list", "--hidden"});
    NAMES all;
    NAMES one_of_each_device;
    NAMES devices;
    for (const JSON& row : rows) {
        all.insert(row.at("name"));
        if (devices.insert(row.at("device")).second) {
            one_of_each_device.insert(row.at("name"));
        }
    }
    for (const auto& question :
         std::vector<std::vector<std::string>>{{"part", "complete"}, {"name", "show"}, {"opn", "hash"}}) {
        expect_accepted(all, question);
    }
    expect_accepted(one_of_each_device, {"part", "info"});
    expect_accepted(one_of_each_device, {"profile", "show", "--part"});
}

TEST(NamesFedBack, OfDevices) {
    const NAMES all = column(list({"device", "list", "--hidden"}), "name");
    EXPECT_EQ(all.size(), 989U);
    expect_accepted(all, {"profile", "show", "--device"});
    NAMES with_parts;
    for (const JSON& device : list({"device", "list"})) {
        if (device.at("parts") != 0) {
            with_parts.insert(device.at("name"));
        }
    }
    expect_accepted(with_parts, {"part", "from-device"});
    expect_accepted(all, {"part", "info"});
    expect_accepted(all, {"name", "show"});
    const JSON parts = list({"part", "list", "--device", " osprey-8 "});
    EXPECT_EQ(column(parts, "device"), NAMES{"OSPREY-8"});
}

TEST(NamesFedBack, OfFamilies) {
    const JSON families = list({"family", "list", "--hidden"});
    const NAMES names = column(families, "name");
    EXPECT_EQ(names.size(), 71U);
    for (const auto& question :
         std::vector<std::vector<std::string>>{{"profile", "show", "--family"}, {"part", "info"}, {"name", "show"}}) {
        expect_accepted(names, question);
    }
    expect_accepted(column(families, "pcf_family_pcf"), {"name", "show"});
    for (const std::string& name : {*names.begin(), *names.rbegin()}) {
        EXPECT_EQ(column(list({"part", "list", "--hidden", "--family", " " + name}), "family"), NAMES{name});
    }
}

TEST(NamesFedBack, OfOrderingCodes) {
    const JSON codes = list({"opn", "list", "--hidden"});
    expect_accepted(column(codes, "name"), {"opn", "index"});
    expect_accepted(column(codes, "index"), {"opn", "name"});
    expect_accepted(column(codes, "hash"), {"opn", "from-hash"});
}

TEST(NamesFedBack, OfEveryScheme) {
    const NAMES parts = column(list({"part", "list", "--hidden"}), "name");
    const PROCESS_RESULT shown = run_command({"--json", "name", "show", "-"}, lines_with(parts));
    const std::vector<JSON> answers = json_lines_of(shown.output);
    NAMES names;
    for (const char* key : {"package_name", "pgm_name", "pgm_part_pcf", "pgm_family_pcf", "family"}) {
        const NAMES more = column(answers, key);
        names.insert(more.begin(), more.end());
    }
    const JSON devices = list({"device", "list", "--hidden"});
    for (const char* key : {"dev_part_pcf", "dev_family_pcf", "family"}) {
        const NAMES more = column(devices, key);
        names.insert(more.begin(), more.end());
    }
    expect_accepted(names, {"name", "show"});
    expect_accepted(names, {"part", "info"});
    expect_accepted(column(answers, "pgm_part_pcf"), {"part", "from-pcf", "--all"});
    expect_accepted(column(answers, "pgm_part_pcf"), {"profile", "show", "--pcf"});
}

TEST(NamesFedBack, OfAliases) {
    const NAMES alias{"kes75-f169-c4"};
    for (const auto& question : std::vector<std::vector<std::string>>{{"part", "info"},
                                                                      {"part", "complete"},
                                                                      {"name", "show"},
                                                                      {"opn", "hash"},
                                                                      {"profile", "show", "--part"}}) {
        expect_accepted(alias, question);
    }
}

TEST(NamesFedBack, OfFlash) {
    expect_accepted(column(list({"flash", "list"}), "device_name"), {"flash", "show"});
    expect_accepted(column(list({"flash", "list"}), "index"), {"flash", "show", "--index"});
    expect_accepted(column(list({"flash", "list", "--all-rows"}), "device_name"), {"flash", "show", "--all-rows"});
    expect_accepted(column(list({"flash", "list", "--all-rows"}), "row"), {"flash", "show", "--all-rows", "--index"});
    expect_accepted(column(list({"flash", "list", "--all-rows"}), "index"), {"flash", "show", "--index"});
}

TEST(NamesFedBack, OfProfiles) {
    const JSON profiles = list({"profile", "list"});
    expect_accepted(column(profiles, "index"), {"profile", "show", "--index"});
    for (const char* key : {"family", "pcf", "device", "part"}) {
        expect_accepted(column(profiles, key), {"profile", "show", std::string("--") + key});
    }
    const JSON entries = list({"profile", "tables", "--family"});
    NAMES governed;
    for (const JSON& entry : entries) {
        if (!entry.at("index").is_null()) {
            governed.insert(entry.at("name"));
        }
    }
    expect_accepted(governed, {"profile", "show", "--family"});
}

TEST(NamesFedBack, OfEnumerations) {
    for (const char* type : {"block", "sector", "option-bit", "sof-setting"}) {
        const JSON values = list({"enum", "list", type});
        expect_accepted(column(values, "name"), {"enum", "value", type});
        expect_accepted(column(values, "value"), {"enum", "name", type});
    }
}

TEST(NamesFedBack, OfHardProcessorSystems) {
    for (const JSON& kind : list({"hps", "kinds"})) {
        for (const char* key : {"index", "name", "id"}) {
            for (const char* sort : {"nand", "spi"}) {
                const JSON rows = list({"hps", sort, "--hps", text_of(kind.at(key))});
                EXPECT_EQ(column(rows, "hps"), NAMES{kind.at("name")});
            }
        }
    }
}

}  // namespace
