#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace store {

class Sink;
class XmlWriter;

// Writes many elements in blocks, of which several are laid out at the same time, each in memory of its own. They reach
// the sink in the order of their numbers: whoever ends the next one writes it, and those behind it that have ended
// before. So nobody waits for somebody else's block as long as there is memory to lay out another.
class XmlBlocks {
public:
    // What writes the elements from one number to another. Called on any thread, must not throw.
    using Work = std::function<void(std::size_t begin, std::size_t end)>;

    // `workFor` is called here, once for each of the `atOnce` writers that take part.
    XmlBlocks(Sink& sink, std::size_t depth, std::size_t count, std::size_t atOnce,
              const std::function<Work(XmlWriter&)>& workFor);
    ~XmlBlocks();
    XmlBlocks(const XmlBlocks&) = delete;
    XmlBlocks& operator=(const XmlBlocks&) = delete;

    // Takes part in writing until no block is left to begin. Everything is written when all who take part are back.
    void write();

private:
    struct Block;

    Block* begin();
    void end(Block& block);
    void awaitTurn(std::size_t number);

    Sink& sink_;
    const std::size_t count_;
    std::vector<std::unique_ptr<Block>> blocks_;
    std::mutex lock_;  // guards all that follows
    std::condition_variable written_;
    std::vector<Block*> free_;
    std::vector<Block*> ended_;  // by number, modulo their count: they are the next ones
    std::size_t nextBegun_ = 0;
    std::size_t nextWritten_ = 0;
    bool isWriting_ = false;
};

}  // namespace store
