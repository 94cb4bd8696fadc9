#include "additionFloor.h"

#include "qm/handles.h"

#include <array>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>

namespace bench {

namespace {

[[noreturn]] void fail(const std::string& path)
{
    throw std::runtime_error("cannot make " + path);
}

qm::FileHandle openDirectory(const std::string& path)
{
    qm::FileHandle handle(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!handle) {
        fail(path);
    }
    return handle;
}

void flushDirectory(const std::string& path)
{
    const qm::FileHandle directory = openDirectory(path);
    ::fsync(directory.get());
}

void list(const std::string& path)
{
    const qm::FileHandle directory = openDirectory(path);
    alignas(dirent64) std::array<char, 32768> listing;
    while (::getdents64(directory.get(), listing.data(), listing.size()) > 0) { }
}

void makeFile(const Addition::File& file, bool flush)
{
    const qm::FileHandle handle(::open(file.path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (::write(handle.get(), file.bytes.data(), file.bytes.size())
        != static_cast<ssize_t>(file.bytes.size())) {
        fail(file.path);
    }
    if (flush) {
        ::fsync(handle.get());
    }
}

} // namespace

void make(const Addition& addition, Extra extra)
{
    const bool flush = extra == Extra::flushes;
    if (extra == Extra::listing) {
        list(addition.parent);
    }
    if (!addition.directory.empty()) {
        if (::mkdir(addition.directory.c_str(), 0750) != 0) {
            fail(addition.directory);
        }
        if (flush) {
            flushDirectory(addition.parent);
        }
    }
    for (const Addition::File& file : addition.files) {
        makeFile(file, flush);
        if (flush) {
            flushDirectory(addition.directory.empty() ? addition.parent : addition.directory);
        }
    }
}

void remove(const Addition& addition)
{
    for (const Addition::File& file : addition.files) {
        std::filesystem::remove(file.path);
    }
    if (!addition.directory.empty()) {
        std::filesystem::remove(addition.directory);
    }
}

} // namespace bench
