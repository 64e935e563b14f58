#pragma once

#include <filesystem>
#include <optional>
#include <utility>

#include "support/AnotherPerson.h"

// While it lives, this thread may not read a file, though it may enter the folders in which that lies.
class Unreadable {
public:
    explicit Unreadable(std::filesystem::path file) : file_(std::move(file)) {
        namespace fs = std::filesystem;
        for (fs::path folder = file_.parent_path(); folder != fs::temp_directory_path(); folder = folder.parent_path())
            fs::permissions(folder, fs::perms::all);
        fs::permissions(file_, fs::perms::none);
        somebody_.emplace();
    }
    ~Unreadable() {
        somebody_.reset();
        std::filesystem::permissions(file_, std::filesystem::perms(0644));
    }
    Unreadable(const Unreadable&) = delete;
    Unreadable& operator=(const Unreadable&) = delete;

private:
    std::filesystem::path file_;
    std::optional<AnotherPerson> somebody_;
};
