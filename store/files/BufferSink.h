#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

#include "store/files/Buffer.h"
#include "store/files/Sink.h"

namespace store {

// Collects what is written in one Buffer. It grows by realloc, which remaps the pages of a large block instead of
// copying them: the peak of memory is the final size, not twice that.
class BufferSink : public Sink {
public:
    void write(std::string_view bytes) override;
    std::size_t size() const { return size_; }
    // What was written so far. The sink is empty afterwards.
    Buffer take();

private:
    struct Release {
        void operator()(char* bytes) const { std::free(bytes); }
    };

    void reserve(std::size_t capacity);

    std::unique_ptr<char, Release> bytes_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

}  // namespace store
