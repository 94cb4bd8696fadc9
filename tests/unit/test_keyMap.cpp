// Key maps and compositions: pure parts, from text to text.

#include "files/CKeyMap.h"
#include "format/composition.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace {

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
