#pragma once

#include "support/TempDatabase.h"

namespace test {

/// Substance 4 with one phase, one phase change and a parameter of each owner. No string ID is
/// given, which counts as string ID 0.
inline const Tree water = {
    { "default.lst", "" },
    { "7.prd", "ID=7\nName=Density\nUnits=kg/m3\nBinary=0\nScalar=1\nAvForPhases=SL\nDataTypes=Ct\n" },
    { "W/w.mtd", "ID=4\nName=Water\nMixture=0\nComposition=\n" },
    { "W/own.prh", "ID=9\nVector=0\nType=1\nData=own.dat\n" },
    { "W/own.dat", "1.5\n" },
    { "W/L/l.phd", "ID=2\nName=Liquid\nAggreg=2\n" },
    { "W/L/d.prh", "ID=7\nVector=0\nType=2\nData=d.dat\n" },
    { "W/L/d.dat", "300 996.5\n" },
    { "W/M/m.pcd", "ID=3\nName=Melting\nPhase1=1\nPhase2=2\n" },
    { "W/M/h.prh", "ID=8\nVector=1\nType=1\nData=h.dat\n" },
    { "W/M/h.dat", "1 2 3\n" },
};

inline constexpr const char* waterListing = "matter 4 'Water' '' mixture 0\n"
                                            "  param 9 type 1 scalar '' '' = 1.5\n"
                                            "  phase 2 'Liquid' state 2\n"
                                            "    param 7 type 2 scalar 'Density' 'kg/m3' = (300 996.5)\n"
                                            "  change 3 'Melting' 1 to 2\n"
                                            "    param 8 type 1 vector '' '' = 1 2 3\n";

/// So many directories in a substance that what lies in them is read while they are listed, as few stay open.
inline Tree crowdIn(const std::string& substance)
{
    return { { substance + "/E1/", "" }, { substance + "/E2/", "" }, { substance + "/E3/", "" },
        { substance + "/E4/", "" } };
}

/// Another substance, with a phase that has nothing of its own.
inline const Tree bareIron = {
    { "I/i.mtd", "ID=5\nName=Iron\nMixture=0\nComposition=\n" },
    { "I/P/p.phd", "ID=1\nName=Solid\nAggreg=1\n" },
};

inline constexpr const char* bareIronListing = "matter 5 'Iron' '' mixture 0\n"
                                               "  phase 1 'Solid' state 1\n";

} // namespace test
