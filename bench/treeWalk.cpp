#include "treeWalk.h"

#include "qm/handles.h"

#include <array>
#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {

namespace {

constexpr int deepestLevel = 2; // phases and phase changes

class Walk {
public:
    explicit Walk(Reading reading)
        : reading_(reading)
    {
    }

    void directory(int parent, const char* name, int level)
    {
        totals_.nameBytes += static_cast<long>(std::string_view(name).size()) + 1;
        const qm::FileHandle handle(opened(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        std::vector<std::string> below;
        alignas(dirent64) std::array<char, 32768> listing;
        ssize_t size = 0;
        while ((size = ::getdents64(handle.get(), listing.data(), listing.size())) > 0) {
            for (ssize_t at = 0; at < size;) {
                const auto& entry = *reinterpret_cast<const dirent64*>(listing.data() + at);
                at += entry.d_reclen;
                if (entry.d_type == DT_DIR && level < deepestLevel && entry.d_name[0] != '.') {
                    below.emplace_back(entry.d_name);
                } else if (entry.d_type != DT_DIR && isDescriptor(entry.d_name)) {
                    file(handle.get(), entry.d_name);
                }
            }
        }
        for (const std::string& subdirectory : below) {
            directory(handle.get(), subdirectory.c_str(), level + 1);
        }
    }

    const WalkTotals& totals() const noexcept { return totals_; }

private:
    static int opened(int parent, const char* name, int flags)
    {
        const int descriptor = ::openat(parent, name, flags);
        if (descriptor < 0) {
            throw std::runtime_error(std::string("cannot open ") + name);
        }
        return descriptor;
    }

    void file(int parent, const char* name)
    {
        const qm::FileHandle handle(opened(parent, name, O_RDONLY | O_CLOEXEC));
        ++totals_.files;
        totals_.nameBytes += static_cast<long>(std::string_view(name).size()) + 1;
        ssize_t size = 0;
        do {
            size = ::read(handle.get(), buffer_.data(), buffer_.size());
            totals_.contentBytes += size;
            // A string table larger than the buffer loses a line at each seam, which costs nothing here.
            if (reading_ == Reading::cut && size > 0) {
                cut({ buffer_.data(), static_cast<std::size_t>(size) });
            }
        } while (size > 0); // a short read need not be the end of a file
    }

    void cut(std::string_view text)
    {
        forEachEntry(text, [this](std::string_view key, std::string_view value) {
            ++totals_.entries;
            benchmark::DoNotOptimize(key.data() + value.size());
        });
    }

    Reading reading_;
    WalkTotals totals_;
    std::vector<char> buffer_ = std::vector<char>(64 * 1024);
};

} // namespace

WalkTotals walkTree(const std::filesystem::path& root, Reading reading)
{
    Walk walk(reading);
    walk.directory(AT_FDCWD, root.c_str(), 0);
    return walk.totals();
}

bool isDescriptor(std::string_view name) noexcept
{
    constexpr std::string_view stringTable = "default.lst";
    if (name.size() < 4 || name[name.size() - 4] != '.') {
        return false;
    }
    const std::string_view extension = name.substr(name.size() - 3);
    return extension == "prh" || extension == "mtd" || extension == "phd" || extension == "pcd"
        || extension == "prd" || name == stringTable;
}

} // namespace bench
