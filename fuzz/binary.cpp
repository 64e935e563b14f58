// Property lists in the binary form.
#include <algorithm>

#include "fuzz/Target.h"
#include "store/plist/BinaryPropertyList.h"

namespace fuzz {

bool accepts(std::string_view bytes) {
    if (!store::isBinaryPropertyList(bytes)) return false;
    const auto transcoded = store::xmlFromBinary(bytes);
    if (const auto* failure = std::get_if<store::ReadError>(&transcoded)) {
        demand(failure->byte <= bytes.size(), "the failure is outside the file");
        return false;
    }
    // The last value may go beyond the limit, by as much as one value can.
    const std::size_t limit = std::max<std::size_t>(1 << 20, 6 * bytes.size());
    demand(std::get<store::Buffer>(transcoded).size <= limit + 6 * bytes.size() + 1000, "it unfolds without end");
    const store::ReadResult result = store::readText(bytes);
    if (const auto* error = std::get_if<store::ReadError>(&result)) {
        demand(error->reason == store::ReadFailure::noDictionary, "its XML is malformed");
        return false;
    }
    demandRoundTrip(std::get<store::Dictionary>(result));
    return true;
}

}  // namespace fuzz
