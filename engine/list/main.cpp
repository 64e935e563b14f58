// vexmor-list [--device DIR] NAME < FILE
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <iostream>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

#include "engine/list/HostList.h"
#include "store/SharedFiles.h"
#include "store/files/BufferSink.h"
#include "store/files/FileReading.h"
#include "store/files/FileReplacement.h"
#include "store/files/Temporaries.h"

namespace {

constexpr int failed = 1;
constexpr int misused = 2;
constexpr std::string_view usage = "usage: vexmor-list [--device DIR] NAME < FILE";

int refuse(std::string_view reason, int status) {
    std::cerr << "vexmor-list: " << reason << std::endl;
    return status;
}

struct Options {
    std::string device = "/";
    std::string name;
};

bool isPlainFileName(std::string_view name) {
    return !name.empty() && !name.starts_with('.') && name.find('/') == std::string_view::npos;
}

std::optional<Options> parse(std::span<char*> arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--device" && i + 1 < arguments.size())
            options.device = arguments[++i];
        else if (argument.starts_with('-') || !options.name.empty() || !isPlainFileName(argument))
            return {};
        else
            options.name = argument;
    }
    if (options.name.empty()) return {};
    return options;
}

// Standard input to its end.
store::Buffer readInput(std::error_code& error) {
    store::BufferSink sink;
    std::array<char, 1 << 16> bytes{};
    while (!error) {
        const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count == 0) break;
        if (count > 0)
            sink.write({bytes.data(), static_cast<std::size_t>(count)});
        else if (errno != EINTR)
            error = {errno, std::generic_category()};
        if (sink.size() > store::largestFile) error = std::make_error_code(std::errc::file_too_large);
    }
    return sink.take();
}

std::error_code put(std::string_view text, const std::filesystem::path& folder, const std::string& name) {
    umask(S_IWGRP | S_IWOTH);  // the app reads the folder, whoever made it
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) return error;
    store::removeStaleTemporaries(folder, name);
    return store::replaceFile(folder / name, [&](store::Sink& sink) { sink.write(text); });
}

int importList(const Options& options) {
    std::error_code error;
    const store::Buffer input = readInput(error);
    if (error) return refuse("cannot read the input: " + error.message(), failed);
    const auto list = engine::readHostList(input.view());
    if (!list) return refuse("the input is malformed UTF-16", failed);
    if (list->taken == 0) return refuse("there is no host in the input", failed);
    const std::filesystem::path folder = store::listFolder(options.device);
    error = put(list->text, folder, options.name);
    if (error) return refuse("cannot write " + (folder / options.name).string() + ": " + error.message(), failed);
    std::cout << engine::summaryOf(*list) << std::flush;
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    const auto options = parse(arguments.subspan(argc > 0 ? 1 : 0));
    return options ? importList(*options) : refuse(usage, misused);
}
