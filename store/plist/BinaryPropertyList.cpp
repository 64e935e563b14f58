#include "store/plist/BinaryPropertyList.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <stack>
#include <string>
#include <utility>
#include <vector>

#include "store/files/BufferSink.h"
#include "store/plist/PropertyList.h"
#include "store/plist/XmlWriter.h"
#include "store/text/Ascii.h"
#include "store/text/Utf.h"

namespace store {

namespace {

constexpr std::string_view magic = "bplist00";
constexpr std::size_t trailerSize = 32;
constexpr std::size_t leastLimit = std::size_t{1} << 20;
constexpr std::size_t growth = 6;
// Deeper levels are not indented: tabs would be most of the output.
constexpr std::size_t deepestIndentation = 8;

// Dates are seconds since then.
constexpr Date epoch = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);
constexpr Date firstDate = std::chrono::sys_days(std::chrono::year(1) / 1 / 1);
constexpr Date endOfDates = std::chrono::sys_days(std::chrono::year(10000) / 1 / 1);

// The high nibble of an object's first byte.
enum : unsigned {
    kindSingle = 0x0,
    kindInteger = 0x1,
    kindReal = 0x2,
    kindDate = 0x3,
    kindData = 0x4,
    kindAscii = 0x5,
    kindUtf16 = 0x6,
    kindArray = 0xA,
    kindDictionary = 0xD,
};

class Transcoder {
public:
    explicit Transcoder(std::string_view bytes) : bytes_(bytes), writer_(text_) {}

    std::variant<Buffer, ReadError> run() {
        if (!readTrailer() || !writeAll()) return *failure_;
        writer_.flush();
        return text_.take();
    }

private:
    // An entry of the stack of open containers, which may become as deep as there are objects: kept small.
    struct Container {
        std::uint32_t object;
        std::uint32_t
            references;  // offset of the references: an array's elements, a dictionary's keys, then its values
        std::uint32_t count;
        std::uint32_t next = 0;
        bool isDictionary;
    };

    // A decoded object header: kind, count, and the offset of the content.
    struct Head {
        unsigned kind = 0;
        std::size_t count = 0;
        std::size_t content = 0;
    };

    bool fail(ReadFailure reason, std::size_t byte) {
        failure_ = ReadError{reason, byte};
        return false;
    }

    // A big-endian number of 1 to 8 bytes. The caller checks the range.
    std::uint64_t number(std::size_t at, std::size_t size) const {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < size; ++i) value = value << 8 | static_cast<unsigned char>(bytes_[at + i]);
        return value;
    }

    bool readTrailer() {
        if (bytes_.size() < magic.size() + trailerSize) return fail(ReadFailure::unexpectedEnd, bytes_.size());
        if (bytes_.size() > std::numeric_limits<std::uint32_t>::max()) return fail(ReadFailure::tooLarge, 0);
        objectsEnd_ = bytes_.size() - trailerSize;
        std::size_t at = objectsEnd_ + 6;
        offsetSize_ = number(at, 1);
        referenceSize_ = number(at + 1, 1);
        std::uint64_t count = number(at + 2, 8);
        std::uint64_t top = number(at + 10, 8);
        std::uint64_t table = number(at + 18, 8);
        auto isSize = [](std::size_t size) { return size >= 1 && size <= 8; };
        if (!isSize(offsetSize_) || !isSize(referenceSize_)) return fail(ReadFailure::badTrailer, at);
        if (table < magic.size() || table > objectsEnd_ || count > (objectsEnd_ - table) / offsetSize_ || top >= count)
            return fail(ReadFailure::badTrailer, at + 2);
        objectsEnd_ = static_cast<std::size_t>(table);
        table_ = objectsEnd_;
        count_ = static_cast<std::size_t>(count);
        top_ = static_cast<std::size_t>(top);
        limit_ = std::max(leastLimit, bytes_.size() * growth);
        isOpen_.resize(count_);
        return true;
    }

