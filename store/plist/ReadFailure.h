#pragma once

#include <cstddef>

namespace store {

// Why a file could not be read as a property-list dictionary.
enum class ReadFailure {
    // Characters and markup.
    unexpectedEnd,        // the text stops before the list is complete
    badEncoding,          // malformed UTF-8 or UTF-16
    unsupportedEncoding,  // the declaration names an encoding other than these
    illegalCharacter,     // a character that XML cannot carry
    badMarkup,            // a malformed tag, comment or declaration
    unknownReference,     // a reference to anything but a character or one of XML's five entities
    // Structure.
    unknownTag,
    mismatchedTag,  // a closing tag that closes something else
    misplacedTag,   // an element inside a scalar, a list inside a list, a key outside a dictionary
    misplacedText,  // text where only elements may stand
    keyWithoutValue,
    valueWithoutKey,
    noDictionary,  // the file is empty, or its outermost value is no dictionary
    secondRoot,    // anything behind the outermost value
    // Values.
    badDate,
    badInteger,
    badReal,
    badData,
    // Binary form.
    badTrailer,         // the trailer contradicts itself or the size of the file
    badOffset,          // an object or a reference out of range
    unsupportedObject,  // a kind of object without an XML form
    containsItself,
    tooLarge,  // shared objects would expand to many times the file
};

// The first error. `byte` is its offset in the file, or in its UTF-8 form where the file is UTF-16.
struct ReadError {
    ReadFailure reason;
    std::size_t byte;
};

}  // namespace store
