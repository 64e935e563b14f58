#include "engine/programs/ShellScript.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>

namespace engine {

namespace {

using Word = std::string_view;  // as it stands in the script, with its quotes
using Command = std::vector<Word>;

constexpr int deepestSubstitution = 8;
constexpr int deepestQuotes = 32;  // what is deeper reaches to the end of the text

bool isNameCharacter(char c) {
    return c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::size_t lengthOfName(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::find_if_not(text, isNameCharacter) - text.begin());
}

// Positions behind what begins at `at`; the end of the text where it does not end.
std::size_t behindSingleQuotes(std::string_view text, std::size_t at) {
    return std::min(text.find('\'', at + 1), text.size() - 1) + 1;
}

std::size_t behindDoubleQuotes(std::string_view text, std::size_t at, int depth);

std::size_t behindBrackets(std::string_view text, std::size_t at, int depth) {
    if (depth > deepestQuotes) return text.size();
    const char open = text[at];
    const char close = open == '(' ? ')' : open == '{' ? '}' : '`';
    std::size_t pairs = 1;
    for (++at; at < text.size() && pairs > 0; ++at) {
        if (text[at] == '\\')
            ++at;
        else if (text[at] == '\'' && close != '}')
            at = behindSingleQuotes(text, at) - 1;
        else if (text[at] == '"')
            at = behindDoubleQuotes(text, at, depth + 1) - 1;
        else if (text[at] == close)
            --pairs;
        else if (text[at] == open)
            ++pairs;
    }
    return std::min(at, text.size());
}

bool beginsSubstitution(std::string_view text, std::size_t at) {
    return text[at] == '`' || (text[at] == '$' && at + 1 < text.size() && (text[at + 1] == '(' || text[at + 1] == '{'));
}

std::size_t behindSubstitution(std::string_view text, std::size_t at, int depth = 0) {
    return behindBrackets(text, text[at] == '`' ? at : at + 1, depth);
}

std::size_t behindDoubleQuotes(std::string_view text, std::size_t at, int depth) {
    for (++at; at < text.size() && text[at] != '"';) {
        if (text[at] == '\\')
            at += 2;
        else if (beginsSubstitution(text, at))
            at = behindSubstitution(text, at, depth + 1);
        else
            ++at;
    }
    return std::min(at + 1, text.size());
}

std::size_t behindWord(std::string_view text, std::size_t at) {
    while (at < text.size() && std::string_view(" \t\n;&|()<>").find(text[at]) == std::string_view::npos) {
        if (text[at] == '\\')
            at += 2;
        else if (text[at] == '\'')
            at = behindSingleQuotes(text, at);
        else if (text[at] == '"')
            at = behindDoubleQuotes(text, at, 0);
        else if (beginsSubstitution(text, at))
            at = behindSubstitution(text, at);
        else
            ++at;
    }
    return std::min(at, text.size());
}

std::size_t behindBlanks(std::string_view text, std::size_t at) {
    return std::min(text.find_first_not_of(" \t", at), text.size());
}

// Divides a script into simple commands; redirections, comments and here-documents are left out. An opening bracket is
// a word of its own at the end of its command, so that an array is not taken for an empty value.
class Commands {
public:
    explicit Commands(std::string_view text) : text_(text) {
        while (at_ < text_.size()) readToken();
        end();
    }

    std::vector<Command> take() { return std::move(commands_); }

private:
    void end() {
        if (!command_.empty()) commands_.push_back(std::move(command_));
        command_.clear();
    }

    void readToken() {
        const char c = text_[at_];
        if (c == ' ' || c == '\t') {
            at_ = behindBlanks(text_, at_);
        } else if (c == '\\' && at_ + 1 < text_.size() && text_[at_ + 1] == '\n') {
            at_ += 2;
        } else if (c == '#') {
            at_ = std::min(text_.find('\n', at_), text_.size());
        } else if (c == '<' || c == '>') {
            skipRedirection();
        } else if (std::string_view("\n;&|()").find(c) != std::string_view::npos) {
            if (c == '(') command_.push_back(text_.substr(at_, 1));
            end();
            ++at_;
            if (c == '\n') skipHereDocuments();
        } else {
            const std::size_t next = behindWord(text_, at_);
            command_.push_back(text_.substr(at_, next - at_));
            at_ = next;
        }
    }

