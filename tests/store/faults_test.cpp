#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/xattr.h>

#include <cerrno>
#include <functional>
#include <iostream>

#include "Files.h"
#include "Values.h"
#include "Verbs.h"
#include "store/ConfigurationStore.h"
#include "store/Schema.h"
#include "store/files/Temporaries.h"
#include "store/plist/PropertyListFile.h"
#include "support/SystemCalls.h"

// Every change of the files meets every fault at each of its system calls on files. Whatever happens, each file is the
// one from before or the one from after, entire; the app goes on; and the next start leaves nothing lying about.

namespace store {
namespace {

using faults::Effect;
using faults::Fault;
using faults::meetAll;
using faults::Seen;
using Contents = std::map<std::string, std::string>;

enum class Held { nothing, rules, manyRules, damage, rulesOfOthers };

// One thing that a person can do to the files, and what the files hold before.
struct Change {
    std::string name;
    Held before;
    std::function<void(ConfigurationStore&)> make;
};

void set(Dictionary& file, std::string_view key) {
    file.set(key, Value(true));
}

// Every way in which the app writes: the rows of the writers' table, what replaces files whole, exports, the marker.
std::vector<Change> everyChange() {
    using enum Held;
    std::vector<Change> changes;
    const auto changeBy = [](const Writer& writer) {
        return [writer](ConfigurationStore& store) {
            store.change(writer, [](Dictionary& file) { set(file, "changed"); });
        };
    };
    for (const auto& [name, writer] : everyVerb)
        for (Held held : {rules, nothing, damage}) changes.push_back({name, held, changeBy(writer)});
    changes.push_back({"import a list", manyRules, changeBy(writers::listImport)});
    for (Held held : {rules, nothing}) {
        changes.push_back({"first use", held, [](auto& store) { store.createAppRulesFileIfMissing(); }});
        changes.push_back({"export", held, [](auto& store) {
                               if (const auto read = store.read(File::appRules))
                                   writeDictionary(store.exportDirectory() / "VxmSettings.plist", *read);
                           }});
    }
    for (Held held : {rules, nothing, damage, rulesOfOthers}) {
        changes.push_back({"delete all", held, [](auto& store) { store.deleteAllRulesAndSettings(); }});
        changes.push_back({"import settings", held, [](auto& store) {
                               Dictionary imported;
                               set(imported, "imported");
                               for (File file : everyFile) store.replace(file, imported);
                           }});
    }
    changes.push_back({"switch off", nothing, [](auto& store) { store.setDisabled(true); }});
    changes.push_back({"switch on", rules, [](auto& store) { store.setDisabled(false); }});
    return changes;
}

std::string contentFor(Held held) {
    // More than is written at once, or some.
    const std::size_t size = held == Held::manyRules ? 9'000'000 : 20'000;
    std::string rules = "<dict><key>com.example.app</key><dict><key>allow</key><array>";
    for (int i = 0; rules.size() < size; ++i)
        rules += "<dict><key>date</key><date>2013-05-04T17:03:09Z</date><key>rule</key><string>host" +
                 std::to_string(i) + ".example</string></dict>";
    return held == Held::damage ? rules : rules + "</array></dict></dict>";
}

// A file system root below which the files hold that. What is there already is overwritten; nothing else is removed.
void prepare(const std::filesystem::path& root, Held held) {
    Posts posts;
    ConfigurationStore store(root, posts);
    std::filesystem::create_directories(store.exportDirectory());
    if (held == Held::nothing) return;
    const std::string content = contentFor(held);
    for (File file : everyFile) {
        put(store.path(file), content);
        put(store.path(file).string() + ".previous", "an earlier generation");
        // Keeping attributes is part of a change. A file system in memory has only those of the second kind.
        for (const char* attribute : {"user.vexmor.test", "trusted.vexmor.test"})
            setxattr(store.path(file).c_str(), attribute, "x", 1, 0);
    }
    store.setDisabled(true);
    put(store.exportDirectory() / "VxmSettings.plist", "an earlier export");
}

// All files of a folder and the folders in it but those on their way to their places.
Contents contentsOf(const std::filesystem::path& folder) {
    Contents contents;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && !isTemporaryName(entry.path().filename().string()))
            contents[entry.path().lexically_relative(folder)] = contentOf(entry.path());
    return contents;
}

std::optional<std::string> contentIn(const Contents& contents, const std::string& name) {
    const auto found = contents.find(name);
    return found == contents.end() ? std::nullopt : std::optional(found->second);
}

void markAll(ConfigurationStore& store) {
    for (File file : everyFile)
        store.change({file, WhenMissing::startEmpty, Marker::leave}, [](Dictionary& held) { set(held, "alive"); });
}

// What a file holds once it has been marked.
std::string marked(const std::optional<std::string>& content) {
    ReadResult result = readText(content.value_or(""));
    auto* held = std::get_if<Dictionary>(&result);
    Dictionary dictionary = held ? *held : Dictionary();
    set(dictionary, "alive");
    return written(dictionary);
}

long reads = 0;  // of a file, after a fault

class ChangeUnderFaults {
public:
    explicit ChangeUnderFaults(const Change& change) : change_(change) {
        startAnew();
        before_ = contents();
        make({}, 0);
        after_ = contents();
    }

