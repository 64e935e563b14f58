#include "benchmarks/Peers.h"

#include <fcntl.h>
#include <unistd.h>

#include <stdexcept>

#include "benchmarks/Figures.h"
#include "benchmarks/Process.h"
#include "store/files/Descriptor.h"

namespace bench {

namespace {

void syncFile(const std::filesystem::path& file) {
    const store::Descriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (fsync(descriptor.number()) != 0) throw std::runtime_error("fsync of " + file.string() + " failed");
}

}  // namespace

double copyAndSync(const std::filesystem::path& file) {
    const std::filesystem::path copy = file.string() + ".copy";
    const double seconds = secondsOf([&] {
        run({"cp", file, copy});
        syncFile(copy);
    });
    std::filesystem::remove(copy);
    return seconds;
}

double sortLines(const std::filesystem::path& file) {
    return secondsOf([&] { run({"sort", "-f", "-o", "/dev/null", file}); });
}

double sortDistinctLines(const std::filesystem::path& file) {
    return secondsOf([&] { run({"sort", "-u", "-o", "/dev/null", file}); });
}

double countLinesWith(const std::string& text, const std::filesystem::path& file) {
    return secondsOf([&] { run({"grep", "-icF", "-e", text, file}); });
}

double utf8FromUtf16(const std::filesystem::path& file) {
    return secondsOf([&] { run({"iconv", "-f", "UTF-16", "-t", "UTF-8", "-o", "/dev/null", file}); });
}

}  // namespace bench
