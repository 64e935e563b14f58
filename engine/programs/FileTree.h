#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace engine {

// The files of a machine whose root directory may be any folder: links lead no further up than to that root. What does
// not exist there is looked for on the host. Any thread.
class FileTree {
public:
    struct File {
        std::string path;             // on the machine, without links
        std::filesystem::path place;  // on the host
    };

    explicit FileTree(const std::filesystem::path& root);

    // An absolute path's regular file. Nothing when there is none, or behind more than 40 links, as the kernel has it.
    std::optional<File> file(std::string_view path) const;

    // An executable one; a bare name is looked for in the folders of the system's usual PATH. `named` then is the path
    // by which it was found.
    struct Executable {
        std::string named;
        File file;
    };
    std::optional<Executable> executable(std::string_view name) const;

private:
    std::vector<std::filesystem::path> roots() const;  // in the order in which they are looked through

    std::filesystem::path root_;
};

}  // namespace engine
