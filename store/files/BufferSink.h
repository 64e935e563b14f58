#pragma once

#include <cstddef>
#include <memory>

#include "store/files/Buffer.h"
#include "store/files/Sink.h"

namespace store {

// Gathers what is written in one Buffer. However much that becomes, it is not copied from place to place on the way
// as a growing string would be, so that it takes no more memory than its size.
class BufferSink : public Sink {
public:
    void write(std::string_view bytes) override;
    std::size_t size() const { return size_; }
    // What was written; the sink begins anew.
    Buffer take();

private:
    struct Release {
        void operator()(char* bytes) const;
    };

    void reserve(std::size_t capacity);

    std::unique_ptr<char, Release> bytes_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

}  // namespace store
