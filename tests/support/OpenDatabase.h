#pragma once

#include "qmdatabase/QMNative.h"
#include "support/TempDatabase.h"

#include <memory>
#include <string>

namespace test {

struct OpenOptions {
    std::wstring language = {};
    std::wstring logDir = {};
    bool logInfo = false;
};

/// A database opened through the exported function; closed with the object.
class OpenDatabase {
public:
    explicit OpenDatabase(const TempDatabase& tree, const OpenOptions& options = {});
    OpenDatabase(const std::wstring& path, const OpenOptions& options);
    ~OpenDatabase();
    OpenDatabase(const OpenDatabase&) = delete;
    OpenDatabase& operator=(const OpenDatabase&) = delete;

    long id = 0;
    int code;
};

/// An array that the library handed out.
template <class Record, int (*destroy)(Record**)>
struct Handed {
    Record* records = nullptr;
    int count = 0;

    Handed() = default;
    Handed(const Handed&) = delete;
    Handed& operator=(const Handed&) = delete;
    ~Handed()
    {
        if (records) {
            destroy(&records);
        }
    }
    Record* begin() const { return records; }
    Record* end() const { return records ? records + count : nullptr; }
};

using Matters = Handed<MATTER, qmdbDestroyMatterArray>;
using Phases = Handed<PHASE, qmdbDestroyPhasesArray>;
using PhaseChanges = Handed<PHASECHANGE, qmdbDestroyPhaseChangeArray>;
using Parameters = Handed<PARAMETER, qmdbDestroyParametersArray>;
using Descriptions = Handed<PARAMETERDESCR, qmdbDestroyParamDescrArray>;

struct DestroyValue {
    void operator()(IDbData* value) const { qmdbDestroyParameterData(&value); }
};
using Value = std::unique_ptr<IDbData, DestroyValue>;

/// Where a parameter hangs; -1 stands for "none".
struct Owner {
    long matter;
    long phase = -1;
    long change = -1;
};

/// A value read through the exported function, as text; "error <code>" on failure.
std::string valueText(long database, const Owner& owner, long parameter);

/// A whole database, values included, as one text. Empty lists leave no trace.
std::string listing(long database);

std::string toUtf8(std::wstring_view text);

/// The shortest text that reads back as the same number.
std::string numberText(double number);

} // namespace test
