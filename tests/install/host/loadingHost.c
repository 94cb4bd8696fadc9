/* A host that loads the library while it runs: loadingHost DIR LIBRARY counts the substances. */
#define _GNU_SOURCE
#include <qmdatabase/QMNative.h>

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>

int main(int argc, char** argv)
{
    long db = 0;
    MATTER* matters = NULL;
    int count = 0;
    wchar_t path[FILENAME_MAX];
    if (argc != 3 || mbstowcs(path, argv[1], FILENAME_MAX) >= FILENAME_MAX)
        return EXIT_FAILURE;
    void* const library = dlopen(argv[2], RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        fprintf(stderr, "%s\n", dlerror());
        return EXIT_FAILURE;
    }
    __typeof__(qmdbOpen)* const open = dlsym(library, "qmdbOpen");
    __typeof__(qmdbGetMatters)* const getMatters = dlsym(library, "qmdbGetMatters");
    __typeof__(qmdbClose)* const close = dlsym(library, "qmdbClose");
    if (!open || dlvsym(library, "qmdbOpen", "QMDATABASE_1") != open)
        return EXIT_FAILURE;
    if (open(path, L"en", L"/tmp", false, &db) != QMDB_OK || getMatters(db, &matters, &count) != QMDB_OK)
        return EXIT_FAILURE;
    printf("%d substances\n", count);
    return close(db) == QMDB_OK && dlclose(library) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
