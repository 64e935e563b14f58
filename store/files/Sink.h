#pragma once

#include <string_view>

namespace store {

// A sequential output of bytes: a file or memory. After a failure it ignores further writes.
class Sink {
public:
    Sink() = default;
    virtual ~Sink() = default;
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;
    virtual void write(std::string_view bytes) = 0;
};

}  // namespace store
