#include "store/plist/PropertyListFile.h"

#include <utility>
#include <variant>

#include "store/files/FileReading.h"
#include "store/files/FileReplacement.h"
#include "store/plist/PropertyListReader.h"
#include "store/plist/XmlWriter.h"

namespace store {

std::optional<Dictionary> readDictionary(const std::filesystem::path& path, std::shared_ptr<ElementIndex> index,
                                         std::error_code& failed) {
    std::optional<Buffer> file = holdFile(path, mayBePropertyList, failed);
    if (!file) return std::nullopt;
    ReadResult result = readPropertyList(*std::move(file), std::move(index));
    if (auto* dictionary = std::get_if<Dictionary>(&result)) return std::move(*dictionary);
    return std::nullopt;
}

bool writeDictionary(const std::filesystem::path& path, const Dictionary& dictionary, const KeptSuffix& keptSuffix) {
    return !replaceFile(
        path, [&](Sink& sink) { XmlWriter(sink).document(dictionary); }, keptSuffix);
}

}  // namespace store
