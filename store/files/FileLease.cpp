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

struct Unmap {
    std::size_t size;
    void operator()(char* bytes) const { munmap(bytes, size); }
};
using Mapping = std::unique_ptr<char, Unmap>;

// Members are destroyed in reverse order: the mapping, then the descriptor and with it the lease.
struct Lease {
    Descriptor file;
    Mapping mapping;
};

// Where the file was replaced in the meantime, this is its last reference, and freeing a large file takes the kernel
// tens of milliseconds. A detached thread waits for that.
void releaseInBackground(Lease* lease) {
    std::unique_ptr<Lease> owned(lease);
    try {
        std::thread([lease = std::shared_ptr<Lease>(std::move(owned))]() mutable { lease.reset(); }).detach();
    } catch (const std::exception&) {
        return;  // no thread: released on this one
    }
}

bool takeLease(const Descriptor& file) {
    // The default, SIGIO, would end the process when somebody else opens the file.
    constexpr int ignoredSignal = SIGURG;
    return fcntl(file.number(), F_SETSIG, ignoredSignal) == 0 && fcntl(file.number(), F_SETLEASE, F_RDLCK) == 0;
}

void endLease(const Descriptor& file) {
    fcntl(file.number(), F_SETLEASE, F_UNLCK);
}

// The file may have been truncated before the lease.
bool isStillOfSize(const Descriptor& file, std::size_t size) {
    struct stat status {};
    return fstat(file.number(), &status) == 0 && static_cast<std::size_t>(status.st_size) == size;
}

// Maps the file over the beginning of an anonymous mapping, whose rest holds the padding. The mapping is private:
// writing the padding does not change the file.
std::optional<Mapping> map(const Descriptor& file, std::size_t size) {
    const std::size_t all = size + Buffer::padding;
    void* memory = mmap(nullptr, all, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return std::nullopt;
    Mapping mapping(static_cast<char*>(memory), Unmap{all});
    if (mmap(memory, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_FIXED, file.number(), 0) == MAP_FAILED)
        return std::nullopt;
    // Loads all pages now: a read error is an error here, and a SIGBUS later.
    if (madvise(memory, size, MADV_POPULATE_READ) != 0) return std::nullopt;
    std::memset(mapping.get() + size, 0, Buffer::padding);
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
    const std::shared_ptr<Lease> lease(new Lease{std::move(file), *std::move(mapping)}, releaseInBackground);
    return Buffer{std::shared_ptr<const char[]>(lease, lease->mapping.get()), size};
}

}  // namespace store
