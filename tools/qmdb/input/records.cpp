#include "input/records.h"

#include "common/characters.h"
#include "common/failure.h"
#include "common/names.h"
#include "common/vocabulary.h"

#include <algorithm>
#include <deque>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>
#include <vector>

namespace tool {

namespace {

using Columns = std::span<const std::string_view>;

/// The place of a column among those that are asked for.
std::size_t columnIndex(Columns columns, std::string_view column, const std::string& name)
{
    const auto found = std::ranges::find(columns, column);
    if (found == columns.end()) {
        const auto near = nearMatches({ columns.begin(), columns.end() }, column);
        throw Failure("{}: there is no column {}; {}: {}", name, shown(column),
            near.empty() ? "there are" : "near matches",
            near.empty() ? fmt::format("{}", fmt::join(columns, ", "))
                         : fmt::format("{}", fmt::join(near, ", ")));
    }
    return static_cast<std::size_t>(found - columns.begin());
}

/// Cuts CSV into rows. A field with quotes in it is kept aside without them.
class CsvReader {
public:
    CsvReader(std::string_view bytes, const std::string& name)
        : rest_(bytes)
        , name_(name)
        , separator_(separatorOf(headOf(bytes)))
    {
    }

    /// False at the end. Empty lines, and those that begin with "#", are left out.
    bool next(std::vector<std::string_view>& fields)
    {
        while (rest_.starts_with('#') || rest_.starts_with('\n') || rest_.starts_with("\r\n")) {
            rest_.remove_prefix(std::min(rest_.find('\n'), rest_.size() - 1) + 1);
            ++nextLine_;
        }
        line_ = nextLine_;
        unquoted_.clear();
        fields.clear();
        const bool any = !rest_.empty();
        if (any) {
            readRow(fields);
        }
        return any;
    }

    std::size_t line() const noexcept { return line_; }
    bool hasDecimalComma() const noexcept { return separator_ != ','; }

private:
    /// The first line that is neither empty nor a comment.
    static std::string_view headOf(std::string_view bytes)
    {
        while (bytes.starts_with('#') || bytes.starts_with('\n') || bytes.starts_with("\r\n")) {
            bytes.remove_prefix(std::min(bytes.find('\n'), bytes.size() - 1) + 1);
        }
        return bytes.substr(0, bytes.find('\n'));
    }

    static char separatorOf(std::string_view head)
    {
        const auto has = [&](char one) { return head.find(one) != std::string_view::npos; };
        return has(',') || !(has(';') || has('\t')) ? ',' : has(';') ? ';' : '\t';
    }

    void readRow(std::vector<std::string_view>& fields)
    {
        const char ends[] = { separator_, '\n' };
        for (bool more = true; more;) {
            if (rest_.starts_with('"')) {
                fields.push_back(readQuoted());
            } else {
                const std::size_t end = std::min(rest_.find_first_of({ ends, 2 }), rest_.size());
                std::string_view field = rest_.substr(0, end);
                const bool endsLine = end == rest_.size() || rest_[end] == '\n';
                field.remove_suffix(endsLine && field.ends_with('\r') ? 1 : 0);
                fields.push_back(field);
                rest_.remove_prefix(end);
            }
            more = rest_.starts_with(separator_);
            rest_.remove_prefix(rest_.empty() ? 0 : 1);
        }
        ++nextLine_;
    }

    /// A field in quotes, behind which a separator or the end of the line must stand.
    std::string_view readQuoted()
    {
        std::string* own = nullptr; // needed as soon as a quote is doubled
        rest_.remove_prefix(1);
        for (std::size_t begin = 0;;) {
            const std::size_t end = rest_.find('"', begin);
            if (end == std::string_view::npos) {
                throw Failure("{}: line {}: a quote is not closed", name_, line_);
            }
            const bool doubled = rest_.substr(end + 1).starts_with('"');
            if (!doubled) {
                return finishQuoted(end, own);
            }
            own = own ? own : &unquoted_.emplace_back();
            own->append(rest_.substr(0, end + 1));
            countLines(rest_.substr(0, end));
            rest_.remove_prefix(end + 2);
        }
    }

    std::string_view finishQuoted(std::size_t end, std::string* own)
    {
        std::string_view field = rest_.substr(0, end);
        countLines(field);
        if (own) {
            field = own->append(field);
        }
        rest_.remove_prefix(end + 1);
        rest_.remove_prefix(rest_.starts_with("\r\n") ? 1 : 0);
        if (!rest_.empty() && rest_.front() != separator_ && rest_.front() != '\n') {
            throw Failure("{}: line {}: something stands behind a closing quote", name_, nextLine_);
        }
        return field;
    }

    void countLines(std::string_view text)
    {
        nextLine_ += static_cast<std::size_t>(std::ranges::count(text, '\n'));
    }

