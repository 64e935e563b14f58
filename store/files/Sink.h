#pragma once

#include <string>
#include <string_view>
#include <utility>

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

class StringSink : public Sink {
public:
    void write(std::string_view bytes) override { text_.append(bytes); }
    const std::string& text() const { return text_; }
    std::string take() { return std::move(text_); }

private:
    std::string text_;
};

}  // namespace store
