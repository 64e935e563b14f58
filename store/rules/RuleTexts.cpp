#include "store/rules/RuleTexts.h"

#include "store/rules/RuleScanner.h"

namespace store {

class RuleTextReader {
public:
    explicit RuleTextReader(RuleTexts& rules) : rules_(rules) {}

    void run(const RuleEntryRuns::Run& run) {
        rules_.runs_.push_back({run, rules_.size_});
        rules_.size_ += run.count;
    }
    void entry(const RuleEntryLayout::Match& match) { add(match.rule); }
    void oddEntry(const OddRuleEntry& entry) {
        if (entry.rule) add(rules_.decoded_.emplace_back(entry.rule->decoded()));
    }
    void foreign(std::string_view) {}

private:
    void add(std::string_view rule) { rules_.singles_.push_back({rule, rules_.size_++}); }

    RuleTexts& rules_;
};

RuleTexts::RuleTexts(const Value* array) {
    if (!array || array->kind() != Kind::array) return;
    const Slice slice = sliceOf(*array);
    source_ = slice.text;
    RuleTextReader reader(*this);
    scanRules(slice, reader);
}

}  // namespace store
