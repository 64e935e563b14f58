#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace store {

// Rule entries as they are written that follow one another without a break.
struct RuleEntryRun {
    const char* begin = nullptr;   // the first one's "<dict>"
    const char* behind = nullptr;  // behind the last one's "</dict>"
    std::size_t count = 0;
    std::size_t textSize = 0;  // bytes of all rules
};

// Where in a large text such runs are. A text that holds a million entries is looked through in pieces, several at the
// same time, before anybody knows what the pieces are part of: that entries stand there is true wherever they stand.
class RuleEntryRuns {
public:
    // The runs of a Buffer's text from an entry's "<dict>" on. None for a text that one thread is done with as soon.
    RuleEntryRuns(const char* dict, const char* end);

    // Tells somebody who goes through a text where its runs are.
    class Guide {
    public:
        // In a text up to `end`, whose runs may be `known` already; else they are found at its first entry.
        Guide(std::shared_ptr<const RuleEntryRuns> known, const char* end) : runs_(std::move(known)), end_(end) {}

        // The run that begins with this "<dict>"; nullptr when none is known to. To be asked in ascending order.
        const RuleEntryRun* at(const char* dict);
        // nullptr before the first entry.
        const std::shared_ptr<const RuleEntryRuns>& runs() const { return runs_; }

    private:
        std::shared_ptr<const RuleEntryRuns> runs_;
        const char* end_;
        std::size_t next_ = 0;
    };

private:
    std::vector<RuleEntryRun> runs_;  // ascending
};

}  // namespace store