    void skipRedirection() {
        const bool hasNumber = !command_.empty() && text_[at_ - 1] >= '0' && text_[at_ - 1] <= '9' &&
                               command_.back().find_first_not_of("0123456789") == Word::npos;
        if (hasNumber) command_.pop_back();
        const bool isHereDocument = text_.substr(at_).starts_with("<<") && !text_.substr(at_).starts_with("<<<");
        at_ = std::min(text_.find_first_not_of("<>&|", at_), text_.size());
        at_ = behindBlanks(text_, at_);
        const std::size_t next = behindWord(text_, at_);
        if (isHereDocument) {
            std::string delimiter(text_.substr(at_, next - at_));
            if (delimiter.starts_with('-')) delimiter.erase(0, 1);
            std::erase_if(delimiter, [](char c) { return c == '"' || c == '\'' || c == '\\'; });
            delimiters_.push_back(delimiter);
        }
        at_ = next;
    }

    void skipHereDocuments() {
        for (const std::string& delimiter : delimiters_) {
            for (bool found = false; !found && at_ < text_.size();) {
                const std::size_t lineEnd = std::min(text_.find('\n', at_), text_.size());
                const std::size_t first = std::min(text_.find_first_not_of('\t', at_), lineEnd);
                found = text_.substr(first, lineEnd - first) == delimiter;
                at_ = std::min(lineEnd + 1, text_.size());
            }
        }
        delimiters_.clear();
    }

    std::string_view text_;
    std::size_t at_ = 0;
    Command command_;
    std::vector<Command> commands_;
    std::vector<std::string> delimiters_;
};

class Script {
public:
    using Links = std::function<std::optional<std::string>(std::string_view)>;

    Script(const std::string& name, const Links& withoutLinks) : name_(name), withoutLinks_(withoutLinks) {}

    // False when the script's end is not certain.
    bool run(const Command& command, bool isLast) {
        std::size_t first = 0;
        while (first < command.size() && isReservedWord(command[first])) ++first;
        while (first < command.size() && isAssignment(command[first])) assign(command, first++);
        if (first == command.size()) return true;
        const Word verb = command[first];
        constexpr std::array<Word, 5> declaring{"export", "readonly", "local", "declare", "typeset"};
        constexpr std::array<Word, 5> changing{"for", "read", "unset", "select", "getopts"};
        const auto rest = first + 1;
        if (std::ranges::find(declaring, verb) != declaring.end()) {
            for (std::size_t i = rest; i < command.size(); ++i)
                if (isAssignment(command[i])) assign(command, i);
        } else if (std::ranges::find(changing, verb) != changing.end()) {
            for (std::size_t i = rest; i < command.size(); ++i) values_[std::string(command[i])] = std::nullopt;
        } else if (verb == "exec") {
            return become(command, rest, isLast);
        }
        return true;
    }

    std::optional<std::vector<std::string>> outcome() const { return outcome_; }

private:
    static bool isReservedWord(Word word) {
        constexpr std::array<Word, 9> words{"if", "then", "else", "elif", "do", "while", "until", "{", "!"};
        return std::ranges::find(words, word) != words.end();
    }

    // NAME=value or NAME+=value.
    static bool isAssignment(Word word) {
        const std::size_t length = lengthOfName(word);
        return length > 0 && (word.substr(length).starts_with('=') || word.substr(length).starts_with("+="));
    }

    void assign(const Command& command, std::size_t i) {
        const Word word = command[i];
        const std::size_t length = lengthOfName(word);
        const std::string name(word.substr(0, length));
        const bool isArray = i + 1 < command.size() && command[i + 1] == "(";
        const bool isPlain = word[length] == '=' && !isArray;
        const auto value = isPlain ? valueOf(word.substr(length + 1), 0) : std::nullopt;
        const auto [known, isFirst] = values_.try_emplace(name, value);
        if (!isFirst && known->second != value) known->second = std::nullopt;
    }

