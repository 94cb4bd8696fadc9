#include "files/CKeyMap.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace {

/// The code of a key that is none of the format's own; its text follows.
constexpr unsigned char otherKey = 0xFF;

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

std::string_view readText(const char*& at) noexcept
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

CKeyMap::Entry readEntry(const char*& at) noexcept
{
    const auto code = static_cast<unsigned char>(*at++);
    const std::string_view key = code == otherKey ? readText(at) : textOf(static_cast<format::Key>(code));
    return { key, readText(at) };
}

/// Compares the keys of two packed entries.
bool isBefore(const char* a, const char* b) noexcept
{
    const auto codeA = static_cast<unsigned char>(*a);
    const auto codeB = static_cast<unsigned char>(*b);
    if (codeA != otherKey && codeB != otherKey) {
        return codeA < codeB; // the known keys are in ascending order
    }
    return readEntry(a).key < readEntry(b).key;
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

std::optional<std::string_view> CKeyMap::find(format::Key key) const noexcept
{
    const char* at = data();
    for (const char* const end = at + size_; at != end;) {
        const auto code = static_cast<unsigned char>(*at++);
        if (code == otherKey) {
            readText(at);
        }
        const std::string_view value = readText(at);
        if (code == static_cast<unsigned char>(key)) {
            return value;
        }
    }
    return std::nullopt;
}

bool CKeyMap::hasAll(format::KeySet keys) const noexcept
{
    const char* at = data();
    for (const char* const end = at + size_; at != end;) {
        const auto code = static_cast<unsigned char>(*at++);
        if (code == otherKey) {
            readText(at);
        } else {
            keys.remove(static_cast<format::Key>(code));
        }
        readText(at);
    }
    return keys.isEmpty();
}

void CKeyMap::set(format::Key key, std::string_view value)
{
    // What stands before and after the key's place stays as it is.
    const std::string_view text = textOf(key);
    std::size_t before = 0;
    std::size_t after = 0;
    Entry entry;
    for (std::size_t position = 0; next(position, entry) && entry.key <= text; after = position) {
        before = entry.key < text ? position : before;
    }
    Builder changed;
    changed.add(text, value);
    std::string packed(data(), before);
    packed.append(changed.packed()).append(data() + after, size_ - after);
    *this = CKeyMap(packed);
}

bool CKeyMap::next(std::size_t& position, Entry& entry) const noexcept
{
    if (position >= size_) {
        return false;
    }
    const char* at = data() + position;
    entry = readEntry(at);
    position = static_cast<std::size_t>(at - data());
    return true;
}

void CKeyMap::Builder::grow(std::size_t needed)
{
    large_.resize(2 * room_ + needed);
    if (data_ == small_.data()) {
        std::copy_n(small_.data(), size_, large_.data());
    }
    data_ = large_.data();
    room_ = large_.size();
}

void CKeyMap::Builder::add(std::string_view key, std::string_view value)
{
    const std::size_t needed = 1 + 2 * maxLengthBytes + key.size() + value.size();
    if (room_ - size_ < needed) {
        grow(needed);
    }
    char* const entry = data_ + size_;
    char* at = entry;
    if (const std::optional<format::Key> known = format::findKey(key)) {
        *at++ = static_cast<char>(*known);
    } else {
        *at++ = static_cast<char>(otherKey);
        at = putText(at, key);
    }
    at = putText(at, value);
    ascending_ = ascending_ && (size_ == 0 || isBefore(data_ + lastEntry_, entry));
    lastEntry_ = size_;
    size_ = static_cast<std::size_t>(at - data_);
}

CKeyMap CKeyMap::Builder::finish() const
{
    if (ascending_) {
        return CKeyMap(packed());
    }
    std::vector<Entry> entries;
    for (const char* at = packed().data(); at != packed().data() + size_;) {
        entries.push_back(readEntry(at));
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
