// The same as extension.c by pybind11.
#include "qmdatabase/QMNative.h"

#include <memory>
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <stdexcept>
#include <string>

namespace py = pybind11;

namespace {

struct CDestroy {
    void operator()(IDbData* value) const { qmdbDestroyParameterData(&value); }
};
using Owned = std::unique_ptr<IDbData, CDestroy>;

Owned valueOf(long database, long substance, long phase, long change, long parameter)
{
    const py::gil_scoped_release others;
    IDbData* value = nullptr;
    const int code = qmdbGetParamValue(database, substance, phase, change, parameter, &value);
    if (code != QMDB_OK) {
        throw std::runtime_error("code " + std::to_string(code));
    }
    return Owned(value);
}

template <class Row>
py::bytes copyOf(const Row* rows, long count)
{
    return { reinterpret_cast<const char*>(rows), static_cast<std::size_t>(count) * sizeof(Row) };
}

/// The values in rows, which are numbers with or without an argument before each.
py::array arrayOver(const py::bytes& rows, bool isTable, bool isVector)
{
    const py::ssize_t components = isVector ? 3 : 1;
    const py::ssize_t rowSize = 8 * (components + (isTable ? 1 : 0));
    std::vector<py::ssize_t> shape;
    std::vector<py::ssize_t> strides;
    if (isTable) {
        shape.push_back(PyBytes_GET_SIZE(rows.ptr()) / rowSize);
        strides.push_back(rowSize);
    }
    if (isVector) {
        shape.push_back(3);
        strides.push_back(8);
    }
    const char* numbers = PyBytes_AS_STRING(rows.ptr()) + (isTable ? 8 : 0);
    py::array array(py::dtype::of<double>(), std::move(shape), std::move(strides), numbers, rows);
    py::detail::array_proxy(array.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
    return array;
}

py::tuple tupleOf(const IDbData& value, const py::bytes& rows, const py::bytes& heads)
{
    const bool isTable = value.type != PARAM_TYPE_CONSTANT;
    return py::make_tuple(
        static_cast<int>(value.type), value.isVector, arrayOver(rows, isTable, value.isVector), heads);
}

template <class Table>
py::tuple tupleOfTable(const Table& table)
{
    return tupleOf(table, copyOf(table.rows, table.count), py::bytes());
}

template <class Table>
py::tuple tupleOfSubtables(const Table& table)
{
    std::string rows;
    for (long i = 0; i < table.count; ++i) {
        const auto& subtable = table.subtables[i];
        rows.append(reinterpret_cast<const char*>(subtable.rows),
            static_cast<std::size_t>(subtable.count) * sizeof(*subtable.rows));
    }
    return tupleOf(table, py::bytes(rows), copyOf(table.subtables, table.count));
}

py::tuple readValue(long database, long substance, long phase, long change, long parameter)
{
    const Owned owned = valueOf(database, substance, phase, change, parameter);
    const IDbData& value = *owned;
    if (value.type == PARAM_TYPE_CONSTANT) {
        return value.isVector
            ? tupleOf(value, copyOf(&static_cast<const IDbDataConstVector&>(value).x, 3), py::bytes())
            : tupleOf(value, copyOf(&static_cast<const IDbDataConst&>(value).value, 1), py::bytes());
    }
    if (value.type <= PARAM_TYPE_TABLE_P) {
        return value.isVector ? tupleOfTable(static_cast<const IDbDataTableVector&>(value))
                              : tupleOfTable(static_cast<const IDbDataTable&>(value));
    }
    return value.isVector ? tupleOfSubtables(static_cast<const IDbDataTable2DVector&>(value))
                          : tupleOfSubtables(static_cast<const IDbDataTable2D&>(value));
}

} // namespace

PYBIND11_MODULE(pybindModule, module)
{
    module.def("read", &readValue);
}
