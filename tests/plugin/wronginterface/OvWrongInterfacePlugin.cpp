#include "OvWrongInterfacePlugin.h"
