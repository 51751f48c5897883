#include "entry/module.h"

namespace {
HINSTANCE Instance = NULL;
}

void SetModuleInstance(HINSTANCE instance) { Instance = instance; }

HINSTANCE GetModuleInstance() { return Instance; }
