// What the library's calls cost beside the least that the machine asks for the same job.
//
// open        qmdbOpen() of a whole tree             floor: list, open, read and close each once, cut lines
// list        every list of a database               floor: arrays of the same bytes, copied
// value ...   qmdbGetParamValue() of each kind       floor: read in pieces, the fastest number parser
// add ...     additions in memory                    floor: mkdir, open, write, close
// ... on disk the same, durable                      floor: the same calls and as many flushes
// log         opening with the informational log     floor: open, and the same lines appended alone
// text ...    conversions of texts and numbers       floor: the standard library's fastest, unchecked
//
// scripts/bench runs it and prints the ratios.
#include "cases.h"

#include <clocale>
#include <cstdlib>
#include <exception>
#include <iostream>

int main(int argc, char** argv)
{
    std::setlocale(LC_ALL, "C.UTF-8");
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return EXIT_FAILURE;
    }
    bench::addOpenCases();
    bench::addPackCases();
    bench::addListCases();
    bench::addValueCases();
    bench::addAdditionCases();
    bench::addLogCases();
    bench::addConversionCases();
    try {
        return benchmark::RunSpecifiedBenchmarks() > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
