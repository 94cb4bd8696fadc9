#include "support/TempDatabase.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace test {

namespace {

std::string makeDirectory()
{
    std::string name = (fs::temp_directory_path() / "qmdb-test-XXXXXX").string();
    if (!::mkdtemp(name.data())) {
        throw std::runtime_error("no temporary directory");
    }
    return name;
}

void replaceAll(std::string& text, std::string_view what, std::string_view by)
{
    for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
}

std::string bytesOf(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return { std::istreambuf_iterator<char>(in), {} };
}

std::string describe(const fs::directory_entry& entry)
{
    if (entry.is_symlink()) {
        return " -> " + fs::read_symlink(entry).string() + "\n";
    }
    if (entry.is_directory()) {
        return "/\n";
    }
    std::string bytes = entry.is_regular_file() ? bytesOf(entry) : "";
    replaceAll(bytes, utf8Mark, "<mark>");
    return "\n" + bytes;
}

} // namespace

Tree operator+(Tree tree, const Tree& more)
{
    for (const Entry& entry : more) {
        std::erase_if(tree, [&](const Entry& known) { return known.path == entry.path; });
        tree.push_back(entry);
    }
    return tree;
}

TempDatabase::TempDatabase(const Tree& tree)
    : directory(makeDirectory())
{
    std::for_each(tree.begin(), tree.end(), [this](const Entry& entry) { make(entry); });
    atStart = snapshot();
}

TempDatabase::~TempDatabase()
{
    std::error_code ignored;
    fs::remove_all(directory, ignored);
}

void TempDatabase::make(const Entry& entry) const
{
    const fs::path path = fs::path(directory) / entry.path;
    fs::create_directories(path.parent_path());
    if (entry.path.ends_with('/')) {
        return;
    }
    fs::remove(path); // some file systems flush a file that is emptied and written again
    switch (entry.kind) {
    case Kind::file:
        std::ofstream(path, std::ios::binary) << entry.bytes;
        break;
    case Kind::link:
        fs::create_symlink(entry.bytes, path);
        break;
    case Kind::fifo:
    case Kind::socket:
        if (::mknod(path.c_str(), 0600 | (entry.kind == Kind::fifo ? S_IFIFO : S_IFSOCK), 0) != 0) {
            throw std::runtime_error("cannot make " + path.string());
        }
    }
}

void TempDatabase::remove(std::string_view file) const
{
    fs::remove_all(fs::path(directory) / file);
}

bool TempDatabase::exists(std::string_view file) const
{
    return fs::symlink_status(fs::path(directory) / file).type() != fs::file_type::not_found;
}

std::string TempDatabase::read(std::string_view file) const
{
    return bytesOf(fs::path(directory) / file);
}

std::string TempDatabase::log() const
{
    std::string text = read("qmdb.log");
    replaceAll(text, directory, "$");
    return text;
}

std::string TempDatabase::changes() const
{
    std::string text;
    for (const auto& [path, content] : snapshot()) {
        const auto before = atStart.find(path);
        if (path != "qmdb.log" && (before == atStart.end() || before->second != content)) {
            text += "== " + path + content;
        }
    }
    return text;
}

std::map<std::string, std::string> TempDatabase::snapshot() const
{
    std::map<std::string, std::string> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory)) {
        if (!fs::is_directory(entry.symlink_status()) || fs::is_empty(entry)) {
            found[entry.path().lexically_relative(directory).string()] = describe(entry);
        }
    }
    return found;
}

} // namespace test
