#pragma once

#include <string>

namespace bench {

enum class Unit { seconds, bytes };

// What must hold: ours takes at most so many times what the peer takes, or is so many times faster.
struct Goal {
    enum class Kind { atMost, fasterBy };
    Kind kind;
    double factor;
};

inline Goal atMost(double factor) {
    return {Goal::Kind::atMost, factor};
}
inline Goal fasterBy(double factor) {
    return {Goal::Kind::fasterBy, factor};
}

// One line of the table: a piece of work, what it takes us and what it takes a peer on the same data.
struct Row {
    std::string work;
    std::string peer = {};
    Unit unit = Unit::seconds;
    double ours = 0;
    double theirs = 0;
    Goal goal = atMost(1);
    std::string problem = {};  // why the figures do not count, whatever they are; empty when nothing is wrong
    std::string subject = {};  // what the row belongs to; set by whoever gathers the rows

    // Ours to theirs, or theirs to ours where being faster is the goal.
    double ratio() const { return goal.kind == Goal::Kind::atMost ? ours / theirs : theirs / ours; }
    bool holds() const {
        return problem.empty() && (goal.kind == Goal::Kind::atMost ? ratio() <= goal.factor : ratio() >= goal.factor);
    }
};

}  // namespace bench
