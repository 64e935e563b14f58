// The engine's log: its bytes as a text, and the text in rows. Every file is a text.
#include <QGuiApplication>

#include "fuzz/Target.h"
#include "screens/settings/CharacterWidths.h"
#include "screens/settings/LogRows.h"
#include "screens/settings/LogText.h"

// The font library keeps what it has read.
extern "C" const char* __lsan_default_suppressions() {  // NOLINT: the name is the sanitizer's
    return "leak:libfontconfig\n";
}

namespace fuzz {

namespace {

using Row = screens::LogRows::Row;

// Measuring characters takes an application, with a platform that needs no screen.
screens::CharacterWidths& characterWidths() {
    static int argc = 3;
    static char name[] = "fuzz", option[] = "-platform", platform[] = "offscreen";
    static char* argv[] = {name, option, platform, nullptr};
    static const QGuiApplication application(argc, argv);
    static screens::CharacterWidths widths{QFont(QStringLiteral("Liberation Sans"), 12)};
    return widths;
}

bool looksLikeUtf8(std::string_view bytes) {
    const std::string_view beginning = bytes.substr(0, 4096);
    if (beginning.empty() || beginning.find('\0') != std::string_view::npos) return false;
    const std::size_t most = beginning.size() < bytes.size() ? 3 : 0;  // bytes of a character that is cut
    for (std::size_t cut = 0; cut <= most; ++cut)
        if (QByteArrayView(beginning.data(), qsizetype(beginning.size() - cut)).isValidUtf8()) return true;
    return false;
}

// What the file says, unit by unit. Of surrogates only those in pairs are left.
QString decoded(std::string_view bytes) {
    if (looksLikeUtf8(bytes)) return QString::fromUtf8(bytes.data(), qsizetype(bytes.size()));
    const bool isHigherFirst = bytes.starts_with("\xFE\xFF");
    if (isHigherFirst || bytes.starts_with("\xFF\xFE")) bytes.remove_prefix(2);
    QString units;
    for (; bytes.size() > 1; bytes.remove_prefix(2)) {
        const auto first = static_cast<unsigned char>(bytes[0]);
        const auto second = static_cast<unsigned char>(bytes[1]);
        units += isHigherFirst ? QChar(second, first) : QChar(first, second);
    }
    for (qsizetype at = 0; at < units.size(); ++at) {
        const bool isPair = units[at].isHighSurrogate() && at + 1 < units.size() && units[at + 1].isLowSurrogate();
        if (isPair)
            ++at;
        else if (units[at].isSurrogate())
            units[at] = QChar::ReplacementCharacter;
    }
    return units;
}

void demandDecoded(const screens::LogText& text, std::string_view bytes) {
    const QString whole = text.slice(0, text.size());
    demand(whole == decoded(bytes), "the text is not what the file says");
    const std::size_t middle = text.size() / 2;
    const QString pieces = text.slice(0, middle) + text.slice(middle, text.size());
    demand(pieces.isValidUtf16() && pieces.size() == whole.size(), "a piece of the text is malformed");
}

void demandRows(const screens::LogText& text, float width) {
    const screens::LogRows rows(text, characterWidths(), width, 28);
    const std::vector<Row> all = rows.rows(0, rows.count());
    demand(all.size() == rows.count() && all.front().begin == 0 && all.back().next == text.size(),
           "the rows are not the text");
    for (std::size_t each = 0; each < all.size(); ++each) {
        const Row& row = all[each];
        demand(row.begin <= row.end && row.end <= row.next && row.end - row.begin <= 1024, "a row has an odd size");
        if (each > 0) demand(all[each - 1].next == row.begin && row.begin > all[each - 1].begin, "rows overlap");
    }
    // Finding one alone takes finding some before it.
    for (std::size_t each = 0; each < all.size(); each += 1 + all.size() / 40) {
        demand(rows.rows(each, 1).front().next == all[each].next, "a row is another when it is found alone");
        demand(rows.rowAt(all[each].begin) == each, "a position lies in another row");
    }
}

}  // namespace

bool accepts(std::string_view bytes) {
    const screens::LogText text(store::Buffer::copyOf(bytes));
    demandDecoded(text, bytes);
    for (const float width : {1.0F, 100.0F, 1e9F}) demandRows(text, width);
    return true;
}

}  // namespace fuzz
