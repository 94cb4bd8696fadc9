// Every system call fails once, and then for good. What succeeds all the same has done its work, or the log
// says what is missing; what fails has done no harm.

#include "api/additions.h"
#include "faults/FaultyAddition.h"
#include "faults/Watch.h"
#include "support/OpenDatabase.h"
#include "support/Reliability.h"
#include "support/trees.h"

#include <algorithm>
#include <cerrno>
#include <sstream>

namespace {

using namespace test;

/// With all kinds of files and values, and a linked directory.
Tree readBase()
{
    return durableBase
        + Tree { { "default.lst", "7=Water, from the table\n" }, { "Linked", "away/substance", Kind::link },
              { "Substance1/Substance1.mtd", "ID=4\nName=Water\nNameID=7\nMixture=0\nComposition=\n" },
              { "away/substance/s.mtd", "ID=5\nName=Mix\nMixture=1\nComposition=4:0.25;5:0.75\n" },
              { "away/substance/P/p.phd", "ID=1\nName=Solid\nAggreg=1\n" },
              { "away/substance/P/a.prh", "ID=1\nVector=1\nType=1\nData=a" },
              { "away/substance/P/a", "1 2 3\n" },
              { "away/substance/P/b.prh", "ID=2\nVector=1\nType=3\nData=b" },
              { "away/substance/P/b", "1 2 3 4\n" }, { "Substance1/c.prh", "ID=1\nVector=0\nType=4\nData=c" },
              { "Substance1/c", "P=1\n1 2\n3 4\n" }, { "Substance1/d.prh", "ID=2\nVector=1\nType=5\nData=d" },
              { "Substance1/d", "P=1\n1 2 3 4\n" } };
}

/// Runs a test for each call that fails, until the library makes no more; `strike` tells whether one failed.
template <class Strike>
void strikeEverywhere(Strike&& strike)
{
    Reliability reliability("every call fails");
    for (const int error : errorNumbers()) {
        for (const bool forGood : { false, true }) {
            for (const bool ofLog : { false, true }) {
                Plan plan { 1, forGood, error, ofLog };
                for (bool wasStruck = true; wasStruck && !testing::Test::HasFailure(); ++plan.call) {
                    SCOPED_TRACE(plan.text());
                    wasStruck = strike(plan);
                    reliability.cases += wasStruck ? 1 : 0;
                }
            }
        }
    }
    EXPECT_GT(reliability.cases, 100u);
}

TEST(FailingCall, open)
{
    const TempDatabase tree(readBase() + crowdIn("away/substance"));
    const std::string whole = listing(OpenDatabase(tree).id);
    strikeEverywhere([&](const Plan& plan) {
        const std::size_t descriptors = openDescriptors();
        const std::wstring path = tree.path();
        long id = 0;
        Watch watch(plan.rule());
        const int code = qmdbOpen(path.c_str(), L"", L"", true, &id);
        watch.stop();
        EXPECT_EQ(openDescriptors(), descriptors);
        const std::string log = tree.log();
        if (code != QMDB_OK) {
            EXPECT_EQ(id, -1);
            EXPECT_TRUE(code == QMDB_E_FILE || code == QMDB_E_READ || code == QMDB_E_NO_PHASES) << code;
            EXPECT_FALSE(plan.isHarmless());
        } else if (const std::string listed = listing(id); listed != whole) {
            EXPECT_TRUE(log.find("ERROR: Cannot list directory: $") != log.npos
                || log.find("/default.lst\n") != log.npos)
                << listed << log;
            EXPECT_FALSE(plan.isHarmless());
        }
        qmdbClose(id);
        return watch.failed > 0;
    });
    EXPECT_EQ(listing(OpenDatabase(tree).id), whole);
    EXPECT_EQ(tree.changes(), "");
}

TEST(FailingCall, listsAndValues)
{
    const TempDatabase tree(readBase());
    const OpenDatabase db(tree);
    const std::string whole = listing(db.id);
    ASSERT_EQ(std::ranges::count(whole, '='), 8) << "six values, two of them with a first argument";
    strikeEverywhere([&](const Plan& plan) {
        const std::size_t descriptors = openDescriptors();
        Watch watch(plan.rule());
        const std::string listed = listing(db.id);
        watch.stop();
        EXPECT_EQ(openDescriptors(), descriptors);
        std::istringstream wanted(whole);
        std::istringstream found(listed);
        for (std::string want, line; std::getline(wanted, want);) {
            std::getline(found, line);
            const std::string start = line.substr(0, line.find(" = error -"));
            EXPECT_TRUE(
                line == want || (want.starts_with(start + " = ") && start != line && !plan.isHarmless()))
                << want << '\n'
                << line;
        }
        return watch.failed > 0;
    });
    EXPECT_EQ(listing(db.id), whole);
}

class FailingCalls : public FaultyAddition {
protected:
    struct Outcome {
        int code;
        std::size_t failed;
        std::size_t calls;
    };

