#pragma once

#include "support/OpenDatabase.h"
#include "support/additionKinds.h"

#include <algorithm>

namespace test {

/// The base of tests in which something fails under an addition: what succeeds all the same is there, what
/// fails has left nothing, and the database works when the failure is over.
class FaultyAddition : public testing::TestWithParam<Addition> {
protected:
    /// Runs `add` on an open database. It may fail with one code only; when the fault lasts for all of the
    /// addition, what stands on the disk already may stay.
    template <class Add>
    void expectTruth(int failure, bool endsAtOnce, Add&& add) const
    {
        const TempDatabase tree(durableBase);
        const OpenDatabase db(tree, { .logInfo = true });
        tree.clearLog();
        const int code = add(db.id);
        const std::string log = tree.log();
        const std::string changes = tree.changes();
        addMissingPhases(db.id);
        const std::string shown = listing(db.id);
        if (code < QMDB_OK) {
            EXPECT_EQ(code, failure);
            EXPECT_EQ(shown, listings.before);
            if (endsAtOnce) {
                expectNothingHalf(changes);
            }
        } else if (shown != listings.first) {
            // A data file that cannot be opened for writing is the one failure that is only logged.
            EXPECT_EQ(withoutFirstValue(shown), withoutFirstValue(listings.first));
            EXPECT_NE(log.find("ERROR: Cannot open file for write: $"), log.npos) << log;
        }
        const std::string found = reopened(tree);
        if (endsAtOnce || found != listings.first) {
            EXPECT_EQ(found, shown);
            EXPECT_GE(GetParam().add(db.id, 2), QMDB_OK);
            addMissingPhases(db.id);
            EXPECT_NE(listing(db.id), shown);
            EXPECT_EQ(reopened(tree), listing(db.id));
        }
        EXPECT_EQ(damage(tree), "");
    }

    const Listings listings { GetParam() };

private:
    /// Of what a success leaves only empty directories may stay, and a whole data file.
    void expectNothingHalf(const std::string& changes) const
    {
        for (std::size_t at = 0; at < changes.size();) {
            const std::size_t end = std::min(changes.find("\n== ", at), changes.size() - 1) + 1;
            const std::string entry = changes.substr(at, end - at);
            const bool isEmptied = entry == "== linked/data.txt\n";
            EXPECT_TRUE(entry.ends_with("/\n") || isEmptied || usual.find(entry + "== ") != usual.npos)
                << entry;
            EXPECT_EQ(entry.find("ID="), entry.npos) << entry;
            at = end;
        }
    }

    /// What an addition leaves when nothing fails, with an end mark.
    static std::string usualChanges()
    {
        const TempDatabase tree(durableBase);
        const OpenDatabase db(tree);
        GetParam().add(db.id, 1);
        return tree.changes() + "== ";
    }

    const std::string usual = usualChanges();
};

} // namespace test
