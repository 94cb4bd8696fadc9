// The lines of a descriptor: ends, signs, lengths, encodings.

#include "support/OpenDatabase.h"
#include "support/ScopedLocale.h"
#include "support/trees.h"

#include <gtest/gtest.h>

namespace {

using namespace test;
using namespace std::string_literals;

const std::string mark(utf8Mark);
const std::string required = "ID=5\nName=Iron\nMixture=0\nComposition=\n";

struct LineCase {
    const char* name;
    std::string bytes;
    std::wstring comment;
    const char* log = "";
    const char* locale = "C";
};

const LineCase lineCases[] = {
    { "plain", required + "Comment=Test\n", L"Test" },
    { "noLineEnd", required + "Comment=Test", L"Test" },
    { "crLf", required + "\r\nComment=Test\r\n", L"Test" },
    { "oneCrOnly", required + "Comment=Test\r\r\n", L"Test\r" },
    { "secondSign", required + "Comment=a=b=\n", L"a=b=" },
    { "nothingTrimmed", required + "Comment= a \t\n", L" a \t" },
    { "blankBeforeKey", required + " Comment=x\n", L"" },
    { "blankAfterKey", required + "Comment =x\n", L"" },
    { "caseSensitive", required + "comment=x\n", L"" },
    { "lastDuplicate", required + "Comment=a\nComment=b\n", L"b" },
    { "lastDuplicateEmpty", required + "Comment=a\nComment=\n", L"" },
    { "noSign", "# remark\n" + required + "[s]\r\nComment=x\n", L"x",
        "ERROR: File format error: $/I/i.mtd(# remark)\nERROR: File format error: $/I/i.mtd([s])\n" },
    { "nulEndsTheLine", required + "Comment=ab\0cd\n\0Comment=z\n"s, L"ab" },
    { "nulBeforeTheSign", required + "Comment=x\nab\0=cd\n"s, L"x",
        "ERROR: File format error: $/I/i.mtd(ab)\n" },
    { "nulWithMark", mark + required + "Comment=x\nab\0=cd\n"s, L"x",
        "ERROR: File format error: $/I/i.mtd(ab)\n" },
    { "longest", required + "Z=" + std::string(1020, 'z') + "\nComment=" + std::string(1014, 'x') + "\n",
        std::wstring(49, L'x') },
    { "longestWithCr", required + "Z=" + std::string(1019, 'z') + "\r\nComment=x\n", L"x" },
    { "longestAtTheEnd", required + "Comment=" + std::string(1014, 'x'), std::wstring(49, L'x') },
    { "longestWithMark", mark + "Z=" + std::string(1017, 'z') + "\n" + required + "Comment=x\n", L"x" },
    { "tooLong", required + "Comment=x\nZ=" + std::string(1021, 'z') + "\nComment=lost\n", L"x",
        "ERROR: File format error (line too long): $/I/i.mtd\n" },
    { "tooLongByCr", required + "Comment=" + std::string(1014, 'x') + "\r\nComment=lost\n",
        std::wstring(49, L'x'), "ERROR: File format error (line too long): $/I/i.mtd\n" },
    { "tooLongAtTheEnd", required + "Comment=" + std::string(1015, 'x'), std::wstring(49, L'x'),
        "ERROR: File format error (line too long): $/I/i.mtd\n" },

    { "markMeansUtf8", mark + required + "Comment=\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\n",
        L"\u00E4\u20AC\U0001F600" },
    { "noMarkNoLocale", required + "Comment=\xC3\xA4\n", L"" },
    { "noMarkUtf8Locale", required + "Comment=\xC3\xA4\n", L"\u00E4", "", "C.UTF-8" },
    { "brokenUtf8LosesItsLine", mark + required + "Comment=a\nComment=\xC3\nX\n", L"a",
        "ERROR: File format error: $/I/i.mtd(X)\n", "C.UTF-8" },
    { "brokenUtf8AfterNulIsUnseen", mark + required + "Comment=a\0\xC3\n"s, L"a" },
    { "overlongFormsPass", mark + required + "Comment\xC0\xBD\xC1\x81\n", L"A" },
    { "surrogatesPass", mark + required + "Comment=\xED\xA0\x80\n",
        std::wstring(1, static_cast<wchar_t>(0xD800)) },
    { "beyondUnicodePasses", mark + required + "Comment=\xF7\xBF\xBF\xBF\n",
        std::wstring(1, static_cast<wchar_t>(0x1FFFFF)) },
    { "secondMarkIsText", mark + required + mark + "Comment=x\nY\n", L"",
        "ERROR: File format error: $/I/i.mtd(Y)\n" },
    { "markAloneInFirstLine", mark + "\r\n" + required + "Comment=\xC3\xA4\n", L"\u00E4" },
    { "logIsUtf8InAnyLocale", mark + required + "\xC3\xA4\n", L"",
        "ERROR: File format error: $/I/i.mtd(\xC3\xA4)\n" },
};

TEST(Descriptor, lines)
{
    for (const LineCase& row : lineCases) {
        SCOPED_TRACE(row.name);
        const ScopedLocale locale(row.locale);
        const TempDatabase tree(bareIron + Tree { { "default.lst", "" }, { "I/i.mtd", row.bytes } });
        const OpenDatabase db(tree);
        EXPECT_EQ(db.code, QMDB_OK);
        Matters matters;
        ASSERT_EQ(qmdbGetMatters(db.id, &matters.records, &matters.count), QMDB_OK);
        EXPECT_EQ(std::wstring(matters.records->comment), row.comment);
        EXPECT_EQ(tree.log(), row.log);
    }
}

TEST(Descriptor, firstLineOverTheLimitLosesTheFile)
{
    const TempDatabase tree(bareIron
        + Tree {
            { "default.lst", "" }, { "I/i.mtd", mark + "Z=" + std::string(1018, 'z') + "\n" + required } });
    EXPECT_EQ(OpenDatabase(tree).code, QMDB_E_REQUIRED_KEY);
    EXPECT_EQ(tree.log(),
        "ERROR: File format error (line too long): $/I/i.mtd\n"
        "ERROR: No required field(s) in file: $/I/i.mtd\nERROR: Cannot load matter file: $/I/i.mtd\n");
}

struct NumberCase {
    const char* text;
    long number;
};

TEST(Descriptor, integers)
{
    const NumberCase cases[]
        = { { "12abc", 12 }, { "abc", 0 }, { "", 0 }, { " \t7", 7 }, { "+3", 3 }, { "007", 7 }, { "-4", -4 },
              { "0x10", 0 }, { "1.9", 1 }, { "- 1", 0 }, { "99999999999999999999", 9223372036854775807 } };
    for (const NumberCase& row : cases) {
        SCOPED_TRACE(row.text);
        const TempDatabase tree(bareIron
            + Tree { { "I/i.mtd", std::string("Name=Iron\nMixture=0\nComposition=\nID=") + row.text } });
        const OpenDatabase db(tree);
        Matters matters;
        ASSERT_EQ(qmdbGetMatters(db.id, &matters.records, &matters.count), QMDB_OK);
        EXPECT_EQ(matters.records->id, row.number);
    }
}

} // namespace
