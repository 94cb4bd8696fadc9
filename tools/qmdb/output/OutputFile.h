#pragma once

#include "common/leftovers.h"

#include <memory>
#include <string>

namespace tool {

/// A file that appears under its name complete or not at all: it is written beside it and moved into
/// place. A failure or an interrupt leaves what stood there. Devices and pipes are written as they are.
class OutputFile {
public:
    enum class Existing { Replace, Refuse };

    /// Throws Failure when the file cannot be written.
    OutputFile(const std::string& name, Existing existing);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    int descriptor() const noexcept { return descriptor_; }
    /// Where to write, in the locale's encoding.
    const std::string& path() const noexcept { return path_; }

    /// To be called when all is written. Throws Failure when the disk refuses it.
    void moveIntoPlace();

private:
    void openDirectly();
    void openBeside();

    std::string name_; ///< as the user gives it
    std::string target_; ///< behind symbolic links
    Existing existing_;
    bool direct_ = false;
    std::string path_;
    int descriptor_ = -1;
    std::unique_ptr<Leftover> leftover_; ///< while the file is under its temporary name
};

} // namespace tool
