#pragma once
#include <QWidget>
#include "KxPluginInterface.h"
