#pragma once

#include <memory>
#include <variant>

#include "store/files/Buffer.h"
#include "store/plist/PropertyList.h"
#include "store/plist/ReadFailure.h"

namespace store {

struct XmlFailure {
    ReadFailure reason;
    const char* at;
};

// One pass over the whole text, in UTF-8, which checks all of it and takes apart the outermost dictionary only: its
// values are slices of the text. Memory beyond the text: the outermost entries, and a bit for each level of depth.
//
// What is accepted, strict where leniency could misread a value and lenient where a file written by hand is clearly
// meant:
//
//   declaration          may be missing; white space or a byte-order mark before it; an encoding other than UTF-8,
//                        UTF-16 and ASCII is an error
//   document type        may be missing; passed over with its internal subset; what it declares does not exist
//   plist                may be missing; the same with any attributes, on this and every other element
//   comments, processing instructions   anywhere; CDATA sections where text may stand
//   references           characters and XML's five entities; any other is an error
//   characters           those of XML 1.0; a carriage return stays what it is
//   outermost value      one, a dictionary; nothing but comments and instructions around it
//   dictionary           keys and values in turn; of equal keys the last counts
//   true, false          empty or white space inside
//   date                 YYYY-MM-DDThh:mm:ssZ, in the calendar; white space around it
//   integer              -2^63 to 2^64-1, decimal or 0x hexadecimal, signed; white space around it
//   real                 what a double holds, nan and inf(inity) in any case; white space around it
//   data                 Base64, padded; white space anywhere
//   anything else        an error
//
// `index` saves time and changes nothing of the result; nullptr for none.
std::variant<Dictionary, XmlFailure> readXml(const Buffer& text, std::shared_ptr<ElementIndex> index = nullptr);

}  // namespace store
