#pragma once

#include <filesystem>
#include <vector>

namespace store {

class ConfigurationStore;

enum class Held { nothing, rules, manyRules, damage, rulesOfOthers };

// One thing that a person can do to the files, and what the files hold before.
struct Change {
    const char* name;
    Held before;
    void (*make)(ConfigurationStore& store);
};

// Every way in which the app writes: the rows of the writers' table, what replaces files whole, exports, the marker.
const std::vector<Change>& everyChange();

// A file system root below which the files hold that. What is there already is overwritten; nothing else is removed.
void prepare(const std::filesystem::path& root, Held held);

}  // namespace store
