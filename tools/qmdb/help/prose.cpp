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
        "Takes what export writes, and CSV that a person makes: a row for each number, columns in any order "
        "by the names "
        "in the first line. All of an import appears or nothing: it is made beside the database, opened to "
        "try it, and "
        "takes its place in one step. A fault names row and column.\n\n"
        "With --all, export writes the Russian texts and the rules of descriptions as well, which then come "
        "along." },
    CommandProse { "diff",
        "Things are the same by number and name, else by name, else by number. Each difference is told in a "
        "line with what "
        "was and what is." },
    CommandProse { "set",
        "Each change is made by a new file that takes the place of the old one. With --dry-run nothing is "
        "changed, and what "
        "would be is told." },
    CommandProse { "set substance", "A name is changed in the language of --lang." },
    CommandProse { "set phase", "A name is changed in the language of --lang." },
    CommandProse { "set change", "A name is changed in the language of --lang." },
    CommandProse { "set parameter", "Values are given as for add parameter." },
    CommandProse { "set description", "All values of the parameter share its description." },
    CommandProse { "remove",
        "Asks on a terminal; elsewhere it wants --yes. What others refer to stays: a component of a mixture, "
        "a phase of a "
        "phase change, a description that values have." },
    CommandProse { "remove substance",
        "Files in its directory that are not the database's keep it from being removed." },
    CommandProse { "remove phase", "The last phase stays: the library skips substances without phases." },
    CommandProse { "remove change", "Its values go with it." },
    CommandProse { "remove parameter", "A data file that other heads name as well stays." },
    CommandProse { "remove description", "The texts that only it uses go from the string tables." },
    CommandProse { "add", "Nothing is written when the input is wrong." },
    CommandProse {
        "add substance", "A mixture names its components, none twice; their molar fractions add up to 1." },
    CommandProse { "add phase", "Several phases may be added at once." },
    CommandProse { "add change", "A phase change leads from one phase of the substance to another." },
    CommandProse { "add parameter",
        "Numbers are decimal and finite. In a table a first row without numbers is a head, and lines that "
        "begin with "
        "# are comments. Semicolons separate where there are any, and commas are decimal points then." },
    CommandProse { "add description",
        "A description says what the parameter is called, in which units it is, which types of values it may "
        "have, and "
        "phases of which states. Its texts go into both string tables." },
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
        "0: done; check has found nothing.\n\n"
        "1: check has found something; list and export could not read some values; the directory holds "
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
