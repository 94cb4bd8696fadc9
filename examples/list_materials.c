/* Prints a whole database: list_materials DIR [LANGUAGE]
   The library notes faults in "qmdb.log" in $TMPDIR, or in /tmp, so that DIR stays as it is. */
#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <qmdatabase/QMNative.h>

enum { TEXT_SIZE = 4096, LABEL_SIZE = 64, LABEL_WIDTH = 42, ROWS_SHOWN = 3, NONE = -1 };

static int failures = 0;

static bool succeeded(const wchar_t* what, int code)
{
    static const wchar_t* const reasons[] = { [-QMDB_E_NO_DATA_FILE] = L"the data file is missing",
        [-QMDB_E_FILE] = L"a file cannot be opened, or a directory holds two descriptors of one kind",
        [-QMDB_E_EMPTY] = L"nothing is there",
        [-QMDB_E_REQUIRED_KEY] = L"a descriptor lacks a required key",
        [-QMDB_E_NUMBER] = L"a number is wrong, or the arguments of a table do not increase",
        [-QMDB_E_FORMAT] = L"a line is laid out wrongly" };
    if (code == QMDB_OK)
        return true;
    const wchar_t* reason = code >= QMDB_E_FORMAT ? reasons[-code] : NULL;
    fwprintf(stderr, L"list_materials: %ls: %ls (code %d)\n", what, reason ? reason : L"failed", code);
    ++failures;
    return false;
}

/* Rows of every table are plain doubles: an argument, then one value or three. */
static void printRows(const double* numbers, long count, int columns)
{
    const long shown = count <= ROWS_SHOWN + 1 ? count : ROWS_SHOWN;
    for (long row = 0; row < shown; ++row) {
        wprintf(L"%*ls%-9.10g", row == 0 ? 0 : LABEL_WIDTH, L"", *numbers++);
        for (int column = 1; column < columns; ++column)
            wprintf(L" %12.10g", *numbers++);
        wprintf(L"\n");
    }
    if (count > shown)
        wprintf(L"%*ls... %ld more rows\n", LABEL_WIDTH, L"", count - shown);
}

static void printValue(const IDbData* value)
{
    if (value->type == PARAM_TYPE_CONSTANT && value->isVector) {
        const IDbDataConstVector* vector = (const IDbDataConstVector*)value;
        wprintf(L"(%.10g, %.10g, %.10g)\n", vector->x, vector->y, vector->z);
    } else if (value->type == PARAM_TYPE_CONSTANT) {
        wprintf(L"%.10g\n", ((const IDbDataConst*)value)->value);
    } else if (value->type <= PARAM_TYPE_TABLE_P && value->isVector) {
        const IDbDataTableVector* table = (const IDbDataTableVector*)value;
        printRows(&table->rows->x, table->count, 4);
    } else if (value->type <= PARAM_TYPE_TABLE_P) {
        const IDbDataTable* table = (const IDbDataTable*)value;
        printRows(&table->rows->x, table->count, 2);
    } else if (value->isVector) {
        const IDbDataTable2DVector* table = (const IDbDataTable2DVector*)value;
        wprintf(L"at %.10g, first of %ld\n%*ls", table->subtables->firstArg, table->count, LABEL_WIDTH, L"");
        printRows(&table->subtables->rows->x, table->subtables->count, 4);
    } else {
        const IDbDataTable2D* table = (const IDbDataTable2D*)value;
        wprintf(L"at %.10g, first of %ld\n%*ls", table->subtables->firstArg, table->count, LABEL_WIDTH, L"");
        printRows(&table->subtables->rows->x, table->subtables->count, 2);
    }
}

