#include "store/plist/XmlBlocks.h"

#include <algorithm>
#include <utility>

#include "store/files/Sink.h"
#include "store/parallel/Parts.h"
#include "store/plist/XmlWriter.h"

namespace store {

namespace {

constexpr std::size_t blockSize = partSize(400);  // elements; at about 140 bytes each they fit into a writer's memory

}  // namespace

// A block and its writer. When the writer's buffer is full, the block waits for its turn and then writes directly.
struct XmlBlocks::Block : Sink {
    Block(XmlBlocks& blocks, std::size_t depth) : all(blocks), writer(*this, depth) {}

    void write(std::string_view bytes) override {
        all.awaitTurn(number);
        all.sink_.write(bytes);
    }

    XmlBlocks& all;
    std::size_t number = 0;
    XmlWriter writer;
    Work work;
};

XmlBlocks::XmlBlocks(Sink& sink, std::size_t depth, std::size_t count, std::size_t atOnce,
                     const std::function<Work(XmlWriter&)>& workFor)
    : sink_(sink), count_(count), ended_(atOnce) {
    while (blocks_.size() < atOnce) {
        Block& added = *blocks_.emplace_back(std::make_unique<Block>(*this, depth));
        added.work = workFor(added.writer);
        free_.push_back(&added);
    }
}

XmlBlocks::~XmlBlocks() = default;

void XmlBlocks::write() {
    while (Block* block = begin()) {
        const std::size_t first = block->number * blockSize;
        block->work(first, std::min(first + blockSize, count_));
        end(*block);
    }
}

// A block number is assigned together with a buffer: the next block to be written always has one, so nothing deadlocks.
XmlBlocks::Block* XmlBlocks::begin() {
    std::unique_lock lock(lock_);
    const auto isNoneLeft = [this] { return nextBegun_ * blockSize >= count_; };
    written_.wait(lock, [&] { return isNoneLeft() || !free_.empty(); });
    if (isNoneLeft()) return nullptr;
    Block* block = free_.back();
    free_.pop_back();
    block->number = nextBegun_++;
    return block;
}

void XmlBlocks::end(Block& block) {
    std::unique_lock lock(lock_);
    ended_[block.number % ended_.size()] = &block;
    if (std::exchange(isWriting_, true)) return;
    while (Block* next = std::exchange(ended_[nextWritten_ % ended_.size()], nullptr)) {
        lock.unlock();
        next->writer.flush();
        lock.lock();
        ++nextWritten_;
        free_.push_back(next);
        written_.notify_all();
    }
    isWriting_ = false;
}

void XmlBlocks::awaitTurn(std::size_t number) {
    std::unique_lock lock(lock_);
    written_.wait(lock, [&] { return nextWritten_ == number; });
}

}  // namespace store
