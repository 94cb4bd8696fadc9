// Paths, tokens, transcoding, key maps: the pure parts, from text to text.

#include "files/CKeyMap.h"
#include "format/composition.h"
#include "format/innerText.h"
#include "format/paths.h"
#include "format/rows.h"
#include "support/ScopedLocale.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace {

using namespace test;
namespace text = format::text;

struct PathCase {
    const char* path;
    const char* dir;
    const char* name;
    const char* ext;
};

TEST(Paths, split)
{
    const PathCase cases[] = {
        { "", "", "", "" },
        { "/db/Substance1/Substance1.mtd", "/db/Substance1", "Substance1", "mtd" },
        { "Substance1.mtd", "", "Substance1", "mtd" },
        { "/file", "", "file", "" },
        { "a/file", "a", "file", "" },
        { "a\\b\\c.txt", "a\\b", "c", "txt" },
        { "/x/archive.tar.gz", "/x", "archive.tar", "gz" },
        { "/x/.hidden", "/x", "", "hidden" },
        { "/x/name.", "/x", "name", "" },
        { "/x.y/name", "/x.y", "name", "" },
        { "/x/", "/x", "", "" },
        { "//n", "/", "n", "" },
        { "/", "", "", "" },
    };
    for (const PathCase& row : cases) {
        SCOPED_TRACE(row.path);
        const format::PathParts parts = format::splitPath(row.path);
        EXPECT_EQ(parts.dir, row.dir);
        EXPECT_EQ(parts.name, row.name);
        EXPECT_EQ(parts.ext, row.ext);
    }
}

struct SplitCase {
    const char* text;
    std::vector<std::string> tokens;
};

TEST(Tokens, split)
{
    const SplitCase cases[] = { { "", {} }, { "12", {} }, { " 5", {} }, { "5 ", { "5" } }, { " ", { "" } },
        { "  ", { "" } }, { "1 2  3", { "1", "2", "3" } }, { "1 2 ", { "1", "2" } },
        { "   1 2", { "1", "2" } }, { "1  ", { "1" } }, { "1\t2 3", { "1\t2", "3" } },
        { " 1 2 3  ", { "1", "2", "3" } }, { "a b", { "a", "b" } } };
    for (const SplitCase& row : cases) {
        EXPECT_EQ(format::splitString(row.text), row.tokens) << '"' << row.text << '"';
    }
}

std::wstring one(char32_t codePoint)
{
    return std::wstring(1, static_cast<wchar_t>(codePoint));
}

TEST(Transcoding, decodesUtf8)
{
    const std::pair<const char*, char32_t> good[]
        = { { "\x7F", 0x7F }, { "\xC2\x80", 0x80 }, { "\xDF\xBF", 0x7FF }, { "\xE0\xA0\x80", 0x800 },
              { "\xEF\xBF\xBF", 0xFFFF }, { "\xF0\x90\x80\x80", 0x10000 }, { "\xF4\x8F\xBF\xBF", 0x10FFFF },
              { "\xF4\x90\x80\x80", 0x110000 }, { "\xF7\xBF\xBF\xBF", 0x1FFFFF }, { "\xC1\x81", 'A' },
              { "\xE0\x81\x81", 'A' }, { "\xF0\x80\x81\x81", 'A' }, { "\xED\xA0\x80", 0xD800 } };
    for (const auto& [bytes, codePoint] : good) {
        EXPECT_EQ(text::fromUtf8(bytes), text::fromWide(one(codePoint)))
            << static_cast<std::uint32_t>(codePoint);
    }
    for (const char* const bad : { "\x80", "a\xBF", "\xC3", "\xC3\x28", "\xE2\x82", "\xE2\x28\xA1",
             "\xF0\x9F\x98", "\xF0\x9F\x98\x28", "\xF8\x88\x80\x80\x80", "\xFE", "\xFF", "\xC3\xC3\xA4" }) {
        EXPECT_EQ(text::fromUtf8(bad), std::nullopt);
    }
}

TEST(Transcoding, encodesUtf8)
{
    for (const char32_t codePoint :
        { 0x1U, 0x7FU, 0x80U, 0x7FFU, 0x800U, 0xD800U, 0xFFFFU, 0x10000U, 0x10FFFFU }) {
        const std::string inner = text::fromWide(one(codePoint));
        EXPECT_EQ(text::fromUtf8(*text::toUtf8(inner)), inner);
    }
    EXPECT_EQ(
        text::toUtf8(text::fromWide(L"a\u00E4\u20AC\U0010FFFF")), "a\xC3\xA4\xE2\x82\xAC\xF4\x8F\xBF\xBF");
    for (const char32_t codePoint : { 0x110000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU }) {
        EXPECT_EQ(text::toUtf8(text::fromWide(L"a" + one(codePoint))), std::nullopt);
    }
}

