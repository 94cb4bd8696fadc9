#include "help/prose.h"

#include <algorithm>
#include <array>

namespace tool {

namespace {

struct CommandProse {
    std::string_view command;
    std::string_view text;
};

/// One text for --help and the manual page. "qmdb manual > docs/qmdb.1" renews the page.
constexpr std::array prose {
    CommandProse { "",
        "A database of material properties is a directory tree of small text files. qmdb works on the one in "
        "the "
        "directory DIR.\n\n"
        "Substances, phases, phase changes and parameters are named by their display names or by their "
        "numbers, or "
        "by their names in the other language, a substance by its formula, an alias or its CAS number, a "
        "parameter "
        "by its symbol, a phase by its state. The exact display name comes first, then the number, then the "
        "display "
        "name without regard to letter case, then the rest. A name that is unknown is answered with the near "
        "matches, one that is ambiguous with what it may mean.\n\n"
        "Commands that only read leave the database's directory as it was. Commands that write lock it from "
        "before "
        "they open the database to their end, and wait for each other.\n\n"
        "The library reads a number up to the first character that does not belong to it. The commands get, "
        "plot "
        "and export warn when a data file is read otherwise than it stands there." },
    CommandProse { "list",
        "Shows of each parameter its type, whether it is scalar or vector, the number of points, the units, "
        "and the "
        "range of the arguments." },
    CommandProse { "get",
        "A constant is shown with its units, a table as columns. With --at a table is read at these "
        "arguments, "
        "linearly between its points and exactly at them; outside the table nothing is read.\n\n"
        "A phase or phase change behind the substance and a colon, as in Water:Steam, counts instead of "
        "--phase and "
        "--change; without any of them the substance itself has the parameter." },
    CommandProse { "find",
        "Finds what goes by a text: part of a name, or a formula, alias, CAS number or symbol. With any of "
        "--at, "
        "--state, --above, --below, --between and --units the text names a parameter, and the materials that "
        "have it "
        "are listed with its values, the greatest first. Limits are in the units shown." },
    CommandProse { "plot",
        "Draws over the last argument: a table of two arguments as one curve for each first argument, a "
        "vector as "
        "three curves, a constant beside tables as a level line. Several substances, phases or phase changes "
        "are compared in "
        "one picture; Water:Steam names a phase of one of them. gnuplot draws.\n\n"
        "The picture file appears under its name when it is complete; until then what stood there stays." },
    CommandProse { "check",
        "Tells one line for each fault: file, line, what is wrong and what to do, causes before what follows "
        "from "
        "them." },
    CommandProse { "export",
        "Writes with each number all that says what it is: substance with formula, CAS number, aliases and "
        "composition, phase with its state or phase change, parameter with symbol, units and type, source, "
        "accuracy, "
        "comments of the data file, names, units and values of the arguments, and component. Numbers that "
        "are not "
        "finite are nan, inf and -inf in CSV, null in JSON; in SQLite those that are no numbers are NULL.\n\n"
        "The file appears under its name when it is complete; until then what stood there stays. With "
        "--units what "
        "can be converted is, and the rest stays as it is." },
    CommandProse { "page",
        "The page holds everything, its data and its program, and needs no network. It shows the materials "
        "in English and "
        "Russian, with charts to compare, other units, and values at a point." },
    CommandProse { "import",
        "Takes what export writes. A row needs the columns substance, parameter and value, a new phase also "
        "phase and "
        "state. All of it appears, or nothing: the new state is made in a directory beside the database, "
        "which is "
        "exchanged with it in one step." },
    CommandProse { "diff",
        "Tells what the second database has otherwise: substances, phases, phase changes, descriptions, "
        "keys, values." },
    CommandProse { "add", "Nothing is written when the input is wrong." },
    CommandProse { "add substance",
        "A mixture names its components, none twice; their molar fractions add up to 1. "
        "\"qmdb set phase\" with --name-ru gives a phase its name in Russian." },
    CommandProse { "add phase",
        "Several phases may be added at once. \"qmdb set phase\" with --name-ru gives them "
        "names in Russian." },
    CommandProse { "add change", "A phase change leads from one phase of the substance to another." },
    CommandProse { "add parameter",
        "Numbers are decimal and finite. In a table a first row without numbers is a head, and lines that "
        "begin with "
        "# are comments, which are kept. Semicolons separate where there are any, and commas are decimal "
        "points then." },
    CommandProse { "add description",
        "A description says what values of a parameter may be, and in which units. It is known by name as "
        "soon as "
        "it is there." },
    CommandProse { "set", "What is not named stays as it is. An empty text removes a key." },
    CommandProse { "set substance",
        "The new name may not be that of another substance. Components replace the whole "
        "composition of a mixture, or make one of a pure substance." },
    CommandProse { "set phase", "The phase keeps its number, its values and its phase changes." },
    CommandProse { "set change", "The phase change keeps its number and its values." },
    CommandProse { "set parameter",
        "A new value replaces the old one wholly; its source and accuracy stay unless they are given." },
    CommandProse { "set description", "Concerns every value of the parameter." },
    CommandProse { "remove", "Asks on a terminal, and refuses what others refer to." },
    CommandProse { "remove substance", "Its phases, phase changes and values go with it." },
    CommandProse { "remove phase", "Its values go with it." },
    CommandProse { "remove change", "Its values go with it." },
    CommandProse { "remove parameter", "Removes the value; the description of the parameter stays." },
    CommandProse { "remove description", "Nothing may have the parameter any longer." },
    CommandProse { "new",
        "The descriptions stand in files of their own; README.txt in the directory tells how to go on. "
        "Remove those "
        "that you do not need, and add your own." },
};

constexpr std::array sections {
    ManualSection { "Environment",
        "NO_COLOR: when set and not empty, there are no colours on a terminal. Elsewhere there are none "
        "anyway.\n\n"
        "TMPDIR: where the temporary directory of the log is made; /tmp by default." },
    ManualSection { "Exit status",
        "0: done; check or diff has found nothing.\n\n"
        "1: check or diff has found something; list and export could not read some values; the directory "
        "holds "
        "nothing of a "
        "database.\n\n"
        "2: what was asked for could not be done." },
};

} // namespace

std::span<const ManualSection> manualSections()
{
    return sections;
}

std::string commandName(const CLI::App& command)
{
    if (!command.get_parent()) {
        return {};
    }
    const std::string parent = commandName(*command.get_parent());
    return parent.empty() ? command.get_name() : parent + " " + command.get_name();
}

std::string_view proseOf(std::string_view command)
{
    const auto* found = std::ranges::find(prose, command, &CommandProse::command);
    return found == prose.end() ? std::string_view() : found->text;
}

} // namespace tool
