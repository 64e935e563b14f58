#include <gtest/gtest.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Files.h"
#include "Values.h"
#include "store/ConfigurationStore.h"
#include "store/NotifyCenter.h"
#include "store/faults/Changes.h"
#include "store/faults/SystemCalls.h"
#include "store/files/Temporaries.h"

// Every change of the files meets every fault at each of its system calls on files. Whatever happens, each file is the
// one from before or the one from after, entire; the app goes on; and the next start leaves nothing lying about.

namespace store {
namespace {

using faults::Effect;
using faults::Fault;
using faults::Seen;
using Contents = std::map<std::string, std::string>;

constexpr File everyFile[] = {File::appRules, File::globalRules, File::guiSettings};
constexpr unsigned patience = 60;  // seconds until a process that hangs is ended

struct NobodyListens : NotifyCenter {
    void post(std::string_view) override {}
};

// Entries are dated when they are made: with all dates the same, two runs give the same.
std::string withOneDate(std::string text) {
    constexpr std::string_view tag = "<date>";
    constexpr std::string_view date = "2000-01-01T00:00:00Z";
    for (std::size_t at = 0; (at = text.find(tag, at)) != std::string::npos; at += tag.size())
        text.replace(at + tag.size(), date.size(), date);
    return text;
}

// All files of a folder and the folders in it but those on their way to their places.
Contents contentsOf(const std::filesystem::path& folder) {
    Contents contents;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && !isTemporaryName(entry.path().filename().string()))
            contents[entry.path().lexically_relative(folder)] = withOneDate(contentOf(entry.path()));
    return contents;
}

std::optional<std::string> contentIn(const Contents& contents, const std::string& name) {
    const auto found = contents.find(name);
    return found == contents.end() ? std::nullopt : std::optional(found->second);
}

std::string withoutSuffix(const std::string& name) {
    return name.substr(0, name.size() - damagedSuffix.size());
}

void markAll(ConfigurationStore& store) {
    for (File file : everyFile)
        store.change({file, WhenMissing::startEmpty, Marker::leave},
                     [](Dictionary& dictionary) { dictionary.set("alive", Value(true)); });
}

// What a file holds once it has been marked.
std::string marked(const std::optional<std::string>& content) {
    Dictionary dictionary;
    if (content) {
        ReadResult result = readText(*content);
        if (auto* held = std::get_if<Dictionary>(&result)) dictionary = *held;
    }
    dictionary.set("alive", Value(true));
    return withOneDate(written(dictionary));
}

// A change made by a process of its own, which waits after it and then, if it is still there, marks all files.
class OtherProcess {
public:
    OtherProcess(const std::filesystem::path& root, const Change& change, Fault fault, int atCall) {
        if (pipe(report_) != 0 || pipe(permission_) != 0) throw std::runtime_error("no pipe");
        process_ = fork();
        if (process_ == 0) {
            ::close(report_[0]);
            ::close(permission_[1]);
            alarm(patience);
            NobodyListens nobody;
            faults::arm(fault, atCall, change.before == Held::rulesOfOthers);
            ConfigurationStore store(root, nobody);
            change.make(store);
            const Seen seen = faults::disarm();
            char go = 0;
            if (::write(report_[1], &seen, sizeof seen) != sizeof seen || ::read(permission_[0], &go, 1) != 1) _exit(1);
            markAll(store);
            _exit(0);
        }
        ::close(report_[1]);
        ::close(permission_[0]);
    }
    ~OtherProcess() {
        ::close(report_[0]);
        ::close(permission_[1]);
        if (process_ > 0) wait();
    }
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    // Nothing when the process has ended in the change.
    std::optional<Seen> madeTheChange() {
        Seen seen;
        return ::read(report_[0], &seen, sizeof seen) == sizeof seen ? std::optional(seen) : std::nullopt;
    }
    bool goOn() { return ::write(permission_[1], "g", 1) == 1 && wait() == 0; }
    // How the process ended, as the system has it.
    int wait() {
        int status = -1;
        waitpid(std::exchange(process_, -1), &status, 0);
        return status;
    }

private:
    int report_[2];
    int permission_[2];
    pid_t process_ = -1;
};

class ChangeUnderFaults {
public:
    explicit ChangeUnderFaults(const Change& change) : change_(change) {
        startAnew();
        before_ = contents();
        OtherProcess process(root_.path(), change_, {}, 0);
        calls_ = process.madeTheChange().value().calls;
        after_ = contents();
        process.goOn();
    }

    // What becomes of the change when calls of one number fail, one after the other: whether it was made.
    std::vector<bool> isMadeWhenFails(long number) {
        std::vector<bool> made;
        for (int call = 1; call <= calls_; ++call) {
            startAnew();
            OtherProcess process(root_.path(), change_, {Effect::fails, EIO}, call);
            if (process.madeTheChange().value().faultAt == number) made.push_back(contents() == after_);
        }
        return made;
    }

