#include "commands/descriptionOptions.h"

namespace tool {

void DescriptionKeys::addTo(CLI::App& command)
{
    keys_.add(command, "--symbol", "Symbol", "Its symbol, such as cp");
    keys_.add(command, "--argument-units", "ArgumentUnits",
        "Units of the arguments: one for all, or two with \";\" between, pressure and temperature");
    keys_.add(command, "--argument-name", "ArgumentName",
        "What the arguments are where they are neither temperature nor pressure, in the same way");
}

void DescriptionKeys::addRulesTo(CLI::App& command)
{
    keys_.add(command, "--types", "DataTypes", "What values may be, letters of C, t, p, T and X");
    keys_.add(command, "--states", "AvForPhases", "Phases that may have it, letters of S, L and V");
    keys_.add(command, "--scalar", "Scalar", "1 when values may be scalars, else 0");
    keys_.add(command, "--vector", "Vector", "1 when values may be vectors, else 0");
}

std::string checkedLetters(std::string_view key, std::string_view letters)
{
    return writing::checkedKey(writing::DescriptorOf::Description, key, letters).value;
}

void requireOpening(const Location& location)
{
    const Database database(location);
}

} // namespace tool
