/**
 * @file records.h
 * @brief The plain records and enumerations that cross the library's boundary.
 *
 * The layout of every record is part of the binary interface (x86-64 Linux: `long` has 64 bits,
 * `wchar_t` has 32 and holds one UTF-32 code point) and never changes within a major version.
 *
 * Text fields that the library fills are cut to the array's length less one, padded with zeros
 * and always terminated. A text field that the library reads ends at its first zero or at the
 * array's end. Identifiers are the numbers under "ID" in the descriptor files.
 *
 * The sizes of the text fields are part of the layout: 50 characters for names, comments and
 * letter lists, 10 for units of measure.
 */
#ifndef QMDATABASE_RECORDS_H
#define QMDATABASE_RECORDS_H

#include <stdbool.h>
#include <stddef.h>
#include <wchar.h>

#ifdef __cplusplus
static_assert(
#else
_Static_assert(
#endif
    sizeof(wchar_t) == 4, "libqmDatabase takes texts of 32-bit characters: compile without -fshort-wchar");

/* C does not fix the type behind an enumeration, so there the enumerated types are plain ints.
   In C++ the fixed type admits every number that a file may hold. */

/** Aggregate state of a phase; the number under "Aggreg" in a phase descriptor. */
#ifdef __cplusplus
enum MATTER_STATE : int
#else
typedef int MATTER_STATE;
enum
#endif
{
    MATTER_STATE_NOT_GIVEN = 0, /**< missing or not a number */
    MATTER_STATE_SOLID = 1, /**< letter "S" in "AvForPhases" */
    MATTER_STATE_LIQUID = 2, /**< letter "L" */
    MATTER_STATE_GAS = 3 /**< letter "V" (vapour) */
};

/** Type of a stored value; the number under "Type" in a parameter head. */
#ifdef __cplusplus
enum PARAM_TYPE : int
#else
typedef int PARAM_TYPE;
enum
#endif
{
    PARAM_TYPE_CONSTANT = 1, /**< one number or one vector; letter "C" in "DataTypes" */
    PARAM_TYPE_TABLE_T = 2, /**< one-dimensional table; letter "t" */
    PARAM_TYPE_TABLE_P = 3, /**< one-dimensional table; letter "p"; stored like "t" */
    PARAM_TYPE_TABLE2D_T = 4, /**< two-dimensional table; letter "T" */
    PARAM_TYPE_TABLE2D_X = 5 /**< two-dimensional table; letter "X"; stored like "T" */
};

/** One component of a mixture (16 bytes). */
typedef struct COMPONENT {
    long matterId; /**< ID of the component substance; not checked to exist */
    double molarFraction; /**< molar fraction, mol/mol */
} COMPONENT;

/**
 * One substance (432 bytes): element of qmdbGetMatters(), input of qmdbAddMatter().
 *
 * In C++ the destructor frees `composition` with array-delete when `mixture` is above 0, so a host
 * that fills a record itself allocates `composition` with `new COMPONENT[n]`, or sets `mixture` or
 * `composition` to 0 before the record ends. In C the host frees what it allocated.
 */
typedef struct MATTER {
    long id; /**< substance ID; ignored by qmdbAddMatter() */
    wchar_t name[50]; /**< display name */
    wchar_t comment[50]; /**< comment */
    long mixture; /**< 1 or more marks a mixture, 0 a pure substance; kept as the file gives it */
    long compositionCount; /**< number of elements of `composition` */
    COMPONENT* composition; /**< the components; null for a pure substance */
#ifdef __cplusplus
    MATTER() = default;
    MATTER(const MATTER&) = delete;
    MATTER& operator=(const MATTER&) = delete;
    ~MATTER()
    {
        if (mixture > 0) {
            delete[] composition;
        }
    }
#endif
} MATTER;

/** One phase of a substance (216 bytes). */
typedef struct PHASE {
    long id; /**< phase ID, unique within the substance; ignored by qmdbAddPhase() */
    wchar_t name[50]; /**< display name */
    MATTER_STATE aggreg; /**< aggregate state; any number that the file gives */
} PHASE;

/** One phase change of a substance (224 bytes). */
typedef struct PHASECHANGE {
    long id; /**< phase-change ID, unique within the substance; ignored by qmdbAddPhaseChange() */
    wchar_t name[50]; /**< display name */
    long phase1; /**< ID of the phase before the change; not checked to exist */
    long phase2; /**< ID of the phase after the change; not checked to exist */
} PHASECHANGE;

/** One parameter attached to a substance, a phase or a phase change (256 bytes). */
typedef struct PARAMETER {
    long id; /**< parameter ID, which is the ID of its database-wide description */
    PARAM_TYPE type; /**< type of the stored value */
    bool vector; /**< the value is a vector of three components; any byte but 0 passed in counts as true */
    wchar_t name[50]; /**< name from the description; empty when nothing describes the ID */
    wchar_t units[10]; /**< units of measure of the value, from the description */
} PARAMETER;

/** One database-wide parameter description offered for a phase (656 bytes). */
typedef struct PARAMETERDESCR {
    long id; /**< parameter ID */
    wchar_t name[50]; /**< display name */
    wchar_t units[10]; /**< units of measure of the value */
    bool binary; /**< "Binary" is "1"; handed on as it is, the library does not act on it */
    bool scalar; /**< values may be scalars */
    bool vector; /**< values may be vectors */
    wchar_t dataTypes[50]; /**< letters of the allowed types, see PARAM_TYPE */
    wchar_t avForPhases[50]; /**< letters of the aggregate states, see MATTER_STATE */
} PARAMETERDESCR;

#endif
