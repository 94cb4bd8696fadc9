#pragma once

#include "database/CDatabase.h"

#include <utility>

template <class Body>
int CDatabase::onMatter(long matterId, Body&& body) const
{
    const CMatter* matter = nullptr;
    const int code = find(matters_, matterId, matter);
    return code == QMDB_OK ? std::forward<Body>(body)(*matter) : code;
}
