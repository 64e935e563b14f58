#include "store/plist/XmlReader.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "store/plist/ElementIndex.h"
#include "store/plist/Scalars.h"
#include "store/plist/XmlScanner.h"

namespace store {

namespace {

// What is wrong with a scalar's text.
std::optional<ReadFailure> faultOf(Tag tag, std::string_view text) {
    const auto unless = [](bool isWellFormed, ReadFailure fault) {
        return isWellFormed ? std::nullopt : std::optional(fault);
    };
    switch (tag) {
        case Tag::date:
            return unless(parseDate(text).has_value(), ReadFailure::badDate);
        case Tag::integer:
            return unless(parseInteger(text).has_value(), ReadFailure::badInteger);
        case Tag::real:
            return unless(parseReal(text).has_value(), ReadFailure::badReal);
        case Tag::data:
            return unless(isData(text), ReadFailure::badData);
        case Tag::yes:
        case Tag::no:
            return unless(trimmed(text).empty(), ReadFailure::misplacedText);
        default:
            return std::nullopt;
    }
}

class Reader {
public:
    Reader(const Buffer& text, std::shared_ptr<ElementIndex> index)
        : index_(index.get()),
          text_(std::make_shared<const SlicedText>(SlicedText{text.bytes, std::move(index)})),
          end_(text.bytes.get() + text.size),
          scanner_(text.bytes.get(), end_) {}

    ReadResult read() {
        if (scanner_.prolog() && readDocument()) return std::move(top_);
        return ReadError{scanner_.failure(), static_cast<std::size_t>(scanner_.failedAt() - text_->bytes.get())};
    }

private:
    using Event = XmlScanner::Event;

    bool fail(ReadFailure reason, const char* at) {
        scanner_.fail(reason, at);
        return false;
    }

    bool readDocument() {
        Event event = scanner_.next();
        bool isWrapped = scanner_.tag() == Tag::plist && event == Event::open;
        if (isWrapped) event = scanner_.next();
        if (event == Event::failed) return false;
        if (event == Event::end) return fail(isWrapped ? ReadFailure::unexpectedEnd : ReadFailure::noDictionary, end_);
        if (event == Event::close && !isWrapped) return fail(ReadFailure::mismatchedTag, scanner_.tagBegin());
        if (event == Event::close || scanner_.tag() != Tag::dict)
            return fail(ReadFailure::noDictionary, scanner_.tagBegin());
        if (event == Event::open && !readDictionary()) return false;
        return (!isWrapped || readEnd(Event::close)) && readEnd(Event::end);
    }

    // Behind the dictionary: the wrapper's closing tag, then the end of the text.
    bool readEnd(Event expected) {
        const Event event = scanner_.next();
        if (event == expected && (event == Event::end || scanner_.tag() == Tag::plist)) return true;
        if (event == Event::failed) return false;
        if (event == Event::end) return fail(ReadFailure::unexpectedEnd, end_);
        return fail(event == Event::close ? ReadFailure::mismatchedTag : ReadFailure::secondRoot, scanner_.tagBegin());
    }

    // From behind the outermost dictionary's opening tag through its closing tag.
    bool readDictionary() {
        inDictionary_.assign(1, true);
        while (!inDictionary_.empty()) {
            Event event = scanner_.next();
            bool isFine = event == Event::open || event == Event::empty ? readElement(event)
                          : event == Event::close                       ? closeContainer()
                          : event == Event::end                         ? fail(ReadFailure::unexpectedEnd, end_)
                                                                        : false;
            if (!isFine) return false;
        }
        return true;
    }

    bool readElement(Event event) {
        Tag tag = scanner_.tag();
        bool wantsKey = inDictionary_.back() && !hasKey_;
        if (tag == Tag::plist || (tag == Tag::key && !inDictionary_.back()))
            return fail(ReadFailure::misplacedTag, scanner_.tagBegin());
        if (wantsKey != (tag == Tag::key))
            return fail(wantsKey ? ReadFailure::valueWithoutKey : ReadFailure::keyWithoutValue, scanner_.tagBegin());
        if (wantsKey) return readKey(event);
        if (inDictionary_.size() == 1) value_.begin = scanner_.tagBegin();
        if (index_ && tag == Tag::dict && !inDictionary_.back() && skipElements()) return true;
        if (isContainer(tag) && event == Event::open) {
            inDictionary_.push_back(tag == Tag::dict);
            hasKey_ = false;
            return true;
        }
        if (!isContainer(tag) && !readScalar(tag, event)) return false;
        return valueComplete();
    }

    bool skipElements() {
        const char* behind = index_->skip(scanner_.tagBegin(), end_);
        if (behind) scanner_.moveTo(behind);
        return behind;
    }

    bool readKey(Event event) {
        XmlText key;
        if (event == Event::open && !scanner_.text(key)) return false;
        if (inDictionary_.size() == 1) key_ = key.decoded();
        hasKey_ = true;
        return true;
    }

    bool readScalar(Tag tag, Event event) {
        XmlText text;
        const char* begin = scanner_.position();
        if (event == Event::open && !scanner_.text(text)) return false;
        if (tag == Tag::string) return true;
        const auto fault = text.isPlain ? faultOf(tag, text.raw) : faultOf(tag, text.decoded());
        return !fault || fail(*fault, begin);
    }

    bool closeContainer() {
        Tag expected = inDictionary_.back() ? Tag::dict : Tag::array;
        if (scanner_.tag() != expected) return fail(ReadFailure::mismatchedTag, scanner_.tagBegin());
        if (hasKey_ && inDictionary_.back()) return fail(ReadFailure::keyWithoutValue, scanner_.tagBegin());
        inDictionary_.pop_back();
        return inDictionary_.empty() || valueComplete();
    }

    bool valueComplete() {
        hasKey_ = false;
        if (inDictionary_.size() > 1) return true;
        value_.text = text_;
        value_.end = scanner_.position();
        top_.set(key_, Value(value_));
        return true;
    }

    ElementIndex* index_;  // owned by the text; may be nullptr
    std::shared_ptr<const SlicedText> text_;
    const char* end_;
    XmlScanner scanner_;
    std::vector<bool> inDictionary_;  // the stack of open containers: whether each is a dictionary
    bool hasKey_ = false;             // the innermost dictionary has a key without a value yet
    std::string key_;                 // the outermost dictionary's last key
    Slice value_;                     // and its value
    Dictionary top_;
};

}  // namespace

ReadResult readXml(const Buffer& text, std::shared_ptr<ElementIndex> index) {
    return Reader(text, std::move(index)).read();
}

}  // namespace store
