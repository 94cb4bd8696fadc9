#pragma once

#include "common/failure.h"

#include <memory>
#include <optional>
#include <sqlite3.h>
#include <string>
#include <string_view>

namespace tool {

/// A new SQLite file.
class Sqlite {
public:
    explicit Sqlite(const std::string& file)
    {
        sqlite3* opened = nullptr;
        const int result
            = sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
        handle_.reset(opened);
        check(result);
    }

    void run(const char* statements)
    {
        check(sqlite3_exec(handle_.get(), statements, nullptr, nullptr, nullptr));
    }

    void check(int result) const
    {
        if (result != SQLITE_OK && result != SQLITE_DONE) {
            throw Failure("SQLite: {}", sqlite3_errmsg(handle_.get()));
        }
    }

    long lastRow() const { return sqlite3_last_insert_rowid(handle_.get()); }

    sqlite3* get() const noexcept { return handle_.get(); }

private:
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };

    std::unique_ptr<sqlite3, Close> handle_;
};

/// A statement that is run again and again with new values.
class SqliteStatement {
public:
    SqliteStatement(const Sqlite& database, const char* text)
        : database_(database)
    {
        sqlite3_stmt* prepared = nullptr;
        database_.check(sqlite3_prepare_v2(database_.get(), text, -1, &prepared, nullptr));
        handle_.reset(prepared);
    }

    template <class... Values>
    void run(const Values&... values)
    {
        int index = 0;
        (database_.check(bind(++index, values)), ...);
        database_.check(sqlite3_step(handle_.get()));
        database_.check(sqlite3_reset(handle_.get()));
    }

private:
    struct Finalize {
        void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
    };

    int bind(int index, long value) { return sqlite3_bind_int64(handle_.get(), index, value); }
    int bind(int index, double value) { return sqlite3_bind_double(handle_.get(), index, value); }
    int bind(int index, std::string_view value)
    {
        return sqlite3_bind_text(handle_.get(), index, value.empty() ? "" : value.data(),
            static_cast<int>(value.size()), SQLITE_TRANSIENT);
    }
    template <class Value>
    int bind(int index, const std::optional<Value>& value)
    {
        return value ? bind(index, *value) : sqlite3_bind_null(handle_.get(), index);
    }

    const Sqlite& database_;
    std::unique_ptr<sqlite3_stmt, Finalize> handle_;
};

} // namespace tool
