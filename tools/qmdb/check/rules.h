#pragma once

#include "check/tree.h"

#include <set>

/// What is checked, beside lines and directories, one function a source file.
namespace tool::check {

/// Reports missing keys, keys that nobody reads, and values that are not what their keys call for.
void checkKeys(Context& context, const Descriptor& descriptor, const format::DescriptorKind& kind);

/// Reports what is wrong with the composition of a substance. `ids` are those of all substances.
void checkComposition(Context& context, const Descriptor& substance, const std::set<long>& ids);

/// Reports IDs given twice and references between descriptors that lead nowhere or where they may not.
void checkReferences(Context& context, const Tree& tree);

/// Reports names that are empty, cut or given twice, and what is wrong with the string tables.
void checkTexts(Context& context, const Tree& tree);

/// Reports every line of a data file that keeps the file from being read, or is not read as it stands.
void checkDataFile(Context& context, const std::string& file, long type, bool vector);

/// Reports what is wrong with the data files of the heads of a substance, a phase or a phase change, and
/// data files that no head names.
void checkData(Context& context, const Entity& owner);

} // namespace tool::check
