#include "engine/service/RuleDirectory.h"

#include <fcntl.h>
#include <unistd.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string_view>
#include <utility>

#include "engine/translation/Expression.h"
#include "engine/translation/Translation.h"
#include "store/files/Descriptor.h"
#include "store/files/FileReading.h"
#include "store/files/FileReplacement.h"
#include "store/files/Sink.h"
#include "store/files/Temporaries.h"

namespace engine {

namespace {

namespace fs = std::filesystem;
using Action = DaemonRule::Action;
using Hosts = std::vector<std::string_view>;  // of a list that is alive; sorted
using Clock = std::chrono::steady_clock;

// The daemon looks every 4 s, and then has a million hosts to read.
constexpr std::chrono::milliseconds pause{6000};
constexpr std::string_view extension = ".json";
constexpr const char* hostFileName = "hosts.txt";  // the daemon wants a dot in it

// Empty when there is no such file. `failed` is set when there may be one, whose content is then unknown.
std::string contentOf(const fs::path& file, std::error_code& failed) {
    const auto content = store::holdFile(
        file, [](std::string_view) { return true; }, failed);
    return content ? std::string(content->view()) : std::string();
}

// A line of a name has an address in front of it.
std::string_view prefixOf(HostFile::Kind kind) {
    return kind == HostFile::Kind::names ? "0.0.0.0 " : "";
}

template <class Hosts>
std::string textOf(HostFile::Kind kind, const Hosts& hosts) {
    const std::string_view prefix = prefixOf(kind);
    std::size_t size = 0;
    for (const auto& host : hosts) size += prefix.size() + host.size() + 1;
    std::string text;
    text.reserve(size);
    for (const auto& host : hosts) {
        text += prefix;
        text += host;
        text += '\n';
    }
    return text;
}

Hosts hostsOf(HostFile::Kind kind, std::string_view text) {
    const std::string_view prefix = prefixOf(kind);
    Hosts hosts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.starts_with(prefix)) hosts.emplace_back(line.substr(prefix.size()));
    }
    if (!std::is_sorted(hosts.begin(), hosts.end())) std::sort(hosts.begin(), hosts.end());
    return hosts;
}

std::error_code replace(const fs::path& file, std::string_view text) {
    return store::replaceFile(file, [&](store::Sink& sink) { sink.write(text); });
}

// The daemon (1.5.8) takes no notice of a file that is renamed to its place, only of one that is written. So the last
// byte, which is white space, is another one until the file has its name: a file that has this text is one that the
// daemon has heard of, whenever the process that wrote it ended.
std::error_code replaceRule(const fs::path& file, std::string text) {
    const char last = std::exchange(text.back(), ' ');
    if (const std::error_code failed = replace(file, text)) return failed;
    const store::Descriptor descriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW));
    const bool isDone =
        descriptor.isOpen() && ::pwrite(descriptor.number(), &last, 1, static_cast<off_t>(text.size() - 1)) == 1;
    return isDone ? std::error_code() : std::error_code(errno, std::generic_category());
}

// Whether a rule file denies. One that cannot be read counts as such, so that it goes last.
bool denies(const fs::path& file) {
    std::error_code ignored;
    const std::string text = contentOf(file, ignored);
    const auto bytes = QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size()));
    return QJsonDocument::fromJson(bytes).object().value(QStringLiteral("action")) != QStringLiteral("allow");
}

}  // namespace

RuleDirectory::RuleDirectory(fs::path rules, fs::path hosts) : rules_(std::move(rules)), hosts_(std::move(hosts)) {
    // Another process may have changed a file just now.
    std::error_code ignored;
    if (fs::directory_iterator(hosts_, ignored) != fs::directory_iterator()) hostChange_ = Clock::now();
}

fs::path RuleDirectory::ruleFile(const std::string& name) const {
    return rules_ / (name + std::string(extension));
}

fs::path RuleDirectory::hostFolder(const DaemonRule& rule) const {
    return hosts_ / rule.name;
}

void RuleDirectory::note(std::error_code error) {
    if (!failure_) failure_ = error;
}

void RuleDirectory::abandon() {
    wanted_ = {};
    stage_ = Stage::done;
}

void RuleDirectory::bringTo(std::vector<DaemonRule> rules) {
    wanted_ = std::move(rules);
    files_.clear();
    for (const DaemonRule& rule : wanted_) files_.insert(ruleFile(rule.name).filename());
    stage_ = Stage::newDenials;
}

bool RuleDirectory::wants(std::string_view fileName) const {
    return files_.contains(fileName);
}