    bool writeAll() {
        if (!writeObject(top_)) return false;
        while (!open_.empty()) {
            Container& container = open_.top();
            if (container.next == container.count) {
                closeContainer();
                continue;
            }
            std::size_t key = container.references + container.next++ * referenceSize_;
            std::size_t value = container.isDictionary ? key + container.count * referenceSize_ : key;
            if (container.isDictionary && !writeKey(key)) return false;
            std::optional<std::size_t> object = reference(value);
            if (!object || !writeObject(*object)) return false;
            if (text_.size() > limit_) return fail(ReadFailure::tooLarge, value);
        }
        return true;
    }

    std::optional<std::size_t> reference(std::size_t at) {
        std::uint64_t object = number(at, referenceSize_);
        if (object < count_) return static_cast<std::size_t>(object);
        fail(ReadFailure::badOffset, at);
        return std::nullopt;
    }

    // Whether `count` items of `each` bytes at offset `at` lie before the offset table.
    bool fits(std::size_t at, std::uint64_t count, std::size_t each) const {
        return at <= objectsEnd_ && count <= (objectsEnd_ - at) / each;
    }

    std::optional<Head> head(std::size_t object) {
        std::size_t entry = table_ + object * offsetSize_;
        std::uint64_t offset = number(entry, offsetSize_);
        if (offset < magic.size() || offset >= objectsEnd_) {
            fail(ReadFailure::badOffset, entry);
            return std::nullopt;
        }
        auto at = static_cast<std::size_t>(offset);
        std::uint64_t byte = number(at, 1);
        Head head{static_cast<unsigned>(byte >> 4), static_cast<std::size_t>(byte & 0xF), at + 1};
        if (head.count != 0xF || head.kind < kindData) return head;
        // An integer object with the count follows.
        std::uint64_t marker = fits(at + 1, 1, 1) ? number(at + 1, 1) : 0;
        std::size_t size = std::size_t{1} << (marker & 0xF);
        if (marker >> 4 != kindInteger || size > 8 || !fits(at + 2, size, 1)) {
            fail(ReadFailure::badOffset, at);
            return std::nullopt;
        }
        std::uint64_t count = number(at + 2, size);
        head.content = at + 2 + size;
        // Clamped to the file size, which is more than fits: the cast cannot truncate.
        head.count = static_cast<std::size_t>(std::min<std::uint64_t>(count, bytes_.size()));
        return head;
    }

    bool writeKey(std::size_t at) {
        std::optional<std::size_t> object = reference(at);
        std::optional<Head> key = object ? head(*object) : std::nullopt;
        if (!key) return false;
        if (key->kind != kindAscii && key->kind != kindUtf16)
            return fail(ReadFailure::unsupportedObject, key->content - 1);
        std::optional<std::string> text = string(*key);
        if (!text) return false;
        writer_.key(*text);
        return true;
    }

    bool writeObject(std::size_t object) {
        std::optional<Head> found = head(object);
        if (!found) return false;
        switch (found->kind) {
            case kindArray:
            case kindDictionary:
                return openContainer(object, *found);
            case kindAscii:
            case kindUtf16: {
                std::optional<std::string> text = string(*found);
                if (text) writer_.string(*text);
                return text.has_value();
            }
            default:
                return writeScalar(*found);
        }
    }

    bool openContainer(std::size_t object, const Head& head) {
        bool isDictionary = head.kind == kindDictionary;
        if (isOpen_[object]) return fail(ReadFailure::containsItself, head.content - 1);
        if (!fits(head.content, head.count, isDictionary ? 2 * referenceSize_ : referenceSize_))
            return fail(ReadFailure::badOffset, head.content - 1);
        if (head.count == 0) return write(isDictionary ? Value(Dictionary()) : Value(Array()));
        writer_.line(isDictionary ? "<dict>" : "<array>");
        isOpen_[object] = true;
        auto small = [](std::size_t number) { return static_cast<std::uint32_t>(number); };
        open_.push({small(object), small(head.content), small(head.count), 0, isDictionary});
        if (open_.size() <= deepestIndentation) writer_.indent();
        return true;
    }

