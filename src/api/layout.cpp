// Holds the binary interface in place: hosts are compiled against these numbers.
#include "qmdatabase/QMNative.h"

#include <cstddef>
#include <type_traits>

#pragma GCC diagnostic ignored                                                                               \
    "-Winvalid-offsetof" // the value classes have one base and one pointer to it all

static_assert(
    sizeof(long) == 8 && sizeof(wchar_t) == 4 && sizeof(MATTER_STATE) == 4 && sizeof(PARAM_TYPE) == 4);

static_assert(sizeof(MATTER) == 432 && alignof(MATTER) == 8);
static_assert(offsetof(MATTER, id) == 0 && offsetof(MATTER, name) == 8 && offsetof(MATTER, comment) == 208);
static_assert(offsetof(MATTER, mixture) == 408 && offsetof(MATTER, compositionCount) == 416);
static_assert(offsetof(MATTER, composition) == 424);
// Its arrays carry their length in front, because they have something to destroy.
static_assert(!std::is_trivially_destructible_v<MATTER>);

static_assert(sizeof(COMPONENT) == 16 && std::is_trivial_v<COMPONENT>);
static_assert(offsetof(COMPONENT, matterId) == 0 && offsetof(COMPONENT, molarFraction) == 8);

static_assert(sizeof(PHASE) == 216 && std::is_trivial_v<PHASE>);
static_assert(offsetof(PHASE, id) == 0 && offsetof(PHASE, name) == 8 && offsetof(PHASE, aggreg) == 208);

static_assert(sizeof(PHASECHANGE) == 224 && std::is_trivial_v<PHASECHANGE>);
static_assert(offsetof(PHASECHANGE, id) == 0 && offsetof(PHASECHANGE, name) == 8);
static_assert(offsetof(PHASECHANGE, phase1) == 208 && offsetof(PHASECHANGE, phase2) == 216);

static_assert(sizeof(PARAMETER) == 256 && std::is_trivial_v<PARAMETER>);
static_assert(
    offsetof(PARAMETER, id) == 0 && offsetof(PARAMETER, type) == 8 && offsetof(PARAMETER, vector) == 12);
static_assert(offsetof(PARAMETER, name) == 16 && offsetof(PARAMETER, units) == 216);

static_assert(sizeof(PARAMETERDESCR) == 656 && std::is_trivial_v<PARAMETERDESCR>);
static_assert(offsetof(PARAMETERDESCR, id) == 0 && offsetof(PARAMETERDESCR, name) == 8);
static_assert(offsetof(PARAMETERDESCR, units) == 208 && offsetof(PARAMETERDESCR, binary) == 248);
static_assert(offsetof(PARAMETERDESCR, scalar) == 249 && offsetof(PARAMETERDESCR, vector) == 250);
static_assert(offsetof(PARAMETERDESCR, dataTypes) == 252 && offsetof(PARAMETERDESCR, avForPhases) == 452);

static_assert(sizeof(TABLEROW) == 16 && offsetof(TABLEROW, x) == 0 && offsetof(TABLEROW, y) == 8);
static_assert(
    sizeof(TABLEROWVECT) == 32 && offsetof(TABLEROWVECT, x) == 0 && offsetof(TABLEROWVECT, vx) == 8);
static_assert(offsetof(TABLEROWVECT, vy) == 16 && offsetof(TABLEROWVECT, vz) == 24);

static_assert(sizeof(SUBTABLECONST) == 24 && offsetof(SUBTABLECONST, firstArg) == 0);
static_assert(offsetof(SUBTABLECONST, count) == 8 && offsetof(SUBTABLECONST, rows) == 16);
static_assert(sizeof(SUBTABLEVECT) == 24 && offsetof(SUBTABLEVECT, firstArg) == 0);
static_assert(offsetof(SUBTABLEVECT, count) == 8 && offsetof(SUBTABLEVECT, rows) == 16);

static_assert(sizeof(IDbData) == 16 && offsetof(IDbData, type) == 8 && offsetof(IDbData, isVector) == 12);
static_assert(sizeof(IDbDataConst) == 24 && offsetof(IDbDataConst, value) == 16);
static_assert(sizeof(IDbDataConstVector) == 40 && offsetof(IDbDataConstVector, x) == 16);
static_assert(offsetof(IDbDataConstVector, y) == 24 && offsetof(IDbDataConstVector, z) == 32);
static_assert(
    sizeof(IDbDataTable) == 32 && offsetof(IDbDataTable, rows) == 16 && offsetof(IDbDataTable, count) == 24);
static_assert(sizeof(IDbDataTableVector) == 32 && offsetof(IDbDataTableVector, rows) == 16);
static_assert(offsetof(IDbDataTableVector, count) == 24);
static_assert(sizeof(IDbDataTable2D) == 32 && offsetof(IDbDataTable2D, subtables) == 16);
static_assert(offsetof(IDbDataTable2D, count) == 24);
static_assert(sizeof(IDbDataTable2DVector) == 32 && offsetof(IDbDataTable2DVector, subtables) == 16);
static_assert(offsetof(IDbDataTable2DVector, count) == 24);
