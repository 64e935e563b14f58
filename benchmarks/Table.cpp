#include "benchmarks/Table.h"

#include <algorithm>
#include <array>
#include <ostream>

#include "benchmarks/Format.h"

namespace bench {

namespace {

using Line = std::array<std::string, 7>;

Line lineOf(const Row& row) {
    const std::string verdict = row.holds() ? "holds" : "falls short";
    if (!row.problem.empty()) return {row.work, "", row.peer, "", "", goalText(row.goal), verdict + ": " + row.problem};
    return {row.work,       figureText(row.ours, row.unit),
            row.peer,       figureText(row.theirs, row.unit),
            ratioText(row), goalText(row.goal),
            verdict};
}

}  // namespace

void printTable(std::ostream& output, const std::vector<Row>& rows) {
    std::vector<Line> lines{{"work", "ours", "peer", "peer's", "ratio", "goal", ""}};
    for (const Row& row : rows) lines.push_back(lineOf(row));
    std::array<std::size_t, std::tuple_size_v<Line>> widths{};
    for (const Line& line : lines) {
        for (std::size_t column = 0; column < line.size(); ++column)
            widths[column] = std::max(widths[column], line[column].size());
    }
    for (const Line& line : lines) {
        for (std::size_t column = 0; column + 1 < line.size(); ++column)
            output << line[column] << std::string(widths[column] - line[column].size() + 2, ' ');
        output << line.back() << '\n';
    }
    output.flush();
}

}  // namespace bench