/* The parameters of a phase, of a phase change or, with NONE for both, of the substance itself. */
static void printParameters(long db, long matter, long phase, long change)
{
    PARAMETER* params = NULL;
    int count = 0;
    const int code = phase != NONE ? qmdbGetPhaseParams(db, matter, phase, &params, &count)
        : change != NONE           ? qmdbGetPhaseChangeParams(db, matter, change, &params, &count)
                                   : qmdbGetMatterParams(db, matter, &params, &count);
    if (code == QMDB_E_EMPTY || !succeeded(L"parameters", code))
        return;
    for (const PARAMETER* param = params; param < params + count; ++param) {
        wchar_t label[LABEL_SIZE];
        IDbData* value = NULL;
        swprintf(label, LABEL_SIZE, L"%ls, %ls", param->name, param->units);
        wprintf(L"    %-*ls", LABEL_WIDTH - 4, label);
        if (succeeded(label, qmdbGetParamValue(db, matter, phase, change, param->id, &value)))
            printValue(value);
        else
            wprintf(L"no value\n");
        qmdbDestroyParameterData(&value);
    }
    qmdbDestroyParametersArray(&params);
}

static void printPhasesAndChanges(long db, long matter)
{
    static const wchar_t* const states[] = { L"Phase", L"Solid phase", L"Liquid phase", L"Gas phase" };
    PHASE* phases = NULL;
    PHASECHANGE* changes = NULL;
    int phaseCount = 0, changeCount = 0;
    succeeded(L"phases", qmdbGetPhases(db, matter, &phases, &phaseCount));
    qmdbGetPhaseChanges(db, matter, &changes, &changeCount); /* there may be none */
    for (int i = 0; i < phaseCount; ++i) {
        const MATTER_STATE state = phases[i].aggreg;
        wprintf(L"  %ls: %ls\n", states[state >= 0 && state <= MATTER_STATE_GAS ? state : 0], phases[i].name);
        printParameters(db, matter, phases[i].id, NONE);
    }
    for (int i = 0; i < changeCount; ++i) {
        wprintf(L"  Phase change: %ls\n", changes[i].name);
        printParameters(db, matter, NONE, changes[i].id);
    }
    qmdbDestroyPhasesArray(&phases);
    qmdbDestroyPhaseChangeArray(&changes);
}

static void printMatter(long db, const MATTER* matter)
{
    wprintf(L"\n%ld  %ls: %ls\n", matter->id, matter->name, matter->comment);
    const COMPONENT* part = matter->composition;
    for (long left = matter->compositionCount; left > 0; --left, ++part)
        wprintf(L"    molar fraction %.10g of substance %ld\n", part->molarFraction, part->matterId);
    printParameters(db, matter->id, NONE, NONE);
    printPhasesAndChanges(db, matter->id);
}

int main(int argc, char** argv)
{
    wchar_t path[TEXT_SIZE], logDir[TEXT_SIZE], language[TEXT_SIZE];
    const char* temporary = getenv("TMPDIR");
    setlocale(LC_ALL, "");
    if (strcmp(setlocale(LC_CTYPE, NULL), "C") == 0)
        setlocale(LC_ALL, "C.UTF-8");
    setlocale(LC_NUMERIC, "C");
    if (argc < 2 || argc > 3 || mbstowcs(path, argv[1], TEXT_SIZE) >= TEXT_SIZE
        || mbstowcs(language, argc == 3 ? argv[2] : "en", TEXT_SIZE) >= TEXT_SIZE
        || mbstowcs(logDir, temporary && *temporary ? temporary : "/tmp", TEXT_SIZE) >= TEXT_SIZE) {
        fwprintf(stderr, L"usage: list_materials DIR [LANGUAGE]\n");
        return EXIT_FAILURE;
    }
    long db = 0;
    MATTER* matters = NULL;
    int count = 0;
    if (succeeded(path, qmdbOpen(path, language, logDir, false, &db))
        && succeeded(path, qmdbGetMatters(db, &matters, &count)))
        for (int i = 0; i < count; ++i)
            printMatter(db, &matters[i]);
    qmdbDestroyMatterArray(&matters);
    qmdbClose(db);
    if (failures > 0)
        fwprintf(stderr, L"list_materials: %ls/qmdb.log may tell more\n", logDir);
    return failures > 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}
