// Writes a database of made-up materials: generate_tree OUT SUBSTANCES [SEED]
#include "treeGenerator.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

int main(int argc, char** argv)
{
    if (argc < 3 || argc > 4) {
        std::cerr << "usage: generate_tree OUT SUBSTANCES [SEED]\n"
                     "OUT is made and must not exist; every substance brings about 30 files.\n";
        return EXIT_FAILURE;
    }
    try {
        bench::TreeShape shape { .substances = std::stol(argv[2]) };
        shape.seed = argc == 4 ? std::stoull(argv[3]) : shape.seed;
        if (!std::filesystem::create_directory(argv[1])) {
            throw std::runtime_error(std::string(argv[1]) + " exists");
        }
        bench::generateTree(argv[1], shape);
        std::cout << bench::fileCount(shape) << " files\n";
    } catch (const std::exception& error) {
        std::cerr << "generate_tree: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
