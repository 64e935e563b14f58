// The movement that every change makes, on whatever the file may hold: read it whole, change it, write it whole. The
// input's first line names the change, by a letter, and what it is made with; the rest is the file.

#include "fuzz/Target.h"
#include "store/ConfigurationStore.h"
#include "store/Files.h"
#include "store/Schema.h"
#include "store/Verbs.h"
#include "store/rules/AppendedRules.h"
#include "store/rules/RuleFile.h"
#include "store/rules/RuleList.h"
#include "store/sorting/Ordering.h"

namespace fuzz {

namespace {

using store::AppRuleRecord;
using store::Dictionary;
using store::Value;
namespace keys = store::keys;
namespace writers = store::writers;

// The entries of a list by the plain way: all of them taken apart, of those with equal rules the first.
std::vector<std::pair<std::string, std::optional<store::Date>>> entriesOf(const Value* list) {
    std::vector<std::pair<std::string, std::optional<store::Date>>> entries;
    std::set<std::string> rules;
    const std::optional<store::Array> elements = list ? list->array() : std::nullopt;
    for (const Value& element : elements.value_or(store::Array())) {
        const std::optional<Dictionary> entry = element.dictionary();
        if (!entry) continue;
        const Value* rule = entry->find(keys::rule);
        const Value* date = entry->find(keys::date);
        const auto text = rule ? rule->string() : std::nullopt;
        if (!text || rules.insert(*text).second)
            entries.emplace_back(text.value_or(""), date ? date->date() : std::nullopt);
    }
    return entries;
}

// As a screen does it; what the change makes of the list is a text before the list goes.
Value withRule(const Value* stored, const std::string& rule) {
    static const store::NameOrder order("en");
    store::RuleList list = store::RuleList::load(stored);
    const auto entries = entriesOf(stored);
    demand(list.size() == entries.size(), "a list has another length than its entries");
    for (std::size_t row = 0; row < entries.size(); ++row)
        demand(list.rule(row) == entries[row].first && list.date(row) == entries[row].second,
               "a row is not the entry of the file");
    const auto name = store::RuleOrder::name;
    const std::size_t position = list.add(rule, store::Date(), name, order);
    demand(list.rule(position) == rule, "the rule is not where it should be");
    Value value(sliceOf(list.value()));
    demand(entriesOf(&value).size() == store::RuleList::load(&value).size(), "a written list has another length");
    return value;
}

struct Verb {
    char letter;
    store::Writer writer;
    void (*change)(Dictionary& file, const std::string& with);
    std::string_view key = {};  // the only one that it changes; that of `with` when empty
};

template <auto set, auto... arguments>
void changeRecord(Dictionary& file, const std::string& app) {
    AppRuleRecord record = AppRuleRecord::of(file, app);
    (record.*set)(arguments...);
    record.storeIn(file, app);
}

void addAppRule(Dictionary& file, const std::string& app) {
    AppRuleRecord record = AppRuleRecord::of(file, app);
    record.dictionary().set(keys::deny, withRule(record.dictionary().find(keys::deny), "added.example"));
    record.storeIn(file, app);
}

void importList(Dictionary& file, const std::string& lines) {
    const Value* list = file.find(keys::globalAllow);
    file.set(keys::globalAllow, Value(sliceOf(Value(std::make_shared<store::AppendedRules>(list, lines)))));
}

constexpr Verb verbs[] = {
    {'p', writers::pruneApps, [](auto& file, auto& app) { file.remove(app); }},
    {'a', writers::addApp, [](auto& file, auto& app) { AppRuleRecord::fresh().storeIn(file, app); }},
    {'d', writers::deleteApp, [](auto& file, auto& app) { file.remove(app); }},
    {'e', writers::appEnabled, changeRecord<&AppRuleRecord::setEnabled, true>},
    {'o', writers::appDisabled, changeRecord<&AppRuleRecord::setEnabled, false>},
    {'s', writers::appSwitch, changeRecord<&AppRuleRecord::setBlanketMode, store::BlanketMode::denyAll>},
    {'r', writers::appRuleList, addAppRule},
    {'g', writers::globalRuleList,
     [](auto& file, auto& rule) { file.set(keys::globalDeny, withRule(file.find(keys::globalDeny), rule)); },
     keys::globalDeny},
    {'i', writers::listImport, importList, keys::globalAllow},
    {'f', writers::guiFlag, [](auto& file, auto&) { file.set(keys::showAllowHelp, Value(true)); }, keys::showAllowHelp},
    {'w', writers::globalSwitch, [](auto& file, auto&) { file.set(keys::log, Value(true)); }, keys::log},
};

std::string textOf(const Value& value) {
    const store::Slice slice = sliceOf(value);
    return {slice.begin, slice.end};
}

class Movement {
public:
    Movement(const Verb& verb, std::string with, std::string_view before)
        : verb_(verb), with_(std::move(with)), bytesBefore_(before) {
        std::filesystem::remove_all(folder());
        std::filesystem::create_directories(folder());
        store::put(path(), bytesBefore_);
    }

