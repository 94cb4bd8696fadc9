#pragma once

#include "format/CLineCutter.h"

#include <string>

namespace tool {

/// The bytes of a file.
class InputFile {
public:
    /// Nothing waits, so that a FIFO cannot hang the command. `path` is in the locale's encoding.
    explicit InputFile(const std::string& path);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    bool isOpen() const noexcept { return descriptor_ >= 0; }
    bool isPlain() const noexcept;
    /// Gives the cutter more bytes; false when reading fails.
    bool feed(format::CLineCutter& lines) const noexcept;

private:
    int descriptor_;
};

} // namespace tool
