/**
 * @file QMNative.h
 * @brief The C interface of libqmDatabase.so.1, a database of the physical properties of materials.
 *
 * Conventions of all functions:
 *
 * 1. Texts are null-terminated UTF-32 (`wchar_t`). A null text counts as the empty text.
 * 2. The result is a code of status.h: QMDB_OK (0) for success, negative for failure. The three
 *    functions that add an entity return its ID instead of 0, narrowed to int.
 * 3. Every failure that is more than a look-up without a result writes to the log file "qmdb.log",
 *    which holds the detail that the code cannot: mostly one line, and several when an open fails, as
 *    each object tells why the one below it could not be loaded. The texts are fixed, with their
 *    misspellings. Databases with one log directory share one file; opening one deletes it.
 * 4. QMDB_E_NOT_FOUND (-2) for an unknown database leaves every output as it was; after that comes
 *    QMDB_E_NULL_POINTER (-4) for a null pointer, which leaves them as well. Every other failure sets
 *    a list's or value's pointer to null and a count to 0, but for the count of qmdbGetMatters().
 * 5. Lists come in ascending order of ID, in one new array that belongs to the caller and goes back
 *    whole to the destroy function named beside it. The destroy functions do not reset the caller's
 *    pointer.
 * 6. No exception leaves a function. Out of memory and the like give QMDB_E_INTERNAL (-5), a failing
 *    directory operation gives QMDB_E_FILE (-6), and the exception's text goes to the log. What had
 *    reached the disk by then stays; what a database shows agrees with the disk.
 * 7. Databases opened separately may be used from separate threads at once: they share nothing but
 *    perhaps a log file. Calls on one database are the host's to serialise, its closing included; the
 *    library starts no threads. The locale must not change while a call runs. An addition of a
 *    parameter locks its directory against other processes while it lasts; of substances, phases and
 *    phase changes that two processes add at once, two may get one ID, or one be refused with -6.
 * 8. File names are converted to the process's locale (LC_CTYPE) and back, and so are files without a
 *    UTF-8 mark. Call setlocale(LC_CTYPE, "C.UTF-8") or the like before the first call if names or
 *    paths may go beyond ASCII. Numbers in files do not depend on any locale: they are read and
 *    written as in the locale "C", with a point; the first comma of a number read counts as one.
 *
 * Identifiers are the numbers that the descriptor files give under "ID". -1 means "none" where an
 * identifier may be left out.
 */
#ifndef QMDATABASE_QMNATIVE_H
#define QMDATABASE_QMNATIVE_H

#include "records.h"
#include "status.h"
#include "values.h"