    std::string_view rest_;
    const std::string& name_;
    char separator_;
    std::size_t line_ = 1;
    std::size_t nextLine_ = 1;
    std::deque<std::string> unquoted_;
};

void readCsv(std::string_view bytes, const std::string& name, Columns columns,
    const std::function<void(const Record&)>& use)
{
    CsvReader reader(bytes, name);
    std::vector<std::string_view> cells;
    if (!reader.next(cells)) {
        throw Failure("{} is empty", name);
    }
    std::vector<std::size_t> places;
    for (const std::string_view cell : cells) {
        places.push_back(columnIndex(columns, cell, name));
        if (std::ranges::count(places, places.back()) > 1) {
            throw Failure("{}: there are two columns {}", name, shown(cell));
        }
    }
    std::vector<std::string_view> fields(columns.size());
    for (std::size_t row = 1; reader.next(cells); ++row) {
        if (cells.size() != places.size()) {
            throw Failure("{}: row {} (line {}): the number of columns is {}, in the head it is {}", name,
                row, reader.line(), cells.size(), places.size());
        }
        for (std::size_t i = 0; i < cells.size(); ++i) {
            fields[places[i]] = cells[i];
        }
        use({ { row, reader.line() }, fields, reader.hasDecimalComma() });
    }
}

/// Takes flat JSON objects, one a row. Numbers stay as they are written.
class JsonRows : public nlohmann::json_sax<nlohmann::json> {
public:
    JsonRows(const std::string& name, Columns columns, const std::function<void(const Record&)>& use)
        : name_(name)
        , columns_(columns)
        , use_(use)
        , texts_(columns.size())
        , fields_(columns.size())
    {
    }

    std::size_t line = 0; ///< 0 where rows are not lines

    bool null() override { return set({}); }
    bool boolean(bool) override { refuse("true and false are no values here"); }
    bool number_integer(number_integer_t number) override { return set(std::to_string(number)); }
    bool number_unsigned(number_unsigned_t number) override { return set(std::to_string(number)); }
    bool number_float(number_float_t, const string_t& text) override { return set(text); }
    bool string(string_t& text) override { return set(std::move(text)); }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override
    {
        if (inObject_) {
            refuse("an object stands within an object");
        }
        inObject_ = true;
        ++row_;
        std::ranges::for_each(texts_, [](std::string& text) { text.clear(); });
        return true;
    }
    bool key(string_t& key) override
    {
        column_ = columnIndex(columns_, key, name_);
        return true;
    }
    bool end_object() override
    {
        inObject_ = false;
        std::ranges::copy(texts_, fields_.begin());
        use_({ { row_, line == 0 ? row_ : line }, fields_ });
        return true;
    }
    bool start_array(std::size_t) override
    {
        if (inObject_ || line != 0) {
            refuse("an array stands where a text or a number should");
        }
        return true;
    }
    bool end_array() override { return true; }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override
    {
        ++row_;
        refuse(error.what());
    }

private:
    [[noreturn]] void refuse(std::string_view what) const
    {
        throw Failure(
            "{}: row {}{}: {}", name_, row_, line == 0 ? "" : fmt::format(" (line {})", line), what);
    }

    bool set(std::string text)
    {
        if (!inObject_) {
            ++row_;
            refuse("a row is an object: {\"substance\": ...}");
        }
        texts_[column_] = std::move(text);
        return true;
    }

    const std::string& name_;
    Columns columns_;
    const std::function<void(const Record&)>& use_;
    std::vector<std::string> texts_;
    std::vector<std::string_view> fields_;
    std::size_t row_ = 0;
    std::size_t column_ = 0;
    bool inObject_ = false;
};

void readJsonLines(std::string_view bytes, JsonRows& rows)
{
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        const std::string_view line = bytes.substr(0, end);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        ++rows.line;
        if (line.find_first_not_of(" \t\r") != std::string_view::npos) {
            nlohmann::json::sax_parse(line, &rows);
        }
    }
}

} // namespace

void readRecords(std::string_view bytes, const std::string& name, Columns columns,
    const std::function<void(const Record&)>& use)
{
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")
        || bytes.substr(0, 64).find('\0') != std::string_view::npos) {
        throw Failure(
            "{} is encoded as UTF-16; save it as UTF-8, for example with \"iconv -f UTF-16\"", name);
    }
    bytes.remove_prefix(bytes.starts_with(vocabulary::utf8Mark) ? vocabulary::utf8Mark.size() : 0);
    const std::size_t first = bytes.find_first_not_of(" \t\r\n");
    const char kind = first == std::string_view::npos ? '\0' : bytes[first];
    if (kind != '{' && kind != '[') {
        return readCsv(bytes, name, columns, use);
    }
    JsonRows rows(name, columns, use);
    if (kind == '{') {
        readJsonLines(bytes, rows);
    } else {
        nlohmann::json::sax_parse(bytes, &rows);
    }
}

} // namespace tool
