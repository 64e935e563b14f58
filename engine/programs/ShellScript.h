#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace engine {

// The command line that a shell script becomes: that of its `exec`, if there is one in the whole script or several of
// the same program. It hands the script's arguments on or ends the script; any other may show a help. The program must
// be spelt out or put together from variables that the script sets to one value each, `$0`, `dirname`, `readlink -f`
// and `realpath`; arguments that are not are left out. `name` is the script's path as it was called, `withoutLinks`
// gives a path's target. Nothing when it is not certain. Executes nothing; any thread.
//
// Of the shell's language (POSIX.1-2017, XCU 2) only words, quotes and the ends of commands are understood, so a
// variable that another file changes is not noticed.
std::optional<std::vector<std::string>> commandOfScript(
    std::string_view script, const std::string& name,
    const std::function<std::optional<std::string>(std::string_view path)>& withoutLinks);

}  // namespace engine
