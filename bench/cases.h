#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

namespace bench {

enum class Scale { small, medium, large };

/// A case is called "job/scale/shape/way". The ways of one job on one shape are compared with each
/// other; "floor" is the least that any program must do for the job, "library" is what we do. The
/// shape is a list of "key:number"; the number that differs between the scales is what the job grows
/// with.
struct CaseName {
    std::string job;
    Scale scale = Scale::small;
    std::string shape;
};

inline std::string text(const CaseName& name, const std::string& way)
{
    constexpr const char* scales[] = { "small", "medium", "large" };
    return name.job + "/" + scales[static_cast<int>(name.scale)] + "/" + name.shape + "/" + way;
}

template <class Body>
benchmark::internal::Benchmark* addCase(const CaseName& name, const std::string& way, Body&& body)
{
    auto* const added = benchmark::RegisterBenchmark(text(name, way).c_str(), std::forward<Body>(body));
    return added->Unit(benchmark::kMicrosecond);
}

void addOpenCases();
void addListCases();
void addValueCases();
void addAdditionCases();
void addLogCases();
void addConversionCases();

/// One SQLite or JSON file in the place of the tree; no cases where their libraries are missing.
void addPackCases();

} // namespace bench
