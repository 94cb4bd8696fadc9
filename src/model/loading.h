#pragma once

#include "files/CDbFile.h"
#include "format/keys.h"
#include "model/CIdMap.h"
#include "qmdatabase/status.h"

#include <string_view>
#include <vector>

/// What is logged while the objects of one kind are loaded. The texts are fixed, with their misspellings and
/// missing blanks.
struct LoadMessages {
    std::string_view search;
    std::string_view cannotLoad; ///< the path follows
    std::string_view added; ///< the ID follows
    std::string_view total; ///< the number of objects follows
};

/// Loads all objects of one kind that a directory holds, in its order; stops at the first bad one and returns
/// its code. Of objects with one ID the one loaded last stands. A substance without phases is skipped.
///
/// `make` makes an object from a file; `note` sees each object made with its ID, those that are refused
/// included.
template <class Object, class Make, class Note>
int loadAll(CIdMap<Object>& objects, CDirectory& directory, const format::DescriptorKind& kind,
    const LoadMessages& messages, const CLog& log, Make&& make, Note&& note)
{
    log.info(messages.search);
    std::vector<FoundFile> files;
    if (const int code = CDbFile::findFiles(log, directory, kind, files); code != QMDB_OK) {
        return code;
    }
    if (kind.needed && files.empty()) {
        return QMDB_E_NO_PHASES;
    }
    objects.reserve(files.size());
    for (const FoundFile& file : files) {
        Object object = make(file);
        const long id = object.getID();
        note(object, id);
        if (object.status == QMDB_E_NO_PHASES) {
            log.error("Material without phases: ", object.path.shown());
            continue;
        }
        if (object.status != QMDB_OK) {
            log.error(messages.cannotLoad, object.path.shown());
            return object.status;
        }
        objects.append(id, std::move(object));
        log.info(messages.added, id);
    }
    objects.sort();
    log.info(messages.total, objects.size());
    return QMDB_OK;
}
