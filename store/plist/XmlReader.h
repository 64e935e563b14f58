#pragma once

#include <memory>
#include <variant>

#include "store/files/Buffer.h"
#include "store/plist/PropertyList.h"
#include "store/plist/ReadFailure.h"

namespace store {

// Parses and validates XML property lists.

using ReadResult = std::variant<Dictionary, ReadError>;

// Validates the whole text, which is UTF-8, in one pass and parses the outermost dictionary only: its values are slices
// of the text. Memory beyond the text: the outermost entries, and one bit for each level of nesting.
//
// Accepted input, strict where leniency could misread a value and lenient towards files written by hand:
//
//   declaration          may be missing; white space or a byte-order mark before it; an encoding other than UTF-8,
//                        UTF-16 and ASCII is an error
//   document type        may be missing; skipped with its internal subset; its declarations are ignored
//   plist                may be missing; the same with any attributes, on this and every other element
//   comments, processing instructions   anywhere; CDATA sections where text may stand
//   references           characters and XML's five entities; any other is an error
//   characters           those of XML 1.0; a carriage return is kept
//   outermost value      one, a dictionary; nothing but comments and instructions around it
//   dictionary           keys and values alternate; of equal keys the last counts
//   true, false          empty or white space inside
//   date                 YYYY-MM-DDThh:mm:ssZ, in the calendar; white space around it
//   integer              -2^63 to 2^64-1, decimal or 0x hexadecimal, signed; white space around it
//   real                 what a double holds, nan and inf(inity) in any case; white space around it
//   data                 Base64, padded; white space anywhere
//   anything else        an error
//
// `index`, which may be nullptr, makes it faster and does not change the result.
ReadResult readXml(const Buffer& text, std::shared_ptr<ElementIndex> index = nullptr);

}  // namespace store
