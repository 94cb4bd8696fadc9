// Runs a fuzz target on the files of directories, for compilers without libFuzzer.

#include "fuzz.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

int main(int count, char** arguments)
{
    std::size_t files = 0;
    for (const std::string_view argument : std::span(arguments, static_cast<std::size_t>(count)).subspan(1)) {
        if (argument.starts_with('-')) {
            continue; // for libFuzzer
        }
        for (const auto& entry : std::filesystem::directory_iterator(argument)) {
            std::cout << entry.path().string() << std::endl; // flushed: the last one shown is the culprit
            std::ifstream in(entry.path(), std::ios::binary);
            const std::string bytes(std::istreambuf_iterator<char>(in), {});
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
            ++files;
        }
    }
    fuzz::require(files > 0, "there are inputs to replay");
}
