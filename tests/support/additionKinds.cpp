#include "support/additionKinds.h"

#include "api/additions.h"
#include "support/OpenDatabase.h"

#include <filesystem>
#include <type_traits>

namespace fs = std::filesystem;

namespace test {

namespace {

constexpr long water = 4;
constexpr Owner substance { water };
constexpr Owner phase { water, 0 };
constexpr Owner linkedPhase { water, 1 };
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
    COMPONENT parts[] = { { water, 0.25 }, { 7, 0.75 } };
    MATTER record {};
    fill(record.name, nameOf(number));
    record.mixture = 1;
    record.compositionCount = 2;
    record.composition = parts;
    const int code = qmdbAddMatter(database, &record);
    record.composition = nullptr; // not made with new
    return code;
}

int addLiquid(long database, int number)
{
    return addPhase(database, water, nameOf(number), MATTER_STATE_LIQUID);
}

int addMelting(long database, int number)
{
    return addPhaseChange(database, water, nameOf(number), 0, 1);
}

template <class Row>
Row rowAt(long index)
{
    const double number = 1.23457e-4 + 1e-9 * static_cast<double>(index);
    if constexpr (std::is_same_v<Row, TABLEROW>) {
        return { number, -number };
    } else {
        return { number, number, number, -number };
    }
}

template <class Table>
void fillRows(Table& table, long count)
{
    using Row = std::remove_pointer_t<decltype(table.rows)>;
    table.rows = new Row[static_cast<std::size_t>(count)];
    table.count = count;
    for (long i = 0; i < count; ++i) {
        table.rows[i] = rowAt<Row>(i);
    }
}

template <class Value>
void fillValue(Value& value, int number)
{
    if constexpr (std::is_same_v<Value, IDbDataConst>) {
        value.value = number + 0.5;
    } else if constexpr (std::is_same_v<Value, IDbDataConstVector>) {
        value.x = number + 0.5;
        value.z = -1;
    } else if constexpr (requires { value.rows; }) {
        fillRows(value, number == 1 && std::is_same_v<Value, IDbDataTableVector> ? manyRows : number);
    } else {
        using Subtable = std::remove_pointer_t<decltype(value.subtables)>;
        value.subtables = new Subtable[2];
        value.count = 2;
        for (long i = 0; i < value.count; ++i) {
            value.subtables[i].firstArg = static_cast<double>(100 * i);
            fillRows(value.subtables[i], number + i);
        }
    }
}

template <class Value>
struct Filled : Value {
    explicit Filled(int number) { fillValue<Value>(*this, number); }
};

template <class Value, int type, bool isVector, const Owner& owner>
int addValue(long database, int number)
{
    // Made once: under failing allocations only the library's own ones may fail.
    static const Filled<Value> first(1);
    static const Filled<Value> second(2);
    return addParam(database, owner, { number, type, isVector }, number == 1 ? &first : &second);
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
    { "Substance1/Phase1/Property1.prh", "../../linked/head.txt", Kind::link },
    { "linked/head.txt", "ID=9\nVector=0\nType=2\nData=Property1.dat\n" },
    { "Substance1/Phase1/Property1.dat", "300 996.5\n" },
    { "Substance1/Phase2/Phase2.phd", "ID=1\nName=Vapour\nAggreg=3\n" },
    { "Substance1/Phase2/Property1.dat", "../../linked/data.txt", Kind::link },
    { "Substance1/PC1/PC1.pcd", "ID=0\nName=Boiling\nPhase1=0\nPhase2=1\n" },
};

const std::vector<Addition> additions = {
    { "substance", addSubstance },
    { "mixture", addMixture },
    { "phase", addLiquid },
    { "phaseChange", addMelting },
    { "constant", addValue<IDbDataConst, PARAM_TYPE_CONSTANT, false, substance> },
    { "constantVector", addValue<IDbDataConstVector, PARAM_TYPE_CONSTANT, true, phase> },
    { "table", addValue<IDbDataTable, PARAM_TYPE_TABLE_T, false, phase> },
    { "longVectorTable", addValue<IDbDataTableVector, PARAM_TYPE_TABLE_P, true, phase> },
    { "table2D", addValue<IDbDataTable2D, PARAM_TYPE_TABLE2D_T, false, phase> },
    { "vectorTable2D", addValue<IDbDataTable2DVector, PARAM_TYPE_TABLE2D_X, true, substance> },
    { "overALink", addValue<IDbDataTable, PARAM_TYPE_TABLE_T, false, linkedPhase> },
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
        const fs::path path = fs::path(tree.root()) / entry.path;
        const std::string bytes
            = entry.kind == Kind::link ? fs::read_symlink(path).string() : tree.read(entry.path);
        if (bytes != entry.bytes) {
            text += "== " + entry.path + "\n" + bytes;
        }
    }
    return text;
}

std::string withoutFirstValue(std::string listing)
{
    const std::size_t start = listing.find("'First'");
    return start == listing.npos ? listing : listing.erase(start, listing.find('\n', start) - start);
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
