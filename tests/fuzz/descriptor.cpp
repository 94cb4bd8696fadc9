// Descriptors are read as their rules say, and what is written reads back.

#include "format/descriptor.h"
#include "files/CDbFile.h"
#include "format/innerText.h"
#include "format/vocabulary.h"
#include "fuzz.h"
#include "qmdatabase/status.h"
#include "reference.h"

#include <algorithm>
#include <map>

namespace {

using fuzz::require;

/// In ascending order of code points.
using Entries = std::map<std::u32string, std::u32string>;

constexpr std::size_t markLength = format::utf8Mark.size();

Entries parse(const std::string& file)
{
    Entries entries;
    std::vector<reference::Line> lines = reference::cut(file);
    const bool utf8 = lines.front().bytes.starts_with(format::utf8Mark);
    lines.front().bytes.erase(0, utf8 ? markLength : 0);
    for (const reference::Line& line : lines) {
        const std::wstring wide = reference::decode(line.bytes, utf8);
        const std::u32string text(wide.begin(), wide.end());
        const std::size_t sign = text.find(U'=');
        if (sign != std::u32string::npos) {
            entries[text.substr(0, sign)] = text.substr(sign + 1);
        }
    }
    return entries;
}

CDbFile open(const std::string& bytes)
{
    static const CLog log("/dev/null", false); // no directory: nothing is written
    static const auto directory = std::make_shared<const std::string>(fuzz::MemoryFile::directory);
    const fuzz::MemoryFile file(bytes);
    return CDbFile(CFilePath(directory, file.name()), log);
}

std::u32string wideOf(std::string_view text)
{
    const std::wstring wide = format::text::toWide(text);
    return { wide.begin(), wide.end() };
}

template <class Call>
void forEach(const CKeyMap& keys, Call&& call)
{
    CKeyMap::Entry entry;
    for (std::size_t position = 0; keys.next(position, entry);) {
        call(entry);
    }
}

bool isSame(const CKeyMap& keys, const Entries& entries)
{
    auto expected = entries.begin();
    bool same = true;
    forEach(keys, [&](const CKeyMap::Entry& entry) {
        same = same && expected != entries.end() && wideOf(entry.key) == expected->first
            && wideOf(entry.value) == expected->second;
        expected = same ? std::next(expected) : expected;
    });
    return same && expected == entries.end();
}

/// Writes the entries. None when one has a text that must not be written.
std::optional<std::string> write(const CKeyMap& keys)
{
    std::string bytes(format::utf8Mark);
    bool written = true;
    forEach(keys, [&](const CKeyMap::Entry& entry) {
        const std::size_t before = bytes.size();
        const std::wstring text = format::text::toWide(entry.key) + format::text::toWide(entry.value);
        const bool isUnicode = reference::toUtf8(text).has_value();
        require(format::appendEntry(bytes, entry.key, entry.value) == isUnicode, "Unicode can be written");
        require(isUnicode || bytes.size() == before, "of an entry that is refused nothing is written");
        written = written && isUnicode;
    });
    return written ? std::optional(bytes) : std::nullopt;
}

/// False where the format itself loses something: a line end or a NUL, which overlong forms bring in, a CR at
/// the end, and what is beyond the longest line.
bool survives(const std::string& written, std::size_t entries)
{
    const std::vector<reference::Line> lines = reference::cut(written);
    return written.find('\0') == written.npos && lines.size() == entries + 1
        && std::ranges::all_of(lines,
            [](const reference::Line& line) { return !line.isTooLong && !line.bytes.ends_with('\r'); });
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    fuzz::setLocale((input.byte() & 1) != 0);
    const std::string bytes = fuzz::inflate(input.rest(), fuzz::mostOfFile);
    const Entries entries = parse(bytes);
    const CDbFile file = open(bytes);
    require(file.status == QMDB_OK, "every descriptor can be read");
    require(file.utf8 == bytes.starts_with(format::utf8Mark), "the mark says that the file is UTF-8");
    require(isSame(file.keys(), entries), "entries are read as the rules say");
    for (const std::string_view text : format::keyTexts) {
        const auto expected = entries.find({ text.begin(), text.end() });
        const std::string_view value = file.getParametr(*format::findKey(text), "none");
        require(wideOf(value) == (expected == entries.end() ? U"none" : expected->second), "keys are found");
    }
    const std::optional<std::string> written = write(file.keys());
    if (written && survives(*written, entries.size())) {
        require(isSame(open(*written).keys(), entries), "what was written reads back");
    }
    return 0;
}
