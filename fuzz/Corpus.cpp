// The way into a target for the tests: every file of a folder is handed over, and its name says what must come of it.
// So are its beginnings, and the file with a byte that is another, of which only the target's own demands must hold.
#include <algorithm>
#include <iostream>

#include "fuzz/Target.h"
#include "store/Files.h"

namespace {

void damage(const std::string& bytes, std::size_t places) {
    for (std::size_t at = 0; at < bytes.size() && places > 0; at += 1 + bytes.size() / places) {
        fuzz::accepts(bytes.substr(0, at));
        for (const char other : {'<', '>', '&', '9', '\n', '\0', '\xC3'})
            fuzz::accepts(std::string(bytes).replace(at, 1, 1, other));
    }
}

bool isAsNamed(const std::filesystem::path& file, std::size_t places) {
    const std::string name = file.filename();
    const std::string bytes = store::contentOf(file);
    const bool isAccepted = fuzz::accepts(bytes);
    damage(bytes, places);
    const bool isFine = name.starts_with(isAccepted ? "accepts-" : "rejects-");
    if (!isFine) std::cerr << name << " is " << (isAccepted ? "accepted" : "rejected") << '\n';
    return isFine;
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 3) return 2;
    const std::size_t places = std::stoul(argv[2]);
    const std::vector<std::filesystem::path> files(std::filesystem::directory_iterator(argv[1]), {});
    if (files.empty()) std::cerr << "no files in " << argv[1] << '\n';
    const auto wrong = std::ranges::count_if(files, [&](const auto& file) { return !isAsNamed(file, places); });
    return files.empty() || wrong > 0 ? 1 : 0;
} catch (const std::exception& problem) {
    std::cerr << problem.what() << '\n';
    return 1;
}
