#pragma once

#include "command.h"

#include <span>
#include <string>

namespace tool {

/// Fills a record's text field. Throws Failure when the text is empty, too long for it or not one line.
void setName(std::span<wchar_t> field, const std::string& text, std::string_view what);
/// The same for a text that may be empty.
void setText(std::span<wchar_t> field, const std::string& text, std::string_view what);

void addSubstanceCommand(CLI::App& add, Action& action);
void addPhaseCommand(CLI::App& add, Action& action);
void addChangeCommand(CLI::App& add, Action& action);
void addParameterCommand(CLI::App& add, Action& action);

} // namespace tool
