#pragma once

#include "files/CKey.h"

#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

/// The keys and values of one descriptor, in ascending order of key.
///
/// A database holds very many small maps, so one map is one block of memory: entry by entry a code
/// for the key when it is one of the format's own (else the key itself), then the value's length and
/// the value, all as inner text. The block of a parameter head, of which there are most, lies in the
/// object itself.
class CKeyMap {
public:
    struct Entry {
        std::string_view key;
        std::string_view value;
    };

    /// The value under exactly this key; valid until the map changes.
    std::optional<std::string_view> find(CKey key) const noexcept;

    /// True when all of these keys, which must be known ones, are present.
    bool hasAll(std::initializer_list<CKey> keys) const noexcept;

    void set(std::string_view key, std::string_view value);

    /// Delivers the entry at `position`, 0 at first, and moves on; false at the end.
    bool next(std::size_t& position, Entry& entry) const noexcept;

    /// Builds a map from entries in any order; of entries with one key the last stands.
    class Builder {
    public:
        void add(std::string_view key, std::string_view value);
        CKeyMap finish() const;

    private:
        friend class CKeyMap;
        char* data() noexcept { return large_.empty() ? small_.data() : large_.data(); }
        std::string_view packed() const noexcept { return { const_cast<Builder*>(this)->data(), size_ }; }
        std::size_t room() const noexcept { return large_.empty() ? small_.size() : large_.size(); }
        void grow(std::size_t needed);

        std::array<char, 512> small_; // nearly every descriptor fits
        std::vector<char> large_;
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

public:
    CKeyMap() = default;
};