    bool make() {
        const std::optional<Dictionary> before = store::readRuleFile(path());
        const bool isMade = store_.change(
            verb_.writer, [this](Dictionary& file) { changed(file); }, [this] { postsAtWrite_ = posts_.names; });
        const bool startsEmpty = verb_.writer.whenMissing == store::WhenMissing::startEmpty;
        demand(isMade == (before || startsEmpty), "the change is made when it should not be, or the other way round");
        demandFolder(isMade && !before);
        if (isMade)
            demandWritten(before.value_or(Dictionary()));
        else
            demand(store::contentOf(path()) == bytesBefore_, "a file that is no dictionary was touched");
        return before.has_value();
    }

private:
    std::filesystem::path path() const { return store_.path(verb_.writer.file); }
    std::filesystem::path folder() const { return path().parent_path(); }
    std::string_view key() const { return verb_.key.empty() ? std::string_view(with_) : verb_.key; }

    void changed(Dictionary& file) {
        verb_.change(file, with_);
        Dictionary expected = file;
        if (verb_.writer.marker == store::Marker::add && !expected.contains(keys::marker))
            expected.set(keys::marker, Value(true));
        expected_ = canonical(store::dictionaryOf(store::written(expected)));
    }

    void demandFolder(bool isAside) const {
        std::set<std::string> expected{path().filename()};
        if (isAside) expected.insert(path().filename().string() + std::string(store::damagedSuffix));
        demand(store::namesIn(folder()) == expected, "something lies beside the file");
        if (!isAside) return;
        demand(store::contentOf(path().string() + std::string(store::damagedSuffix)) == bytesBefore_,
               "what was no dictionary is lost");
    }

    void demandWritten(const Dictionary& before) const {
        const std::optional<Dictionary> after = store::readRuleFile(path());
        demand(after.has_value(), "the file can no longer be read");
        demand(canonical(*after) == expected_, "the file does not say what the change made of it");
        for (const auto& [name, value] : before) {
            if (name == key()) continue;
            const Value* kept = after->find(name);
            demand(kept && textOf(*kept) == textOf(value), "a value that nobody touched is another");
        }
        const std::size_t notifications = verb_.writer.notification.empty() ? 0 : 1;
        demand(postsAtWrite_.empty() && posts_.names.size() == notifications,
               "the engine is told too early, too often or not at all");
    }

    static const std::filesystem::path& root() {
        static const store::TemporaryDirectory directory;
        return directory.path();
    }

    const Verb& verb_;
    const std::string with_;
    const std::string bytesBefore_;
    store::Posts posts_;
    store::ConfigurationStore store_{root(), posts_};
    std::vector<std::string> postsAtWrite_;
    std::string expected_;
};

}  // namespace

bool accepts(std::string_view bytes) {
    const std::size_t lineEnd = bytes.find('\n');
    if (lineEnd == std::string_view::npos || lineEnd < 2) return false;
    for (const Verb& verb : verbs)
        if (verb.letter == bytes[0])
            return Movement(verb, std::string(bytes.substr(2, lineEnd - 2)), bytes.substr(lineEnd + 1)).make();
    return false;
}

}  // namespace fuzz
