#include "engine/programs/Launch.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <span>

#include "engine/programs/Escaped.h"
#include "engine/programs/ShellScript.h"
#include "platform/desktop/RegularFile.h"

namespace engine {

namespace {

using Arguments = std::vector<std::string>;

constexpr qint64 longestScript = 64 << 10;  // bytes
constexpr int mostScripts = 8;

// Programs that are many apps' own, by name up to its version.
constexpr std::array<std::string_view, 26> interpreters{
    "awk",  "bash",   "busybox", "dash", "fish", "gawk",  "gjs",    "gjs-console", "guile",
    "java", "ksh",    "lua",     "mawk", "mono", "node",  "nodejs", "perl",        "php",
    "pypy", "python", "ruby",    "sbcl", "sh",   "tclsh", "wish",   "zsh"};
constexpr std::array<std::string_view, 6> shells{"sh", "bash", "dash", "ksh", "zsh", "busybox"};
// Programs that start what they are told to, so that their own name says nothing; the processes of some of them do not
// name their script.
constexpr std::array<std::string_view, 24> starters{"bwrap",
                                                    "dbus-launch",
                                                    "dbus-run-session",
                                                    "electron",
                                                    "exo-open",
                                                    "firejail",
                                                    "flatpak",
                                                    "gio",
                                                    "gtk-launch",
                                                    "kde-open",
                                                    "kioclient",
                                                    "kstart",
                                                    "nice",
                                                    "nohup",
                                                    "pkexec",
                                                    "sensible-browser",
                                                    "setsid",
                                                    "snap",
                                                    "su",
                                                    "sudo",
                                                    "systemd-run",
                                                    "wine",
                                                    "xdg-open",
                                                    "x-terminal-emulator"};

// Launchers that start what lies beside them in a way that a script's text does not tell.
struct KnownLauncher {
    std::string_view name;
    std::vector<std::string_view> beside;
};

std::span<const KnownLauncher> knownLaunchers() {
    static const std::vector<KnownLauncher> launchers{{"soffice", {"oosplash", "soffice.bin"}},
                                                      {"remmina-file-wrapper", {"remmina"}}};
    return launchers;
}

std::string nameOf(std::string_view path) {
    return std::filesystem::path(path).filename().string();
}

// "python3.11" and "perl5.36-x86_64-linux-gnu" without their versions.
std::string_view withoutVersion(std::string_view name) {
    const std::size_t begin = std::min(name.find_first_of("0123456789"), name.size());
    const std::size_t end = name.find_first_not_of("0123456789.", begin);
    return end == name.npos || name[end] == '-' ? name.substr(0, begin) : name;
}

template <std::size_t size>
bool isOneOf(const std::array<std::string_view, size>& names, std::string_view path) {
    const std::string name = nameOf(path);
    return std::ranges::find(names, std::string_view(name)) != names.end() ||
           std::ranges::find(names, withoutVersion(name)) != names.end();
}

Launch unknown(std::string reason) {
    return {{}, std::move(reason)};
}

Launch program(const FileTree::File& file) {
    return {{{Program{.path = file.path, .command = {}, .flatpak = {}, .snap = {}}, file.path}}, {}};
}

// The interpreter at work on this script: `python3 -u /usr/bin/mail --now`.
Launch scriptOf(const FileTree::File& interpreter, const std::string& named, const FileTree::File& script) {
    if (std::ranges::any_of(named + script.path, [](char c) { return c == ' ' || c == '\n' || c == '\t'; }))
        return unknown(script.path + " has a name that a command line does not tell apart");
    std::string names = escaped(script.path);
    if (script.path.starts_with("/usr/")) names = "(?:/usr)?" + escaped(script.path.substr(4));  // /bin may lead there
    if (named != script.path) names += '|' + escaped(named);
    return {{{Program{.path = interpreter.path,
                      .command = "^[^ ]+(?: -[^ ]+)* (?:" + names + ")(?: |$)",
                      .flatpak = {},
                      .snap = {}},
              interpreter.path + '\n' + script.path}},
            {}};
}

class Follower {
public:
    explicit Follower(const FileTree& tree) : tree_(tree) {}

    Launch follow(Arguments arguments) {
        if (++steps_ > mostScripts) return unknown("its launchers start one another");
        if (!arguments.empty() && nameOf(arguments.front()) == "env") {
            auto inner = withoutEnv(arguments);
            if (!inner) return unknown("what its env starts cannot be told");
            arguments = *std::move(inner);
        }
        if (arguments.empty()) return unknown("its entry names no program");
        const auto found = tree_.executable(arguments.front());
        if (!found) return unknown(arguments.front() + " is not installed");
        if (isOneOf(starters, found->named) || isOneOf(starters, found->file.path))
            return unknown(found->named + " starts other programs");
        if (isOneOf(interpreters, found->file.path)) return interpreted(found->file, arguments);
        const auto head = platform::readRegularFileSeen(found->file.place, longestScript, longestScript);
        if (!head) return unknown(found->named + " cannot be read");
        const std::string_view text(head->constData(), static_cast<std::size_t>(head->size()));
        if (text.starts_with("\x7f"
                             "ELF")) {
            if (text.substr(8).starts_with("AI")) return unknown(found->named + " runs from another place each time");
            return program(found->file);
        }
        if (text.starts_with("#!")) return script(*found, text, arguments);
        return unknown(found->named + " is neither a program nor a script");
    }

private:
    // `env [-i] [-u NAME] [NAME=value]... COMMAND`
    static std::optional<Arguments> withoutEnv(const Arguments& arguments) {
        std::size_t i = 1;
        for (; i < arguments.size(); ++i) {
            const std::string& word = arguments[i];
            if (word == "-u")
                ++i;
            else if (word.starts_with('-') && word != "-i")
                return {};
            else if (!word.starts_with('-') && word.find('=') == word.npos)
                break;
        }
        return Arguments(arguments.begin() + static_cast<std::ptrdiff_t>(std::min(i, arguments.size())),
                         arguments.end());
    }

