/* Makes a small database in an empty directory: add_material DIR

   The library adds substances, phases, phase changes and values; what a parameter is, a host or a
   person writes down beforehand in description files. */
#include <errno.h>
#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <qmdatabase/QMNative.h>

enum { TEXT_SIZE = 4096, TRIPLE_TEMPERATURE = 1, DENSITY = 2 };

typedef struct DESCRIPTION {
    const char* file;
    const char* text;
} DESCRIPTION;

static const char utf8Mark[] = "\xEF\xBB\xBF"; /* without it the files would be in the locale's encoding */

static const DESCRIPTION descriptions[] = {
    { "triple-temperature.prd",
        "AvForPhases=\n"
        "Binary=0\n"
        "DataTypes=C\n"
        "ID=1\n"
        "Name=Triple-point temperature\n"
        "Scalar=1\n"
        "Units=K\n"
        "Vector=0\n" },
    { "density.prd",
        "AvForPhases=SLV\n"
        "Binary=0\n"
        "DataTypes=CtT\n"
        "ID=2\n"
        "Name=Density\n"
        "Scalar=1\n"
        "Units=kg/m³\n"
        "Vector=0\n" },
};

static long checked(const char* what, long result)
{
    if (result < 0) {
        fprintf(
            stderr, "add_material: %s failed with code %ld, see qmdb.log in the directory\n", what, result);
        exit(EXIT_FAILURE);
    }
    return result;
}

static long openDatabase(const wchar_t* dir)
{
    long db = 0;
    checked("opening the database", qmdbOpen(dir, L"en", L"", false, &db));
    return db;
}

static void requireEmpty(const wchar_t* dir)
{
    MATTER* matters = NULL;
    int count = 0;
    const long db = openDatabase(dir);
    const int code = qmdbGetMatters(db, &matters, &count);
    qmdbDestroyMatterArray(&matters);
    qmdbClose(db);
    if (code != QMDB_E_EMPTY) {
        fprintf(stderr, "add_material: %ls holds a database already\n", dir);
        exit(EXIT_FAILURE);
    }
}

static void writeDescription(const char* dir, const DESCRIPTION* description)
{
    char path[TEXT_SIZE];
    snprintf(path, sizeof path, "%s/%s", dir, description->file);
    FILE* file = fopen(path, "wx"); /* never over an existing file */
    const bool written = file && fputs(utf8Mark, file) >= 0 && fputs(description->text, file) >= 0;
    if ((file && fclose(file) != 0) || !written) {
        fprintf(stderr, "add_material: cannot write %s: %s\n", path, strerror(errno));
        exit(EXIT_FAILURE);
    }
}

/* Figures: IAPWS R7-97(2012) for the liquid, CRC Handbook of Chemistry and Physics for the ice.
   Values are plain structures here: the library reads them, the program keeps them. A vector
   needs the structure of its kind, IDbDataConstVector for one, and `.vector = true`. */

static void addTripleTemperature(long db, long water)
{
    const PARAMETER param = { .id = TRIPLE_TEMPERATURE, .type = PARAM_TYPE_CONSTANT };
    const IDbDataConst kelvins = { .value = 273.16 };
    checked("adding a constant", qmdbAddMatterParam(db, water, &param, &kelvins.head));
}

static void addIceDensity(long db, long water, long ice)
{
    TABLEROW rows[] = { { 173.15, 929.2 }, { 223.15, 924.0 }, { 273.15, 916.7 } };
    const PARAMETER param = { .id = DENSITY, .type = PARAM_TYPE_TABLE_T };
    const IDbDataTable overTemperature = { .rows = rows, .count = sizeof rows / sizeof *rows };
    checked("adding a table", qmdbAddPhaseParam(db, water, ice, &param, &overTemperature.head));
}

static void addLiquidDensity(long db, long water, long liquid)
{
    TABLEROW at01MPa[] = { { 280, 999.91 }, { 320, 989.44 }, { 360, 967.41 } };
    TABLEROW at10MPa[] = { { 280, 1004.67 }, { 320, 993.70 }, { 360, 971.85 }, { 400, 942.41 } };
    SUBTABLECONST pressures[] = { { 0.1e6, 3, at01MPa }, { 10e6, 4, at10MPa } };
    const PARAMETER param = { .id = DENSITY, .type = PARAM_TYPE_TABLE2D_T };
    const IDbDataTable2D overBoth = { .subtables = pressures, .count = 2 };
    checked("adding a two-dimensional table", qmdbAddPhaseParam(db, water, liquid, &param, &overBoth.head));
}

