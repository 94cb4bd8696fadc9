#pragma once

#include "files/CDirectory.h"
#include "model/CIdMap.h"
#include "qmdatabase/status.h"

#include <utility>

/// Saves a new object in its open directory and inserts it, in the place of one with its ID.
template <class Object>
int saveAndInsert(CIdMap<Object>& objects, Object object, const CDirectory& directory)
{
    // Room is made first, so that what stands on the disk also stands in the map.
    objects.prepare();
    const long id = object.getID();
    typename CIdMap<Object>::Node node(id, std::move(object));
    const int code = node.object().saveFile(directory);
    if (code == QMDB_OK) {
        objects.insert(std::move(node));
    }
    return code;
}
