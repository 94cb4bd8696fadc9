#pragma once

#include "qm/CQMTranscoder.h"
#include "qm/text.h"

#include <fcntl.h>
#include <string>

namespace qm {

/// Where the system starts to walk a path: at an open directory that the path's first characters stand
/// for, which spares it the walk through them, or by default at the path's own beginning.
struct PathBase {
    int directory = AT_FDCWD;
    std::size_t length = 0;
};

/// A path behind its base as the system takes it, in the locale's encoding; empty when it cannot be
/// converted. `path` must outlive the object: nothing is copied where both are the same.
class CNativePath {
public:
    explicit CNativePath(const std::string& path, PathBase base = {})
    {
        std::size_t start = base.length;
        // A separator more, as behind a name that could not be converted, must not make it absolute.
        while (start > 0 && path[start] == '/') {
            ++start;
        }
        if (text::isPlain(path) && CQMTranscoder::IsAnsiAscii()) {
            same_ = path.c_str() + start;
        } else {
            converted_ = CQMTranscoder::TextToAnsi(path.substr(start));
        }
    }
    CNativePath(const CNativePath&) = delete;
    CNativePath& operator=(const CNativePath&) = delete;

    const char* c_str() const noexcept { return same_ ? same_ : converted_.c_str(); }

private:
    const char* same_ = nullptr;
    std::string converted_;
};

} // namespace qm
