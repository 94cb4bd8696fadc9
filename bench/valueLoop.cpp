// What the Python module is held against: opens a database and reads all its values from C++, several times,
// and prints the least processor seconds of an open and of reading all values, and how many there are:
// value_loop DIR REPETITIONS
#include "qmdatabase/QMNative.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

struct Place {
    long substance, phase, change, parameter;
};

/// The IDs in a list that one of the exported functions gives, which is released.
template <class Record, class List>
std::vector<long> idsOf(int (*destroy)(Record**), List list)
{
    Record* records = nullptr;
    int count = 0;
    list(&records, &count);
    std::vector<long> ids;
    for (int i = 0; i < count; ++i) {
        ids.push_back(records[i].id);
    }
    destroy(&records);
    return ids;
}

void append(
    std::vector<Place>& places, long substance, long phase, long change, const std::vector<long>& parameters)
{
    for (const long parameter : parameters) {
        places.push_back({ substance, phase, change, parameter });
    }
}

void appendSubstance(std::vector<Place>& places, long database, long substance)
{
    const auto parametersOf = [](auto list) { return idsOf<PARAMETER>(qmdbDestroyParametersArray, list); };
    append(places, substance, -1, -1, parametersOf([&](PARAMETER** records, int* count) {
        qmdbGetMatterParams(database, substance, records, count);
    }));
    for (const long phase : idsOf<PHASE>(qmdbDestroyPhasesArray,
             [&](PHASE**records, int*count) { qmdbGetPhases(database, substance, records, count); })) {
        append(places, substance, phase, -1, parametersOf([&](PARAMETER** records, int* count) {
            qmdbGetPhaseParams(database, substance, phase, records, count);
        }));
    }
    for (const long change :
        idsOf<PHASECHANGE>(qmdbDestroyPhaseChangeArray, [&](PHASECHANGE**records, int*count) {
            qmdbGetPhaseChanges(database, substance, records, count);
        })) {
        append(places, substance, -1, change, parametersOf([&](PARAMETER** records, int* count) {
            qmdbGetPhaseChangeParams(database, substance, change, records, count);
        }));
    }
}

std::vector<Place> placesOf(long database)
{
    std::vector<Place> places;
    for (const long substance : idsOf<MATTER>(qmdbDestroyMatterArray,
             [&](MATTER**records, int*count) { qmdbGetMatters(database, records, count); })) {
        appendSubstance(places, database, substance);
    }
    return places;
}

void readAll(long database, const std::vector<Place>& places)
{
    for (const auto& [substance, phase, change, parameter] : places) {
        IDbData* value = nullptr;
        if (qmdbGetParamValue(database, substance, phase, change, parameter, &value) != QMDB_OK) {
            throw std::runtime_error("a value cannot be read");
        }
        qmdbDestroyParameterData(&value);
    }
}

double processorSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

template <class Job>
double leastSeconds(int repetitions, Job job)
{
    double least = std::numeric_limits<double>::infinity();
    for (int i = 0; i < repetitions; ++i) {
        const double begin = processorSeconds();
        job();
        least = std::min(least, processorSeconds() - begin);
    }
    return least;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: value_loop DIR REPETITIONS\n";
        return EXIT_FAILURE;
    }
    const std::wstring path(argv[1], argv[1] + std::string(argv[1]).size()); // plain ASCII
    const int repetitions = std::atoi(argv[2]);
    long database = -1;
    const double open = leastSeconds(repetitions, [&] {
        qmdbClose(database);
        qmdbOpen(path.c_str(), L"en", L"/tmp", false, &database);
    });
    try {
        const std::vector<Place> places = placesOf(database);
        const double values = leastSeconds(repetitions, [&] { readAll(database, places); });
        std::cout << open << ' ' << values << ' ' << places.size() << '\n';
    } catch (const std::exception& error) {
        std::cerr << "value_loop: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
