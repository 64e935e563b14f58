#include "store/files/FileLease.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <csignal>
#include <cstring>
#include <exception>
#include <memory>
#include <thread>
#include <utility>

namespace store {

namespace {

// Memory that a file is mapped to.
class Mapping {
public:
    Mapping(char* bytes, std::size_t size) : bytes_(bytes), size_(size) {}
    Mapping(Mapping&& other) noexcept : bytes_(std::exchange(other.bytes_, nullptr)), size_(other.size_) {}
    Mapping& operator=(Mapping&&) = delete;
    ~Mapping() {
        if (bytes_) munmap(bytes_, size_);
    }

    char* bytes() const { return bytes_; }

private:
    char* bytes_;
    std::size_t size_;
};

// The lease ends with the descriptor, after the mapping.
struct Lease {
    Descriptor file;
    Mapping mapping;
};

// When the file has been replaced in the meantime, these are the last that hold it, and taking it back costs the system
// tens of milliseconds, which nobody needs to wait for.
void letGo(Lease* lease) {
    std::unique_ptr<Lease> owned(lease);
    try {
        std::thread([lease = std::shared_ptr<Lease>(std::move(owned))]() mutable { lease.reset(); }).detach();
    } catch (const std::exception&) {
        return;  // no thread: by now it has been let go here
    }
}

bool takeLease(const Descriptor& file) {
    // Takes the place of a signal that would end the program. Who holds bytes for a moment needs no telling.
    constexpr int ignoredSignal = SIGURG;
    return fcntl(file.number(), F_SETSIG, ignoredSignal) == 0 && fcntl(file.number(), F_SETLEASE, F_RDLCK) == 0;
}

void endLease(const Descriptor& file) {
    fcntl(file.number(), F_SETLEASE, F_UNLCK);
}

// Before the lease the file may have been cut short.
bool isStillOfSize(const Descriptor& file, std::size_t size) {
    struct stat status {};
    return fstat(file.number(), &status) == 0 && static_cast<std::size_t>(status.st_size) == size;
}

// The file, and memory of our own behind it for the padding. What is written to that is never seen by others.
std::optional<Mapping> map(const Descriptor& file, std::size_t size) {
    const std::size_t all = size + Buffer::padding;
    void* memory = mmap(nullptr, all, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return std::nullopt;
    Mapping mapping(static_cast<char*>(memory), all);
    if (mmap(memory, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_FIXED, file.number(), 0) == MAP_FAILED)
        return std::nullopt;
    // Here, not while it is looked at, it shows whether the disk gives it all.
    if (madvise(memory, size, MADV_POPULATE_READ) != 0) return std::nullopt;
    std::memset(mapping.bytes() + size, 0, Buffer::padding);
    return mapping;
}

}  // namespace

std::optional<Buffer> leaseFile(Descriptor& file, std::size_t size) {
    if (!takeLease(file)) return std::nullopt;
    std::optional<Mapping> mapping = isStillOfSize(file, size) ? map(file, size) : std::nullopt;
    if (!mapping) {
        endLease(file);
        return std::nullopt;
    }
    const std::shared_ptr<Lease> lease(new Lease{std::move(file), *std::move(mapping)}, letGo);
    return Buffer{std::shared_ptr<const char[]>(lease, lease->mapping.bytes()), size};
}

}  // namespace store
