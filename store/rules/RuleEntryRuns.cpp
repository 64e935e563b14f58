#include "store/rules/RuleEntryRuns.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <string_view>

#include "store/parallel/Parts.h"
#include "store/rules/RuleEntryLayout.h"

namespace store {

namespace {

using Run = RuleEntryRuns::Run;

constexpr std::size_t chunkSize = partSize(std::size_t{1} << 20);
constexpr std::size_t worthwhile = std::size_t{4} << 20;

// The first "<dict>" from `from` on that stands on a line behind a "</dict>"; nullptr when there is none.
const char* nextBehindEntry(const char* from, const char* end) {
    constexpr std::string_view before = "</dict>\n";
    const std::string_view text(from, static_cast<std::size_t>(end - from));
    const std::size_t line = text.find(before);
    if (line == std::string_view::npos) return nullptr;
    const std::size_t dict = text.find_first_not_of('\t', line + before.size());
    return dict == std::string_view::npos ? nullptr : from + dict;
}

// The run that begins at `dict`, of entries that begin in this chunk; perhaps empty.
Run runAt(const char* dict, const char* chunkEnd) {
    Run run{.begin = dict};
    while (dict && dict < chunkEnd) {
        const RuleEntryLayout::Match match = RuleEntryLayout::matchAt(dict);
        if (!match.end) break;
        run.end = match.end;
        run.textSize += match.rule.size();
        ++run.count;
        dict = RuleEntryLayout::nextEntry(dict, match.end);
    }
    return run;
}

// All runs of a chunk but short ones, which are not worth their bookkeeping.
std::vector<Run> runsFrom(const char* dict, const char* chunkEnd) {
    constexpr std::size_t fewest = isFuzzed ? 2 : 16;
    std::vector<Run> runs;
    while (dict) {
        const Run run = runAt(dict, chunkEnd);
        if (run.count >= fewest) runs.push_back(run);
        dict = nextBehindEntry(run.count > 0 ? std::min(run.end, chunkEnd) : dict, chunkEnd);
    }
    return runs;
}

// The runs of a text from an entry's "<dict>" on. None for a text that one thread reads as fast.
std::vector<Run> allRuns(const char* dict, const char* end) {
    const auto size = static_cast<std::size_t>(end - dict);
    const std::size_t threads = partsWorthwhile(size, worthwhile);
    if (threads == 1) return {};
    std::vector<std::vector<Run>> chunks((size + chunkSize - 1) / chunkSize);
    std::atomic<std::size_t> next = 0;
    inAll(threads, [&](std::size_t) {
        for (std::size_t chunk = next++; chunk < chunks.size(); chunk = next++) {
            const char* begin = dict + chunk * chunkSize;
            const char* chunkEnd = std::min(begin + chunkSize, end);
            try {
                chunks[chunk] = runsFrom(chunk == 0 ? dict : nextBehindEntry(begin, chunkEnd), chunkEnd);
            } catch (const std::bad_alloc&) {
                // Entries outside of runs are read one by one.
                continue;
            }
        }
    });
    std::vector<Run> all;
    for (const std::vector<Run>& runs : chunks) all.insert(all.end(), runs.begin(), runs.end());
    return all;
}

}  // namespace

RuleEntryRuns RuleEntryRuns::of(const Slice& array) {
    RuleEntryRuns runs;
    if (const auto* found = dynamic_cast<const RuleEntryRuns*>(array.text->index.get())) runs.runs_ = found->runs_;
    return runs;
}

const char* RuleEntryRuns::skip(const char* dict, const char* end) {
    const Run* run = at(dict, end);
    return run ? run->end : RuleEntryLayout::matchAt(dict).end;
}

const Run* RuleEntryRuns::at(const char* dict, const char* end) {
    if (!runs_) runs_ = allRuns(dict, end);
    while (next_ < runs_->size() && (*runs_)[next_].begin < dict) ++next_;
    return next_ < runs_->size() && (*runs_)[next_].begin == dict ? &(*runs_)[next_] : nullptr;
}

}  // namespace store
