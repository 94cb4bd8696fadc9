/* A C host: the layouts that hosts are compiled with, and values built and read as plain structures. */

#define _XOPEN_SOURCE 700

#include "qmdatabase/QMNative.h"

#include <ftw.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

_Static_assert(sizeof(long) == 8 && sizeof(wchar_t) == 4 && sizeof(bool) == 1, "basic types");
_Static_assert(sizeof(MATTER_STATE) == 4 && sizeof(PARAM_TYPE) == 4, "enumerations");
_Static_assert(MATTER_STATE_SOLID == 1 && MATTER_STATE_LIQUID == 2 && MATTER_STATE_GAS == 3, "MATTER_STATE");
_Static_assert(PARAM_TYPE_CONSTANT == 1 && PARAM_TYPE_TABLE_T == 2 && PARAM_TYPE_TABLE_P == 3, "PARAM_TYPE");
_Static_assert(PARAM_TYPE_TABLE2D_T == 4 && PARAM_TYPE_TABLE2D_X == 5, "PARAM_TYPE");

#define AT(record, field, offset) (offsetof(record, field) == (offset))

_Static_assert(AT(MATTER, id, 0) && AT(MATTER, name, 8) && AT(MATTER, comment, 208), "MATTER");
_Static_assert(AT(MATTER, mixture, 408) && AT(MATTER, compositionCount, 416), "MATTER");
_Static_assert(AT(MATTER, composition, 424) && sizeof(MATTER) == 432, "MATTER");
_Static_assert(AT(COMPONENT, matterId, 0) && AT(COMPONENT, molarFraction, 8), "COMPONENT");
_Static_assert(sizeof(COMPONENT) == 16, "COMPONENT");
_Static_assert(AT(PHASE, id, 0) && AT(PHASE, name, 8) && AT(PHASE, aggreg, 208), "PHASE");
_Static_assert(sizeof(PHASE) == 216, "PHASE");
_Static_assert(AT(PHASECHANGE, id, 0) && AT(PHASECHANGE, name, 8), "PHASECHANGE");
_Static_assert(AT(PHASECHANGE, phase1, 208) && AT(PHASECHANGE, phase2, 216), "PHASECHANGE");
_Static_assert(sizeof(PHASECHANGE) == 224, "PHASECHANGE");
_Static_assert(AT(PARAMETER, id, 0) && AT(PARAMETER, type, 8) && AT(PARAMETER, vector, 12), "PARAMETER");
_Static_assert(AT(PARAMETER, name, 16) && AT(PARAMETER, units, 216) && sizeof(PARAMETER) == 256, "PARAMETER");
_Static_assert(AT(PARAMETERDESCR, id, 0) && AT(PARAMETERDESCR, name, 8), "PARAMETERDESCR");
_Static_assert(AT(PARAMETERDESCR, units, 208) && AT(PARAMETERDESCR, binary, 248), "PARAMETERDESCR");
_Static_assert(AT(PARAMETERDESCR, scalar, 249) && AT(PARAMETERDESCR, vector, 250), "PARAMETERDESCR");
_Static_assert(AT(PARAMETERDESCR, dataTypes, 252) && AT(PARAMETERDESCR, avForPhases, 452), "PARAMETERDESCR");
_Static_assert(sizeof(PARAMETERDESCR) == 656, "PARAMETERDESCR");

_Static_assert(sizeof(TABLEROW) == 16 && sizeof(TABLEROWVECT) == 32 && AT(TABLEROWVECT, vz, 24), "rows");
_Static_assert(AT(SUBTABLECONST, firstArg, 0) && AT(SUBTABLECONST, count, 8), "SUBTABLECONST");
_Static_assert(AT(SUBTABLECONST, rows, 16) && sizeof(SUBTABLECONST) == 24, "SUBTABLECONST");
_Static_assert(AT(SUBTABLEVECT, count, 8) && AT(SUBTABLEVECT, rows, 16), "SUBTABLEVECT");
_Static_assert(AT(IDbData, type, 8) && AT(IDbData, isVector, 12), "IDbData");
_Static_assert(AT(IDbDataConst, value, 16) && AT(IDbDataConstVector, x, 16), "constants");
_Static_assert(AT(IDbDataTable, rows, 16) && AT(IDbDataTable, count, 24), "IDbDataTable");
_Static_assert(AT(IDbDataTable2D, subtables, 16) && AT(IDbDataTable2D, count, 24), "IDbDataTable2D");

static int failures = 0;

static void check(bool holds, const char* what)
{
    if (!holds) {
        fprintf(stderr, "failed: %s\n", what);
        ++failures;
    }
}

#define CHECK(condition) check(condition, #condition)

static int removeEntry(const char* path, const struct stat* status, int type, struct FTW* place)
{
    (void)status, (void)type, (void)place;
    return remove(path);
}

static void writeDescription(const char* directory)
{
    char path[1000];
    snprintf(path, sizeof path, "%s/all.prd", directory);
    FILE* file = fopen(path, "w");
    if (file) {
        fputs(
            "ID=7\nName=All\nUnits=m\nBinary=1\nScalar=1\nVector=1\nAvForPhases=S\nDataTypes=CtpTX\n", file);
        fclose(file);
    }
}

