#pragma once

#include "KxHostGlobal.h"
#include "KxKernelObjectData.h"

#include <QByteArray>
#include <QList>
#include <QSize>
#include <QString>

// The whole object store as a versioned JSON document: every object with its
// defaults, its per-frame key frames and its animated flag, plus the picture
// size and calibration it was measured on.
//
// Reading checks the complete document before anything is touched, so a
// truncated, corrupt or newer file leaves the store as it was. Applying
// replaces the store's objects through insertObject(), so every manipulator
// hears of each object exactly as after an undo or redo.
class KX_HOST_EXPORT KxKernelDocument
{
public:
    // Version 1: {"format", "version", "picture", "width", "height",
    // "umPerPixel", "frameCount", "objects": [{"type", "index", "animated",
    // "defaults": [value...], "frames": [{"frame", "values": [value...]}]}]}.
    // A value is null (no key frame) or {"t": type name, "v": value}.
    static const int kVersion = 1;
    static const char* const kFormat;

    struct Object
    {
        int type = 0;
        int index = 0;
        KxKernelObjectData::State state;
    };

    QString picture;          // the picture's file name, informative
    QSize imageSize;
    double umPerPixel = 0.0;  // 0: uncalibrated
    qint64 frameCount = 1;
    QList<Object> objects;

    // The store's objects, ascending by type and index, with the current
    // media's size and calibration.
    static KxKernelDocument fromStore();
    QByteArray toJson() const;

    // Parses and checks aJson. False with a message (and *this unchanged)
    // for invalid JSON, another format, a newer version, a missing or
    // mistyped field, a value of an unknown type, or an object whose type
    // has no descriptor in the store or whose parameter count differs.
    bool fromJson(const QByteArray& aJson, QString* anError);

    // Removes every object of the store and inserts the document's. The
    // caller restores size and calibration, which belong to the picture.
    void applyToStore() const;
};
