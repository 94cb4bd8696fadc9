/**
 * @file values.h
 * @brief Value objects: what a parameter holds, handed out by qmdbGetParamValue() and taken by
 *        qmdbAddMatterParam() and qmdbAddPhaseParam().
 *
 * `type` and `isVector` tell which of the six kinds a value is; cast the pointer accordingly:
 *
 *     type   isVector = false   isVector = true
 *     1      IDbDataConst       IDbDataConstVector
 *     2, 3   IDbDataTable       IDbDataTableVector
 *     4, 5   IDbDataTable2D     IDbDataTable2DVector
 *
 * Values are in the units of the parameter's description ("Units"), arguments in those that its key
 * "ArgumentUnits" names, which the library does not hand out; it stores numbers and converts none.
 * Rows are in strictly ascending order of `x`. The library does not interpolate.
 *
 * A value that the library hands out is the caller's, who returns it whole to
 * qmdbDestroyParameterData(). It stays valid after the database is closed. A value that the caller
 * hands in stays the caller's; it is only read, and nothing virtual is called on it, so that C
 * hosts pass plain structures whose `reserved` is NULL.
 *
 * In C++ these are polymorphic classes whose destructors free what they own with array-delete:
 * allocate rows and subtables of your own values with array-new, or reset the pointers before the
 * value is destroyed. Do not use dynamic_cast or typeid on values across the boundary.
 */
#ifndef QMDATABASE_VALUES_H
#define QMDATABASE_VALUES_H

#include "records.h"

/** One row of a scalar table (16 bytes). */
typedef struct TABLEROW {
    double x; /**< argument, in the units of the database: K, Pa and the like */
    double y; /**< value, in the units of the parameter */
} TABLEROW;

/** One row of a table of vectors (32 bytes). */
typedef struct TABLEROWVECT {
    double x; /**< argument */
    double vx; /**< first component of the value, in the units of the parameter */
    double vy; /**< second component */
    double vz; /**< third component */
} TABLEROWVECT;

#ifdef __cplusplus

#include <algorithm>
#include <utility>

/** Rows of a two-dimensional table that share their first argument (24 bytes). Copies are deep. */
template <class Row>
struct QMDB_SUBTABLE {
    double firstArg = 0; /**< first argument of the table */
    long count = 0; /**< number of rows */
    Row* rows = nullptr; /**< rows over the second argument, made with array-new; may be null */

    QMDB_SUBTABLE() = default;
    QMDB_SUBTABLE(const QMDB_SUBTABLE& other)
        : firstArg(other.firstArg)
        , count(other.count)
        , rows(other.rows && other.count > 0 ? new Row[static_cast<std::size_t>(other.count)] : nullptr)
    {
        if (rows) {
            std::copy(other.rows, other.rows + other.count, rows);
        }
    }
    QMDB_SUBTABLE& operator=(QMDB_SUBTABLE other) noexcept
    {
        std::swap(firstArg, other.firstArg);
        std::swap(count, other.count);
        std::swap(rows, other.rows);
        return *this;
    }
    ~QMDB_SUBTABLE() { delete[] rows; }
};

using SUBTABLECONST = QMDB_SUBTABLE<TABLEROW>;
using SUBTABLEVECT = QMDB_SUBTABLE<TABLEROWVECT>;

/** Base of all values; its virtual destructor is its only operation. */
struct IDbData {
    PARAM_TYPE type {}; /**< type of the parameter, 1 to 5 */
    bool isVector = false; /**< the value is one of the vector kinds */

    IDbData() = default;
    IDbData(const IDbData&) = delete;
    IDbData& operator=(const IDbData&) = delete;
    virtual ~IDbData() = default;
};

/** One number. */
struct IDbDataConst : IDbData {
    double value = 0; /**< the number, in the units of the parameter */
};

/** One vector. */
struct IDbDataConstVector : IDbData {
    double x = 0; /**< first component, in the units of the parameter */
    double y = 0; /**< second component */
    double z = 0; /**< third component */
};

/** A function of one argument. */
struct IDbDataTable : IDbData {
    TABLEROW* rows = nullptr; /**< rows, made with array-new; may be null */
    long count = 0; /**< number of rows */
    ~IDbDataTable() override { delete[] rows; }
};

/** A vector function of one argument. */
struct IDbDataTableVector : IDbData {
    TABLEROWVECT* rows = nullptr; /**< rows, made with array-new; may be null */
    long count = 0; /**< number of rows */
    ~IDbDataTableVector() override { delete[] rows; }
};

/** A function of two arguments: one subtable for each first argument, in file order. */
struct IDbDataTable2D : IDbData {
    SUBTABLECONST* subtables = nullptr; /**< subtables, made with array-new; may be null */
    long count = 0; /**< number of subtables */
    ~IDbDataTable2D() override { delete[] subtables; }
};

/** A vector function of two arguments: one subtable for each first argument, in file order. */
struct IDbDataTable2DVector : IDbData {
    SUBTABLEVECT* subtables = nullptr; /**< subtables, made with array-new; may be null */
    long count = 0; /**< number of subtables */
    ~IDbDataTable2DVector() override { delete[] subtables; }
};

#else /* C: the same layouts as plain structures */

/** Rows of a two-dimensional table that share their first argument (24 bytes). */
typedef struct SUBTABLECONST {
    double firstArg; /**< first argument of the table */
    long count; /**< number of rows */
    TABLEROW* rows; /**< rows over the second argument */
} SUBTABLECONST;

/** The same for vectors (24 bytes). */
typedef struct SUBTABLEVECT {
    double firstArg; /**< first argument of the table */
    long count; /**< number of rows */
    TABLEROWVECT* rows; /**< rows over the second argument */
} SUBTABLEVECT;

/** Head of every value. */
typedef struct IDbData {
    const void* reserved; /**< the library's own; NULL in values that a C host builds */
    PARAM_TYPE type; /**< type of the parameter, 1 to 5 */
    bool isVector; /**< the value is one of the vector kinds */
} IDbData;

/** One number. */
typedef struct IDbDataConst {
    IDbData head; /**< type and form */
    double value; /**< the number, in the units of the parameter */
} IDbDataConst;

/** One vector. */
typedef struct IDbDataConstVector {
    IDbData head; /**< type and form */
    double x; /**< first component, in the units of the parameter */
    double y; /**< second component */
    double z; /**< third component */
} IDbDataConstVector;

/** A function of one argument. */
typedef struct IDbDataTable {
    IDbData head; /**< type and form */
    TABLEROW* rows; /**< the rows; may be null when count is 0 */
    long count; /**< number of rows */
} IDbDataTable;

/** A vector function of one argument. */
typedef struct IDbDataTableVector {
    IDbData head; /**< type and form */
    TABLEROWVECT* rows; /**< the rows; may be null when count is 0 */
    long count; /**< number of rows */
} IDbDataTableVector;

/** A function of two arguments: one subtable for each first argument, in file order. */
typedef struct IDbDataTable2D {
    IDbData head; /**< type and form */
    SUBTABLECONST* subtables; /**< the subtables; may be null when count is 0 */
    long count; /**< number of subtables */
} IDbDataTable2D;

/** A vector function of two arguments: one subtable for each first argument, in file order. */
typedef struct IDbDataTable2DVector {
    IDbData head; /**< type and form */
    SUBTABLEVECT* subtables; /**< the subtables; may be null when count is 0 */
    long count; /**< number of subtables */
} IDbDataTable2DVector;

#endif

#endif
