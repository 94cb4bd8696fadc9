#pragma once

#include "qm/CQMDirectory.h"
#include "qmdatabase/status.h"

#include <map>
#include <memory>

/// Finds an entity by ID: -9 when there is none of its kind at all, -2 when none has the ID.
template <class Map, class Entity> int findEntity(Map& entities, long id, Entity*& found)
{
    if (entities.empty()) {
        return QMDB_E_EMPTY;
    }
    const auto at = entities.find(id);
    if (at == entities.end()) {
        return QMDB_E_NOT_FOUND;
    }
    found = &at->second;
    return QMDB_OK;
}

/// Makes the caller's array of records, one for each entity in order of ID; -9 when there is none.
template <class Entity, class Record, class Fill>
int listRecords(const std::map<long, Entity>& entities, Record*& records, int& count, Fill&& fill)
{
    records = nullptr;
    count = static_cast<int>(entities.size());
    if (entities.empty()) {
        return QMDB_E_EMPTY;
    }
    auto array = std::make_unique<Record[]>(entities.size());
    Record* record = array.get();
    for (const auto& [id, entity] : entities) {
        fill(entity, *record++);
    }
    records = array.release();
    return QMDB_OK;
}

/// Saves a new object and puts it into its map under its ID.
template <class Object>
int saveAndInsert(std::map<long, Object>& objects, Object object, const qm::CQMDirectory& directory)
{
    // The map's node is made first, so that what stands on the disk also stands in the map.
    std::map<long, Object> added;
    const long id = object.getID();
    const int code = added.emplace(id, std::move(object)).first->second.saveFile(directory);
    if (code == QMDB_OK) {
        objects.merge(added);
    }
    return code;
}
