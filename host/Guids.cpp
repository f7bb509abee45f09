// The identifiers that kvBandscope.h declares, defined once for the program.
#include <initguid.h>

#include "kvBandscope.h"