    // An `exec` that hands the script's arguments on is what the script is for, or one that ends it; any other may show
    // a help or an error.
    static bool isMain(const Command& command, bool isLast) {
        return isLast || std::ranges::any_of(command, [](Word word) {
                   return word.find("$@") != word.npos || word.find("$*") != word.npos || word.find("[@]") != word.npos;
               });
    }

    bool become(const Command& command, std::size_t i, bool isLast) {
        while (i < command.size() && command[i].starts_with('-')) i += command[i] == "-a" ? 2 : 1;
        if (i >= command.size()) return true;  // redirections alone
        if (!isMain(command, isLast)) return false;
        const auto program = valueOf(command[i], 0);
        if (!program || program->empty()) return false;
        std::vector<std::string> words{*program};
        for (++i; i < command.size(); ++i)
            if (const auto value = valueOf(command[i], 0)) words.push_back(*value);
        if (outcome_ && outcome_->front() != words.front()) return false;
        if (outcome_ && *outcome_ != words) words = std::vector{words.front()};
        outcome_ = std::move(words);
        return true;
    }

    std::optional<std::string> valueOf(Word word, int depth) const {
        if (depth > deepestSubstitution) return {};
        std::string value;
        bool isQuoted = false;
        for (std::size_t at = 0; at < word.size();) {
            const char c = word[at];
            if (c == '"') {
                isQuoted = !isQuoted;
                ++at;
            } else if (c == '\'' && !isQuoted) {
                const std::size_t next = behindSingleQuotes(word, at);
                value += word.substr(at + 1, next - at - 2);
                at = next;
            } else if (c == '\\' && at + 1 < word.size()) {
                value += word[at + 1];
                at += 2;
            } else if (c == '$' || c == '`') {
                const auto part = substitution(word, at, depth);
                if (!part) return {};
                value += *part;
            } else if (!isQuoted && std::string_view("*?[~").find(c) != std::string_view::npos) {
                return {};
            } else {
                value += c;
                ++at;
            }
        }
        return value;
    }

    // What stands for the substitution at `at`, which is moved behind it.
    std::optional<std::string> substitution(Word word, std::size_t& at, int depth) const {
        if (beginsSubstitution(word, at)) {
            const std::size_t begin = at + (word[at] == '`' ? 1 : 2);
            const bool isVariable = word[begin - 1] == '{';
            at = behindSubstitution(word, at);
            if (at <= begin) return {};
            const Word inside = word.substr(begin, at - begin - 1);
            return isVariable ? variable(inside) : outputOf(inside, depth + 1);
        }
        const Word name = word.substr(at + 1, std::max<std::size_t>(lengthOfName(word.substr(at + 1)), 1));
        at += 1 + name.size();
        return variable(name);
    }

    std::optional<std::string> variable(Word name) const {
        if (name == "0") return name_;
        const auto value = values_.find(std::string(name));
        if (value == values_.end()) return {};
        return value->second;
    }

    std::optional<std::string> outputOf(std::string_view text, int depth) const {
        const std::vector<Command> commands = Commands(text).take();
        if (commands.size() != 1 || commands.front().size() < 2) return {};
        Command command = commands.front();
        const auto options =
            std::erase_if(command, [](Word word) { return word == "-f" || word == "-e" || word == "--"; });
        if (command.size() != 2) return {};
        const auto path = valueOf(command[1], depth);
        if (!path || !path->starts_with('/')) return {};
        if (command[0] == "dirname") return std::filesystem::path(*path).parent_path().string();
        if (command[0] == "realpath" || (command[0] == "readlink" && options > 0)) return withoutLinks_(*path);
        return {};
    }

    const std::string& name_;
    const Links& withoutLinks_;
    std::map<std::string, std::optional<std::string>> values_;  // nothing: not certain
    std::optional<std::vector<std::string>> outcome_;
};

}  // namespace

std::optional<std::vector<std::string>> commandOfScript(
    std::string_view script, const std::string& name,
    const std::function<std::optional<std::string>(std::string_view path)>& withoutLinks) {
    Script state(name, withoutLinks);
    const std::vector<Command> commands = Commands(script).take();
    for (const Command& command : commands)
        if (!state.run(command, &command == &commands.back())) return {};
    return state.outcome();
}

}  // namespace engine
