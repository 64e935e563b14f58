#pragma once

#include <QString>

namespace screens {

// The host name of the examples in help texts and placeholders, of a domain that is reserved for examples.
inline QString exampleHost() {
    return QStringLiteral("example.net");
}

}  // namespace screens
