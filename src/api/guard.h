#pragma once

#include "api/engine.h"
#include "qm/EQMException.h"
#include "qmdatabase/status.h"

#include <exception>
#include <utility>

/// Runs the body of an exported function: no exception goes further. Its text goes to the log.
template <class Call>
int guarded(const CLog& log, Call&& call) noexcept
try {
    try {
        return std::forward<Call>(call)();
    } catch (const qm::EQMException& exception) {
        log.error(exception.what());
        return QMDB_E_FILE;
    } catch (const std::exception& exception) {
        log.error(exception.what());
        return QMDB_E_INTERNAL;
    }
} catch (...) {
    return QMDB_E_INTERNAL; // no memory even for the log line
}

template <class Input>
void reset(const Input&) noexcept
{
}

template <class Output>
void reset(Output& output) noexcept
{
    output = {};
}

/// Looks a database up and runs the body on it. Every pointer given must not be null; what those to outputs,
/// which are not const, point to is reset first.
template <class Call, class... Pointers>
int onDatabase(long databaseId, Call&& call, Pointers*... required) noexcept
{
    CDatabase* database = nullptr;
    if (const int code = dbEngine.getDatabase(databaseId, database); code != QMDB_OK) {
        return code;
    }
    if ((!required || ...)) {
        return QMDB_E_NULL_POINTER;
    }
    (reset(*required), ...);
    return guarded(database->log(), [&] { return call(*database); });
}
