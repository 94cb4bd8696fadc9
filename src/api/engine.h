#pragma once

#include "database/CDbEngine.h"

/// The registry of the process: made when the library is loaded, destroyed when it is unloaded.
extern CDbEngine dbEngine;
