#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "Files.h"
#include "store/ConfigurationStore.h"
#include "store/NotifyCenter.h"

// A reader of another make, in a process of its own, reads the files without pause while they are changed in all ways.

namespace store {
namespace {

struct NobodyListens : NotifyCenter {
    void post(std::string_view) override {}
};

class OtherReader {
public:
    explicit OtherReader(const ConfigurationStore& store) {
        int to[2];
        int from[2];
        if (pipe(to) != 0 || pipe(from) != 0) throw std::runtime_error("no pipe");
        reader_ = fork();
        if (reader_ == 0) {
            dup2(to[0], STDIN_FILENO);
            dup2(from[1], STDOUT_FILENO);
            for (int end : {to[0], to[1], from[0], from[1]}) ::close(end);
            execl(PYTHON, PYTHON, READER, store.path(File::appRules).c_str(), store.path(File::globalRules).c_str(),
                  store.path(File::guiSettings).c_str(), nullptr);
            _exit(127);
        }
        ::close(to[0]);
        ::close(from[1]);
        input_ = to[1];
        output_ = fdopen(from[0], "r");
    }
    ~OtherReader() {
        stop();
        std::fclose(output_);
        waitpid(reader_, nullptr, 0);
    }
    OtherReader(const OtherReader&) = delete;
    OtherReader& operator=(const OtherReader&) = delete;

    std::string line() {
        std::string text;
        for (int c; (c = std::fgetc(output_)) != EOF && c != '\n';) text.push_back(static_cast<char>(c));
        return text;
    }
    void stop() {
        if (input_ >= 0) ::close(std::exchange(input_, -1));
    }

private:
    pid_t reader_ = -1;
    int input_ = -1;
    FILE* output_ = nullptr;
};

// The two values lie far apart: some rules are between them.
void setPair(Dictionary& dictionary, int number) {
    const std::string value = std::to_string(number);
    dictionary.set("left", Value(value));
    dictionary.set("middle", Value(std::string(static_cast<std::size_t>(number % 97) * 1000, 'x')));
    dictionary.set("right", Value(value));
}

void makeChange(ConfigurationStore& store, int number) {
    const Writer writers[] = {
        writers::pruneApps,      writers::addApp,       writers::deleteApp,  writers::appEnabled,
        writers::appDisabled,    writers::appSwitch,    writers::guiFlag,    writers::appRuleList,
        writers::globalRuleList, writers::globalSwitch, writers::listImport,
    };
    const std::size_t kind = static_cast<std::size_t>(number) % (std::size(writers) + 3);
    if (kind < std::size(writers)) {
        store.change(writers[kind], [&](Dictionary& dictionary) { setPair(dictionary, number); });
    } else if (kind == std::size(writers)) {
        store.deleteAllRulesAndSettings();
    } else if (kind == std::size(writers) + 1) {
        Dictionary imported;
        setPair(imported, number);
        for (File file : {File::appRules, File::globalRules, File::guiSettings}) store.replace(file, imported);
    } else {
        store.setDisabled(!store.isDisabled());
    }
}

void changeUnderTheReader(int changes) {
    TemporaryDirectory root;
    std::filesystem::create_directories(root / "var/mobile/Library/Preferences");
    NobodyListens nobody;
    ConfigurationStore store(root.path(), nobody);
    for (File file : {File::appRules, File::globalRules, File::guiSettings}) store.replace(file, Dictionary());

    OtherReader reader(store);
    ASSERT_EQ(reader.line(), "ready");
    for (int number = 1; number <= changes; ++number) makeChange(store, number);
    reader.stop();
    int reads = 0;
    int values = 0;
    const std::string summary = reader.line();
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
