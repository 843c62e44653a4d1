#pragma once

#include <chrono>

#include "haldend/storage/FileDescriptor.h"
#include "haldend/storage/MachineFolder.h"

namespace corvane::haldend {

/// Held while a machine folder is changed or repaired, so that two processes never interleave. Released when
/// it goes out of scope or the process ends, however it ends.
class FolderLock {
public:
    /// Waits up to `timeout` for another process. Throws `Failure` when the lock can't be taken.
    explicit FolderLock(const MachineFolder& folder,
                        std::chrono::milliseconds timeout = std::chrono::seconds(10));

private:
    FileDescriptor file_;
};

} // namespace corvane::haldend