static void addWater(long db)
{
    const MATTER matter = { .name = L"Water", .comment = L"H2O" };
    const PHASE solid = { .name = L"Ice Ih", .aggreg = MATTER_STATE_SOLID };
    const PHASE fluid = { .name = L"Liquid", .aggreg = MATTER_STATE_LIQUID };
    const long water = checked("adding a substance", qmdbAddMatter(db, &matter));
    const long ice = checked("adding a phase", qmdbAddPhase(db, water, &solid));
    const long liquid = checked("adding a phase", qmdbAddPhase(db, water, &fluid));
    const PHASECHANGE melting = { .name = L"Melting", .phase1 = ice, .phase2 = liquid };
    checked("adding a phase change", qmdbAddPhaseChange(db, water, &melting));
    addTripleTemperature(db, water);
    addIceDensity(db, water, ice);
    addLiquidDensity(db, water, liquid);
}

static void printParameters(const char* indent, PARAMETER* params, int count)
{
    for (int i = 0; i < count; ++i)
        printf("%s%ls, %ls\n", indent, params[i].name, params[i].units);
    qmdbDestroyParametersArray(&params);
}

static void printPhases(long db, long matter)
{
    PHASE* phases = NULL;
    int count = 0;
    checked("listing the phases", qmdbGetPhases(db, matter, &phases, &count));
    for (int i = 0; i < count; ++i) {
        PARAMETER* params = NULL;
        int paramCount = 0;
        checked("listing parameters", qmdbGetPhaseParams(db, matter, phases[i].id, &params, &paramCount));
        printf("  %ls\n", phases[i].name);
        printParameters("    ", params, paramCount);
    }
    qmdbDestroyPhasesArray(&phases);
}

static void printPhaseChanges(long db, long matter)
{
    PHASECHANGE* changes = NULL;
    int count = 0;
    checked("listing the phase changes", qmdbGetPhaseChanges(db, matter, &changes, &count));
    for (int i = 0; i < count; ++i)
        printf("  %ls\n", changes[i].name);
    qmdbDestroyPhaseChangeArray(&changes);
}

static void printMatters(long db)
{
    MATTER* matters = NULL;
    int count = 0;
    checked("listing the substances", qmdbGetMatters(db, &matters, &count));
    for (int i = 0; i < count; ++i) {
        PARAMETER* params = NULL;
        int paramCount = 0;
        checked("listing parameters", qmdbGetMatterParams(db, matters[i].id, &params, &paramCount));
        printf("%ls\n", matters[i].name);
        printParameters("  ", params, paramCount);
        printPhases(db, matters[i].id);
        printPhaseChanges(db, matters[i].id);
    }
    qmdbDestroyMatterArray(&matters);
}

int main(int argc, char** argv)
{
    wchar_t dir[TEXT_SIZE];
    setlocale(LC_ALL, "");
    if (strcmp(setlocale(LC_CTYPE, NULL), "C") == 0)
        setlocale(LC_ALL, "C.UTF-8");
    setlocale(LC_NUMERIC, "C"); /* numbers in the files have decimal points */
    if (argc != 2 || mbstowcs(dir, argv[1], TEXT_SIZE) >= TEXT_SIZE) {
        fprintf(stderr, "usage: add_material DIR\n");
        return EXIT_FAILURE;
    }
    requireEmpty(dir);
    for (size_t i = 0; i < sizeof descriptions / sizeof *descriptions; ++i)
        writeDescription(argv[1], &descriptions[i]);
    long db = openDatabase(dir);
    addWater(db);
    checked("closing the database", qmdbClose(db));
    db = openDatabase(dir); /* what the list shows now comes from the disk */
    printMatters(db);
    checked("closing the database", qmdbClose(db));
    return EXIT_SUCCESS;
}
