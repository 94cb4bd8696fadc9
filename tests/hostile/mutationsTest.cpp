// Each file of the sample database cut, changed and mixed up at every place. What the library reads of it
// then is what stands there or a code, and the checker reports what has changed a value or lost an entity
// unnoticed.

#include "check/check.h"
#include "support/OpenDatabase.h"
#include "support/Reliability.h"
#include "support/ScopedLocale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <random>
#include <regex>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace {

using namespace test;

std::vector<std::string> linesOf(const std::string& bytes)
{
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t end = std::min(bytes.find('\n', at), bytes.size() - 1) + 1;
        lines.push_back(bytes.substr(at, end - at));
        at = end;
    }
    return lines;
}

std::string joined(const std::vector<std::string>& lines)
{
    std::string bytes;
    for (const std::string& line : lines) {
        bytes += line;
    }
    return bytes;
}

bool isInteger(const std::string& text)
{
    static const std::regex integer("-?[0-9]{1,18}");
    return std::regex_match(text, integer);
}

bool isDataFile(const fs::path& file)
{
    return file.extension() == ".dat";
}

/// What good files look like, as the sample shows it: nothing of what the library is lenient about.
class Grammar {
public:
    explicit Grammar(const std::map<fs::path, std::string>& files)
    {
        for (const auto& [file, bytes] : files) {
            for (const auto& [key, value] : isDataFile(file) ? Entries() : entriesOf(bytes).value()) {
                keys_[kindOf(file)].insert(key);
                if (!isInteger(value)) {
                    texts_.insert(key);
                }
            }
        }
    }

    /// True when anybody would read the file as the library should.
    bool allows(const fs::path& file, std::string bytes) const
    {
        if (const std::vector<std::string> lines = linesOf(bytes);
            std::ranges::all_of(lines, [](const std::string& line) { return line.ends_with("\r\n"); })) {
            std::erase(bytes, '\r');
        }
        if (!bytes.ends_with('\n')) {
            return false;
        }
        return isDataFile(file) ? plainValue(bytes).has_value() : allowsDescriptor(file, bytes);
    }

    /// The value that a good data file holds, as listings show it.
    static std::optional<std::string> plainValue(const std::string& bytes)
    {
        static const std::string number = "[-+]?([0-9]+[.,]?[0-9]*|[.,][0-9]+)([eE][-+]?[0-9]+)?";
        static const std::regex row("(P=)? *(" + number + " +)*" + number + " *\n");
        std::string shown;
        std::size_t columns = 0;
        for (const std::string& line : linesOf(bytes)) {
            if (line.starts_with('#') || line == "\n") {
                continue;
            }
            if (!std::regex_match(line, row)) {
                return std::nullopt;
            }
            appendRow(shown, line, columns);
        }
        // A constant stands without brackets.
        const bool isConstant = columns == 1 || (columns == 3 && std::ranges::count(shown, '(') == 1);
        return isConstant ? shown.substr(1, shown.size() - 2) : shown;
    }

private:
    using Entries = std::map<std::string, std::string>;

    static std::string kindOf(const fs::path& file) { return file.extension().string(); }

    /// None when a line is none of its own kind.
    static std::optional<Entries> entriesOf(std::string bytes)
    {
        static const std::regex entry(
            "([^=\\x01-\\x1F]+)=((?! )[^\\x01-\\x1F\\x7F]*[^ \\x01-\\x1F\\x7F])?\n");
        if (bytes.starts_with(utf8Mark)) {
            bytes.erase(0, utf8Mark.size());
        } else if (std::ranges::any_of(bytes, [](char c) { return static_cast<unsigned char>(c) > 0x7F; })) {
            return std::nullopt;
        }
        Entries found;
        for (const std::string& line : linesOf(bytes)) {
            std::smatch parts;
            if (line == "\n") {
                continue;
            }
            if (line.find('\0') != line.npos || !std::regex_match(line, parts, entry)
                || !found.emplace(parts[1], parts[2]).second) {
                return std::nullopt;
            }
        }
        return found;
    }

    bool allowsDescriptor(const fs::path& file, const std::string& bytes) const
    {
        const auto entries = entriesOf(bytes);
        const bool isTable = kindOf(file) == ".lst";
        return entries && std::ranges::all_of(*entries, [&](const auto& entry) {
            return isTable ? isInteger(entry.first)
                           : keys_.at(kindOf(file)).contains(entry.first)
                    && (texts_.contains(entry.first) || isInteger(entry.second));
        });
    }

    static void appendRow(std::string& shown, const std::string& line, std::size_t& columns)
    {
        const bool isHeader = line.starts_with("P=");
        std::istringstream words(std::regex_replace(line.substr(isHeader ? 2 : 0), std::regex(","), "."));
        std::string row;
        columns = 0;
        for (std::string word; words >> word; ++columns) {
            row += (row.empty() ? "" : " ") + numberText(std::stod(word));
        }
        shown += isHeader ? "P=" + row : "(" + row + ")";
    }

