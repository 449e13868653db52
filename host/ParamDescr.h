#pragma once

#include "KxHostGlobal.h"

#include <QMetaType>
#include <QString>

// Describes one parameter of a kernel object type: its name, its value type
// and how its value is found on a given video frame.
struct KX_HOST_EXPORT ParamDescr
{
    // How the value of a parameter at a frame is resolved:
    // - KeyframeAnimated: the last key frame at or before that frame that holds
    //   a value for the parameter, else the default;
    // - KeyframeDiscrete: only a key frame exactly at that frame, else the default;
    // - KeyframeConstant: always the default; a write aimed at a frame goes into
    //   the defaults instead (style parameters are the same on every frame).
    enum KeyframeType
    {
        KeyframeAnimated = 0,
        KeyframeDiscrete = 1,
        KeyframeConstant = 2
    };

    QString name;
    QMetaType::Type type = QMetaType::UnknownType;
    KeyframeType keyframeType = KeyframeAnimated;
};
