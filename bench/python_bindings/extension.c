// The hand-written extension that compare.py holds the Python module against.
#include <Python.h>
#include <numpy/arrayobject.h>
#include <stdbool.h>
#include <string.h>

#include "qmdatabase/QMNative.h"

// Vector tables differ in the type of the rows only, of which the size is enough here.
static PyObject* subtableHeads(const IDbDataTable2D* table)
{
    return PyBytes_FromStringAndSize(
        (const char*)table->subtables, table->count * (Py_ssize_t)sizeof(SUBTABLECONST));
}

static PyObject* rowsOfSubtables(const IDbDataTable2D* table, Py_ssize_t rowSize)
{
    Py_ssize_t size = 0;
    for (long i = 0; i < table->count; ++i) {
        size += table->subtables[i].count * rowSize;
    }
    PyObject* rows = PyBytes_FromStringAndSize(NULL, size);
    char* target = rows ? PyBytes_AS_STRING(rows) : NULL;
    for (long i = 0; rows && i < table->count; ++i) {
        const Py_ssize_t part = table->subtables[i].count * rowSize;
        memcpy(target, table->subtables[i].rows, (size_t)part);
        target += part;
    }
    return rows;
}

static PyObject* rowsOf(const IDbData* value, Py_ssize_t rowSize)
{
    if (value->type == PARAM_TYPE_CONSTANT) {
        const double* number = &((const IDbDataConst*)value)->value;
        return PyBytes_FromStringAndSize((const char*)number, value->isVector ? 24 : 8);
    }
    if (value->type <= PARAM_TYPE_TABLE_P) {
        const IDbDataTable* table = (const IDbDataTable*)value;
        return PyBytes_FromStringAndSize((const char*)table->rows, table->count * rowSize);
    }
    return rowsOfSubtables((const IDbDataTable2D*)value, rowSize);
}

// The values in the rows, without the arguments; takes the reference.
static PyObject* arrayOver(PyObject* rows, const IDbData* value, Py_ssize_t rowSize)
{
    const bool isTable = value->type != PARAM_TYPE_CONSTANT;
    npy_intp shape[] = { isTable ? PyBytes_GET_SIZE(rows) / rowSize : 3, 3 };
    npy_intp strides[] = { isTable ? rowSize : 8, 8 };
    const int dimensions = isTable + value->isVector;
    PyObject* array = PyArray_New(&PyArray_Type, dimensions, shape, NPY_DOUBLE, strides,
        PyBytes_AS_STRING(rows) + (isTable ? 8 : 0), 0, NPY_ARRAY_ALIGNED, NULL);
    if (!array) {
        Py_DECREF(rows);
        return NULL;
    }
    PyArray_SetBaseObject((PyArrayObject*)array, rows);
    return array;
}

static PyObject* tupleOf(const IDbData* value)
{
    const Py_ssize_t rowSize = value->isVector ? sizeof(TABLEROWVECT) : sizeof(TABLEROW);
    PyObject* rows = rowsOf(value, rowSize);
    PyObject* array = rows ? arrayOver(rows, value, rowSize) : NULL;
    PyObject* heads = value->type > PARAM_TYPE_TABLE_P ? subtableHeads((const IDbDataTable2D*)value)
                                                       : PyBytes_FromStringAndSize(NULL, 0);
    PyObject* result = array && heads ? PyTuple_New(4) : NULL;
    if (!result) {
        Py_XDECREF(array);
        Py_XDECREF(heads);
        return NULL;
    }
    PyTuple_SET_ITEM(result, 0, PyLong_FromLong(value->type));
    PyTuple_SET_ITEM(result, 1, PyBool_FromLong(value->isVector));
    PyTuple_SET_ITEM(result, 2, array);
    PyTuple_SET_ITEM(result, 3, heads);
    return result;
}

// read(database, substance, phase, change, parameter) -> (type, vector, values, heads of the subtables)
static PyObject* readValue(PyObject* Py_UNUSED(module), PyObject* const* arguments, Py_ssize_t count)
{
    long ids[5];
    for (int i = 0; i < 5; ++i) {
        ids[i] = i < count ? PyLong_AsLong(arguments[i]) : -1;
    }
    if (PyErr_Occurred()) {
        return NULL;
    }
    IDbData* value = NULL;
    PyThreadState* state = PyEval_SaveThread();
    const int code = qmdbGetParamValue(ids[0], ids[1], ids[2], ids[3], ids[4], &value);
    PyEval_RestoreThread(state);
    if (code != QMDB_OK) {
        return PyErr_Format(PyExc_RuntimeError, "code %d", code);
    }
    PyObject* result = tupleOf(value);
    qmdbDestroyParameterData(&value);
    return result;
}

PyMODINIT_FUNC PyInit_extension(void)
{
    static PyMethodDef functions[]
        = { { "read", (PyCFunction)(void (*)(void))readValue, METH_FASTCALL, NULL },
              { NULL, NULL, 0, NULL } };
    static struct PyModuleDef definition
        = { PyModuleDef_HEAD_INIT, .m_name = "extension", .m_methods = functions };
    import_array();
    return PyModule_Create(&definition);
}