std::optional<std::chrono::milliseconds> RuleDirectory::step(std::error_code& failure) {
    failure_ = {};
    switch (stage_) {
        case Stage::newDenials:
            store::removeStaleTemporaries(rules_);
            addNewDenials();
            stage_ = Stage::allowances;
            break;
        case Stage::allowances:
            changeAllowances();
            stage_ = Stage::oldDenials;
            break;
        case Stage::oldDenials:
            removeOldDenials();
            abandon();
            break;
        case Stage::done:
            break;
    }
    failure = failure_;
    if (failure) stage_ = Stage::done;
    if (stage_ == Stage::done) return {};
    if (!hostChange_) return std::chrono::milliseconds(0);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*hostChange_ + pause - Clock::now());
    return std::max(left, std::chrono::milliseconds(0));
}

void RuleDirectory::addNewDenials() {
    for (const DaemonRule& rule : wanted_) {
        if (rule.action != Action::deny) continue;
        if (rule.hosts) putHosts(rule, true);
        putRule(rule);
    }
}

void RuleDirectory::changeAllowances() {
    for (const DaemonRule& rule : wanted_) {
        if (rule.action == Action::deny) continue;
        if (rule.hosts) putHosts(rule, false);
        putRule(rule);
    }
    remove(false);
}

void RuleDirectory::removeOldDenials() {
    transitional_.clear();
    for (const DaemonRule& rule : wanted_)
        if (rule.action == Action::deny && rule.hosts) putHosts(rule, false);
    remove(false);
    remove(true);
    removeUnusedHosts();
}

// With `keepsOld` the file has the hosts of before as well.
void RuleDirectory::putHosts(const DaemonRule& rule, bool keepsOld) {
    const HostFile::Kind kind = rule.hosts->kind;
    const fs::path folder = hostFolder(rule);
    const fs::path file = folder / hostFileName;
    store::removeStaleTemporaries(folder);
    std::error_code error;
    const std::string before = contentOf(file, error);
    if (error) return note(error);
    const std::string after = textOf(kind, rule.hosts->hosts);
    if (before == after) return;

    fs::create_directories(folder, error);
    note(error);
    const Hosts old = hostsOf(kind, before);
    const std::vector<std::string>& hosts = rule.hosts->hosts;
    std::vector<std::string> added;
    std::set_difference(hosts.begin(), hosts.end(), old.begin(), old.end(), std::back_inserter(added));
    if (!old.empty() && !added.empty()) putTransitional(rule, added);
    if (keepsOld && !old.empty()) {
        Hosts both;
        both.reserve(old.size() + added.size());
        std::set_union(hosts.begin(), hosts.end(), old.begin(), old.end(), std::back_inserter(both));
        const std::string text = textOf(kind, both);
        if (text == before) return;
        note(replace(file, text));
    } else {
        note(replace(file, after));
    }
    hostChange_ = Clock::now();
}

// A rule for the hosts that join a file, while they are few enough for an expression.
void RuleDirectory::putTransitional(const DaemonRule& rule, const std::vector<std::string>& added) {
    if (added.size() > expressionHosts) return;
    DaemonRule own{rule.name, rule.action, rule.conditions, {}};
    own.conditions.push_back(
        isOneOf(rule.hosts->kind == HostFile::Kind::names ? "dest.host" : "dest.ip", added, false));
    own.name = rule.name + "-joining-" + digestOf(own);
    transitional_.insert(own.name);
    putRule(own);
}

void RuleDirectory::putRule(const DaemonRule& rule) {
    const fs::path file = ruleFile(rule.name);
    const std::string text = jsonOf(rule, hostFolder(rule));
    std::error_code error;
    const bool isThere = contentOf(file, error) == text;
    if (error) return note(error);
    if (isThere) return;
    note(replaceRule(file, text));
    if (rule.hosts) hostChange_ = Clock::now();
}

// Removes our rules that are not wanted: those that deny, or the others.
void RuleDirectory::remove(bool denying) {
    std::set<std::string> kept = transitional_;
    for (const DaemonRule& rule : wanted_) kept.insert(rule.name);
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(rules_, error)) {
        const fs::path& file = entry.path();
        const std::string name = file.stem().string();
        const bool isOurs = name.starts_with(rulePrefix) && file.extension() == extension;
        if (isOurs && !kept.contains(name) && denies(file) == denying) note(store::removeFile(file));
    }
    note(error);
}

void RuleDirectory::removeUnusedHosts() {
    std::set<std::string> kept;
    for (const DaemonRule& rule : wanted_)
        if (rule.hosts) kept.insert(rule.name);
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(hosts_, error)) {
        const std::string name = entry.path().filename().string();
        std::error_code ignored;  // nothing refers to it any more
        if (name.starts_with(rulePrefix) && !kept.contains(name)) fs::remove_all(entry.path(), ignored);
    }
    note(error);
}

}  // namespace engine
