#pragma once

#include "model/CIdMap.h"
#include "qmdatabase/status.h"

#include <memory>

/// Makes a caller's array of records, one for each object, which `fill` fills whole; -9 when there is none.
/// On failure the outputs stay as they are.
template <class Object, class Record, class Fill>
int listRecords(const CIdMap<Object>& objects, Record*& records, int& count, Fill&& fill)
{
    if (objects.empty()) {
        return QMDB_E_EMPTY;
    }
    auto array = std::make_unique_for_overwrite<Record[]>(objects.size());
    Record* record = array.get();
    objects.forEach([&](long id, const Object& object) { fill(id, object, *record++); });
    count = static_cast<int>(objects.size());
    records = array.release();
    return QMDB_OK;
}
