#include <gtest/gtest.h>

#include <iostream>
#include <iterator>
#include <sstream>
#include <string>

#include "Child.h"
#include "Files.h"
#include "Verbs.h"
#include "store/ConfigurationStore.h"

// A reader of another make, in a process of its own, reads the files without pause while they are changed in all ways.

namespace store {
namespace {

// The two values lie far apart: some rules are between them.
void setPair(Dictionary& dictionary, int number) {
    const std::string value = std::to_string(number);
    dictionary.set("left", Value(value));
    dictionary.set("middle", Value(std::string(static_cast<std::size_t>(number % 97) * 1000, 'x')));
    dictionary.set("right", Value(value));
}

void makeChange(ConfigurationStore& store, int number) {
    const std::size_t kind = static_cast<std::size_t>(number) % (std::size(everyVerb) + 3);
    if (kind < std::size(everyVerb)) {
        store.change(everyVerb[kind].writer, [&](Dictionary& dictionary) { setPair(dictionary, number); });
    } else if (kind == std::size(everyVerb)) {
        store.deleteAllRulesAndSettings();
    } else if (kind == std::size(everyVerb) + 1) {
        Dictionary imported;
        setPair(imported, number);
        for (File file : everyFile) store.replace(file, imported);
    } else {
        store.setDisabled(!store.isDisabled());
    }
}

void changeUnderTheReader(int changes) {
    TemporaryDirectory root;
    std::filesystem::create_directories(root / "var/mobile/Library/Preferences");
    Posts posts;
    ConfigurationStore store(root.path(), posts);
    const std::filesystem::path changing = root / "changing";
    put(changing, "");
    std::string command = PYTHON " " READER " '" + changing.string() + "'";
    for (File file : everyFile) {
        store.replace(file, Dictionary());
        command += " '" + store.path(file).string() + "'";
    }
    Program reader(command);
    ASSERT_EQ(reader.line(), "ready");
    for (int number = 1; number <= changes; ++number) makeChange(store, number);
    std::filesystem::remove(changing);
    int reads = 0;
    int values = 0;
    const std::string summary = reader.line().value_or("");
    std::istringstream(summary) >> reads >> values;
    EXPECT_EQ(reader.line(), "") << "the first thing that was wrong";
    EXPECT_GT(values, 3) << "the reader has not met the changes: " << summary;
    std::cout << changes << " changes, " << reads << " reads, " << values << " values met\n";
}

TEST(Reader, MeetsWholeStatesOnly) {
    changeUnderTheReader(500);
}

TEST(Reader, DISABLED_MeetsWholeStatesOnlyForLong) {
    changeUnderTheReader(20'000);
}

}  // namespace
}  // namespace store
