#pragma once

namespace store {

// Why a text is no property-list dictionary.
enum class ReadFailure {
    // Characters and markup.
    unexpectedEnd,        // the text stops before the list is complete
    badEncoding,          // bytes that are not the UTF-8 or UTF-16 they should be
    unsupportedEncoding,  // the declaration names an encoding other than these
    illegalCharacter,     // a character that XML cannot carry
    badMarkup,            // a tag, comment or declaration that is not formed as XML wants it
    unknownReference,     // a reference to anything but a character or one of XML's five entities
    // Structure.
    unknownTag,
    mismatchedTag,  // a closing tag that closes something else
    misplacedTag,   // an element inside a scalar, a list inside a list, a key outside a dictionary
    misplacedText,  // text where only elements may stand
    keyWithoutValue,
    valueWithoutKey,
    noDictionary,  // there is nothing, or the outermost value is something else
    secondRoot,    // something follows the outermost value
    // Values.
    badDate,
    badInteger,
    badReal,
    badData,
    // Binary form.
    badTrailer,         // the trailer contradicts itself or the size of the file
    badOffset,          // an object lies outside the table of objects, or a reference does
    unsupportedObject,  // an object of a kind that has no XML form
    containsItself,
    tooLarge,  // much more text than bytes: objects that contain one another many times over
};

}  // namespace store
