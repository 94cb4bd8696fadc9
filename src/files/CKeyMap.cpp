#include "files/CKeyMap.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace {

constexpr unsigned char otherKey = CKey::otherKey;

constexpr std::size_t maxLengthBytes = 10;

/// Lengths are written seven bits a byte, the lowest first; a set high bit says that more follow.
char* putText(char* to, std::string_view text) noexcept
{
    std::size_t length = text.size();
    for (; length >= 0x80; length >>= 7) {
        *to++ = static_cast<char>(length | 0x80);
    }
    *to++ = static_cast<char>(length);
    return std::copy(text.begin(), text.end(), to);
}

std::string_view takeText(const char*& at) noexcept
{
    std::size_t length = static_cast<unsigned char>(*at++);
    for (unsigned shift = 7; length >> shift != 0; shift += 7) {
        length = (length ^ std::size_t { 1 } << shift)
            | static_cast<std::size_t>(static_cast<unsigned char>(*at++)) << shift;
    }
    const std::string_view text(at, length);
    at += length;
    return text;
}

CKeyMap::Entry takeEntry(const char*& at) noexcept
{
    const auto code = static_cast<unsigned char>(*at++);
    const std::string_view key = code == otherKey ? takeText(at) : CKey::textOf(code);
    return { key, takeText(at) };
}

/// Compares the keys of two packed entries.
bool isBefore(const char* a, const char* b) noexcept
{
    const auto codeA = static_cast<unsigned char>(*a);
    const auto codeB = static_cast<unsigned char>(*b);
    if (codeA != otherKey && codeB != otherKey) {
        return codeA < codeB; // the known keys are in ascending order
    }
    return takeEntry(a).key < takeEntry(b).key;
}

} // namespace

CKeyMap::CKeyMap(std::string_view packed)
    : size_(static_cast<std::uint32_t>(packed.size()))
{
    if (packed.size() > small_.size()) {
        large_ = std::make_unique_for_overwrite<char[]>(packed.size());
    }
    std::copy(packed.begin(), packed.end(), large_ ? large_.get() : small_.data());
}

std::optional<std::string_view> CKeyMap::find(CKey key) const noexcept
{
    const char* at = data();
    for (const char* const end = at + size_; at != end;) {
        const auto code = static_cast<unsigned char>(*at++);
        const bool found = code == key.code() && (code != otherKey || takeText(at) == key.text());
        if (code == otherKey && code != key.code()) {
            takeText(at);
        }
        const std::string_view value = takeText(at);
        if (found) {
            return value;
        }
    }
    return std::nullopt;
}

bool CKeyMap::hasAll(std::initializer_list<CKey> keys) const noexcept
{
    std::uint32_t missing = 0;
    for (const CKey& key : keys) {
        missing |= std::uint32_t { 1 } << key.code();
    }
    const char* at = data();
    for (const char* const end = at + size_; at != end;) {
        const auto code = static_cast<unsigned char>(*at++);
        if (code == otherKey) {
            takeText(at);
        } else {
            missing &= ~(std::uint32_t { 1 } << code);
        }
        takeText(at);
    }
    return missing == 0;
}

void CKeyMap::set(std::string_view key, std::string_view value)
{
    // What stands before and behind the key's place stays as it is.
    std::size_t before = 0;
    std::size_t behind = 0;
    Entry entry;
    for (std::size_t position = 0; next(position, entry) && entry.key <= key; behind = position) {
        before = entry.key < key ? position : before;
    }
    Builder changed;
    changed.add(key, value);
    std::string packed(data(), before);
    packed.append(changed.packed()).append(data() + behind, size_ - behind);
    *this = CKeyMap(packed);
}

bool CKeyMap::next(std::size_t& position, Entry& entry) const noexcept
{
    if (position >= size_) {
        return false;
    }
    const char* at = data() + position;
    entry = takeEntry(at);
    position = static_cast<std::size_t>(at - data());
    return true;
}

void CKeyMap::Builder::grow(std::size_t needed)
{
    const std::size_t grown = 2 * room() + needed;
    if (large_.empty()) {
        large_.assign(small_.begin(), small_.begin() + static_cast<std::ptrdiff_t>(size_));
    }
    large_.resize(grown);
}

void CKeyMap::Builder::add(std::string_view key, std::string_view value)
{
    const std::size_t needed = 1 + 2 * maxLengthBytes + key.size() + value.size();
    if (room() - size_ < needed) {
        grow(needed);
    }
    const CKey known(key);
    char* const entry = data() + size_;
    *entry = static_cast<char>(known.code());
    char* const behindKey = known.code() == otherKey ? putText(entry + 1, key) : entry + 1;
    const char* const end = putText(behindKey, value);
    ascending_ = ascending_ && (size_ == 0 || isBefore(data() + lastEntry_, entry));
    lastEntry_ = size_;
    size_ = static_cast<std::size_t>(end - data());
}

CKeyMap CKeyMap::Builder::finish() const
{
    if (ascending_) {
        return CKeyMap(packed());
    }
    std::vector<Entry> entries;
    for (const char* at = packed().data(); at != packed().data() + size_;) {
        entries.push_back(takeEntry(at));
    }
    std::stable_sort(entries.begin(), entries.end(), [](auto& a, auto& b) { return a.key < b.key; });
    Builder sorted;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i + 1 == entries.size() || entries[i].key != entries[i + 1].key) {
            sorted.add(entries[i].key, entries[i].value);
        }
    }
    return CKeyMap(sorted.packed());
}
