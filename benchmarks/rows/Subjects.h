#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <vector>

#include "benchmarks/Row.h"

namespace bench {

// What a subject is measured with: how many rules, and an empty folder on the disk for its files.
struct Conditions {
    std::size_t size;
    std::filesystem::path folder;
};

using Rows = std::vector<Row>;

Rows measureStart(const Conditions& conditions);
Rows measureChooser(const Conditions& conditions);
Rows measureIcons(const Conditions& conditions);
Rows measureSwitch(const Conditions& conditions);
Rows measureRuleList(const Conditions& conditions);
Rows measureUse(const Conditions& conditions);
Rows measureSort(const Conditions& conditions);
Rows measureImport(const Conditions& conditions);
Rows measureList(const Conditions& conditions);
Rows measureEngine(const Conditions& conditions);
Rows measureConnection(const Conditions& conditions);
Rows measureExport(const Conditions& conditions);
Rows measureScroll(const Conditions& conditions);
Rows measureLog(const Conditions& conditions);
Rows measureGrowth(const Conditions& conditions);

// A group of rows that are measured together, by the name to ask for it.
struct Subject {
    const char* name;
    Rows (*measure)(const Conditions& conditions);
};

inline constexpr std::array subjects{
    Subject{"start", measureStart},    Subject{"chooser", measureChooser},
    Subject{"icons", measureIcons},    Subject{"switch", measureSwitch},
    Subject{"rules", measureRuleList}, Subject{"sort", measureSort},
    Subject{"import", measureImport},  Subject{"list", measureList},
    Subject{"engine", measureEngine},  Subject{"connection", measureConnection},
    Subject{"export", measureExport},  Subject{"scroll", measureScroll},
    Subject{"log", measureLog},        Subject{"growth", measureGrowth},
    Subject{"use", measureUse},
};

}  // namespace bench