    void closeContainer() {
        if (open_.size() <= deepestIndentation) writer_.outdent();
        writer_.line(open_.top().isDictionary ? "</dict>" : "</array>");
        isOpen_[open_.top().object] = false;
        open_.pop();
    }

    std::optional<std::string> string(const Head& head) {
        std::size_t unit = head.kind == kindUtf16 ? 2 : 1;
        if (!fits(head.content, head.count, unit)) {
            fail(ReadFailure::badOffset, head.content - 1);
            return std::nullopt;
        }
        std::string_view bytes = bytes_.substr(head.content, head.count * unit);
        std::size_t malformedAt = 0;
        std::optional<std::string> text;
        if (unit == 2)
            text = utf8FromUtf16(bytes, ByteOrder::big, malformedAt);
        else if (isAscii(bytes))
            text = std::string(bytes);
        if (!text) fail(ReadFailure::badEncoding, head.content + malformedAt);
        return text;
    }

    bool writeScalar(const Head& head) {
        std::size_t at = head.content;
        bool isFixed = head.kind == kindInteger || head.kind == kindReal || head.kind == kindDate;
        std::size_t size = isFixed ? std::size_t{1} << head.count : head.count;
        if ((isFixed || head.kind == kindData) && !fits(at, size, 1)) return fail(ReadFailure::badOffset, at - 1);
        if (head.kind == kindSingle && (head.count == 8 || head.count == 9)) return write(Value(head.count == 9));
        if (head.kind == kindInteger && size <= 8) return write(Value(static_cast<std::int64_t>(number(at, size))));
        if (head.kind == kindInteger && size == 16) return writeLargeInteger(at);
        if (head.kind == kindReal && size == 4)
            return write(Value(double{std::bit_cast<float>(static_cast<std::uint32_t>(number(at, 4)))}));
        if (head.kind == kindReal && size == 8) return write(Value(std::bit_cast<double>(number(at, 8))));
        if (head.kind == kindDate && size == 8) return writeDate(at);
        if (head.kind == kindData) {
            auto* data = reinterpret_cast<const std::byte*>(bytes_.data() + at);
            return write(Value(std::vector<std::byte>(data, data + size)));
        }
        return fail(ReadFailure::unsupportedObject, at - 1);
    }

    // Integers of 16 bytes are used for 2^63 to 2^64-1, which do not fit into 8 bytes with a sign.
    bool writeLargeInteger(std::size_t at) {
        std::uint64_t high = number(at, 8);
        std::uint64_t low = number(at + 8, 8);
        bool isNegative = high == ~std::uint64_t{0} && low >> 63 == 1;
        if (high != 0 && !isNegative) return fail(ReadFailure::badInteger, at - 1);
        if (isNegative) return write(Value(static_cast<std::int64_t>(low)));
        writer_.line("<integer>" + std::to_string(low) + "</integer>");
        return true;
    }

    bool writeDate(std::size_t at) {
        double seconds = std::floor(std::bit_cast<double>(number(at, 8)));
        auto distance = [](Date date) { return static_cast<double>((date - epoch).count()); };
        if (!(seconds >= distance(firstDate) && seconds < distance(endOfDates)))
            return fail(ReadFailure::badDate, at - 1);
        return write(Value(epoch + std::chrono::seconds(static_cast<std::int64_t>(seconds))));
    }

    bool write(const Value& value) {
        writer_.value(value);
        return true;
    }

    std::string_view bytes_;
    BufferSink text_;
    XmlWriter writer_;
    std::size_t objectsEnd_ = 0;
    std::size_t table_ = 0;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::size_t count_ = 0;
    std::size_t top_ = 0;
    std::size_t limit_ = 0;
    std::vector<bool> isOpen_;  // by object: whether it is on the stack, to detect cycles
    std::stack<Container> open_;
    std::optional<ReadError> failure_;
};

}  // namespace

bool isBinaryPropertyList(std::string_view bytes) {
    return bytes.starts_with(magic);
}

std::variant<Buffer, ReadError> xmlFromBinary(std::string_view bytes) {
    return Transcoder(bytes).run();
}

}  // namespace store
