#include "benchmarks/Texts.h"

#include <functional>
#include <string_view>
#include <unordered_set>

#include "benchmarks/Random.h"
#include "store/text/Utf.h"

namespace bench {

namespace {

using namespace std::string_view_literals;

constexpr std::uint64_t seed = 20130504;

constexpr std::array syllables{"a"sv,   "be"sv,  "cor"sv,  "da"sv,   "el"sv,   "fi"sv,    "go"sv, "hub"sv,
                               "in"sv,  "jo"sv,  "ka"sv,   "lin"sv,  "me"sv,   "net"sv,   "on"sv, "pix"sv,
                               "qua"sv, "ro"sv,  "sta"sv,  "tri"sv,  "ur"sv,   "vel"sv,   "wa"sv, "xi"sv,
                               "yo"sv,  "zet"sv, "shop"sv, "cast"sv, "play"sv, "metric"sv};
constexpr std::array services{"ads"sv, "cdn"sv,   "track"sv,  "www"sv,  "img"sv,
                              "api"sv, "stats"sv, "static"sv, "mail"sv, "log"sv};
constexpr std::array endings{"com"sv,  "net"sv, "org"sv, "de"sv,     "co.uk"sv,
                             "info"sv, "io"sv,  "jp"sv,  "com.br"sv, "cz"sv};
constexpr std::array beyondAscii{"münchen"sv, "příklad"sv,    "räksmörgås"sv, "例え"sv,
                                 "пример"sv,  "παράδειγμα"sv, "société"sv,    "中文"sv};
constexpr std::array accented{"é"sv, "è"sv, "ä"sv, "Ö"sv, "ü"sv, "ß"sv, "å"sv,
                              "č"sv, "Ř"sv, "ž"sv, "ñ"sv, "ç"sv, "Ø"sv};
constexpr std::array ports{":80"sv, ":443"sv, ":8080"sv};

std::string word(Random& random, std::size_t parts) {
    std::string word;
    for (std::size_t part = 0; part < parts; ++part) word += random.oneOf(syllables);
    return word;
}

std::string address(Random& random) {
    std::string text;
    for (int byte = 0; byte < 4; ++byte) text += (byte ? "." : "") + std::to_string(random.below(256));
    return text;
}

std::string longAddress(Random& random) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text = "2001:db8";
    for (int group = 0; group < 4; ++group) {
        text += ':';
        for (int digit = 0; digit < 4; ++digit) text += digits[random.below(digits.size())];
    }
    return text;
}

void capitalise(std::string& name) {
    char& first = name[name.find_first_not_of('*')];
    if (first >= 'a' && first <= 'z') first = static_cast<char>(first - 'a' + 'A');
}

std::string hostName(Random& random) {
    std::string name;
    if (random.percent(12)) {
        name = "*";
    } else if (random.percent(60)) {
        name += random.oneOf(services);
        if (random.percent(50)) name += std::to_string(random.below(200));
        name += '.';
    }
    name += random.percent(2) ? random.oneOf(beyondAscii) : ""sv;
    name += word(random, 2 + random.below(4));
    if (random.percent(15)) name += '-' + word(random, 1 + random.below(2));
    name += '.';
    name += random.oneOf(endings);
    if (random.percent(3)) capitalise(name);
    return name;
}

std::string host(Random& random) {
    const std::size_t kind = random.below(100);
    std::string host = kind < 8 ? address(random) : kind < 11 ? longAddress(random) : hostName(random);
    if (random.percent(5)) host += random.oneOf(ports);
    return host;
}

std::string ideographs(Random& random, char32_t first, std::size_t count) {
    std::string text;
    for (std::size_t left = 2 + random.below(4); left > 0; --left)
        store::appendUtf8(text, first + static_cast<char32_t>(random.below(count)));
    return text;
}

std::string name(Random& random) {
    const std::size_t kind = random.below(10);
    if (kind == 0) return ideographs(random, 0x4E00, 6000) + ideographs(random, 0x4E00, 6000);
    if (kind == 1) return ideographs(random, 0x30A1, 80) + ideographs(random, 0x4E00, 3000);
    if (kind == 2) return ideographs(random, 0xAC00, 11000);
    std::string text = word(random, 1 + random.below(2));
    text += random.oneOf(accented);
    text += word(random, 1 + random.below(2));
    if (random.percent(50)) text += ' ' + word(random, 1) + std::string(random.oneOf(accented));
    if (random.percent(60)) capitalise(text);
    return text;
}

std::vector<std::string> different(std::size_t count, const std::function<std::string(Random&)>& make) {
    Random random(seed);
    std::unordered_set<std::string> known;
    std::vector<std::string> texts;
    texts.reserve(count);
    while (texts.size() < count) {
        std::string text = make(random);
        if (known.insert(text).second) texts.push_back(std::move(text));
    }
    return texts;
}

}  // namespace

std::vector<std::string> hosts(std::size_t count) {
    return different(count, host);
}

std::vector<std::string> names(std::size_t count) {
    return different(count, name);
}

}  // namespace bench
