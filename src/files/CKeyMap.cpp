#include "files/CKeyMap.h"

#include <algorithm>
#include <array>
#include <vector>

namespace {

constexpr std::array<std::string_view, 19> knownKeys = { "Aggreg", "AvForPhases", "Binary", "Comment",
    "CommentID", "Composition", "Data", "DataTypes", "ID", "Mixture", "Name", "NameID", "Phase1", "Phase2",
    "Scalar", "Type", "Units", "UnitsID", "Vector" };
constexpr char otherKey = '\xFF';

char codeOf(std::string_view key) noexcept
{
    const auto at = std::lower_bound(knownKeys.begin(), knownKeys.end(), key);
    return at != knownKeys.end() && *at == key ? static_cast<char>(at - knownKeys.begin()) : otherKey;
}

/// Lengths are written seven bits a byte, the lowest first; a set high bit says that more follow.
void appendText(std::string& packed, std::string_view text)
{
    std::size_t length = text.size();
    for (; length >= 0x80; length >>= 7) {
        packed += static_cast<char>(length | 0x80);
    }
    packed += static_cast<char>(length);
    packed += text;
}

std::string_view takeText(const char*& at) noexcept
{
    std::size_t length = 0;
    unsigned shift = 0;
    unsigned char byte = 0;
    do {
        byte = static_cast<unsigned char>(*at++);
        length |= static_cast<std::size_t>(byte & 0x7F) << shift;
        shift += 7;
    } while (byte & 0x80);
    const std::string_view text(at, length);
    at += length;
    return text;
}

void appendEntry(std::string& packed, CKeyMap::Entry entry)
{
    const char code = codeOf(entry.key);
    packed += code;
    if (code == otherKey) {
        appendText(packed, entry.key);
    }
    appendText(packed, entry.value);
}

CKeyMap::Entry takeEntry(const char*& at) noexcept
{
    const char code = *at++;
    const std::string_view key = code == otherKey ? takeText(at) : knownKeys[static_cast<std::size_t>(code)];
    return { key, takeText(at) };
}

} // namespace

CKeyMap::CKeyMap(std::string_view packed)
    : packed_(packed.empty() ? nullptr : std::make_unique_for_overwrite<char[]>(packed.size()))
    , size_(static_cast<std::uint32_t>(packed.size()))
{
    std::copy(packed.begin(), packed.end(), packed_.get());
}

std::optional<std::string_view> CKeyMap::find(std::string_view key) const noexcept
{
    Entry entry;
    for (std::size_t position = 0; next(position, entry);) {
        if (entry.key == key) {
            return entry.value;
        }
    }
    return std::nullopt;
}

void CKeyMap::set(std::string_view key, std::string_view value)
{
    Builder changed;
    Entry entry;
    for (std::size_t position = 0; next(position, entry);) {
        changed.add(entry.key, entry.value);
    }
    changed.add(key, value);
    *this = changed.finish();
}

bool CKeyMap::next(std::size_t& position, Entry& entry) const noexcept
{
    if (position >= size_) {
        return false;
    }
    const char* at = packed_.get() + position;
    entry = takeEntry(at);
    position = static_cast<std::size_t>(at - packed_.get());
    return true;
}

void CKeyMap::Builder::add(std::string_view key, std::string_view value)
{
    appendEntry(packed_, { key, value });
}

CKeyMap CKeyMap::Builder::finish() const
{
    std::vector<Entry> entries;
    bool ascending = true;
    for (const char* at = packed_.data(); at != packed_.data() + packed_.size();) {
        const Entry entry = takeEntry(at);
        ascending = ascending && (entries.empty() || entries.back().key < entry.key);
        entries.push_back(entry);
    }
    if (ascending) {
        return CKeyMap(packed_);
    }
    std::stable_sort(entries.begin(), entries.end(), [](auto& a, auto& b) { return a.key < b.key; });
    std::string sorted;
    sorted.reserve(packed_.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i + 1 == entries.size() || entries[i].key != entries[i + 1].key) {
            appendEntry(sorted, entries[i]);
        }
    }
    return CKeyMap(sorted);
}
