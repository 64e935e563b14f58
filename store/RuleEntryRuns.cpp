#include "store/RuleEntryRuns.h"

#include <algorithm>
#include <atomic>
#include <string_view>

#include "store/Parts.h"
#include "store/RuleEntryLayout.h"

namespace store {

namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 20;
constexpr std::size_t worthwhile = std::size_t{4} << 20;

// The "<dict>" of the first entry, behind another one, whose line begins in a piece. There may be none.
const char* firstEntry(const char* piece, const char* end) {
    constexpr std::string_view before = "</dict>\n";
    const std::string_view text(piece, static_cast<std::size_t>(end - piece));
    const std::size_t line = text.find(before);
    if (line == std::string_view::npos) return nullptr;
    const std::size_t dict = text.find_first_not_of('\t', line + before.size());
    return dict == std::string_view::npos ? nullptr : piece + dict;
}

// The entries that follow one another from here on and begin in the piece. There may be none.
RuleEntryRun runAt(const char* dict, const char* pieceEnd) {
    RuleEntryRun run{.begin = dict};
    while (dict && dict < pieceEnd) {
        const RuleEntryLayout::Match match = RuleEntryLayout::matchAt(dict);
        if (!match.end) break;
        run.behind = match.end;
        run.textSize += match.rule.size();
        ++run.count;
        dict = RuleEntryLayout::nextEntry(dict, match.end);
    }
    return run;
}

}  // namespace

RuleEntryRuns::RuleEntryRuns(const char* dict, const char* end) {
    const auto size = static_cast<std::size_t>(end - dict);
    const std::size_t threads = partsWorthwhile(size, worthwhile);
    if (threads == 1) return;
    runs_.resize((size + pieceSize - 1) / pieceSize);
    std::atomic<std::size_t> nextPiece = 0;
    inAll(threads, [&](std::size_t) {
        for (std::size_t piece = nextPiece++; piece < runs_.size(); piece = nextPiece++) {
            const char* begin = dict + piece * pieceSize;
            const char* pieceEnd = std::min(begin + pieceSize, end);
            runs_[piece] = runAt(piece == 0 ? dict : firstEntry(begin, pieceEnd), pieceEnd);
        }
    });
    std::erase_if(runs_, [](const RuleEntryRun& run) { return run.count == 0; });
}

const RuleEntryRun* RuleEntryRuns::at(const char* dict) {
    while (next_ < runs_.size() && runs_[next_].begin < dict) ++next_;
    return next_ < runs_.size() && runs_[next_].begin == dict ? &runs_[next_] : nullptr;
}

}  // namespace store
