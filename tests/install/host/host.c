/* A host in C, and in C++ where it is compiled as such: host DIR counts the substances of the sample database
   and reads water's critical temperature. */
#include <qmdatabase/QMNative.h>

#include <stdio.h>
#include <stdlib.h>

enum { WATER = 1, CRITICAL_TEMPERATURE = 4, NONE = -1 };

int main(int argc, char** argv)
{
    long db = 0;
    MATTER* matters = NULL;
    IDbData* value = NULL;
    int count = 0;
    wchar_t path[FILENAME_MAX];
    if (argc != 2 || mbstowcs(path, argv[1], FILENAME_MAX) >= FILENAME_MAX)
        return EXIT_FAILURE;
    if (qmdbOpen(path, L"en", L"/tmp", false, &db) != QMDB_OK
        || qmdbGetMatters(db, &matters, &count) != QMDB_OK
        || qmdbGetParamValue(db, WATER, NONE, NONE, CRITICAL_TEMPERATURE, &value) != QMDB_OK)
        return EXIT_FAILURE;
    printf("%d substances, water is critical at %g K\n", count, ((IDbDataConst*)value)->value);
    qmdbDestroyParameterData(&value);
    qmdbDestroyMatterArray(&matters);
    return qmdbClose(db);
}
