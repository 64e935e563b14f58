// Property lists as XML: UTF-8 or UTF-16 with a byte-order mark.
#include "fuzz/Target.h"
#include "store/plist/BinaryPropertyList.h"
#include "store/plist/XmlReader.h"
#include "store/rules/RuleEntryRuns.h"

namespace fuzz {

namespace {

// Skipping runs of rule entries gives the same result as parsing them tag by tag.
void demandSameTagByTag(const store::Buffer& text) {
    demand(outcome(readXml(text, std::make_shared<store::RuleEntryRuns>())) == outcome(readXml(text)),
           "two ways of reading find different values, or fail differently");
}

}  // namespace

bool accepts(std::string_view bytes) {
    if (store::isBinaryPropertyList(bytes)) return false;
    const store::Buffer file = store::Buffer::copyOf(bytes);
    demandSameTagByTag(file);
    const store::ReadResult result = readPropertyList(file, std::make_shared<store::RuleEntryRuns>());
    if (const auto* error = std::get_if<store::ReadError>(&result)) {
        // Of UTF-16 it counts the bytes as UTF-8, three for two.
        demand(error->byte <= bytes.size() * 3 / 2, "the error is outside the file");
        return false;
    }
    demand(store::mayBePropertyList(bytes.substr(0, 4096)), "its beginning tells that it is none");
    demandRoundTrip(std::get<store::Dictionary>(result));
    return true;
}

}  // namespace fuzz
