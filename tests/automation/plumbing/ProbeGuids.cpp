// Defines the identifiers of the probe.
#include <windows.h>

#include <initguid.h>

#include "Probe.h"
