// Lines are cut where a plain cutter cuts them, however the bytes arrive.

#include "format/CLineCutter.h"
#include "fuzz.h"
#include "reference.h"

#include <algorithm>
#include <vector>

namespace {

using format::CLineCutter;
using fuzz::require;

/// Pieces of a file; their sizes are taken from the input and repeated without end.
class Pieces {
public:
    explicit Pieces(fuzz::Input& input)
    {
        for (int count = input.byte() % 16; count >= 0; --count) {
            const std::size_t byte = input.byte();
            sizes_.push_back(byte < 0x80 ? byte + 1 : (byte - 0x7F) * 512);
        }
    }
    std::size_t next() { return sizes_[at_++ % sizes_.size()]; }

private:
    std::vector<std::size_t> sizes_;
    std::size_t at_ = 0;
};

/// Cuts a file that comes in pieces, or is there whole when `whole` is set.
std::vector<reference::Line> cut(CLineCutter& cutter, const std::string& file, Pieces& pieces, bool whole)
{
    std::vector<reference::Line> lines;
    std::size_t received = whole ? file.size() : 0;
    std::size_t delivered = 0;
    while (!cutter.hitEnd()) {
        std::string_view line;
        const CLineCutter::Result result = cutter.next(line);
        if (result == CLineCutter::Result::NeedBytes) {
            require(!whole, "nothing is missing");
            const std::span<char> room = cutter.room();
            require(!room.empty(), "there is room for more");
            const std::size_t count = std::min({ pieces.next(), room.size(), file.size() - received });
            std::copy_n(file.data() + received, count, room.data());
            cutter.received(count);
            received += count;
            continue;
        }
        lines.push_back({ std::string(line), result == CLineCutter::Result::TooLong, cutter.hitEnd() });
        if (lines.back().isTooLong) {
            break;
        }
        delivered += line.size() + (cutter.hitEnd() ? 0 : 1);
        require(delivered == received - cutter.ahead().size(), "each byte is delivered or ahead");
    }
    return lines;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    Pieces pieces(input);
    const std::string file = fuzz::inflate(input.rest(), fuzz::mostOfFile);
    const auto expected = reference::cut(file);
    CLineCutter inPieces;
    require(cut(inPieces, file, pieces, false) == expected, "lines end where they should");
    CLineCutter atOnce(file);
    require(cut(atOnce, file, pieces, true) == expected, "lines of a whole file end where they should");
    return 0;
}
