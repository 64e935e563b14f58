// The way into a target for the tests: every file of a folder is handed over, and its name says what must come of it.
#include <algorithm>
#include <iostream>

#include "fuzz/Target.h"
#include "store/Files.h"

namespace {

bool isAsNamed(const std::filesystem::path& file) {
    const std::string name = file.filename();
    const bool isAccepted = fuzz::accepts(store::contentOf(file));
    const bool isFine = name.starts_with(isAccepted ? "accepts-" : "rejects-");
    if (!isFine) std::cerr << name << " is " << (isAccepted ? "accepted" : "rejected") << '\n';
    return isFine;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) files.push_back(entry.path());
    if (files.empty()) std::cerr << "no files in " << argv[1] << '\n';
    const auto wrong = std::count_if(files.begin(), files.end(), [](const auto& file) { return !isAsNamed(file); });
    return files.empty() || wrong > 0 ? 1 : 0;
}
