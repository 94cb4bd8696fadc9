#pragma once

#include "commands/editing.h"

namespace tool {

/// The keys of a description that a command takes as options of their own.
class DescriptionKeys {
public:
    void addTo(CLI::App& command);
    /// --types, --states, --scalar and --vector, for a description that is there.
    void addRulesTo(CLI::App& command);

    std::vector<writing::KeyChange> changes() const { return keys_.changes(); }

private:
    KeyOptions keys_ { writing::DescriptorOf::Description };
};

/// The letters of a key, checked.
std::string checkedLetters(std::string_view key, std::string_view letters);

/// Throws Failure when the database does not open.
void requireOpening(const Location& location);

} // namespace tool
