#pragma once

#include <QString>

class OvViewerMainWindow;

// Saving and opening the measurements of a picture: the whole object store
// (every measurement with its per-frame key frames) and the calibration, as
// a versioned JSON document, by default beside the picture as
// "NAME.measurements.json".
class OvMeasurementFile
{
public:
    // "dir/cells.png" gives "dir/cells.measurements.json"; empty for none.
    static QString defaultPathFor(const QString& aPictureFile);

    // Written atomically: a failed save leaves an older file untouched.
    static bool save(const QString& aFileName, QString* anError);

    // Reads and checks the whole file first: a missing, unreadable, empty,
    // oversized, truncated, corrupt or newer-version file is refused with a
    // message and the measurements already open stay as they are. On success
    // the store holds exactly the file's measurements (each rebuilt through
    // the store's notifications), the calibration is the file's when it has
    // one, and the undo history starts afresh. A file measured on a picture
    // of another size still loads; aWarning then says so.
    static bool load(const QString& aFileName, OvViewerMainWindow* aWindow, QString* anError, QString* aWarning);

    // Larger files are refused rather than read into memory.
    static const qint64 kMaxFileSize = 256 * 1024 * 1024;
};
