#include "database/Database.h"

#include "common/encodings.h"
#include "common/failure.h"
#include "database/statusText.h"

#include <algorithm>
#include <fmt/ranges.h>
#include <memory>
#include <span>

#include "qmdatabase/QMNative.h"

namespace tool {

namespace {

/// An array that the library has handed out; it goes back whole at the end.
template <class Record>
class Records {
public:
    using Release = int (*)(Record**);

    explicit Records(Release release)
        : release_(release)
    {
    }
    Records(const Records&) = delete;
    Records& operator=(const Records&) = delete;
    ~Records()
    {
        if (first) {
            release_(&first);
        }
    }

    std::span<const Record> all() const { return { first, first ? static_cast<std::size_t>(count) : 0 }; }

    Record* first = nullptr;
    int count = 0;

private:
    Release release_;
};

std::vector<COMPONENT> compositionOf(const MATTER& matter)
{
    if (!matter.composition) {
        return {};
    }
    return { matter.composition, matter.composition + matter.compositionCount };
}

Parameter parameterOf(const PARAMETER& record)
{
    return { record.id, toUtf8(record.name), toUtf8(record.units), record.type, record.vector };
}

/// A database may do without string tables, though the log tells of each that is missing.
bool isMissingTable(std::string_view line)
{
    return line.starts_with("Cannot open file: ") && line.ends_with(".lst");
}

/// Gives a value back to the library.
struct Release {
    void operator()(IDbData* value) const { qmdbDestroyParameterData(&value); }
};

} // namespace

Database::Database(const Location& location)
    : directory_(location.directory)
    , log_(location.logDirectory)
{
    const std::wstring path = toWide(location.directory);
    const std::wstring language = toWide(location.language);
    const std::wstring log = toWide(fromLocale(log_.path().c_str()));
    const bool logInfo = !log_.isTemporary();
    checkList(qmdbOpen(path.c_str(), language.c_str(), log.c_str(), logInfo, &id_),
        fmt::format("cannot open \"{}\"", location.directory));
    auto complaints = log_.newErrors();
    std::erase_if(complaints, [](const std::string& line) { return isMissingTable(line); });
    if (!complaints.empty() && !location.quiet) {
        fmt::print(
            stderr, "qmdb: warning: {}\nqmdb: {}\n", fmt::join(complaints, "; "), checkHint(directory_));
    }
}

Database::~Database()
{
    qmdbClose(id_);
}

std::string Database::failureText(int status, std::string_view what) const
{
    auto details = log_.newErrors();
    std::ranges::transform(details, details.begin(), detailText);
    return fmt::format("{}: {} ({}){}{}", what, statusText(status), status, details.empty() ? "" : ": ",
        fmt::join(details, "; "));
}

int Database::check(int status, std::string_view what) const
{
    if (status < 0) {
        throw Failure(failureText(status, what));
    }
    return status;
}

/// For what reads descriptors: an empty list is none of the failures, and the others can be looked into.
void Database::checkList(int status, std::string_view what) const
{
    if (status < 0 && status != QMDB_E_EMPTY) {
        throw Failure("{}\n{}", failureText(status, what), checkHint(directory_));
    }
}

std::vector<Substance> Database::substances() const
{
    Records<MATTER> records(qmdbDestroyMatterArray);
    const int status = qmdbGetMatters(id_, &records.first, &records.count);
    checkList(status, "cannot list the substances");
    std::vector<Substance> substances;
    for (const MATTER& record : records.all()) {
        substances.push_back({ record.id, toUtf8(record.name), toUtf8(record.comment), record.mixture,
            compositionOf(record) });
    }
    return substances;
}

std::vector<Owner> Database::phases(long substance) const
{
    Records<PHASE> records(qmdbDestroyPhasesArray);
    const int status = qmdbGetPhases(id_, substance, &records.first, &records.count);
    checkList(status, "cannot list the phases");
    std::vector<Owner> phases;
    for (const PHASE& record : records.all()) {
        phases.push_back({ Owner::Kind::Phase, record.id, toUtf8(record.name), record.aggreg, -1, -1 });
    }
    return phases;
}

std::vector<Owner> Database::changes(long substance) const
{
    Records<PHASECHANGE> records(qmdbDestroyPhaseChangeArray);
    const int status = qmdbGetPhaseChanges(id_, substance, &records.first, &records.count);
    checkList(status, "cannot list the phase changes");
    std::vector<Owner> changes;
    for (const PHASECHANGE& record : records.all()) {
        changes.push_back({ Owner::Kind::Change, record.id, toUtf8(record.name), MATTER_STATE_NOT_GIVEN,
            record.phase1, record.phase2 });
    }
    return changes;
}

std::vector<Owner> Database::owners(long substance) const
{
    std::vector<Owner> owners(1);
    for (const auto& more : { phases(substance), changes(substance) }) {
        owners.insert(owners.end(), more.begin(), more.end());
    }
    return owners;
}

std::vector<Parameter> Database::parameters(long substance, const Owner& owner) const
{
    Records<PARAMETER> records(qmdbDestroyParametersArray);
    const auto list = [&] {
        switch (owner.kind) {
        case Owner::Kind::Phase:
            return qmdbGetPhaseParams(id_, substance, owner.id, &records.first, &records.count);
        case Owner::Kind::Change:
            return qmdbGetPhaseChangeParams(id_, substance, owner.id, &records.first, &records.count);
        case Owner::Kind::Substance:
            break;
        }
        return qmdbGetMatterParams(id_, substance, &records.first, &records.count);
    };
    const int status = list();
    checkList(status, "cannot list the parameters");
    std::vector<Parameter> parameters;
    for (const PARAMETER& record : records.all()) {
        parameters.push_back(parameterOf(record));
    }
    return parameters;
}

std::vector<Description> Database::descriptions(long substance, long phase) const
{
    Records<PARAMETERDESCR> records(qmdbDestroyParamDescrArray);
    checkList(qmdbGetAvailablePhaseParams(id_, substance, phase, &records.first, &records.count),
        "cannot list the parameter descriptions");
    std::vector<Description> descriptions;
    for (const PARAMETERDESCR& record : records.all()) {
        descriptions.push_back({ record.id, toUtf8(record.name), toUtf8(record.units), record.scalar,
            record.vector, toUtf8(record.dataTypes) });
    }
    return descriptions;
}

Table Database::value(long substance, const Owner& owner, long parameter) const
{
    const long phase = owner.kind == Owner::Kind::Phase ? owner.id : -1;
    const long change = owner.kind == Owner::Kind::Change ? owner.id : -1;
    IDbData* handedOut = nullptr;
    const int status = qmdbGetParamValue(id_, substance, phase, change, parameter, &handedOut);
    const std::unique_ptr<IDbData, Release> value(handedOut);
    if (status != QMDB_OK) {
        throw UnreadableValue(failureText(status, "cannot read the value"));
    }
    return flatten(*value);
}

long Database::addSubstance(const MATTER& substance)
{
    return check(qmdbAddMatter(id_, &substance), "cannot add the substance");
}

long Database::addPhase(long substance, const PHASE& phase)
{
    return check(qmdbAddPhase(id_, substance, &phase), "cannot add the phase");
}

long Database::addChange(long substance, const PHASECHANGE& change)
{
    return check(qmdbAddPhaseChange(id_, substance, &change), "cannot add the phase change");
}

void Database::addParameter(
    long substance, const Owner& owner, const PARAMETER& parameter, const IDbData& value)
{
    const int status = owner.kind == Owner::Kind::Phase
        ? qmdbAddPhaseParam(id_, substance, owner.id, &parameter, &value)
        : qmdbAddMatterParam(id_, substance, &parameter, &value);
    check(status, "cannot add the parameter");
}

} // namespace tool