    // What becomes of the change when calls of one number fail, one after the other: whether it was made.
    std::vector<bool> isMadeWhenFails(long number) {
        std::vector<bool> made;
        meetAll({{Effect::fails, EIO}}, [&](Fault fault, int call) {
            startAnew();
            const Seen seen = make(fault, call);
            if (seen.faultAt == number) made.push_back(contents() == after_);
            return seen;
        });
        return made;
    }

    int meet(const std::vector<Fault>& faults) {
        SCOPED_TRACE(change_.name);
        return meetAll(faults, [&](Fault fault, int call) {
            startAnew();
            const Seen seen = make(fault, call);
            const Contents found = contents();
            expectEntire(found);
            ConfigurationStore next(root_.path(), posts_);
            markAll(fault.effect == Effect::ends ? next : *store_);
            for (File file : everyFile) {
                const std::string name = next.path(file).filename();
                EXPECT_TRUE(contentOf(next.path(file)) == marked(contentIn(found, name))) << name;
            }
            for (const auto& folder : {next.exportDirectory().parent_path(), next.exportDirectory()})
                for (const std::string& name : namesIn(folder)) EXPECT_FALSE(isTemporaryName(name)) << name;
            return seen;
        });
    }

private:
    Seen make(Fault fault, int call) {
        faults::arm(fault, call, change_.before == Held::rulesOfOthers);
        store_.emplace(root_.path(), posts_);
        change_.make(*store_);
        return faults::disarm();
    }

    void expectEntire(const Contents& found) const {
        Contents names = before_;
        names.insert(after_.begin(), after_.end());
        names.insert(found.begin(), found.end());
        for (const auto& [name, content] : names) {
            ++reads;
            const auto now = contentIn(found, name);
            // A file that could not be read may have been kept as a damaged one.
            const bool isKept = name.ends_with(damagedSuffix) &&
                                now == contentIn(before_, name.substr(0, name.size() - damagedSuffix.size()));
            EXPECT_TRUE(isKept || now == contentIn(before_, name) || now == contentIn(after_, name))
                << name << " holds " << (now ? std::to_string(now->size()) : "no") << " bytes";
        }
    }

    void startAnew() {
        std::filesystem::remove_all(root_ / "var");
        prepare(root_.path(), change_.before);
    }
    Contents contents() const { return contentsOf(root_ / "var/mobile/Library/Preferences"); }

    TemporaryDirectory root_;
    Posts posts_;
    const Change change_;
    Contents before_;
    Contents after_;
    std::optional<ConfigurationStore> store_;
};

// A disk that could not take the new file is believed, even when all its bytes seem to be there.
TEST(Faults, StopAChangeBeforeTheFileIsInPlace) {
    ChangeUnderFaults switching(everyChange().front());
    const std::pair<long, std::vector<bool>> table[] = {
        {SYS_write, {false}},
        {SYS_fsync, {false, true}},              // the file, the folder
        {SYS_close, {true, false, true, true}},  // of the old file, of the new one, of its lock, of the folder
        {SYS_renameat2, {false}},
    };
    for (const auto& [call, isMade] : table) EXPECT_EQ(switching.isMadeWhenFails(call), isMade) << call;
}

// What was switched on again must not be found off after a power cut.
TEST(Faults, DoNotKeepTheMarkerThatIsGone) {
    ChangeUnderFaults switchingOn(everyChange().back());
    EXPECT_EQ(switchingOn.isMadeWhenFails(SYS_fsync), std::vector<bool>{true});
}

void meetEvery(const std::vector<Fault>& faults, bool withManyRules) {
    int points = 0;
    for (const Change& change : everyChange()) {
        if (change.before == Held::manyRules && !withManyRules) continue;
        ChangeUnderFaults changing(change);
        points += changing.meet(faults);
        if (testing::Test::HasFailure()) return;
    }
    EXPECT_GE(points, 200 * int(faults.size()));
    std::cout << "faults: " << points << " met, " << reads << " reads\n";
}

TEST(Faults, LeaveEveryFileEntire) {
    meetEvery({{Effect::ends, EIO}, {Effect::fails, EIO}}, false);
}

TEST(Faults, DISABLED_OfEveryKindLeaveEveryFileEntire) {
    std::vector<Fault> faults{{Effect::ends, EIO}, {Effect::failsFromNow, EIO}, {Effect::failsFromNow, ENOSPC}};
    for (int error : {EIO, ENOSPC, EDQUOT, EACCES, EINTR, EMFILE}) faults.push_back({Effect::fails, error});
    faults.push_back({Effect::isShort});
    meetEvery(faults, true);
}

}  // namespace
}  // namespace store
