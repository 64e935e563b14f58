#pragma once

#include <cstddef>
#include <optional>

#include "store/files/Buffer.h"
#include "store/files/Descriptor.h"

namespace store {

// A large file's bytes where the system keeps them anyway: copying them into memory that was never touched takes longer
// than all that is done with them. The file is leased for as long as the bytes are held (fcntl(2), F_SETLEASE): whoever
// wants to open it for writing or to cut it short waits until they are let go, at most the 45 s that the system gives,
// so hold them briefly. To replace the file by another takes no notice of that.
//
// `file` is open for reading and is kept open with the bytes. Nothing, and `file` is as it was, when the file cannot be
// leased (it belongs to somebody else or is being written, or the file system knows no leases) or when not all of it
// can be read: copy it then.
std::optional<Buffer> leaseFile(Descriptor& file, std::size_t size);

}  // namespace store