    // Returns at how many calls the fault happened.
    int meet(Fault fault) {
        int points = 0;
        for (int call = 1; call <= calls_ && !testing::Test::HasFailure(); ++call) {
            SCOPED_TRACE(testing::Message() << change_.name << ", call " << call << " of " << calls_ << ", effect "
                                            << int(fault.effect) << ", error " << fault.error);
            startAnew();
            points += meetAt(fault, call);
        }
        return points;
    }

private:
    bool meetAt(Fault fault, int call) {
        OtherProcess process(root_.path(), change_, fault, call);
        const std::optional<Seen> seen = process.madeTheChange();
        const Contents found = contents();
        expectEntire(found);
        // Another thread's call may have come too late.
        const bool isKilled = fault.effect == Effect::kills && !(seen && seen->calls < call);
        if (isKilled) {
            EXPECT_FALSE(seen);
            EXPECT_EQ(process.wait(), SIGKILL);
        } else {
            EXPECT_TRUE(seen && process.goOn()) << "the app did not go on";
        }
        ConfigurationStore next(root_.path(), nobody_);
        if (isKilled) markAll(next);
        expectMarked(found, next);
        for (const auto& folder : {next.exportDirectory().parent_path(), next.exportDirectory()})
            for (const std::string& name : namesIn(folder)) EXPECT_FALSE(isTemporaryName(name)) << name;
        return !seen || seen->faultAt != 0;
    }

    void expectEntire(const Contents& found) const {
        Contents names = before_;
        names.insert(after_.begin(), after_.end());
        names.insert(found.begin(), found.end());
        for (const auto& [name, content] : names) {
            const auto now = contentIn(found, name);
            // A file that could not be read may have been kept as a damaged one.
            const bool isKept = name.ends_with(damagedSuffix) && now == contentIn(before_, withoutSuffix(name));
            EXPECT_TRUE(isKept || now == contentIn(before_, name) || now == contentIn(after_, name))
                << name << " holds " << (now ? std::to_string(now->size()) : "no") << " bytes";
        }
    }

    void expectMarked(const Contents& found, const ConfigurationStore& store) const {
        for (File file : everyFile) {
            const std::string name = store.path(file).filename();
            EXPECT_TRUE(withOneDate(contentOf(store.path(file))) == marked(contentIn(found, name))) << name;
        }
    }

    void startAnew() {
        std::filesystem::remove_all(root_ / "var");
        prepare(root_.path(), change_.before);
    }
    Contents contents() const { return contentsOf(root_ / "var/mobile/Library/Preferences"); }

    TemporaryDirectory root_;
    NobodyListens nobody_;
    const Change& change_;
    Contents before_;
    Contents after_;
    int calls_ = 0;
};

// A disk that could not take the new file is believed, even when all its bytes seem to be there.
TEST(Faults, StopAChangeBeforeTheFileIsInPlace) {
    ChangeUnderFaults switching(everyChange().front());
    struct Row {
        long call;
        std::vector<bool> isMade;
    };
    const Row table[] = {
        {SYS_write, {false}},
        {SYS_fsync, {false, true}},              // the file, the folder
        {SYS_close, {true, false, true, true}},  // of the old file, of the new one, of its lock, of the folder
        {SYS_renameat2, {false}},
    };
    for (const Row& row : table) EXPECT_EQ(switching.isMadeWhenFails(row.call), row.isMade) << row.call;
}

// What was switched on again must not be found off after a power cut.
TEST(Faults, DoNotKeepTheMarkerThatIsGone) {
    ChangeUnderFaults switchingOn(everyChange().back());
    EXPECT_EQ(switchingOn.isMadeWhenFails(SYS_fsync), std::vector<bool>{true});
}

void meetAll(const std::vector<Fault>& faults, bool withManyRules) {
    int points = 0;
    for (const Change& change : everyChange()) {
        if (change.before == Held::manyRules && !withManyRules) continue;
        ChangeUnderFaults changing(change);
        for (const Fault& fault : faults) points += changing.meet(fault);
        if (testing::Test::HasFailure()) return;
    }
    std::cout << points << " faults met\n";
    EXPECT_GE(points, 200 * int(faults.size()));
}

TEST(Faults, LeaveEveryFileEntire) {
    meetAll({{Effect::kills}, {Effect::fails, EIO}}, false);
}

TEST(Faults, DISABLED_OfEveryKindLeaveEveryFileEntire) {
    meetAll({{Effect::kills},
             {Effect::fails, EIO},
             {Effect::fails, ENOSPC},
             {Effect::fails, EDQUOT},
             {Effect::fails, EACCES},
             {Effect::fails, EINTR},
             {Effect::fails, EMFILE},
             {Effect::failsFromNow, EIO},
             {Effect::failsFromNow, ENOSPC},
             {Effect::isShort}},
            true);
}

}  // namespace
}  // namespace store
