// Defines the identifiers that the headers declare, for the whole module.
#include <windows.h>

#include <ocidl.h>
#include <ole2.h>

#include <initguid.h>

#include <cguid.h>
#include <objsafe.h>

#include "kvBandscope.h"
