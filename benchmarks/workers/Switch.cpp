#include <plist/plist.h>

#include <fstream>
#include <memory>
#include <stdexcept>

#include "benchmarks/DeviceFolder.h"
#include "benchmarks/Memory.h"
#include "benchmarks/workers/Workers.h"
#include "store/Schema.h"

namespace bench {

namespace {

std::string wholeFile(const std::filesystem::path& path) {
    std::string bytes(std::filesystem::file_size(path), '\0');
    std::ifstream(path, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

void turnLogOnWithLibplist(const std::filesystem::path& file, const std::filesystem::path& result) {
    const std::string bytes = wholeFile(file);
    plist_t rules = nullptr;
    plist_from_xml(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &rules);
    if (!rules) throw std::runtime_error("libplist cannot read the file");
    plist_dict_set_item(rules, "log", plist_new_bool(1));
    char* text = nullptr;
    std::uint32_t size = 0;
    plist_to_xml(rules, &text, &size);
    std::ofstream(result, std::ios::binary).write(text, size);
    plist_to_xml_free(text);
    plist_free(rules);
}

}  // namespace

Figures changeSwitch(const Arguments& arguments) {
    DeviceFolder device(arguments.at(0));
    const double seconds = secondsOf([&] {
        device.files().change(store::writers::globalSwitch,
                              [](store::Dictionary& rules) { rules.set(store::keys::log, store::Value(true)); });
    });
    return {{"switch", seconds}, {"peak", peakMemory()}};
}

Figures changeWithLibplist(const Arguments& arguments) {
    const std::filesystem::path file = arguments.at(0);
    const std::filesystem::path result = file.string() + ".libplist";
    const double seconds = secondsOf([&] { turnLogOnWithLibplist(file, result); });
    std::filesystem::remove(result);
    return {{"libplist", seconds}};
}

}  // namespace bench
