// Measures the app against other programs at the same work, and says where it falls short of its goals.
#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "benchmarks/Json.h"
#include "benchmarks/Options.h"
#include "benchmarks/Process.h"
#include "benchmarks/Table.h"
#include "benchmarks/rows/Subjects.h"
#include "benchmarks/workers/Worker.h"
#include "store/files/Descriptor.h"

namespace {

namespace fs = std::filesystem;

constexpr int fellShort = 1;
constexpr int misused = 2;

int refuse(const std::string& reason) {
    std::cerr << "vexmor-bench: " << reason << '\n';
    return misused;
}

bool isSubject(const std::string& name) {
    return std::any_of(bench::subjects.begin(), bench::subjects.end(),
                       [&](const bench::Subject& subject) { return subject.name == name; });
}

// The same for all that is run: no window on anybody's screen, an order of names that every machine has, and nothing
// said about either.
void settleEnvironment() {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    setenv("QT_LOGGING_RULES", "default.warning=false", 1);
}

// Two that measure at once would measure each other, in the same folder.
store::Descriptor waitForTurn(const fs::path& lockFile) {
    store::Descriptor lock(open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644));
    if (!lock.isOpen()) throw fs::filesystem_error("cannot write", lockFile, {errno, std::generic_category()});
    if (flock(lock.number(), LOCK_EX | LOCK_NB) == 0) return lock;
    std::cerr << "waiting for another measurement to end\n";
    flock(lock.number(), LOCK_EX);
    return lock;
}

bench::Rows measure(const bench::Subject& subject, const bench::Conditions& conditions) {
    std::cerr << "measuring " << subject.name << '\n';
    fs::remove_all(conditions.folder);
    fs::create_directories(conditions.folder);
    bench::Rows rows;
    try {
        rows = subject.measure(conditions);
    } catch (const std::exception& problem) {
        rows.push_back({.work = subject.name, .problem = problem.what()});
    }
    fs::remove_all(conditions.folder);
    for (bench::Row& row : rows) row.subject = subject.name;
    return rows;
}

bench::Rows measureAll(const bench::Options& options, const fs::path& folder) {
    bench::Rows all;
    for (const bench::Subject& subject : bench::subjects) {
        if (!options.subject.empty() && options.subject != subject.name) continue;
        const bench::Rows rows = measure(subject, {options.size, folder});
        all.insert(all.end(), rows.begin(), rows.end());
    }
    return all;
}

int run(const std::vector<std::string>& arguments) {
    settleEnvironment();
    if (!arguments.empty() && arguments.front() == "--worker")
        return bench::work({arguments.begin() + 1, arguments.end()});
    const auto parsed = bench::parseArguments(arguments);
    if (const auto* misuse = std::get_if<bench::Misuse>(&parsed)) return refuse(misuse->reason);
    const auto& options = std::get<bench::Options>(parsed);
    if (!options.subject.empty() && !isSubject(options.subject)) {
        std::string names;
        for (const bench::Subject& subject : bench::subjects) names += std::string(" ") + subject.name;
        return refuse("there is no " + options.subject + "; there are" + names);
    }

    const fs::path build = bench::programFolder().parent_path();
    const store::Descriptor turn = waitForTurn(build / "bench.lock");
    const bench::Rows rows = measureAll(options, build / "bench-device");
    bench::printTable(std::cout, rows);
    std::ofstream json(build / "bench.json");
    bench::writeJson(json, rows);
    return std::all_of(rows.begin(), rows.end(), [](const bench::Row& row) { return row.holds(); }) ? EXIT_SUCCESS
                                                                                                    : fellShort;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "vexmor-bench: %s\n", problem.what());
        return misused;
    }
}
