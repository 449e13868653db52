#include "OvMeasurementToolPlugin.h"