#pragma GCC visibility push(default)
#ifdef __cplusplus
extern "C" {
#endif

/**
 * Opens the database in a directory: reads its string table and all its descriptors. Data files
 * are read only by qmdbGetParamValue().
 *
 * The log file of an earlier open in the same log directory is deleted. Opening a directory twice
 * gives two independent databases.
 *
 * @param path        the database's root directory.
 * @param language    a text that begins with "ru" selects the string table "strings.lst", any other
 *                    "default.lst". A missing table is no failure: names then come from the descriptors.
 * @param logDir      directory of "qmdb.log"; empty: the database's root directory.
 * @param logInfo     true: write informational lines too; errors are always written.
 * @param databaseId  receives the new ID, 1 or more and never issued again in this process; -1 on failure.
 * @return QMDB_OK (0);
 *         QMDB_E_NULL_POINTER (-4): databaseId is null (nothing is opened);
 *         QMDB_E_FILE (-6): a descriptor cannot be opened, a directory holds several descriptors of
 *         one kind, or a directory cannot be listed because descriptors or memory have run out or the
 *         medium fails;
 *         QMDB_E_READ (-7): a descriptor cannot be read, or has 4 GiB or more;
 *         QMDB_E_REQUIRED_KEY (-10): a descriptor lacks a required key;
 *         QMDB_E_INTERNAL (-5): see convention 6.
 *         A root directory that does not exist or holds nothing opens as an empty database. One that
 *         may not be listed opens as an empty one too, with a line in the log, and so does any directory
 *         below it. A substance without phases is skipped with a line in the log. A failing open leaves
 *         nothing behind but the log, and uses no ID up. Opening takes 8 file descriptors at most; none
 *         stays open.
 */
int qmdbOpen(
    const wchar_t* path, const wchar_t* language, const wchar_t* logDir, bool logInfo, long* databaseId);

/**
 * Closes a database and frees all that it holds in memory. Arrays and values handed out stay valid.
 * Databases still open when the library is unloaded are closed then.
 *
 * @param databaseId  ID that qmdbOpen() has given.
 * @return QMDB_OK (0); QMDB_E_NOT_FOUND (-2): unknown database, or one that has been closed.
 */
int qmdbClose(long databaseId);

/**
 * Lists the substances.
 *
 * @param databaseId    ID that qmdbOpen() has given.
 * @param[out] matters  new array; release it with qmdbDestroyMatterArray().
 * @param[out] count    number of substances, also when the call fails with -11 or -12; otherwise 0 on
 *                      failure.
 * @return QMDB_OK (0); QMDB_E_NOT_FOUND (-2): unknown database; QMDB_E_NULL_POINTER (-4);
 *         QMDB_E_EMPTY (-9): no substances;
 *         QMDB_E_NUMBER (-11): a molar fraction of some mixture is not a number;
 *         QMDB_E_FORMAT (-12): the composition of some mixture is laid out wrongly;
 *         QMDB_E_INTERNAL (-5): see convention 6.
 *         A fraction of one character at the very end, as in "12:1", is laid out wrongly: write "12:1.0".
 */
int qmdbGetMatters(long databaseId, MATTER** matters, int* count);

/**
 * Lists the phases of a substance.
 *
 * @param databaseId   ID that qmdbOpen() has given.
 * @param matterId     substance ID.
 * @param[out] phases  new array of *count records; release it with qmdbDestroyPhasesArray().
 * @param[out] count   number of records; 0 on failure.
 * @return QMDB_OK (0); QMDB_E_NOT_FOUND (-2): unknown database or substance; QMDB_E_NULL_POINTER (-4);
 *         QMDB_E_EMPTY (-9): no substances, or no phases; QMDB_E_INTERNAL (-5): see convention 6.
 */
int qmdbGetPhases(long databaseId, long matterId, PHASE** phases, int* count);

/**
 * Lists the phase changes of a substance.
 *
 * @param databaseId    ID that qmdbOpen() has given.
 * @param matterId      substance ID.
 * @param[out] changes  new array of *count records; release it with qmdbDestroyPhaseChangeArray().
 * @param[out] count    number of records; 0 on failure.
 * @return QMDB_OK (0); QMDB_E_NOT_FOUND (-2): unknown database or substance; QMDB_E_NULL_POINTER (-4);
 *         QMDB_E_EMPTY (-9): no substances, or no phase changes; QMDB_E_INTERNAL (-5): see
 *         convention 6.
 */
int qmdbGetPhaseChanges(long databaseId, long matterId, PHASECHANGE** changes, int* count);

/**
 * Lists the parameters of a substance itself. Name and units come from the parameter's description
 * and are empty where it has none.
 *
 * @param databaseId   ID that qmdbOpen() has given.
 * @param matterId     substance ID.
 * @param[out] params  new array of *count records; release it with qmdbDestroyParametersArray().
 * @param[out] count   number of records; 0 on failure.
 * @return QMDB_OK (0); QMDB_E_NOT_FOUND (-2): unknown database or substance; QMDB_E_NULL_POINTER (-4);
 *         QMDB_E_EMPTY (-9): no substances, or no parameters; QMDB_E_INTERNAL (-5): see convention 6.
 */
int qmdbGetMatterParams(long databaseId, long matterId, PARAMETER** params, int* count);

/**
 * Lists the parameters of a phase, as qmdbGetMatterParams() does.
 *
 * @param databaseId   ID that qmdbOpen() has given.
 * @param matterId     substance ID.
 * @param phaseId      phase ID.
 * @param[out] params  new array of *count records; release it with qmdbDestroyParametersArray().
 * @param[out] count   number of records; 0 on failure.
 * @return QMDB_OK (0); QMDB_E_NOT_FOUND (-2): unknown database, substance or phase;
 *         QMDB_E_NULL_POINTER (-4);
 *         QMDB_E_EMPTY (-9): no substances, the substance has no phases, or the phase no parameters;
 *         QMDB_E_INTERNAL (-5): see convention 6.
 */
int qmdbGetPhaseParams(long databaseId, long matterId, long phaseId, PARAMETER** params, int* count);

/**
 * Lists the parameters of a phase change, as qmdbGetMatterParams() does.
 *
 * @param databaseId     ID that qmdbOpen() has given.
 * @param matterId       substance ID.
 * @param phaseChangeId  phase-change ID.
 * @param[out] params    new array of *count records; release it with qmdbDestroyParametersArray().
 * @param[out] count     number of records; 0 on failure.
 * @return QMDB_OK (0); QMDB_E_NOT_FOUND (-2): unknown database, substance or phase change;
 *         QMDB_E_NULL_POINTER (-4);
 *         QMDB_E_EMPTY (-9): no substances, the substance has no phase changes, or the change no
 *         parameters; QMDB_E_INTERNAL (-5): see convention 6.
 */
int qmdbGetPhaseChangeParams(
    long databaseId, long matterId, long phaseChangeId, PARAMETER** params, int* count);

/**
 * Reads the value of one parameter from its data file. Nothing is cached: each call reads the file.
 *
 * The parameter belongs to the substance itself when phaseId and phaseChangeId are both -1, else
 * to the phase or the phase change given.
 *
 * @param databaseId     ID that qmdbOpen() has given.
 * @param matterId       substance ID.
 * @param phaseId        phase ID, or -1.
 * @param phaseChangeId  phase-change ID, or -1.
 * @param paramId        parameter ID.
 * @param[out] value     new object in the units of the parameter's description, see values.h for its class;
 *                       release it with qmdbDestroyParameterData(). Null on failure.
 * @return QMDB_OK (0);
 *         QMDB_E_NOT_FOUND (-2): phaseId and phaseChangeId both given (checked first; *value stays as
 *         it was), unknown database, substance, phase, phase change or parameter, or a stored type
 *         outside 1 to 5;
 *         QMDB_E_NO_DATA_FILE (-3): the data file does not exist;
 *         QMDB_E_NULL_POINTER (-4);
 *         QMDB_E_FILE (-6): the data file cannot be opened;
 *         QMDB_E_READ (-7): the data file cannot be read, or a line of it is longer than 1022 bytes;
 *         QMDB_E_EMPTY (-9): no substances, no phases, no phase changes or no parameters there, or a
 *         table without rows;
 *         QMDB_E_NUMBER (-11): a number that is none, or arguments that do not increase strictly;
 *         QMDB_E_FORMAT (-12): a row with too few or too many numbers, or rows before the first "P="
 *         line;
 *         QMDB_E_INTERNAL (-5): see convention 6.
 *         Of a table either all rows are handed out or none. What follows a number in its column is
 *         ignored: "4x3" reads as 4.
 */
int qmdbGetParamValue(
    long databaseId, long matterId, long phaseId, long phaseChangeId, long paramId, IDbData** value);

/**
 * Adds a substance. It is visible at once; after reopening it is visible once it has a phase.
 *
 * The additions write to the disk before they return: the new directory, and then its descriptor,
 * which appears complete or not at all whenever the host or the machine stops.
 *
 * @param databaseId  ID that qmdbOpen() has given.
 * @param matter      name, comment, mixture and, when mixture is not 0, the composition, whose fractions
 *                    must add up to 0.99 to 1.0 (no tolerance above). Fractions are kept to six significant
 *                    digits. The ID is ignored. The record stays the caller's. A single component of
 *                    fraction 1 is written as "9:1", which qmdbGetMatters() then refuses; give such a
 *                    substance as a pure one.
 * @return the new substance's ID; QMDB_E_NOT_FOUND (-2): unknown database; QMDB_E_NULL_POINTER (-4);
 *         QMDB_E_DUPLICATE_NAME (-14): a substance with this display name exists (nothing is written);
 *         QMDB_E_FORMAT (-12): the composition would make a line of more than 1022 bytes, which could
 *         not be read again (nothing is written, no ID is used up);
 *         QMDB_E_FRACTIONS (-20): bad sum of fractions (an empty directory stays, the IDs are used up);
 *         QMDB_E_FILE (-6): the directory or the descriptor could not be written (what was made stays,
 *         empty; the IDs are used up);
 *         QMDB_E_INTERNAL (-5): see convention 6.
 */
int qmdbAddMatter(long databaseId, const MATTER* matter);

/**
 * Adds a phase to a substance. Durability as for qmdbAddMatter().
 *
 * @param databaseId  ID that qmdbOpen() has given.
 * @param matterId    substance ID.
 * @param phase       name and aggregate state, which is not checked. The ID is ignored.
 * @return the new phase's ID; QMDB_E_NOT_FOUND (-2): unknown database or substance;
 *         QMDB_E_NULL_POINTER (-4); QMDB_E_EMPTY (-9): no substances;
 *         QMDB_E_DUPLICATE_NAME (-14): the substance has a phase with this display name (nothing is
 *         written); QMDB_E_FILE (-6), QMDB_E_INTERNAL (-5): as for qmdbAddMatter().
 */
int qmdbAddPhase(long databaseId, long matterId, const PHASE* phase);

/**
 * Adds a phase change to a substance. Durability as for qmdbAddMatter().
 *
 * @param databaseId  ID that qmdbOpen() has given.
 * @param matterId    substance ID.
 * @param change      name and the IDs of two phases, which are not checked. The ID is ignored.
 * @return the new phase change's ID; QMDB_E_NOT_FOUND (-2): unknown database or substance;
 *         QMDB_E_NULL_POINTER (-4); QMDB_E_EMPTY (-9): no substances;
 *         QMDB_E_DUPLICATE_NAME (-14): the substance has a phase change with this display name (nothing
 *         is written); QMDB_E_FILE (-6), QMDB_E_INTERNAL (-5): as for qmdbAddMatter().
 */
int qmdbAddPhaseChange(long databaseId, long matterId, const PHASECHANGE* change);

/**
 * Attaches a parameter to a substance itself.
 *
 * The value goes into a data file beside the substance's descriptor, with six significant digits
 * a number, and then a head that names the file appears, complete or not at all. Both are on the
 * disk when the function returns.
 *
 * @param databaseId  ID that qmdbOpen() has given.
 * @param matterId    substance ID.
 * @param param       ID, type and vector flag; they must agree with the parameter's description and with
 *                    the class of `value`. Name and units are ignored.
 * @param value       object of the class that `type` and `vector` call for (see values.h), in the
 *                    description's units. Its own `type` and `isVector` are not looked at. It stays the
 *                    caller's. The order of rows is not checked here: a table whose arguments do not
 *                    increase is refused when it is read.
 * @return QMDB_OK (0); QMDB_E_NOT_FOUND (-2): unknown database or substance;
 *         QMDB_E_NULL_POINTER (-4): param is null, or value is null and all else is in order;
 *         QMDB_E_EMPTY (-9): no substances;
 *         QMDB_E_UNKNOWN_PARAMETER (-15): the parameter is not described;
 *         QMDB_E_TYPE_NOT_ALLOWED (-16): its description does not allow the type;
 *         QMDB_E_VECTOR_NOT_ALLOWED (-17): nor the scalar or vector form;
 *         QMDB_E_DUPLICATE_PARAMETER (-18): the substance has this parameter already; (all these write
 *         nothing)
 *         QMDB_E_FILE (-6): the data file could not be written or flushed whole (it is removed, or
 *         emptied where a link leads to it), or the head could not (a data file may stay that nothing
 *         names);
 *         QMDB_E_INTERNAL (-5): see convention 6.
 *         A data file that cannot even be opened for writing is not a failure of this function: the
 *         head is attached and reading the value fails.
 */
int qmdbAddMatterParam(long databaseId, long matterId, const PARAMETER* param, const IDbData* value);

/**
 * Attaches a parameter to a phase, as qmdbAddMatterParam() does to a substance, with one more check.
 *
 * @param databaseId  ID that qmdbOpen() has given.
 * @param matterId    substance ID.
 * @param phaseId     phase ID.
 * @param param       as for qmdbAddMatterParam().
 * @param value       as for qmdbAddMatterParam().
 * @return as qmdbAddMatterParam(); QMDB_E_NOT_FOUND (-2) also: the substance has no such phase (found
 *         after -15, -16 and -17); and QMDB_E_STATE_NOT_ALLOWED (-19): the description does not offer
 *         the parameter for the phase's aggregate state.
 */
int qmdbAddPhaseParam(
    long databaseId, long matterId, long phaseId, const PARAMETER* param, const IDbData* value);

/**
 * Lists the parameter descriptions that may be attached to a phase by its aggregate state, whether
 * or not the phase has such a parameter already.
 *
 * @param databaseId   ID that qmdbOpen() has given.
 * @param matterId     substance ID.
 * @param phaseId      phase ID.
 * @param[out] descrs  new array, or null when none qualifies; release it with qmdbDestroyParamDescrArray().
 * @param[out] count   number of records; 0 on failure.
 * @return QMDB_OK (0), also when none qualifies, with a count of 0; QMDB_E_NOT_FOUND (-2): unknown
 *         database, substance or phase; QMDB_E_NULL_POINTER (-4); QMDB_E_EMPTY (-9): no substances;
 *         QMDB_E_INTERNAL (-5): see convention 6.
 */
int qmdbGetAvailablePhaseParams(
    long databaseId, long matterId, long phaseId, PARAMETERDESCR** descrs, int* count);

/**
 * @name Releasing
 * Each takes the address of the caller's pointer, frees what it points to with all that hangs on
 * it, and leaves the pointer as it was.
 * @{
 */

/**
 * Frees a list of substances with their compositions.
 *
 * @param matters  address of the pointer that qmdbGetMatters() has set.
 * @return QMDB_OK (0); QMDB_E_NULL_POINTER (-4): the pointer (or its address) is null.
 */
int qmdbDestroyMatterArray(MATTER** matters);

/**
 * Frees a list of phases.
 *
 * @param phases  address of the pointer that qmdbGetPhases() has set.
 * @return QMDB_OK (0); QMDB_E_NULL_POINTER (-4): the pointer (or its address) is null.
 */
int qmdbDestroyPhasesArray(PHASE** phases);

/**
 * Frees a list of phase changes.
 *
 * @param changes  address of the pointer that qmdbGetPhaseChanges() has set.
 * @return QMDB_OK (0); QMDB_E_NULL_POINTER (-4): the pointer (or its address) is null.
 */
int qmdbDestroyPhaseChangeArray(PHASECHANGE** changes);

/**
 * Frees a list of parameters.
 *
 * @param params  address of the pointer that qmdbGetMatterParams(), qmdbGetPhaseParams() or
 * qmdbGetPhaseChangeParams() has set.
 * @return QMDB_OK (0); QMDB_E_NULL_POINTER (-4): the pointer (or its address) is null.
 */
int qmdbDestroyParametersArray(PARAMETER** params);

/**
 * Frees a list of descriptions.
 *
 * @param descrs  address of the pointer that qmdbGetAvailablePhaseParams() has set.
 * @return QMDB_OK (0); QMDB_E_NULL_POINTER (-4): the pointer (or its address) is null.
 */
int qmdbDestroyParamDescrArray(PARAMETERDESCR** descrs);

/**
 * Frees a value.
 *
 * @param value  address of the pointer that qmdbGetParamValue() has set.
 * @return QMDB_OK (0); QMDB_E_NULL_POINTER (-4): the pointer (or its address) is null.
 */
int qmdbDestroyParameterData(IDbData** value);

/** @} */

#ifdef __cplusplus
}
#endif
#pragma GCC visibility pop

#endif
