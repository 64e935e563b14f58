#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/programs/FileTree.h"
#include "engine/programs/Programs.h"

namespace engine {

// What a command line comes to: programs, or why they cannot be told.
struct Launch {
    struct Target {
        Program program;
        std::string identity;  // equal where two programs are recognised by the same processes
    };
    std::vector<Target> targets;
    std::string reason;  // of no targets: a clause
};

// The value of an entry's Exec key as arguments, without field codes (Desktop Entry Specification 1.5). Empty when it
// is not one.
std::vector<std::string> argumentsOfExec(const std::string& exec);

// Follows a command line's first word, found by the system's usual PATH, through links, `env` and launcher scripts.
Launch follow(const std::vector<std::string>& arguments, const FileTree& tree);

}  // namespace engine
