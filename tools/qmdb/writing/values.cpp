#include "writing/values.h"

#include "annotations/scan.h"
#include "check/rules.h"
#include "common/encodings.h"
#include "common/failure.h"
#include "database/statusText.h"
#include "writing/EditState.h"
#include "writing/dataText.h"
#include "writing/newFiles.h"

#include "format/keys.h"
#include "format/paths.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "qmdatabase/status.h"

namespace tool::writing {

namespace {

namespace fs = std::filesystem;
using check::Descriptor;
using check::Entity;
using format::Key;

/// The library's words for an addition that it refuses.
[[noreturn]] void refuse(int status, std::string_view detail)
{
    throw Failure("cannot add the parameter: {} ({}): {}", statusText(status), status, detail);
}

fs::path placeOf(const EditState& state, const std::string& file)
{
    return fs::path(toLocale(state.directory)) / toLocale(file);
}

fs::path dataPlace(const EditState& state, const Entity& owner, const Descriptor& head)
{
    std::error_code ignored;
    return fs::weakly_canonical(placeOf(state, check::dataFileOf(owner, head)), ignored);
}

/// True for a plain file beside the head that no other head names.
bool hasOwnData(const EditState& state, const Entity& owner, const Descriptor& head)
{
    const std::string name = head.text(Key::Data);
    if (name.empty() || !format::isBareName(name)
        || !fs::is_regular_file(fs::symlink_status(placeOf(state, check::dataFileOf(owner, head))))) {
        return false;
    }
    const fs::path place = dataPlace(state, owner, head);
    bool own = true;
    forEachHead(state.tree, [&](const Entity& otherOwner, const Descriptor& other) {
        const bool same = other.text(Key::Data).ends_with(name) && other.file() != head.file()
            && dataPlace(state, otherOwner, other) == place;
        own = own && !same;
    });
    return own;
}

std::string readData(const EditState& state, const Entity& owner, const Descriptor& head)
{
    const std::string file = check::dataFileOf(owner, head);
    std::ifstream input(placeOf(state, file), std::ios::binary);
    if (!input) {
        throw Failure("the data file \"{}\" cannot be read; give a new value with it", file);
    }
    return { std::istreambuf_iterator<char>(input), {} };
}

std::vector<std::string> commentsBefore(const EditState& state, const Entity& owner, const Descriptor& head)
{
    std::error_code ignored;
    const bool exists = fs::exists(placeOf(state, check::dataFileOf(owner, head)), ignored);
    return exists ? commentsOf(readData(state, owner, head)) : std::vector<std::string>();
}

/// The new content of a data file; none when it stays.
std::optional<std::string> newData(
    const EditState& state, const Entity& owner, const Descriptor& head, const ValueChange& change)
{
    if (!change.table) {
        return change.comments ? std::optional(withComments(readData(state, owner, head), *change.comments))
                               : std::nullopt;
    }
    if (change.comments) {
        return dataText(*change.table, *change.comments);
    }
    return dataText(*change.table, commentsBefore(state, owner, head));
}

/// What is said about the old value and stays with the new one.
std::vector<std::string> keptNotes(
    const EditState& state, const Entity& owner, const Descriptor& head, const ValueChange& change)
{
    std::vector<std::string> kept;
    if (!change.table) {
        return kept;
    }
    if (!change.comments && !commentsBefore(state, owner, head).empty()) {
        kept.emplace_back("comments");
    }
    for (const auto& [key, what] :
        { std::pair { format::sourceKey, "source" }, std::pair { format::accuracyKey, "accuracy" } }) {
        if (head.has(key) && std::ranges::find(change.keys, key, &KeyChange::key) == change.keys.end()) {
            kept.emplace_back(what);
        }
    }
    return kept;
}

void lockOwner(EditState& state, const std::string& directory)
{
    state.ownerLock = std::make_unique<DatabaseLock>(entryPath(state.directory, directory));
}

void setForm(DescriptorText& head, PARAM_TYPE type, bool vector)
{
    head.set(textOf(Key::Type), std::to_string(static_cast<int>(type)));
    head.set(textOf(Key::Vector), vector ? format::trueFlag : format::falseFlag);
}

} // namespace

void requireAllowed(const Edit& edit, long parameter, PARAM_TYPE type, bool vector, const Owner& owner)
{
    const EditState& state = edit.state();
    const auto& all = state.tree.descriptions;
    const auto isIt = [&](const Descriptor& one) { return one.number(Key::ID) == parameter; };
    if (std::ranges::none_of(all, isIt)) {
        refuse(QMDB_E_UNKNOWN_PARAMETER, fmt::format("Incorrect parameter ID for addition, {}", parameter));
    }
    const Descriptor& description = descriptionFile(state, parameter);
    if (!format::isAmong(format::letterOf(type), description.text(Key::DataTypes))) {
        refuse(QMDB_E_TYPE_NOT_ALLOWED,
            fmt::format("Incorrect parameter type for addition, ParamID={}ParamType={}", parameter,
                static_cast<int>(type)));
    }
    if (!description.flag(vector ? Key::Vector : Key::Scalar)) {
        refuse(QMDB_E_VECTOR_NOT_ALLOWED,
            fmt::format("Incorrect parameter scalar/vector type for addition, ParamID={}Vector={}", parameter,
                static_cast<int>(vector)));
    }
    if (owner.kind == Owner::Kind::Phase
        && !format::isAmong(format::letterOf(owner.state), description.text(Key::AvForPhases))) {
        refuse(QMDB_E_STATE_NOT_ALLOWED,
            fmt::format("Incorrect parameter for the phase AS, ParamID={}AS={}", parameter,
                static_cast<int>(owner.state)));
    }
}

void addValue(Edit& edit, long substance, const Owner& owner, const NewValue& value)
{
    EditState& state = edit.state();
    const bool vector = value.table.components > 1;
    requireAllowed(edit, value.parameter, value.type, vector, owner);
    const Entity& files = ownerFiles(state, substance, owner);
    if (findHead(files, value.parameter)) {
        constexpr std::string_view kinds[] = { "substance", "phase", "phase change" };
        refuse(QMDB_E_DUPLICATE_PARAMETER,
            fmt::format("Cannot append the parameter to {} because a parameter with such ID is already "
                        "present, {}\n\"qmdb set parameter\" replaces the value",
                kinds[static_cast<std::size_t>(owner.kind)], value.parameter));
    }
    lockOwner(state, files.directory);
    makeValue(state, files.directory, value);
}

void makeValue(EditState& state, const std::string& directory, const NewValue& value)
{
    const std::string name = state.names.next(directory, format::Series::Heads);
    DescriptorText head;
    head.set(textOf(Key::Data), dataNameOf(name));
    head.set(textOf(Key::ID), std::to_string(value.parameter));
    setForm(head, value.type, value.table.components > 1);
    applyKeys(head, value.keys);
    state.changes.makeFile(entryPath(directory, dataNameOf(name)), dataText(value.table, value.comments));
    state.changes.makeFile(entryPath(directory, name), head.bytes());
}

std::vector<std::string> setValue(
    Edit& edit, long substance, const Owner& owner, long parameter, const ValueChange& change)
{
    EditState& state = edit.state();
    const Entity& files = ownerFiles(state, substance, owner);
    const Descriptor& file = headFile(files, parameter);
    DescriptorText head = DescriptorText::read(state.directory, file.file());
    const std::string headBefore = head.bytes();
    if (change.table) {
        const bool vector = change.table->components > 1;
        requireAllowed(edit, parameter, change.type, vector, Owner());
        setForm(head, change.type, vector);
    }
    applyKeys(head, change.keys);
    const auto data = newData(state, files, file, change);
    auto kept = keptNotes(state, files, file, change);
    const std::string oldData = check::dataFileOf(files, file);
    const bool own = hasOwnData(state, files, file);
    const bool headStays = head.bytes() == headBefore;
    if (data && own && headStays) {
        requireOwnFile(state.directory, oldData);
        state.changes.replaceFile(oldData, *data);
        return kept;
    }
    if (data) { // the head leads from the one value to the other in one step
        lockOwner(state, files.directory);
        const std::string name = dataNameOf(state.names.next(files.directory, format::Series::Heads));
        head.set(textOf(Key::Data), name);
        state.changes.makeFile(entryPath(files.directory, name), *data);
    }
    if (data || !headStays) {
        replaceDescriptor(state, file.file(), head);
    }
    if (data && own) {
        state.changes.removeFile(oldData);
    }
    return kept;
}

void removeValue(Edit& edit, long substance, const Owner& owner, long parameter)
{
    EditState& state = edit.state();
    const Entity& files = ownerFiles(state, substance, owner);
    const Descriptor& head = headFile(files, parameter);
    requireOwnFile(state.directory, files.directory);
    state.changes.removeFile(head.file());
    if (hasOwnData(state, files, head)) {
        state.changes.removeFile(check::dataFileOf(files, head));
    }
}

} // namespace tool::writing
