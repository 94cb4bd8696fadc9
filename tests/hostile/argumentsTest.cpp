// Arguments that make no sense: a code, or what is said of them, and nothing outside of a record is read.

#include "api/additions.h"
#include "support/OpenDatabase.h"
#include "support/Reliability.h"
#include "support/trees.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <sys/mman.h>
#include <type_traits>
#include <unistd.h>
#include <vector>

namespace {

using namespace test;

/// Objects right before a page that must not be touched. They are not destroyed, as a C host's are not.
template <class Object>
class BeforeGuard {
public:
    explicit BeforeGuard(std::size_t count = 1)
        : pageSize_(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)))
        , size_((count * sizeof(Object) + pageSize_ - 1) / pageSize_ * pageSize_)
        , pages_(static_cast<char*>(
              ::mmap(nullptr, size_ + pageSize_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
    {
        EXPECT_EQ(::mprotect(pages_ + size_, pageSize_, PROT_NONE), 0);
        objects_ = reinterpret_cast<Object*>(pages_ + size_ - count * sizeof(Object));
        std::uninitialized_default_construct_n(objects_, count);
    }
    BeforeGuard(const BeforeGuard&) = delete;
    BeforeGuard& operator=(const BeforeGuard&) = delete;
    ~BeforeGuard() { ::munmap(pages_, size_ + pageSize_); }

    Object* get() const { return objects_; }
    Object* operator->() const { return objects_; }

private:
    std::size_t pageSize_;
    std::size_t size_;
    char* pages_;
    Object* objects_;
};

constexpr std::wstring_view fullField = L"12345678901234567890123456789012345678901234567890";

const Tree base = water
    + Tree { { "20.prd",
        "ID=20\nName=Any\nUnits=u\nBinary=0\nScalar=1\nVector=1\nAvForPhases=SLV\nDataTypes=CtpTX\n" } };

void expectAgreement(const TempDatabase& tree, const OpenDatabase& db)
{
    EXPECT_EQ(listing(OpenDatabase(tree).id), listing(db.id));
}

// ---------------------------------------------------------------- identifiers, databases, null pointers

using Ids = std::vector<long>;

struct Outputs {
    void* pointer;
    int count;
    bool isPointerNull = false;
    bool isCountNull = false;
};

/// A function, and IDs with which it succeeds: the first is the database's.
struct Query {
    const char* name;
    Ids ids;
    int (*call)(const Ids& ids, Outputs& outputs);
    int unknown = QMDB_E_NOT_FOUND; ///< for the last of the IDs
};

template <auto list, class Record, std::size_t... id>
int listAll(const Ids& ids, Outputs& outputs)
{
    auto* records = static_cast<Record*>(outputs.pointer);
    const int code = list(ids[id]..., outputs.isPointerNull ? nullptr : &records,
        outputs.isCountNull ? nullptr : &outputs.count);
    outputs.pointer = records;
    return code;
}

int readValue(const Ids& ids, Outputs& outputs)
{
    auto* value = static_cast<IDbData*>(outputs.pointer);
    const int code
        = qmdbGetParamValue(ids[0], ids[1], ids[2], ids[3], ids[4], outputs.isPointerNull ? nullptr : &value);
    outputs.pointer = value;
    return code;
}

template <auto add, class Record>
int addRecord(const Ids& ids, Outputs& outputs)
{
    const Record record {};
    const Record* const given = outputs.isPointerNull ? nullptr : &record;
    if constexpr (std::is_same_v<Record, MATTER>) {
        return add(ids[0], given);
    } else {
        return add(ids[0], ids[1], given);
    }
}

template <bool toPhase>
int addValueOf(const Ids& ids, Outputs& outputs)
{
    const IDbDataConst value;
    PARAMETER record {};
    record.id = ids.back();
    record.type = PARAM_TYPE_CONSTANT;
    const PARAMETER* const given = outputs.isPointerNull ? nullptr : &record;
    return toPhase ? qmdbAddPhaseParam(ids[0], ids[1], ids[2], given, &value)
                   : qmdbAddMatterParam(ids[0], ids[1], given, &value);
}

const Query lists[] = {
    { "matters", { 0 }, listAll<qmdbGetMatters, MATTER, 0> },
    { "phases", { 0, 4 }, listAll<qmdbGetPhases, PHASE, 0, 1> },
    { "changes", { 0, 4 }, listAll<qmdbGetPhaseChanges, PHASECHANGE, 0, 1> },
    { "parameters of a substance", { 0, 4 }, listAll<qmdbGetMatterParams, PARAMETER, 0, 1> },
    { "parameters of a phase", { 0, 4, 2 }, listAll<qmdbGetPhaseParams, PARAMETER, 0, 1, 2> },
    { "parameters of a change", { 0, 4, 3 }, listAll<qmdbGetPhaseChangeParams, PARAMETER, 0, 1, 2> },
    { "descriptions", { 0, 4, 2 }, listAll<qmdbGetAvailablePhaseParams, PARAMETERDESCR, 0, 1, 2> },
};

const Query others[] = {
    { "value of a substance", { 0, 4, -1, -1, 9 }, readValue },
    { "value of a phase", { 0, 4, 2, -1, 7 }, readValue },
    { "value of a change", { 0, 4, -1, 3, 8 }, readValue },
    { "new substance", { 0 }, addRecord<qmdbAddMatter, MATTER> },
    { "new phase", { 0, 4 }, addRecord<qmdbAddPhase, PHASE> },
    { "new change", { 0, 4 }, addRecord<qmdbAddPhaseChange, PHASECHANGE> },
    { "new value of a substance", { 0, 4, 7 }, addValueOf<false>, QMDB_E_UNKNOWN_PARAMETER },
    { "new value of a phase", { 0, 4, 2, 7 }, addValueOf<true>, QMDB_E_UNKNOWN_PARAMETER },
};

long closedDatabase(const TempDatabase& tree)
{
    return OpenDatabase(tree).id;
}

class EveryFunction : public testing::Test {
protected:
    template <class Use>
    void forEach(Use&& use) const
    {
        for (const auto& queries : { std::span<const Query>(lists), std::span<const Query>(others) }) {
            for (Query query : queries) {
                SCOPED_TRACE(query.name);
                query.ids[0] = db_.id;
                use(query, queries.data() == lists);
            }
        }
        EXPECT_EQ(tree_.changes(), "");
        EXPECT_EQ(listing(db_.id), waterListing);
    }

    /// The outputs stay for an unknown database, and for a phase and a change at once, which comes first.
    void expectFailure(const Query& query, const Ids& ids, int code, bool isList, bool leavesOutputs) const
    {
        MATTER garbage {};
        Outputs outputs { &garbage, 77 };
        EXPECT_EQ(query.call(ids, outputs), code);
        if (leavesOutputs) {
            EXPECT_EQ(outputs.pointer, &garbage);
            EXPECT_EQ(outputs.count, 77);
        } else if (isList || ids.size() == 5) {
            EXPECT_EQ(outputs.pointer, nullptr);
            EXPECT_EQ(outputs.count, isList ? 0 : 77);
        }
    }

    const TempDatabase tree_ { water };
    const TempDatabase empty_ { { { "default.lst", "" } } };
    const OpenDatabase db_ { tree_ };
    const OpenDatabase foreign_ { empty_ };
};

TEST_F(EveryFunction, refusesEveryOtherId)
{
    Reliability calls("hostile arguments");
    const long closed = closedDatabase(tree_);
    forEach([&](const Query& query, bool isList) {
        for (std::size_t i = 0; i < query.ids.size(); ++i) {
            const long right = query.ids[i];
            // The last one is the right one when it is cut to 32 bits.
            for (const long id : { LONG_MIN, -1L, 0L, 1L << 31, LONG_MAX, closed, right + (1L << 32) }) {
                SCOPED_TRACE(testing::Message() << "ID " << i << " is " << id);
                Ids ids = query.ids;
                ids[i] = id;
                const bool isBoth = ids.size() == 5 && ids[2] != -1 && ids[3] != -1;
                const bool isLast = i > 0 && i + 1 == ids.size();
                if (id != right) {
                    expectFailure(query, ids, isLast && i > 1 ? query.unknown : QMDB_E_NOT_FOUND, isList,
                        i == 0 || isBoth);
                    ++calls.cases;
                }
            }
        }
    });
    forEach([&](const Query& query, bool isList) {
        Ids ids = query.ids;
        ids[0] = foreign_.id;
        if (ids.size() > 1) {
            expectFailure(query, ids, QMDB_E_EMPTY, isList, false);
            ++calls.cases;
        }
    });
    EXPECT_EQ(empty_.changes() + empty_.log(), "");
    for (const long id : { LONG_MIN, -1L, 0L, 1L << 31, LONG_MAX, closed }) {
        EXPECT_EQ(qmdbClose(id), QMDB_E_NOT_FOUND);
    }
}

// Null pointers come after an unknown database and before anything else; for values after two owners.
TEST_F(EveryFunction, refusesNull)
{
    forEach([&](const Query& query, bool isList) {
        MATTER garbage {};
        for (const bool isDatabaseKnown : { true, false }) {
            for (const bool isPointer : { true, false }) {
                Outputs outputs { &garbage, 77, isPointer || !isList, !isPointer || !isDatabaseKnown };
                Ids ids = query.ids;
                ids[0] = isDatabaseKnown ? ids[0] : foreign_.id + 1;
                EXPECT_EQ(query.call(ids, outputs), isDatabaseKnown ? QMDB_E_NULL_POINTER : QMDB_E_NOT_FOUND);
                EXPECT_EQ(outputs.pointer, &garbage);
                EXPECT_EQ(outputs.count, 77);
            }
        }
    });
    EXPECT_EQ(qmdbGetParamValue(db_.id, 4, 2, 3, 7, nullptr), QMDB_E_NOT_FOUND);
}

TEST(Arguments, nullTextsOfOpenAreEmpty)
{
    const TempDatabase tree(water);
    long id = 77;
    EXPECT_EQ(qmdbOpen(tree.path().c_str(), nullptr, nullptr, true, &id), QMDB_OK);
    EXPECT_TRUE(tree.exists("qmdb.log"));
    EXPECT_EQ(listing(id), waterListing);
    EXPECT_EQ(qmdbClose(id), QMDB_OK);
    EXPECT_EQ(qmdbOpen(nullptr, L"", tree.path().c_str(), false, &id), QMDB_E_FILE);
    EXPECT_EQ(id, -1);
    tree.clearLog();
    EXPECT_EQ(qmdbOpen(tree.path().c_str(), L"", L"", true, nullptr), QMDB_E_NULL_POINTER);
    EXPECT_FALSE(tree.exists("qmdb.log")) << "nothing is opened";
}

template <class Record>
void expectDestroys(int (*destroy)(Record**), Record* made)
{
    Record* given = made;
    EXPECT_EQ(destroy(&given), QMDB_OK);
    EXPECT_EQ(given, made) << "the caller's pointer stays";
    given = nullptr;
    EXPECT_EQ(destroy(&given), QMDB_E_NULL_POINTER);
    EXPECT_EQ(destroy(nullptr), QMDB_E_NULL_POINTER);
}

TEST(Arguments, destroyEveryKind)
{
    auto* matters = new MATTER[3] {};
    matters[1].mixture = 2;
    matters[1].composition = new COMPONENT[4];
    expectDestroys(qmdbDestroyMatterArray, matters);
    expectDestroys(qmdbDestroyPhasesArray, new PHASE[2]);
    expectDestroys(qmdbDestroyPhaseChangeArray, new PHASECHANGE[2]);
    expectDestroys(qmdbDestroyParametersArray, new PARAMETER[2]);
    expectDestroys(qmdbDestroyParamDescrArray, new PARAMETERDESCR[2]);
    auto* table = new IDbDataTable2DVector;
    table->subtables = new SUBTABLEVECT[2];
    table->subtables[0].rows = new TABLEROWVECT[3];
    expectDestroys<IDbData>(qmdbDestroyParameterData, table);
}

// ------------------------------------------------------------------ what stands in records and values

constexpr wchar_t codePoints[]
    = { 0x7F, 0x80, 0xD800, 0xDFFF, 0xFFFE, 0x10FFFF, 0x110000, 0x7FFFFFFF, -1, WCHAR_MIN };

TEST(Arguments, unterminatedTextsOfAnyCharacter)
{
    for (const wchar_t character : codePoints) {
        SCOPED_TRACE(static_cast<long>(character));
        const TempDatabase tree(base);
        const OpenDatabase db(tree);
        const BeforeGuard<MATTER> matter;
        const BeforeGuard<PHASE> phase;
        const BeforeGuard<PHASECHANGE> change;
        for (wchar_t* const field : { matter->name, matter->comment, phase->name, change->name }) {
            std::fill_n(field, fullField.size(), character);
        }
        // No zero behind the texts ends them.
        phase->aggreg = static_cast<MATTER_STATE>('A');
        change->phase1 = change->phase2 = 'A' * ((1L << 32) + 1);
        const bool isText = character >= 0 && character < 0x110000;
        for (const int code : { qmdbAddMatter(db.id, matter.get()), qmdbAddPhase(db.id, 4, phase.get()),
                 qmdbAddPhaseChange(db.id, 4, change.get()) }) {
            EXPECT_TRUE(isText ? code >= QMDB_OK : code == QMDB_E_FILE) << code;
        }
        const std::string text = toUtf8(std::wstring(fullField.size(), character));
        for (const char* const file :
            { "W/Phase1/Phase1.phd", "W/PC1/PC1.pcd", "Substance1/Substance1.mtd" }) {
            EXPECT_EQ(tree.read(file).find("Name=" + text + "\n") != std::string::npos, isText) << file;
        }
        const std::string shown = listing(OpenDatabase(tree).id);
        const std::string cut = "'" + toUtf8(std::wstring(fullField.size() - 1, character)) + "' state 65";
        EXPECT_EQ(shown.find(cut) != std::string::npos, isText);
        fill(matter->name, L"A name");
        EXPECT_EQ(qmdbAddMatter(db.id, matter.get()) >= QMDB_OK, isText) << "the comment";
    }
}

TEST(Arguments, textsOfOpen)
{
    const TempDatabase tree(water);
    const std::wstring path = tree.path();
    const BeforeGuard<wchar_t> guarded(path.size() + 1);
    std::copy_n(path.c_str(), path.size() + 1, guarded.get());
    const BeforeGuard<wchar_t> language(2);
    std::copy_n(L"r", 2, language.get());
    long id = 0;
    EXPECT_EQ(qmdbOpen(guarded.get(), language.get(), guarded.get(), true, &id), QMDB_OK);
    EXPECT_EQ(listing(id), waterListing);
    EXPECT_EQ(qmdbClose(id), QMDB_OK);
    for (const wchar_t character : codePoints) {
        const std::wstring odd = path + L'/' + character;
        EXPECT_EQ(qmdbOpen(path.c_str(), odd.c_str() + path.size() + 1, L"", true, &id), QMDB_OK);
        EXPECT_EQ(qmdbClose(id), QMDB_OK);
        if (character != 0x7F) { // which is ASCII, and so the name of a directory that is not there
            EXPECT_EQ(qmdbOpen(odd.c_str(), L"", L"", true, &id), QMDB_E_FILE);
            EXPECT_EQ(id, -1);
        }
    }
}

double written(double number)
{
    char text[40];
    std::snprintf(text, sizeof text, "%lg", number);
    return std::strtod(text, nullptr);
}

template <class Row>
void fillRow(Row& row, double argument, double component)
{
    if constexpr (std::is_same_v<Row, TABLEROW>) {
        row = { argument, component };
    } else {
        row = { argument, component, component, component };
    }
}

/// Adds a value whose parts lie before guards, with one row at most, and whose own type and form are not what
/// it is. Returns what is read of it.
template <class Value, class Row, class Subtable, int type>
std::string roundTrip(double argument, double component, long count, bool hasRows)
{
    constexpr bool isVector = std::is_same_v<Row, TABLEROWVECT>;
    const TempDatabase tree(base);
    const OpenDatabase db(tree);
    const BeforeGuard<Value> value;
    const BeforeGuard<Subtable> subtable;
    const BeforeGuard<Row> row;
    value->type = static_cast<PARAM_TYPE>(type + 77);
    value->isVector = !isVector;
    fillRow(*row.get(), argument, component);
    if constexpr (type == PARAM_TYPE_TABLE_T) {
        value->rows = hasRows ? row.get() : nullptr;
        value->count = count;
    } else if constexpr (type == PARAM_TYPE_TABLE2D_T) {
        subtable->firstArg = argument;
        subtable->count = count;
        subtable->rows = hasRows ? row.get() : nullptr;
        value->subtables = hasRows || count < 2 ? subtable.get() : nullptr;
        value->count = count;
    } else if constexpr (isVector) {
        value->x = value->y = value->z = component;
    } else {
        value->value = component;
    }
    EXPECT_EQ(addParam(db.id, { 4 }, { 20, type, isVector }, value.get()), QMDB_OK);
    expectAgreement(tree, db);
    return valueText(db.id, { 4 }, 20);
}

struct ValueKind {
    bool isTable;
    std::string (*roundTrip)(double argument, double component, long count, bool hasRows);
    std::string (*shown)(const std::string& argument, const std::string& component);
};

const ValueKind valueKinds[] = {
    { false, roundTrip<IDbDataConst, TABLEROW, SUBTABLECONST, PARAM_TYPE_CONSTANT>,
        [](const auto&, const auto& y) { return y; } },
    { false, roundTrip<IDbDataConstVector, TABLEROWVECT, SUBTABLEVECT, PARAM_TYPE_CONSTANT>,
        [](const auto&, const auto& y) { return y + " " + y + " " + y; } },
    { true, roundTrip<IDbDataTable, TABLEROW, SUBTABLECONST, PARAM_TYPE_TABLE_T>,
        [](const auto& x, const auto& y) { return "(" + x + " " + y + ")"; } },
    { true, roundTrip<IDbDataTableVector, TABLEROWVECT, SUBTABLEVECT, PARAM_TYPE_TABLE_T>,
        [](const auto& x, const auto& y) { return "(" + x + " " + y + " " + y + " " + y + ")"; } },
    { true, roundTrip<IDbDataTable2D, TABLEROW, SUBTABLECONST, PARAM_TYPE_TABLE2D_T>,
        [](const auto& x, const auto& y) { return "P=" + x + "(" + x + " " + y + ")"; } },
    { true, roundTrip<IDbDataTable2DVector, TABLEROWVECT, SUBTABLEVECT, PARAM_TYPE_TABLE2D_T>,
        [](const auto& x, const auto& y) { return "P=" + x + "(" + x + " " + y + " " + y + " " + y + ")"; } },
};

TEST(Arguments, valuesOfAnyNumberAndCount)
{
    Reliability values("hostile arguments");
    const double numbers[] = { 1, -0.0, NAN, -NAN, INFINITY, -INFINITY, DBL_MAX, -DBL_MAX, 5e-324, 1.0 / 3 };
    for (const ValueKind& kind : valueKinds) {
        for (const double argument : numbers) {
            for (const double component : numbers) {
                const std::string wanted = kind.isTable && std::isnan(argument)
                    ? "error -11"
                    : kind.shown(numberText(written(argument)), numberText(written(component)));
                EXPECT_EQ(kind.roundTrip(argument, component, 1, true), wanted);
                ++values.cases;
            }
        }
        for (const long count : { LONG_MIN, -1L, 0L }) {
            EXPECT_EQ(kind.roundTrip(1, 2, count, true), kind.isTable ? "error -9" : kind.shown("1", "2"));
        }
        for (const long count : { 1L, LONG_MAX }) {
            EXPECT_EQ(kind.roundTrip(1, 2, count, false), kind.isTable ? "error -9" : kind.shown("1", "2"));
        }
    }
}

struct Mixture {
    long mixture;
    long count;
    double fractions[2];
    int code;
    bool isNull = false;
};

const Mixture mixtures[] = {
    { 1, 2, { 0.25, 0.75 }, 1 },
    { -1, 2, { 0.25, 0.75 }, 1 }, // a mixture, too
    { LONG_MAX, 2, { 0.25, 0.75 }, 1 },
    { 1, 2, { -1, 2 }, 1 }, // nothing but the sum is looked at
    { 1, 2, { NAN, 0.75 }, 1 }, // a sum that is no number is neither too small nor too large
    { 1, 2, { INFINITY, -INFINITY }, 1 },
    { 1, 2, { INFINITY, 0 }, QMDB_E_FRACTIONS },
    { 1, 2, { DBL_MAX, 0 }, QMDB_E_FRACTIONS },
    { 1, 0, { 0.25, 0.75 }, QMDB_E_FRACTIONS },
    { 1, -1, { 0.25, 0.75 }, QMDB_E_FRACTIONS },
    { 1, LONG_MIN, { 0.25, 0.75 }, QMDB_E_FRACTIONS },
    { 1, LONG_MAX, {}, QMDB_E_FRACTIONS, true },
    { 0, LONG_MAX, {}, 1, true },
};

TEST(Arguments, mixtures)
{
    for (const Mixture& row : mixtures) {
        SCOPED_TRACE(&row - mixtures);
        const TempDatabase tree(base);
        const OpenDatabase db(tree);
        const BeforeGuard<COMPONENT> parts(2);
        parts.get()[0] = { 4, row.fractions[0] };
        parts.get()[1] = { LONG_MIN, row.fractions[1] };
        const BeforeGuard<MATTER> matter;
        matter->mixture = row.mixture;
        matter->compositionCount = row.count;
        matter->composition = row.isNull ? nullptr : parts.get();
        const int code = qmdbAddMatter(db.id, matter.get());
        EXPECT_EQ(code < QMDB_OK ? code : 1, row.code);
        EXPECT_EQ(OpenDatabase(tree).code, QMDB_OK);
    }
}

TEST(Arguments, enumerationsOfAnyNumber)
{
    const TempDatabase tree(base);
    const OpenDatabase db(tree);
    const BeforeGuard<PHASECHANGE> change;
    const BeforeGuard<PARAMETER> param;
    const IDbDataConst value;
    int number = 0;
    for (const long extreme : { LONG_MIN, long { INT_MIN }, -1L, 0L, 6L, long { INT_MAX }, LONG_MAX }) {
        const auto cut = static_cast<int>(extreme);
        fill(change->name, std::to_wstring(++number));
        change->phase1 = extreme;
        change->phase2 = -1 - extreme;
        EXPECT_GE(qmdbAddPhaseChange(db.id, 4, change.get()), QMDB_OK);
        EXPECT_GE(addPhase(db.id, 4, std::to_wstring(number), cut), QMDB_OK);
        param->id = 20;
        param->type = static_cast<PARAM_TYPE>(cut);
        EXPECT_EQ(qmdbAddMatterParam(db.id, 4, param.get(), &value), QMDB_E_TYPE_NOT_ALLOWED);
    }
    param->type = PARAM_TYPE_CONSTANT;
    EXPECT_EQ(qmdbAddMatterParam(db.id, 4, param.get(), nullptr), QMDB_E_NULL_POINTER);
    EXPECT_EQ(OpenDatabase(tree).code, QMDB_OK);
}

} // namespace