    // A command line that begins with an interpreter.
    Launch interpreted(const FileTree::File& interpreter, const Arguments& arguments) {
        for (std::size_t i = 1; i < arguments.size(); ++i) {
            if (arguments[i].starts_with('-')) continue;
            const auto file = tree_.file(arguments[i]);
            if (!file) break;
            if (!isOneOf(shells, interpreter.path)) return scriptOf(interpreter, arguments[i], *file);
            const FileTree::Executable called{arguments[i], *file};
            const auto text = platform::readRegularFileSeen(file->place, longestScript, longestScript);
            if (!text) break;
            return shellScript(called, {text->constData(), static_cast<std::size_t>(text->size())},
                               Arguments(arguments.begin() + static_cast<std::ptrdiff_t>(i), arguments.end()));
        }
        return unknown(interpreter.path + " runs many apps");
    }

    Launch script(const FileTree::Executable& called, std::string_view text, const Arguments& arguments) {
        const std::string_view line = text.substr(2, text.find('\n') - 2);
        Arguments words;
        for (std::size_t at = 0; (at = line.find_first_not_of(" \t\r", at)) != line.npos;) {
            const std::size_t end = std::min(line.find_first_of(" \t\r", at), line.size());
            words.emplace_back(line.substr(at, end - at));
            at = end;
        }
        if (!words.empty() && nameOf(words.front()) == "env") {
            std::erase(words, "-S");
            words = withoutEnv(words).value_or(Arguments());
        }
        const auto interpreter = words.empty() ? std::nullopt : tree_.executable(words.front());
        if (!interpreter) return unknown("what runs " + called.named + " is not installed");
        if (isOneOf(shells, interpreter->file.path)) return shellScript(called, text, arguments);
        if (isOneOf(interpreters, interpreter->file.path))
            return scriptOf(interpreter->file, called.named, called.file);
        return unknown("what runs " + called.named + " is no interpreter that is known");
    }

    Launch shellScript(const FileTree::Executable& called, std::string_view text, const Arguments& arguments) {
        const std::filesystem::path folder = std::filesystem::path(called.file.path).parent_path();
        for (const KnownLauncher& launcher : knownLaunchers())
            if (nameOf(called.file.path) == launcher.name) return besides(folder, launcher, called);
        Launch uncertain = unknown("what the script " + called.named + " starts cannot be told");
        if (text.size() >= static_cast<std::size_t>(longestScript)) return uncertain;
        auto command = commandOfScript(text, called.named, [this](std::string_view path) -> std::optional<std::string> {
            const auto file = tree_.file(path);
            if (!file) return {};
            return file->path;
        });
        if (!command) return uncertain;
        command->insert(command->end(), arguments.begin() + 1, arguments.end());
        return follow(*std::move(command));
    }

    Launch besides(const std::filesystem::path& folder, const KnownLauncher& launcher,
                   const FileTree::Executable& called) {
        Launch all;
        for (const std::string_view name : launcher.beside) {
            const auto beside = tree_.executable((folder / name).string());
            if (!beside) return unknown("what the script " + called.named + " starts cannot be told");
            all.targets.push_back(program(beside->file).targets.front());
        }
        return all;
    }

    const FileTree& tree_;
    int steps_ = 0;
};

// Nothing when the argument is a field code by itself.
std::optional<std::string> withoutFieldCodes(std::string_view argument) {
    std::string text;
    for (std::size_t i = 0; i < argument.size(); ++i) {
        if (argument[i] != '%')
            text += argument[i];
        else if (++i < argument.size() && argument[i] == '%')
            text += '%';
    }
    if (text.empty() && !argument.empty()) return {};
    return text;
}

}  // namespace

Arguments argumentsOfExec(const std::string& exec) {
    int count = 0;
    gchar** words = nullptr;
    if (!g_shell_parse_argv(exec.c_str(), &count, &words, nullptr)) return {};
    Arguments arguments;
    for (const gchar* word : std::span(words, static_cast<std::size_t>(count)))
        if (auto argument = withoutFieldCodes(word)) arguments.push_back(*std::move(argument));
    g_strfreev(words);
    return arguments;
}

Launch follow(const Arguments& arguments, const FileTree& tree) {
    return Follower(tree).follow(arguments);
}

}  // namespace engine
