#include "forms/clsMonitor.h"
