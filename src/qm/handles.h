#pragma once

#include <unistd.h>
#include <utility>

namespace qm {

/// An open file descriptor; closed at the end of its life.
class FileHandle {
public:
    FileHandle() = default;
    explicit FileHandle(int descriptor) noexcept
        : descriptor_(descriptor)
    {
    }
    FileHandle(FileHandle&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1))
    {
    }
    FileHandle& operator=(FileHandle&& other) noexcept
    {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FileHandle()
    {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }

    explicit operator bool() const noexcept { return descriptor_ >= 0; }
    int get() const noexcept { return descriptor_; }

private:
    int descriptor_ = -1;
};

} // namespace qm
