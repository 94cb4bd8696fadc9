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
        : same_(text::isPlain(path) && CQMTranscoder::IsAnsiAscii() ? path.c_str() + base.length : nullptr)
        , converted_(same_ ? std::string() : CQMTranscoder::TextToAnsi(path.substr(base.length)))
    {
    }

    const char* c_str() const noexcept { return same_ ? same_ : converted_.c_str(); }

private:
    const char* same_;
    std::string converted_;
};

} // namespace qm
