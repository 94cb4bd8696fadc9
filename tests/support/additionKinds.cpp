#include "durability/additions.h"

#include "api/additions.h"
#include "support/OpenDatabase.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace test {

namespace {

constexpr long water = 4;
constexpr Owner substance { water };
constexpr Owner phase { water, 0 };
// So many that the file is written in several pieces.
constexpr long manyRows = 1500;

const wchar_t* nameOf(int number)
{
    return number == 1 ? L"First" : L"Second";
}

int addSubstance(long database, int number)
{
    return addMatter(database, { nameOf(number), L"a comment" });
}

int addMixture(long database, int number)
{
    return addMatter(database, { nameOf(number), {}, 1, { { water, 0.25 }, { 7, 0.75 } } });
}

int addLiquid(long database, int number)
{
    return addPhase(database, water, nameOf(number), MATTER_STATE_LIQUID);
}

int addMelting(long database, int number)
{
    return addPhaseChange(database, water, nameOf(number), 0, 1);
}

int addConstant(long database, int number)
{
    IDbDataConst value;
    value.value = number + 0.5;
    return addParam(database, substance, { number, PARAM_TYPE_CONSTANT, false }, &value);
}

int addLongVectorTable(long database, int number)
{
    IDbDataTableVector value;
    value.rows = new TABLEROWVECT[manyRows];
    value.count = number == 1 ? manyRows : 1;
    for (long i = 0; i < value.count; ++i) {
        const double longText = 1.23457e-4 + 1e-9 * static_cast<double>(i);
        value.rows[i] = { longText, longText, longText, longText };
    }
    return addParam(database, phase, { number, PARAM_TYPE_TABLE_P, true }, &value);
}

bool isSubstanceWithoutPhase(const fs::directory_entry& entry)
{
    return entry.path().filename().string().starts_with("Substance")
        && std::none_of(
            fs::directory_iterator(entry), {}, [](const auto& child) { return child.is_directory(); });
}

} // namespace

// Named as the library names its files, so that a name that is wrongly taken for free does damage.
const Tree durableBase = {
    { "default.lst", "" },
    { "1.prd",
        "ID=1\nName=First\nUnits=u\nBinary=0\nScalar=1\nVector=1\nAvForPhases=SLV\nDataTypes=CtpTX\n" },
    { "2.prd",
        "ID=2\nName=Second\nUnits=u\nBinary=0\nScalar=1\nVector=1\nAvForPhases=SLV\nDataTypes=CtpTX\n" },
    { "Substance1/Substance1.mtd", "ID=4\nName=Water\nMixture=0\nComposition=\n" },
    { "Substance1/Property1.prh", "ID=9\nVector=0\nType=1\nData=Property1.dat\n" },
    { "Substance1/Property1.dat", "1.5\n" },
    { "Substance1/Phase1/Phase1.phd", "ID=0\nName=Liquid\nAggreg=2\n" },
    { "Substance1/Phase1/Property1.prh", "ID=9\nVector=0\nType=2\nData=Property1.dat\n" },
    { "Substance1/Phase1/Property1.dat", "300 996.5\n" },
    { "Substance1/PC1/PC1.pcd", "ID=0\nName=Boiling\nPhase1=0\nPhase2=1\n" },
};

const std::vector<Addition> additions = {
    { "substance", addSubstance },
    { "mixture", addMixture },
    { "phase", addLiquid },
    { "phaseChange", addMelting },
    { "constant", addConstant },
    { "longVectorTable", addLongVectorTable },
};

std::ostream& operator<<(std::ostream& out, const Addition& addition)
{
    return out << addition.name;
}

std::string additionName(const testing::TestParamInfo<Addition>& info)
{
    return info.param.name;
}

void addMissingPhases(long database)
{
    Matters matters;
    qmdbGetMatters(database, &matters.records, &matters.count);
    for (const MATTER& matter : matters) {
        Phases phases;
        if (qmdbGetPhases(database, matter.id, &phases.records, &phases.count) == QMDB_E_EMPTY) {
            addPhase(database, matter.id, L"Solid", MATTER_STATE_SOLID);
        }
    }
}

std::string reopened(const TempDatabase& tree)
{
    for (const fs::directory_entry& entry : fs::directory_iterator(tree.root())) {
        if (isSubstanceWithoutPhase(entry)) {
            tree.make({ entry.path().filename() / "Phase1/Phase1.phd", "ID=0\nName=Solid\nAggreg=1\n" });
        }
    }
    const OpenDatabase db(tree);
    return db.code == QMDB_OK ? listing(db.id) : "cannot be opened: " + std::to_string(db.code);
}

std::string damage(const TempDatabase& tree)
{
    std::string text;
    for (const Entry& entry : durableBase) {
        if (tree.read(entry.path) != entry.bytes) {
            text += "== " + entry.path + "\n" + tree.read(entry.path);
        }
    }
    return text;
}

Listings::Listings(const Addition& addition)
{
    const auto after = [&](std::initializer_list<int> numbers) {
        const TempDatabase tree(durableBase);
        const OpenDatabase db(tree);
        for (const int number : numbers) {
            EXPECT_GE(addition.add(db.id, number), QMDB_OK);
        }
        return reopened(tree);
    };
    before = after({});
    first = after({ 1 });
    second = after({ 2 });
    both = after({ 1, 2 });
    EXPECT_NE(before, first);
    EXPECT_NE(first, both);
}

} // namespace test
