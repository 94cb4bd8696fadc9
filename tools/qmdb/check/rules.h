#pragma once

#include "check/tree.h"

#include <optional>
#include <set>

/// What is checked, beside lines and directories, one function a source file.
namespace tool::check {

/// Reports missing keys, keys that nobody reads, and values that are not what their keys call for.
void checkKeys(Context& context, const Descriptor& descriptor, const format::DescriptorKind& kind);

/// Reports what is wrong with the values of the keys that tools have defined.
void checkToolKeys(Context& context, const Descriptor& descriptor, const format::DescriptorKind& kind);

/// Reports arguments whose units nobody tells, items that do not fit the types of values, and symbols and
/// aliases that several things go by.
void checkAnnotations(Context& context, const Tree& tree);

/// The number of a text in the string tables; none for a text under which none is looked up with success.
std::optional<long> stringIdOf(std::string_view text);

/// Reports a text with outer blanks or control characters.
void checkText(Context& context, const Descriptor& descriptor, std::string_view key);

/// Reports what is wrong with the composition of a substance. `ids` are those of all substances.
void checkComposition(Context& context, const Descriptor& substance, const std::set<long>& ids);

/// Reports IDs given twice and references between descriptors that lead nowhere or where they may not.
void checkReferences(Context& context, const Tree& tree);

/// Reports names that are empty, cut or given twice, and what is wrong with the string tables.
void checkTexts(Context& context, const Tree& tree);

/// Reads a number as the library does, and reports it when there is none or it is read otherwise than it
/// stands or may be meant. `what` says which number it is.
std::optional<double> readNumber(
    Context& context, const Place& place, std::string_view text, std::string_view what);

/// Reports every line of a data file that keeps the file from being read, or is not read as it stands.
void checkDataFile(Context& context, const std::string& file, long type, bool vector);

/// The data file that a head names, below the database's directory.
std::string dataFileOf(const Entity& owner, const Descriptor& head);

/// Reports what is wrong with the data files of the heads of a substance, a phase or a phase change, and
/// data files that no head names.
void checkData(Context& context, const Entity& owner);

} // namespace tool::check
