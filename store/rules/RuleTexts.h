#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/plist/PropertyList.h"
#include "store/rules/RuleEntryRuns.h"

namespace store {

// The rules of a list, to be read once and no more: they stay where they are in the text that the array was read from,
// so that a million take no memory, and a fifth of the time that a RuleStorage takes.
//
// Rules are visited with their index in stored order, equal ones as well; entries that have no rule or one that is no
// string are left out.
class RuleTexts {
public:
    // Empty where there is no array.
    explicit RuleTexts(const Value* array);

    std::size_t size() const { return size_; }

    // In stored order.
    template <class Visit>
    void forEach(Visit visit) const {
        auto single = singles_.begin();
        for (const Run& run : runs_) {
            for (; single != singles_.end() && single->index < run.index; ++single) visit(single->index, single->rule);
            visitRun(run, visit);
        }
        for (; single != singles_.end(); ++single) visit(single->index, single->rule);
    }

    // In no particular order, by several threads when there are many rules. Must not throw.
    template <class Visit>
    void forEachInParallel(Visit visit) const {
        for (const Single& single : singles_) visit(single.index, single.rule);
        forEachRun(runs_, [&](const Run& run) { visitRun(run, visit); });
    }

private:
    friend class RuleTextReader;

    struct Run {
        RuleEntryRuns::Run entries;
        std::size_t index;  // of the first
    };
    struct Single {
        std::string_view rule;
        std::size_t index;
    };

    template <class Visit>
    static void visitRun(const Run& run, Visit& visit) {
        std::size_t index = run.index;
        forEachEntry(run.entries, [&](std::string_view, std::string_view rule) { visit(index++, rule); });
    }

    std::shared_ptr<const SlicedText> source_;
    std::vector<Run> runs_;
    std::vector<Single> singles_;
    std::deque<std::string> decoded_;  // of rules that are not written as they are, with references or in parts
    std::size_t size_ = 0;
};

}  // namespace store
