// Defines the identifiers that kvBandscope.h declares, once for the program.
#include <initguid.h>

#include "kvBandscope.h"
