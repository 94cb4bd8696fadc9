#pragma once

#include "qm/handles.h"

#include <array>
#include <string_view>
#include <sys/inotify.h>

namespace qm {

/// Reports which entries appear in some directories and which go, whoever makes or removes them on this
/// machine (inotify).
///
/// A process made by fork must only destroy its copy: the two share what is reported.
class CQMDirectoryWatch {
public:
    enum class Kind {
        Appeared,
        Gone,
        Lost, ///< the directory itself is gone: nothing more is reported of it
        Overflow, ///< changes of any directory may be missing
    };

    struct Change {
        Kind kind;
        int watch; ///< what add() returned
        bool isDirectory; ///< what appeared is certainly no link
        std::string_view name; ///< in the locale's encoding
    };

    CQMDirectoryWatch() noexcept;

    /// Starts to watch an open directory; -1 when the system refuses, or when others might change the
    /// directory without this system's knowledge, as on a network.
    int add(int directory) noexcept;
    void remove(int watch) noexcept;

    /// Calls `use` with each change up to now, in their order; false when there may be more that cannot be
    /// read. Never waits.
    template <class Use>
    bool read(Use&& use)
    {
        while (fill()) {
            for (std::size_t at = 0; at < size_;) {
                const auto& event = *reinterpret_cast<const inotify_event*>(buffer_.data() + at);
                use(changeOf(event));
                at += sizeof(inotify_event) + event.len;
            }
        }
        return !failed_;
    }

private:
    /// False when there is nothing more to read now.
    bool fill() noexcept;
    static Change changeOf(const inotify_event& event) noexcept;

    FileHandle handle_;
    bool drained_ = false;
    bool failed_ = false;
    std::size_t size_ = 0;
    alignas(inotify_event) std::array<char, 8192> buffer_;
};

} // namespace qm
