#include "database/statusText.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fmt/format.h>
#include <unistd.h>

#include "qmdatabase/status.h"

namespace tool {

namespace {

/// A number by which the library's log names a failing system call.
struct SystemCode {
    unsigned code;
    int error;
};

constexpr auto systemCodes = std::to_array<SystemCode>({ { 0x8001000A, EINVAL }, { 0x80050002, EILSEQ },
    { 0x80050003, ENOENT }, { 0x80050004, EEXIST }, { 0x80050005, EACCES }, { 0x80050000, EIO } });

/// The words for an exception's text; empty for any other line.
std::string exceptionText(std::string_view line)
{
    constexpr std::string_view begin = "EQMException with code=";
    constexpr std::string_view middle = ", subcode=";
    const std::size_t comma = line.find(middle);
    if (!line.starts_with(begin) || comma == std::string_view::npos) {
        return {};
    }
    constexpr int hexadecimal = 16;
    unsigned code = 0;
    int error = 0;
    std::from_chars(line.data() + begin.size(), line.data() + comma, code, hexadecimal);
    std::from_chars(line.data() + comma + middle.size(), line.data() + line.size(), error);
    for (const SystemCode& known : systemCodes) {
        if (known.code == code) {
            return std::strerror(error != 0 ? error : known.error);
        }
    }
    return error != 0 ? std::strerror(error) : "the operating system refused a call";
}

/// Why the file that a line names cannot be read; empty when it can.
std::string reasonOf(const std::string& line)
{
    const std::size_t colon = line.find(": ");
    const bool names = line.starts_with("Cannot open ") && colon != std::string::npos;
    const bool refused = names && ::access(line.c_str() + colon + 2, R_OK) != 0;
    return refused ? fmt::format(": {}", std::strerror(errno)) : "";
}

} // namespace

std::string_view statusText(int status)
{
    switch (status) {
    case QMDB_E_FIRST_ARGUMENT:
    case QMDB_E_NUMBER:
        return "a text is not a number, or arguments do not increase";
    case QMDB_E_NOT_FOUND:
        return "it does not exist, or its type is none that the library knows";
    case QMDB_E_NO_DATA_FILE:
        return "the data file does not exist";
    case QMDB_E_FILE:
        return "a file cannot be opened or written, or a directory holds several descriptors of a kind";
    case QMDB_E_READ:
        return "a file cannot be read, or a line is too long";
    case QMDB_E_EMPTY:
        return "there is nothing in it";
    case QMDB_E_REQUIRED_KEY:
        return "a descriptor lacks a required key";
    case QMDB_E_FORMAT:
        return "a composition or a row of a data file is laid out wrongly";
    case QMDB_E_DUPLICATE_NAME:
        return "the name is taken";
    case QMDB_E_UNKNOWN_PARAMETER:
        return "no description has this parameter number";
    case QMDB_E_TYPE_NOT_ALLOWED:
        return "the parameter's description does not allow this type";
    case QMDB_E_VECTOR_NOT_ALLOWED:
        return "the parameter's description does not allow this form (scalar or vector)";
    case QMDB_E_DUPLICATE_PARAMETER:
        return "the parameter is there already";
    case QMDB_E_STATE_NOT_ALLOWED:
        return "the parameter's description does not offer it for the phase's aggregate state";
    case QMDB_E_FRACTIONS:
        return "the molar fractions must add up to 0.99 to 1";
    default:
        return "the library failed";
    }
}

std::string detailText(const std::string& line)
{
    const std::string words = exceptionText(line);
    return words.empty() ? line + reasonOf(line) : words;
}

std::string checkHint(const std::string& directory)
{
    return fmt::format("\"qmdb check {}\" tells what is wrong and what to do", directory);
}

} // namespace tool
