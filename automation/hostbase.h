// The C++ side of hostbase.idl: its names are declared in the system's own headers.
#pragma once
#include <oaidl.h>
#include <ocidl.h>
#include <unknwn.h>
