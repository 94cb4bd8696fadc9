#include "support/OpenDatabase.h"

#include <array>
#include <charconv>

namespace test {

namespace {

template <class... Texts>
std::string join(const Texts&... texts)
{
    std::string text;
    (text.append(texts), ...);
    return text;
}

std::string rowText(const TABLEROW& row)
{
    return join("(", numberText(row.x), " ", numberText(row.y), ")");
}

std::string rowText(const TABLEROWVECT& row)
{
    return join("(", numberText(row.x), " ", numberText(row.vx), " ", numberText(row.vy), " ",
        numberText(row.vz), ")");
}

template <class Table>
std::string rowsText(const Table& table)
{
    std::string text;
    for (long i = 0; i < table.count; ++i) {
        text += rowText(table.rows[i]);
    }
    return text;
}

template <class Table>
std::string subtablesText(const Table& table)
{
    std::string text;
    for (long i = 0; i < table.count; ++i) {
        text += join("P=", numberText(table.subtables[i].firstArg), rowsText(table.subtables[i]));
    }
    return text;
}

// No dynamic_cast: type information does not cross the library's boundary.
std::string contentText(const IDbData& value)
{
    switch (value.type) {
    case PARAM_TYPE_CONSTANT: {
        if (!value.isVector) {
            return numberText(static_cast<const IDbDataConst&>(value).value);
        }
        const auto& vector = static_cast<const IDbDataConstVector&>(value);
        return join(numberText(vector.x), " ", numberText(vector.y), " ", numberText(vector.z));
    }
    case PARAM_TYPE_TABLE_T:
    case PARAM_TYPE_TABLE_P:
        return value.isVector ? rowsText(static_cast<const IDbDataTableVector&>(value))
                              : rowsText(static_cast<const IDbDataTable&>(value));
    default:
        return value.isVector ? subtablesText(static_cast<const IDbDataTable2DVector&>(value))
                              : subtablesText(static_cast<const IDbDataTable2D&>(value));
    }
}

std::string paramsText(long database, const Owner& owner, std::string_view indent)
{
    Parameters found;
    const int code = owner.phase != -1
        ? qmdbGetPhaseParams(database, owner.matter, owner.phase, &found.records, &found.count)
        : owner.change != -1
        ? qmdbGetPhaseChangeParams(database, owner.matter, owner.change, &found.records, &found.count)
        : qmdbGetMatterParams(database, owner.matter, &found.records, &found.count);
    if (code != QMDB_OK && code != QMDB_E_EMPTY) {
        return join(indent, "params: error ", std::to_string(code), "\n");
    }
    std::string text;
    for (const PARAMETER& param : found) {
        text += join(indent, "param ", std::to_string(param.id), " type ", std::to_string(param.type),
            param.vector ? " vector '" : " scalar '", toUtf8(param.name), "' '", toUtf8(param.units),
            "' = ", valueText(database, owner, param.id), "\n");
    }
    return text;
}

std::string childrenText(long database, long matter)
{
    std::string text = paramsText(database, { matter }, "  ");
    Phases phases;
    qmdbGetPhases(database, matter, &phases.records, &phases.count);
    for (const PHASE& phase : phases) {
        text += join("  phase ", std::to_string(phase.id), " '", toUtf8(phase.name), "' state ",
            std::to_string(phase.aggreg), "\n");
        text += paramsText(database, { matter, phase.id }, "    ");
    }
    PhaseChanges changes;
    qmdbGetPhaseChanges(database, matter, &changes.records, &changes.count);
    for (const PHASECHANGE& change : changes) {
        text += join("  change ", std::to_string(change.id), " '", toUtf8(change.name), "' ",
            std::to_string(change.phase1), " to ", std::to_string(change.phase2), "\n");
        text += paramsText(database, { matter, -1, change.id }, "    ");
    }
    return text;
}

} // namespace

OpenDatabase::OpenDatabase(const TempDatabase& tree, const OpenOptions& options)
    : OpenDatabase(tree.path(), options)
{
}

OpenDatabase::OpenDatabase(const std::wstring& path, const OpenOptions& options)
    : code(qmdbOpen(path.c_str(), options.language.c_str(), options.logDir.c_str(), options.logInfo, &id))
{
}

OpenDatabase::~OpenDatabase()
{
    qmdbClose(id);
}

std::string valueText(long database, const Owner& owner, long parameter)
{
    IDbData* raw = nullptr;
    const int code = qmdbGetParamValue(database, owner.matter, owner.phase, owner.change, parameter, &raw);
    const Value value(raw);
    return code == QMDB_OK ? contentText(*value)
                           : join(value ? "leaked " : "", "error ", std::to_string(code));
}

std::string listing(long database)
{
    Matters matters;
    const int code = qmdbGetMatters(database, &matters.records, &matters.count);
    if (code != QMDB_OK && code != QMDB_E_EMPTY) {
        return join("error ", std::to_string(code), ", count ", std::to_string(matters.count), "\n");
    }
    std::string text;
    for (const MATTER& matter : matters) {
        text += join("matter ", std::to_string(matter.id), " '", toUtf8(matter.name), "' '",
            toUtf8(matter.comment), "' mixture ", std::to_string(matter.mixture));
        for (long i = 0; i < matter.compositionCount; ++i) {
            const COMPONENT& part = matter.composition[i];
            text += join(" ", std::to_string(part.matterId), ":", numberText(part.molarFraction));
        }
        text += "\n" + childrenText(database, matter.id);
    }
    return text;
}

std::string toUtf8(std::wstring_view text)
{
    std::string bytes;
    for (const wchar_t wide : text) {
        const auto point = static_cast<char32_t>(wide);
        const auto put = [&](char32_t lead, int shift) {
            bytes += static_cast<char>(lead | (point >> shift));
            while (shift > 0) {
                shift -= 6;
                bytes += static_cast<char>(0x80 | ((point >> shift) & 0x3F));
            }
        };
        point < 0x80          ? put(0, 0)
            : point < 0x800   ? put(0xC0, 6)
            : point < 0x10000 ? put(0xE0, 12)
                              : put(0xF0, 18);
    }
    return bytes;
}

std::string numberText(double number)
{
    std::array<char, 40> buffer;
    return { buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr };
}

} // namespace test