/* Adds a value to a phase of its own and reads it back, to be released by the caller. */
static IDbData* roundTrip(long database, long matter, PARAM_TYPE type, bool isVector, const void* value)
{
    PHASE phase = { .aggreg = MATTER_STATE_SOLID };
    swprintf(phase.name, 50, L"%d%d", type, isVector);
    const int phaseId = qmdbAddPhase(database, matter, &phase);
    CHECK(phaseId >= 0);
    const PARAMETER param = { .id = 7, .type = type, .vector = isVector };
    CHECK(qmdbAddPhaseParam(database, matter, phaseId, &param, value) == QMDB_OK);
    IDbData* read = NULL;
    CHECK(qmdbGetParamValue(database, matter, phaseId, -1, 7, &read) == QMDB_OK);
    if (!read) {
        exit(1);
    }
    CHECK(read->type == type && read->isVector == isVector);
    return read;
}

static void release(IDbData* value)
{
    CHECK(qmdbDestroyParameterData(&value) == QMDB_OK);
}

static void checkConstants(long database, long matter)
{
    const IDbDataConst number = { .value = 1.5 };
    IDbData* read = roundTrip(database, matter, PARAM_TYPE_CONSTANT, false, &number);
    CHECK(((const IDbDataConst*)read)->value == 1.5);
    release(read);

    const IDbDataConstVector vector = { .x = 1, .y = -2.5, .z = 3 };
    read = roundTrip(database, matter, PARAM_TYPE_CONSTANT, true, &vector);
    const IDbDataConstVector* back = (const IDbDataConstVector*)read;
    CHECK(back->x == 1 && back->y == -2.5 && back->z == 3);
    release(read);
}

static void checkTables(long database, long matter)
{
    TABLEROW rows[] = { { 1, 2 }, { 3, 4 } };
    const IDbDataTable table = { .rows = rows, .count = 2 };
    IDbData* read = roundTrip(database, matter, PARAM_TYPE_TABLE_P, false, &table);
    const IDbDataTable* back = (const IDbDataTable*)read;
    CHECK(back->count == 2 && memcmp(back->rows, rows, sizeof rows) == 0);
    release(read);

    TABLEROWVECT vectors[] = { { 1, 2, 3, 4 }, { 5, 6, 7, 8 } };
    const IDbDataTableVector vectorTable = { .rows = vectors, .count = 2 };
    read = roundTrip(database, matter, PARAM_TYPE_TABLE_T, true, &vectorTable);
    const IDbDataTableVector* vectorsBack = (const IDbDataTableVector*)read;
    CHECK(vectorsBack->count == 2 && memcmp(vectorsBack->rows, vectors, sizeof vectors) == 0);
    release(read);
}

static void checkTablesOfTwoArguments(long database, long matter)
{
    TABLEROW rows[] = { { 1, 2 }, { 3, 4 } };
    SUBTABLECONST subtables[] = { { 10, 2, rows }, { 20, 1, rows } };
    const IDbDataTable2D table = { .subtables = subtables, .count = 2 };
    IDbData* read = roundTrip(database, matter, PARAM_TYPE_TABLE2D_T, false, &table);
    const IDbDataTable2D* back = (const IDbDataTable2D*)read;
    CHECK(back->count == 2 && back->subtables[1].firstArg == 20 && back->subtables[1].count == 1);
    CHECK(memcmp(back->subtables[0].rows, rows, sizeof rows) == 0);
    release(read);

    TABLEROWVECT vectors[] = { { 1, 2, 3, 4 } };
    SUBTABLEVECT vectorSubtables[] = { { 30, 1, vectors } };
    const IDbDataTable2DVector vectorTable = { .subtables = vectorSubtables, .count = 1 };
    read = roundTrip(database, matter, PARAM_TYPE_TABLE2D_X, true, &vectorTable);
    const IDbDataTable2DVector* vectorsBack = (const IDbDataTable2DVector*)read;
    CHECK(vectorsBack->count == 1 && vectorsBack->subtables[0].firstArg == 30);
    CHECK(memcmp(vectorsBack->subtables[0].rows, vectors, sizeof vectors) == 0);
    release(read);
}

static void checkMatters(long database)
{
    COMPONENT parts[] = { { 4, 0.25 }, { 5, 0.75 } };
    const MATTER mix = { .name = L"Mix", .mixture = 1, .compositionCount = 2, .composition = parts };
    CHECK(qmdbAddMatter(database, &mix) == 1);
    MATTER* matters = NULL;
    int count = 0;
    CHECK(qmdbGetMatters(database, &matters, &count) == QMDB_OK && count == 2);
    CHECK(((const size_t*)(const void*)matters)[-1] == 2); /* the array's cookie */
    CHECK(matters[0].composition == NULL && wcscmp(matters[0].name, L"Pure") == 0);
    CHECK(matters[1].compositionCount == 2 && matters[1].composition[1].molarFraction == 0.75);
    CHECK(qmdbDestroyMatterArray(&matters) == QMDB_OK);
}

int main(void)
{
    char directory[] = P_tmpdir "/qmdb-abi-XXXXXX";
    if (!mkdtemp(directory)) {
        return 1;
    }
    writeDescription(directory);
    wchar_t path[sizeof directory];
    mbstowcs(path, directory, sizeof directory);
    long database = 0;
    CHECK(qmdbOpen(path, L"", L"", false, &database) == QMDB_OK);
    CHECK(database == 1); /* the first of the process */
    const MATTER pure = { .name = L"Pure" };
    CHECK(qmdbAddMatter(database, &pure) == 0);
    checkConstants(database, 0);
    checkTables(database, 0);
    checkTablesOfTwoArguments(database, 0);
    checkMatters(database);
    CHECK(qmdbClose(database) == QMDB_OK);
    nftw(directory, removeEntry, 8, FTW_DEPTH | FTW_PHYS);
    return failures == 0 ? 0 : 1;
}
