#pragma once

#include "format/keys.h"

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

/// The keys and values of one descriptor, in ascending order of key.
///
/// A database holds very many small maps, so one map is one block of memory: entry by entry a code
/// for the key when it is one of the format's own (else the key itself; the codes make opening 6 to 13 %
/// faster), then the value's length and
/// the value, all as inner text. The block of a parameter head, of which there are most, lies in the
/// object itself.
class CKeyMap {
public:
    struct Entry {
        std::string_view key;
        std::string_view value;
    };

    /// Most bytes that a map can have.
    static constexpr std::size_t maxSize = std::numeric_limits<std::uint32_t>::max();

    CKeyMap() = default;

    /// The value under a key; valid until the map changes.
    std::optional<std::string_view> find(format::Key key) const noexcept;

    bool hasAll(format::KeySet keys) const noexcept;

    void set(format::Key key, std::string_view value);

    /// Delivers the entry at `position`, 0 at first, and moves on; false at the end.
    bool next(std::size_t& position, Entry& entry) const noexcept;

    /// Builds a map from entries in any order; of entries with one key the last stands.
    class Builder {
    public:
        Builder() = default;
        Builder(const Builder&) = delete;
        Builder& operator=(const Builder&) = delete;

        void add(std::string_view key, std::string_view value);
        /// Bytes of all entries; with more than maxSize finish() must not be called.
        std::size_t size() const noexcept { return size_; }
        CKeyMap finish() const;

    private:
        friend class CKeyMap;
        std::string_view packed() const noexcept { return { data_, size_ }; }
        void grow(std::size_t needed);

        std::array<char, 512> small_; // nearly every descriptor fits
        std::vector<char> large_;
        char* data_ = small_.data(); ///< of `small_` or `large_`
        std::size_t room_ = small_.size();
        std::size_t size_ = 0;
        std::size_t lastEntry_ = 0;
        bool ascending_ = true;
    };

private:
    explicit CKeyMap(std::string_view packed);
    const char* data() const noexcept { return large_ ? large_.get() : small_.data(); }

    std::uint32_t size_ = 0;
    std::array<char, 28> small_;
    std::unique_ptr<char[]> large_; ///< instead of `small_` when that is too small
};