TEST(Transcoding, innerTextKeepsEveryValueAndTheirOrder)
{
    std::string before;
    for (std::uint32_t bit = 1; bit != 0; bit <<= 1) {
        for (const std::uint32_t value : { bit - 1, bit, bit + 1, bit | (bit >> 1) }) {
            EXPECT_EQ(text::toWide(text::fromWide(one(value))), one(value)) << std::hex << value;
        }
        const std::string text = text::fromWide(one(bit));
        EXPECT_LT(before, text);
        before = text;
    }
    EXPECT_EQ(text::toWide(text::fromWide(one(0xFFFFFFFF) + L"a")), one(0xFFFFFFFF) + L"a");
}

TEST(Transcoding, followsTheLocale)
{
    EXPECT_EQ(text::fromLocale("a\xC3\xA4"), "");
    EXPECT_EQ(text::toLocale("a\u00E4"), "");
    EXPECT_EQ(text::toLocale("a"), "a");
    const ScopedLocale utf8("C.UTF-8");
    EXPECT_EQ(text::fromLocale("a\xC3\xA4"), "a\u00E4");
    EXPECT_EQ(text::toLocale("a\u00E4"), "a\xC3\xA4");
    EXPECT_EQ(text::fromLocale("a\xC3"), "");
}

TEST(Transcoding, plainTextsAreToldApart)
{
    for (std::size_t length = 0; length < 20; ++length) {
        const std::string plain(length, '\x7F');
        EXPECT_TRUE(text::isPlain(plain));
        for (std::size_t at = 0; at < length; ++at) {
            for (const char odd : { '\0', '\x80', '\xFF' }) {
                std::string text(length, '\x01');
                text[at] = odd;
                EXPECT_FALSE(text::isPlain(text)) << length << " " << at;
            }
        }
    }
}

TEST(KeyMap, behavesLikeAnOrderedMap)
{
    const std::vector<std::string> keys { "", "ID", "Name", "NameID", "name", "N", "Z", "Comment", "Comments",
        "DI", "\xC3\xA4", "\xEF\xBF\xBF", "\xF0\x90\x80\x80", " ID", "Vector", "a=b" };
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        CKeyMap::Builder builder;
        std::map<std::string, std::string> expected;
        const auto value
            = [&] { return std::string(random() % 5 ? random() % 3 : 120 + random() % 20000, 'v'); };
        const auto key = [&] { return keys[random() % keys.size()]; };
        for (auto entries = random() % 40; entries > 0; --entries) {
            const std::string added = key();
            builder.add(added, expected[added] = value());
        }
        CKeyMap map = builder.finish();
        if (round % 2) {
            const format::Key set = static_cast<format::Key>(random() % format::keyTexts.size());
            map.set(set, expected[std::string(textOf(set))] = value());
        }
        std::map<std::string, std::string> found;
        std::vector<std::string> order;
        CKeyMap::Entry entry;
        for (std::size_t position = 0; map.next(position, entry);) {
            found[std::string(entry.key)] = entry.value;
            order.emplace_back(entry.key);
        }
        ASSERT_EQ(found, expected);
        ASSERT_TRUE(std::is_sorted(order.begin(), order.end()) && order.size() == found.size());
        for (const std::string_view asked : format::keyTexts) {
            const auto known = expected.find(std::string(asked));
            ASSERT_EQ(map.find(*format::findKey(asked)),
                known == expected.end() ? std::nullopt : std::optional<std::string_view>(known->second));
        }
    }
}

TEST(Composition, numberTextsAreBounded)
{
    std::vector<COMPONENT> parts;
    const std::string longest = "0." + std::string(1020, '0') + "1";
    EXPECT_EQ(format::parseComposition("1:" + longest, parts), format::CompositionResult::Read);
    EXPECT_EQ(format::parseComposition("1:0" + longest, parts), format::CompositionResult::BadFormat);
    EXPECT_EQ(format::parseComposition(std::string(1024, '1') + ":0.5", parts),
        format::CompositionResult::BadFormat);
}

} // namespace
