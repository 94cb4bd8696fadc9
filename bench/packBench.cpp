// The other way to keep such a database: all descriptors in one SQLite or one JSON file. Reading it whole
// into a map for each descriptor, and adding one substance durably.
#include "library.h"
#include "scratch.h"
#include "treeCases.h"
#include "treeWalk.h"

#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <simdjson.h>
#include <sqlite3.h>
#include <stdexcept>

namespace bench {

namespace {

namespace fs = std::filesystem;

using Keys = std::map<std::string, std::string>;
using Descriptors = std::vector<std::pair<std::string, Keys>>;

Descriptors descriptorsOf(const fs::path& root)
{
    Descriptors descriptors;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        if (entry.is_regular_file() && isDescriptor(entry.path().filename().string())) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string text { std::istreambuf_iterator<char>(file), {} };
            Keys& keys
                = descriptors.emplace_back(entry.path().lexically_relative(root).string(), Keys()).second;
            forEachEntry(
                text, [&](std::string_view key, std::string_view value) { keys.emplace(key, value); });
        }
    }
    return descriptors;
}

struct CloseSqlite {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Sqlite = std::unique_ptr<sqlite3, CloseSqlite>;
using Statement = std::unique_ptr<sqlite3_stmt, CloseSqlite>;

Sqlite openSqlite(const fs::path& file)
{
    sqlite3* database = nullptr;
    if (sqlite3_open(file.c_str(), &database) != SQLITE_OK) {
        throw std::runtime_error("cannot open " + file.string());
    }
    return Sqlite(database);
}

void run(const Sqlite& database, const char* sql)
{
    if (sqlite3_exec(database.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database.get()));
    }
}

Statement prepare(const Sqlite& database, const char* sql)
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database.get(), sql, -1, &statement, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database.get()));
    }
    return Statement(statement);
}

void insert(const Statement& statement, sqlite3_int64 file, const std::string& key, const std::string& value)
{
    sqlite3_bind_int64(statement.get(), 1, file);
    sqlite3_bind_text(statement.get(), 2, key.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(statement.get(), 3, value.c_str(), -1, SQLITE_TRANSIENT);
    if (sqlite3_step(statement.get()) != SQLITE_DONE) {
        throw std::runtime_error("cannot insert");
    }
    sqlite3_reset(statement.get());
}

std::string_view column(const Statement& statement, int number)
{
    return { reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), number)),
        static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), number)) };
}

constexpr const char* schema
    = "CREATE TABLE entry(file INTEGER, key TEXT, value TEXT, PRIMARY KEY(file, key)) WITHOUT ROWID";
constexpr const char* insertion = "INSERT INTO entry VALUES(?, ?, ?)";

/// The path stands under the empty key, which no descriptor here has.
void packSqlite(const Descriptors& descriptors, const fs::path& file)
{
    const Sqlite database = openSqlite(file);
    run(database, schema);
    run(database, "BEGIN");
    const Statement statement = prepare(database, insertion);
    sqlite3_int64 number = 0;
    for (const auto& [path, keys] : descriptors) {
        insert(statement, ++number, "", path);
        for (const auto& [key, value] : keys) {
            insert(statement, number, key, value);
        }
    }
    run(database, "COMMIT");
}

Descriptors readSqlite(const fs::path& file)
{
    const Sqlite database = openSqlite(file);
    const Statement statement = prepare(database, "SELECT key, value FROM entry ORDER BY file, key");
    Descriptors descriptors;
    while (sqlite3_step(statement.get()) == SQLITE_ROW) {
        const std::string_view key = column(statement, 0);
        if (key.empty()) {
            descriptors.emplace_back(column(statement, 1), Keys());
        } else {
            Keys& keys = descriptors.back().second;
            keys.emplace_hint(keys.end(), key, column(statement, 1));
        }
    }
    return descriptors;
}

void packJson(const Descriptors& descriptors, const fs::path& file)
{
    nlohmann::json pack;
    for (const auto& [path, keys] : descriptors) {
        pack[path] = keys;
    }
    std::ofstream(file) << pack;
}

Descriptors readJson(const fs::path& file)
{
    simdjson::ondemand::parser parser;
    const simdjson::padded_string text = simdjson::padded_string::load(file.string());
    simdjson::ondemand::document document = parser.iterate(text);
    Descriptors descriptors;
    for (auto entry : document.get_object()) {
        const std::string_view path = entry.unescaped_key();
        Keys& keys = descriptors.emplace_back(path, Keys()).second;
        for (auto pair : entry.value().get_object()) {
            const std::string_view key = pair.unescaped_key();
            const std::string_view value = pair.value().get_string();
            keys.emplace_hint(keys.end(), key, value);
        }
    }
    return descriptors;
}

using Pack = void (*)(const Descriptors&, const fs::path&);
using Read = Descriptors (*)(const fs::path&);

/// Packs are made when first asked for, as the trees are.
const fs::path& packOf(const TreeShape& shape, Pack pack)
{
    static const ScratchDirectory directory(Place::memory);
    static std::map<std::pair<TreeShape, Pack>, fs::path> packs;
    const auto [entry, isNew]
        = packs.try_emplace({ shape, pack }, directory.path() / std::to_string(packs.size()));
    if (isNew) {
        pack(descriptorsOf(treeOf(shape)), entry->second);
    }
    return entry->second;
}

void readPack(benchmark::State& state, const TreeShape& shape, Pack pack, Read read)
{
    const fs::path& file = packOf(shape, pack);
    for (auto _ : state) {
        benchmark::DoNotOptimize(read(file));
    }
}

/// One transaction for each substance, which is on the disk when it ends.
void addToSqlite(benchmark::State& state)
{
    const ScratchDirectory directory(Place::disk);
    const Sqlite database = openSqlite(directory.path() / "pack");
    run(database, "PRAGMA synchronous=FULL");
    run(database, schema);
    const Statement statement = prepare(database, insertion);
    const Keys keys = { { "", "Substance17/Substance17.mtd" }, { "Comment", "Reference data" },
        { "CommentID", "35" }, { "Composition", "" }, { "ID", "17" }, { "Mixture", "0" },
        { "Name", "Added 17" }, { "NameID", "34" } };
    sqlite3_int64 number = 0;
    for (auto _ : state) {
        ++number;
        run(database, "BEGIN");
        for (const auto& [key, value] : keys) {
            insert(statement, number, key, value);
        }
        run(database, "COMMIT");
    }
}

} // namespace

void addPackCases()
{
    for (const TreeCase& tree : wholeTreeCases("open")) {
        const TreeShape shape = tree.shape;
        addCase(tree.name, "SQLite",
            [=](benchmark::State& state) { readPack(state, shape, packSqlite, readSqlite); });
        addCase(
            tree.name, "JSON", [=](benchmark::State& state) { readPack(state, shape, packJson, readJson); });
    }
    const CaseName addition { "add substance on disk", Scale::small, "substances:100" };
    addCase(addition, "SQLite", addToSqlite)->Iterations(1)->Repetitions(40)->UseRealTime();
}

} // namespace bench
