// In the place of packBench.cpp where its libraries are missing.
#include "cases.h"

void bench::addPackCases() { }
