// Separate databases from separate threads; calls on one database stay the host's to serialise.

#include "api/additions.h"
#include "support/trees.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using namespace test;

/// Opens, asks, adds, fails and closes; empty when all went as it does alone.
std::string useDatabase(const TempDatabase& tree, int rounds)
{
    std::string wrong;
    for (int round = 0; round < rounds; ++round) {
        const OpenDatabase db(tree, { .logInfo = true });
        if (db.code != QMDB_OK || listing(db.id).find("kg/m3' = (300 996.5)") == std::string::npos) {
            wrong += "the listing differs\n";
        }
        const std::wstring name = L"Added " + std::to_wstring(round);
        const int matter = addMatter(db.id, { name });
        if (matter < 0 || addPhase(db.id, matter, L"Solid", 1) != 0
            || addMatter(db.id, { name }) != QMDB_E_DUPLICATE_NAME) {
            wrong += "an addition went wrong\n";
        }
        // No UTF-8 form: an exception's text goes to the log.
        if (addMatter(db.id, { std::wstring(1, static_cast<wchar_t>(0x110000)) }) != QMDB_E_FILE
            || tree.log().find("EQMException with code=80050002, subcode=0\n") == std::string::npos) {
            wrong += "the exception's text differs\n";
        }
    }
    return wrong;
}

TEST(Threads, eachWithADatabaseOfItsOwn)
{
    constexpr std::size_t count = 4;
    std::vector<std::unique_ptr<TempDatabase>> trees;
    std::vector<std::string> wrong(count);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < count; ++i) {
        trees.push_back(std::make_unique<TempDatabase>(water));
    }
    for (std::size_t i = 0; i < count; ++i) {
        threads.emplace_back([&, i] { wrong[i] = useDatabase(*trees[i], 40); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<std::string>(count));
}

} // namespace
