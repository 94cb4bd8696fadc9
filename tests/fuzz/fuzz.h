#pragma once

#include <array>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

/// What every fuzz target defines: it ends the process when an invariant is broken.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

inline void require(bool holds, const char* invariant)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", invariant);
        std::abort();
    }
}

/// Takes the bytes of an input apart from the front.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : bytes_(data, size)
    {
    }

    /// 0 when there is none left.
    std::uint8_t byte()
    {
        const std::uint8_t first = bytes_.empty() ? std::uint8_t { 0 } : bytes_.front();
        bytes_ = bytes_.subspan(bytes_.empty() ? 0 : 1);
        return first;
    }
    std::string rest() { return { bytes_.begin(), bytes_.end() }; }
    std::span<const std::uint8_t> left() const { return bytes_; }

private:
    std::span<const std::uint8_t> bytes_;
};

/// Text with runs in short: a byte of 0xFF, n and a character stand for 8 (n + 1) of that character. So small
/// inputs reach the limits of lines and buffers. What goes far beyond `most` bytes is left out.
inline std::string inflate(std::string_view packed, std::size_t most)
{
    std::string text;
    for (std::size_t i = 0; i < packed.size() && text.size() < most; ++i) {
        if (packed[i] == '\xFF' && i + 2 < packed.size()) {
            text.append(8 * (static_cast<unsigned char>(packed[i + 1]) + std::size_t { 1 }), packed[i + 2]);
            i += 2;
        } else {
            text += packed[i];
        }
    }
    return text;
}

constexpr std::size_t mostOfFile = 100'000;
constexpr std::size_t mostOfText = 2'000;

/// ASCII as it is; other bytes stand for blanks, signs and digits of other scripts and for values beyond
/// Unicode.
inline std::wstring wideOf(std::string_view bytes)
{
    constexpr std::array<std::uint32_t, 10> others
        = { 0xA0, 0x2003, 0x3000, 0x2212, 0x0660, 0xFF11, 0xFF0C, 0x110000, 0x80000000, 0xFFFFFFFF };
    std::wstring wide;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        wide += static_cast<wchar_t>(byte < 0x80 ? byte : others[byte % others.size()]);
    }
    return wide;
}

/// The two locales that every system has: one that knows ASCII only, and one in UTF-8.
inline void setLocale(bool utf8)
{
    static int current = -1;
    if (current != static_cast<int>(utf8)) {
        require(std::setlocale(LC_ALL, utf8 ? "C.UTF-8" : "C") != nullptr, "the locale exists");
        current = static_cast<int>(utf8);
    }
}

/// A file that is on no disk.
class MemoryFile {
public:
    static constexpr std::string_view directory = "/proc/self/fd";

    explicit MemoryFile(std::string_view bytes)
        : file_(::memfd_create("fuzz", MFD_CLOEXEC))
    {
        const ssize_t written = file_ < 0 ? -1 : ::write(file_, bytes.data(), bytes.size());
        require(written == static_cast<ssize_t>(bytes.size()), "the file can be made");
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(file_); }

    std::string name() const { return std::to_string(file_); }
    std::string path() const { return std::string(directory) + "/" + name(); }

private:
    int file_;
};

} // namespace fuzz
