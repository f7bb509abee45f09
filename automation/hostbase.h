// C++ side of hostbase.idl: the names it declares come from the system's own headers.
#pragma once
#include <oaidl.h>
#include <ocidl.h>
#include <unknwn.h>