    std::map<std::string, std::set<std::string>> keys_; ///< by the file's extension
    std::set<std::string> texts_; ///< keys whose values are more than integers
};

/// The sample in a place of its own, of which one file is changed at a time.
class Sample {
public:
    Sample()
    {
        fs::copy(QMDB_SAMPLE, tree_.root(), fs::copy_options::recursive);
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree_.root())) {
            if (entry.is_regular_file()) {
                files_[entry.path()] = tree_.read(entry.path().lexically_relative(tree_.root()).string());
            }
        }
        open_.emplace(tree_);
        listed_ = listing(open_->id);
        findings_ = findings();
    }

    const std::map<fs::path, std::string>& files() const { return files_; }
    const std::string& listed() const { return listed_; }

    /// What the library shows of the changed file: the whole database, of data files their heads' values.
    std::string shown(const fs::path& file) const
    {
        if (isDataFile(file)) {
            return listing(open_->id);
        }
        const OpenDatabase db(tree_);
        return db.code == QMDB_OK ? listing(db.id) : "cannot be opened: " + std::to_string(db.code);
    }

    /// True when the checker finds something that it does not find in the good files.
    bool isReported() const { return findings() != findings_; }

    std::string findings() const
    {
        tool::check::Findings found;
        tool::check::checkDatabase(tree_.root(), found, [](std::size_t) {});
        std::string text;
        for (const tool::check::Finding& finding : found.all()) {
            text += finding.place.file + ": " + finding.what + "\n";
        }
        return text;
    }

private:
    TempDatabase tree_ { {} };
    std::map<fs::path, std::string> files_;
    std::optional<OpenDatabase> open_;
    std::string listed_;
    std::string findings_;
};

std::string readable(std::string bytes)
{
    std::ranges::replace_if(
        bytes, [](char c) { return c != '\n' && static_cast<unsigned char>(c) < ' '; }, '?');
    return bytes;
}

class Mutations : public testing::Test {
protected:
    /// All ways to spoil a file: cut at every byte, each byte another one, each line doubled, and removed.
    template <class Use>
    void forEachMutation(const std::string& bytes, Use&& use)
    {
        static constexpr char others[] = { '\n', ' ', '=', '0', '7', ',', '-', '#', '\0', '\r', '\x80', 'e' };
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            use([&] { return bytes.substr(0, i); });
            use([&] { return std::string(bytes).replace(i, 1, 1, char(bytes[i] ^ (1 << random_() % 8))); });
            use([&] { return std::string(bytes).replace(i, 1, 1, others[random_() % std::size(others)]); });
        }
        const std::vector<std::string> lines = linesOf(bytes);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            for (const int count : { 0, 2 }) {
                use([&] {
                    auto changed = lines;
                    changed[i] = count == 0 ? "" : lines[i] + lines[i];
                    return joined(changed);
                });
            }
        }
    }

    void judge(const fs::path& file, const std::string& bytes)
    {
        std::ofstream(file, std::ios::binary) << bytes;
        const std::string shown = sample_.shown(file);
        if (shown == sample_.listed() || sample_.isReported()) {
            return;
        }
        EXPECT_EQ(std::ranges::count(shown, '\n'), std::ranges::count(sample_.listed(), '\n'))
            << "something is lost in silence";
        EXPECT_TRUE(grammar_.allows(file, bytes)) << "it reads otherwise than it stands there, in silence";
        if (isDataFile(file)) {
            expectChanges(shown, "= " + Grammar::plainValue(bytes).value_or("") + "\n");
        }
    }

    /// All lines that differ from the sample's listing end in the value.
    void expectChanges(const std::string& shown, const std::string& value) const
    {
        const std::vector<std::string> usual = linesOf(sample_.listed());
        const std::vector<std::string> found = linesOf(shown);
        for (std::size_t i = 0; i < std::min(usual.size(), found.size()); ++i) {
            EXPECT_TRUE(found[i] == usual[i] || found[i].ends_with(value)) << found[i] << value;
        }
    }

    const ScopedLocale locale_ { "C.UTF-8" };
    const Sample sample_;
    const Grammar grammar_ { sample_.files() };
    std::mt19937 random_ { 1 };
};

TEST_F(Mutations, areRightOrReported)
{
    Reliability mutations("mutated files");
    const unsigned every = isLongRun() ? 1 : QMDB_MUTATIONS_A_CASE;
    for (const auto& [file, bytes] : sample_.files()) {
        EXPECT_TRUE(grammar_.allows(file, bytes)) << file;
        forEachMutation(bytes, [&, &path = file](const auto& mutate) {
            if (random_() % every == 0) {
                const std::string mutated = mutate();
                SCOPED_TRACE(path.string() + "\n" + readable(mutated));
                judge(path, mutated);
                ++mutations.cases;
            }
        });
        std::ofstream(file, std::ios::binary) << bytes;
    }
    EXPECT_EQ(sample_.findings(), "");
    EXPECT_GT(mutations.cases, 100u);
}

} // namespace