    Outcome add(const Watch::Rule& rule, bool endsAtOnce) const
    {
        Outcome outcome {};
        expectTruth(QMDB_E_FILE, endsAtOnce, [&](long database) {
            const std::size_t descriptors = openDescriptors();
            Watch watch(rule);
            outcome.code = GetParam().add(database, 1);
            watch.stop();
            EXPECT_EQ(openDescriptors(), descriptors);
            outcome.failed = watch.failed;
            outcome.calls = watch.calls;
            return outcome.code;
        });
        return outcome;
    }
};

TEST_P(FailingCalls, addition)
{
    strikeEverywhere([this](const Plan& plan) {
        const Outcome outcome = add(plan.rule(), !plan.forGood);
        EXPECT_TRUE(outcome.code >= QMDB_OK || !plan.isHarmless());
        return outcome.failed > 0;
    });
}

TEST_P(FailingCalls, additionOnAPlainFileSystem)
{
    for (const int error : errorNumbers()) {
        Plan plan { .error = error, .isPlain = true };
        for (std::size_t calls = plan.call; plan.call <= calls && !HasFailure(); ++plan.call) {
            SCOPED_TRACE(plan.text());
            calls = add(plan.rule(), true).calls;
        }
        EXPECT_GT(plan.call, 10u);
    }
}

// Two kinds of calls fail together, as those that need one permission do.
TEST_P(FailingCalls, additionWithoutTwoKindsOfCalls)
{
    for (const int error : errorNumbers()) {
        for (const Call first : allCalls) {
            for (const Call second : allCalls) {
                const auto fails = [&](const SystemCall& call) {
                    return !call.ofLog && (call.call == first || call.call == second) ? error : 0;
                };
                SCOPED_TRACE(testing::Message()
                    << error << " for " << static_cast<int>(first) << " and " << static_cast<int>(second));
                if (first <= second) {
                    add(fails, false);
                }
            }
        }
    }
}

/// A phase and six descriptions of constants.
Tree constantsBase()
{
    Tree tree = { { "default.lst", "" }, { "W/w.mtd", "ID=4\nName=Water\nMixture=0\nComposition=\n" },
        { "W/L/l.phd", "ID=0\nName=Liquid\nAggreg=2\n" } };
    for (const char* const id : { "1", "2", "3", "4", "5", "6" }) {
        tree.push_back({ std::string(id) + ".prd",
            std::string("ID=") + id + "\nName=\nUnits=\nBinary=\nScalar=1\nAvForPhases=L\nDataTypes=C\n" });
    }
    return tree;
}

int addConstant(long database, long parameter)
{
    IDbDataConst value;
    value.value = static_cast<double>(parameter) + 0.5;
    return addParam(database, { 4, 0 }, { parameter }, &value);
}

/// The parameters of which a database opened anew has the right value; any other value is a failure.
std::string rightConstants(const TempDatabase& tree)
{
    const OpenDatabase db(tree);
    EXPECT_EQ(db.code, QMDB_OK) << tree.log();
    Parameters found;
    qmdbGetPhaseParams(db.id, 4, 0, &found.records, &found.count);
    std::string ids;
    for (const PARAMETER& param : found) {
        const std::string text = valueText(db.id, { 4, 0 }, param.id);
        const bool isRight = text == numberText(static_cast<double>(param.id) + 0.5);
        ids += std::to_string(param.id) + (isRight ? "" : "(" + text + ")");
    }
    return ids;
}

/// Adds 1, 2 and 4, and another program 3 before the last; the calls of one addition fail. From the second on
/// the directory is watched, and what others add is known from its reports alone.
void addBesideOthers(const Tree& base, const Plan& plan, long struck, bool& wasStruck)
{
    const TempDatabase tree(base);
    const OpenDatabase db(tree);
    const OpenDatabase other(tree);
    std::string wanted;
    std::string most; // a failure that lasts may leave a whole parameter
    for (const long parameter : { 1, 2, 3, 4 }) {
        Watch watch(parameter == struck ? plan.rule() : [](const SystemCall&) { return 0; });
        const int code = addConstant(parameter == 3 ? other.id : db.id, parameter);
        watch.stop();
        wasStruck = wasStruck || watch.failed > 0;
        EXPECT_TRUE(code == QMDB_OK || (code == QMDB_E_FILE && parameter == struck && !plan.isHarmless()))
            << code;
        const bool isUnwritten = parameter == struck
            && tree.log().find("ERROR: Cannot open file for write: $") != std::string::npos;
        const std::string text
            = std::to_string(parameter) + (isUnwritten && code == QMDB_OK ? "(error -3)" : "");
        wanted += code == QMDB_OK ? text : "";
        most += text;
    }
    const std::string found = rightConstants(tree);
    EXPECT_TRUE(found == wanted || (plan.forGood && found == most)) << found << " for " << wanted;
    EXPECT_EQ(addConstant(db.id, 5), QMDB_OK);
    EXPECT_EQ(rightConstants(tree), found + "5");
}

TEST(FailingCall, additionsBesideThoseOfOthers)
{
    const Tree base = constantsBase();
    for (const long struck : { 2, 4 }) {
        SCOPED_TRACE(struck);
        strikeEverywhere([&](const Plan& plan) {
            bool wasStruck = false;
            addBesideOthers(base, plan, struck, wasStruck);
            return wasStruck;
        });
    }
}

INSTANTIATE_TEST_SUITE_P(Faults, FailingCalls, testing::ValuesIn(additions), additionName);

} // namespace
