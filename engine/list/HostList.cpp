#include "engine/list/HostList.h"

#include <algorithm>
#include <utility>

#include "engine/Host.h"
#include "engine/list/DistinctLines.h"
#include "engine/list/LineForms.h"
#include "store/text/Utf.h"

namespace engine {

namespace {

enum class Scope { host, hostAndBelow, below };

std::string_view prefixOf(Scope scope) {
    switch (scope) {
        case Scope::host:
            return "";
        case Scope::hostAndBelow:
            return "*";
        case Scope::below:
            return "*.";
    }
    return {};
}

constexpr std::string_view patternCharacters = "/*^|$?&~#";

class Reader {
public:
    explicit Reader(std::size_t size) : entries_(size) {}

    void readLine(std::string_view line);
    HostList take();

private:
    void readFilter(std::string_view text);
    void readDnsmasq(const DnsmasqLine& line);
    void readWords(std::string_view line);
    void readPlainName(std::string_view text);
    void takeHost(std::string_view text, Scope scope, Target target = Target::nowhere);
    void takeEntry(const Host& host, std::uint16_t port, Scope scope);
    void omit(Omission reason);
    std::optional<Target> hostsTarget(std::string_view address);

    DistinctLines entries_;
    HostList list_;
    std::size_t line_ = 0;
    bool isFilterList_ = false;  // a line so far was of a filter list alone
    std::string entry_;          // the one being taken; keeps its memory
    // Neighbouring lines of a hosts file have the same address.
    std::string_view lastAddress_;
    std::optional<Target> lastTarget_;
};

void Reader::readLine(std::string_view line) {
    ++line_;
    line = withoutBlanks(line);
    if (line.empty() || line.front() == ';') return;
    const bool isException = line.starts_with("@@");
    const bool isSilent = line.front() == '!' || isFilterListHeader(line);
    const bool isHostFilter = line.starts_with("||");
    isFilterList_ = isFilterList_ || isException || isSilent || isHostFilter;
    if (isSilent) return;
    if (isException) return omit(Omission::exception);
    if (const std::size_t at = line.find('#'); at != std::string_view::npos) {
        // Hosts files underline headings with number signs.
        const bool mayBeCosmetic = at == 0 ? isFilterList_ : !isBlank(line[at - 1]);
        if (mayBeCosmetic && isCosmeticSeparator(line.substr(at))) return omit(Omission::cosmetic);
        line = withoutComment(line);
        if (line.empty()) return;
    }
    if (isHostFilter) return readFilter(line.substr(2));
    if (const auto dnsmasq = parseDnsmasqLine(line)) return readDnsmasq(*dnsmasq);
    readWords(line.substr(0, line.find('#')));
}

void Reader::readFilter(std::string_view text) {
    const auto filter = parseHostFilter(text);
    if (!filter) return omit(Omission::pattern);
    if (areNarrowing(filter->options)) return omit(Omission::option);
    takeHost(filter->host, Scope::hostAndBelow);
}

void Reader::readDnsmasq(const DnsmasqLine& line) {
    const bool isBlocked =
        line.target.empty() || (!line.isServer && (line.target == "#" || targetOf(line.target) == Target::nowhere));
    std::string_view names = line.names;
    for (bool isLast = false; !isLast;) {
        const std::size_t slash = std::min(names.find('/'), names.size());
        takeHost(names.substr(0, slash), Scope::hostAndBelow, isBlocked ? Target::nowhere : Target::elsewhere);
        isLast = slash == names.size();
        if (!isLast) names.remove_prefix(slash + 1);
    }
}

void Reader::readWords(std::string_view line) {
    std::string_view rest = line;
    const std::string_view first = takeWord(rest);
    if (rest.empty()) return readPlainName(first);
    const auto target = hostsTarget(first);
    if (!target) return omit(isFilterList_ ? Omission::pattern : Omission::noHost);
    while (!rest.empty()) takeHost(takeWord(rest), Scope::host, *target);
}

// "*host" is the form that entries have here already.
void Reader::readPlainName(std::string_view text) {
    // In a filter list it may as well be text that stands anywhere in an address: "-banner-", ".ads.", "advert".
    const auto isOfText = [](char c) { return c == '-' || c == '.' || c == '_'; };
    const bool isText = text.find('.') == std::string_view::npos || isOfText(text.front()) || isOfText(text.back());
    if (isFilterList_ && isText) return omit(Omission::pattern);
    const bool isMarked = text.starts_with('*') && !text.starts_with("*.");
    takeHost(text.substr(isMarked ? 1 : 0), isMarked ? Scope::hostAndBelow : Scope::host);
}

// The text is "host" or "host:port"; in front of it "*." and "." say which hosts below it are meant.
void Reader::takeHost(std::string_view text, Scope scope, Target target) {
    std::string_view name = text;
    if (name.starts_with("*.")) {
        scope = Scope::below;
        name.remove_prefix(2);
    } else if (name.starts_with('.')) {
        scope = Scope::hostAndBelow;
        name.remove_prefix(1);
    }
    const auto parts = splitPort(name);
    const auto host = parts ? parseHost(parts->host) : std::nullopt;
    if (!host) {
        const bool isPattern = text.empty() || text.find_first_of(patternCharacters) != std::string_view::npos;
        return omit(isPattern ? Omission::pattern : Omission::noHost);
    }
    if (isOwnName(host->text)) return omit(Omission::ownName);
    if (target == Target::elsewhere) return omit(Omission::elsewhere);
    takeEntry(*host, parts->port, scope);
}

void Reader::takeEntry(const Host& host, std::uint16_t port, Scope scope) {
    const bool isAddress = host.kind == Host::Kind::address;  // nothing lies below it
    entry_ = prefixOf(isAddress ? Scope::host : scope);
    if (port == 0) {
        entry_ += host.text;
    } else {
        const bool isBracketed = host.text.find(':') != std::string::npos;
        entry_.append(isBracketed ? "[" : "").append(host.text).append(isBracketed ? "]:" : ":");
        entry_ += std::to_string(port);
    }
    entries_.add(entry_);
}

void Reader::omit(Omission reason) {
    HostList::Omitted& omitted = list_.omitted[static_cast<std::size_t>(reason)];
    if (omitted.count++ == 0) omitted.firstLine = line_;
}

std::optional<Target> Reader::hostsTarget(std::string_view address) {
    if (address != lastAddress_) {
        lastAddress_ = address;
        lastTarget_ = targetOf(address);
    }
    return lastTarget_;
}

HostList Reader::take() {
    DistinctLines::Result entries = entries_.take();
    list_.text = std::move(entries.text);
    list_.taken = entries.count;
    list_.repeated = entries.repeated;
    return std::move(list_);
}

HostList readText(std::string_view text) {
    Reader reader(text.size());
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        reader.readLine(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return reader.take();
}

std::optional<HostList> readUtf16(std::string_view bytes, store::ByteOrder order) {
    std::size_t malformedAt = 0;
    const auto text = store::utf8FromUtf16(bytes, order, malformedAt);
    if (!text) return {};
    return readText(*text);
}

std::string_view wordsOf(Omission reason) {
    switch (reason) {
        case Omission::exception:
            return "exceptions";
        case Omission::cosmetic:
            return "cosmetic filters";
        case Omission::option:
            return "filters with narrowing options";
        case Omission::pattern:
            return "paths and patterns";
        case Omission::elsewhere:
            return "sent to another address";
        case Omission::ownName:
            return "the machine's own names";
        case Omission::noHost:
            return "no host";
    }
    return {};
}

}  // namespace

std::optional<HostList> readHostList(std::string_view bytes) {
    constexpr std::string_view utf8Mark = "\xEF\xBB\xBF", littleMark = "\xFF\xFE", bigMark = "\xFE\xFF";
    if (bytes.starts_with(littleMark)) return readUtf16(bytes.substr(littleMark.size()), store::ByteOrder::little);
    if (bytes.starts_with(bigMark)) return readUtf16(bytes.substr(bigMark.size()), store::ByteOrder::big);
    return readText(bytes.substr(bytes.starts_with(utf8Mark) ? utf8Mark.size() : 0));
}

std::string summaryOf(const HostList& list) {
    std::string summary = std::to_string(list.taken) + " taken, " + std::to_string(list.repeated) + " repeated\n";
    for (std::size_t reason = 0; reason < omissionCount; ++reason) {
        const HostList::Omitted& omitted = list.omitted[reason];
        if (omitted.count == 0) continue;
        summary.append("left out, ").append(wordsOf(static_cast<Omission>(reason)));
        summary += ": " + std::to_string(omitted.count) + ", first in line " + std::to_string(omitted.firstLine) + '\n';
    }
    return summary;
}

}  // namespace engine
