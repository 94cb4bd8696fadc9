/**
 * @file status.h
 * @brief Result codes of the qmdb functions: 0 is success, every failure is negative.
 *
 * Three functions return something else on success: qmdbAddMatter(), qmdbAddPhase() and
 * qmdbAddPhaseChange() return the ID of what they added. Test their results for being negative.
 */
#ifndef QMDATABASE_STATUS_H
#define QMDATABASE_STATUS_H

/** Result codes. DO NOT RENUMBER: hosts store and compare them. */
enum QMDB_STATUS {
    /** Success. */
    QMDB_OK = 0,
    /**
     * The first argument of a two-dimensional subtable is too long to be read. Reserved: longer lines
     * than that are refused with QMDB_E_READ first.
     */
    QMDB_E_FIRST_ARGUMENT = -1,
    /**
     * Unknown database, substance, phase, phase change or parameter ID; both a phase and a phase
     * change given to qmdbGetParamValue(); or a stored value of a type other than 1 to 5.
     */
    QMDB_E_NOT_FOUND = -2,
    /** The parameter's data file does not exist. */
    QMDB_E_NO_DATA_FILE = -3,
    /** A pointer that must not be null is null. */
    QMDB_E_NULL_POINTER = -4,
    /** Out of memory, no free ID left, or a defect of the library; the log names it. */
    QMDB_E_INTERNAL = -5,
    /**
     * A file could not be opened or written whole, a directory could not be created or listed, or a
     * directory holds several descriptors of a kind of which it may hold one.
     */
    QMDB_E_FILE = -6,
    /** A file was opened but could not be read: the medium failed, or it is too large or no file. */
    QMDB_E_READ = -7,
    /** Nothing of the kind asked for: an empty database, an empty list, a table without rows. */
    QMDB_E_EMPTY = -9,
    /** A descriptor lacks a required key. */
    QMDB_E_REQUIRED_KEY = -10,
    /** A text is not a number, or the arguments of a table do not increase. */
    QMDB_E_NUMBER = -11,
    /**
     * A composition line or a row of a data file is laid out wrongly; or a mixture to be added has so
     * many components that its line could not be read again.
     */
    QMDB_E_FORMAT = -12,
    /**
     * A substance has no phase. Opening a database skips such a substance, so no function returns
     * this code; it appears here to complete the list.
     */
    QMDB_E_NO_PHASES = -13,
    /** An entity of the same kind with the same name exists already. */
    QMDB_E_DUPLICATE_NAME = -14,
    /** Addition: no description has this parameter ID. */
    QMDB_E_UNKNOWN_PARAMETER = -15,
    /** Addition: the description does not allow this type of value. */
    QMDB_E_TYPE_NOT_ALLOWED = -16,
    /** Addition: the description does not allow scalars, or does not allow vectors. */
    QMDB_E_VECTOR_NOT_ALLOWED = -17,
    /** Addition: the substance or phase has a parameter with this ID already. */
    QMDB_E_DUPLICATE_PARAMETER = -18,
    /** Addition: the parameter is not available for the phase's aggregate state. */
    QMDB_E_STATE_NOT_ALLOWED = -19,
    /** Addition: the molar fractions of a mixture do not add up to a value from 0.99 to 1. */
    QMDB_E_FRACTIONS = -20
};

#endif
