#include "store/plist/Scalars.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "store/plist/XmlText.h"

namespace store {

namespace {

// Removes a leading sign from the text. Returns whether it was a minus.
bool takeMinus(std::string_view& text) {
    if (text.empty() || (text.front() != '-' && text.front() != '+')) return false;
    bool isMinus = text.front() == '-';
    text.remove_prefix(1);
    return isMinus;
}

constexpr std::string_view base64Letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t noLetter = 64;

constexpr auto base64Values = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(noLetter);
    for (std::size_t i = 0; i < base64Letters.size(); ++i)
        values[static_cast<unsigned char>(base64Letters[i])] = static_cast<std::uint8_t>(i);
    return values;
}();

// Calls `take` with each decoded byte. Returns false when the text is no Base64.
template <class Take>
bool decodeBase64(std::string_view text, Take take) {
    std::uint32_t bits = 0;
    unsigned letters = 0;
    unsigned padding = 0;
    for (char c : text) {
        if (isXmlSpace(c)) continue;
        if (c == '=') {
            ++padding;
            continue;
        }
        std::uint8_t value = base64Values[static_cast<unsigned char>(c)];
        if (value == noLetter || padding > 0) return false;
        bits = bits << 6 | value;
        if (++letters % 4 == 0) {
            take(static_cast<std::byte>(bits >> 16));
            take(static_cast<std::byte>(bits >> 8));
            take(static_cast<std::byte>(bits));
        }
    }
    unsigned rest = letters % 4;
    if (rest == 0 ? padding != 0 : rest == 1 || padding != 4 - rest) return false;
    if (rest >= 2) take(static_cast<std::byte>(bits >> (rest == 2 ? 4 : 10)));
    if (rest == 3) take(static_cast<std::byte>(bits >> 2));
    return true;
}

void putDigits(char* text, unsigned number, int count) {
    for (int i = count - 1; i >= 0; --i, number /= 10) text[i] = static_cast<char>('0' + number % 10);
}

}  // namespace

std::optional<Date> parseDate(std::string_view text) {
    if (text.size() != dateLength) text = trimmed(text);
    if (text.size() != dateLength) return std::nullopt;
    bool isFormed =
        text[4] == '-' && text[7] == '-' && text[10] == 'T' && text[13] == ':' && text[16] == ':' && text[19] == 'Z';
    unsigned wrong = 0;
    auto digit = [&](std::size_t at) {
        unsigned value = static_cast<unsigned char>(text[at]) - unsigned{'0'};
        wrong |= value > 9;
        return value;
    };
    auto pair = [&](std::size_t at) { return digit(at) * 10 + digit(at + 1); };
    unsigned year = pair(0) * 100 + pair(2), month = pair(5), day = pair(8);
    unsigned hour = pair(11), minute = pair(14), second = pair(17);
    if (!isFormed || wrong || year == 0 || hour > 23 || minute > 59 || second > 59) return std::nullopt;
    std::chrono::year_month_day date{std::chrono::year(static_cast<int>(year)), std::chrono::month(month),
                                     std::chrono::day(day)};
    if (!date.ok()) return std::nullopt;
    return std::chrono::sys_days(date) + std::chrono::hours(hour) + std::chrono::minutes(minute) +
           std::chrono::seconds(second);
}

std::optional<std::int64_t> Integer::value() const {
    constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    if (isNegative) return static_cast<std::int64_t>(-magnitude);
    if (magnitude > largest) return std::nullopt;
    return static_cast<std::int64_t>(magnitude);
}

std::optional<Integer> parseInteger(std::string_view text) {
    text = trimmed(text);
    Integer integer;
    integer.isNegative = takeMinus(text);
    bool isHex = text.starts_with("0x") || text.starts_with("0X");
    if (isHex) text.remove_prefix(2);
    const char* end = text.data() + text.size();
    auto [behind, error] = std::from_chars(text.data(), end, integer.magnitude, isHex ? 16 : 10);
    if (error != std::errc() || behind != end) return std::nullopt;
    if (integer.isNegative && integer.magnitude > std::uint64_t{1} << 63) return std::nullopt;
    return integer;
}

std::optional<double> parseReal(std::string_view text) {
    text = trimmed(text);
    bool isNegative = takeMinus(text);
    if (text.empty() || text.front() == '-') return std::nullopt;
    double real = 0;
    const char* end = text.data() + text.size();
    auto [behind, error] = std::from_chars(text.data(), end, real);
    if (error != std::errc() || behind != end) return std::nullopt;
    return isNegative ? -real : real;
}

std::optional<std::vector<std::byte>> parseData(std::string_view text) {
    std::vector<std::byte> data;
    if (!decodeBase64(text, [&](std::byte byte) { data.push_back(byte); })) return std::nullopt;
    return data;
}

bool isData(std::string_view text) {
    return decodeBase64(text, [](std::byte) {});
}

void formatDate(Date date, char* text) {
    using namespace std::chrono;
    constexpr Date first = sys_days(year(1) / 1 / 1);
    constexpr Date last = sys_days(year(9999) / 12 / 31) + hours(24) - seconds(1);
    date = std::clamp(date, first, last);
    auto day = floor<days>(date);
    year_month_day calendar(day);
    auto second = static_cast<unsigned>((date - day).count());
    std::copy_n("0000-00-00T00:00:00Z", dateLength, text);
    putDigits(text, static_cast<unsigned>(static_cast<int>(calendar.year())), 4);
    putDigits(text + 5, static_cast<unsigned>(calendar.month()), 2);
    putDigits(text + 8, static_cast<unsigned>(calendar.day()), 2);
    putDigits(text + 11, second / 3600, 2);
    putDigits(text + 14, second / 60 % 60, 2);
    putDigits(text + 17, second % 60, 2);
}

std::string formatReal(double real) {
    if (std::isnan(real)) return "nan";
    if (std::isinf(real)) return real < 0 ? "-infinity" : "+infinity";
    char text[32];
    auto result = std::to_chars(text, text + sizeof text, real);
    return std::string(text, result.ptr);
}

std::string formatData(const std::vector<std::byte>& data) {
    std::string text;
    text.reserve((data.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < data.size(); i += 3) {
        std::size_t count = std::min<std::size_t>(3, data.size() - i);
        std::uint32_t bits = 0;
        for (std::size_t k = 0; k < 3; ++k)
            bits = bits << 8 | (k < count ? std::to_integer<std::uint32_t>(data[i + k]) : 0);
        for (std::size_t k = 0; k < 4; ++k) text.push_back(k <= count ? base64Letters[bits >> (18 - 6 * k) & 63] : '=');
    }
    return text;
}

}  // namespace store
