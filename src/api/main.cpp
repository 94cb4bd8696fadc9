#include "api/engine.h"

CDbEngine dbEngine;
