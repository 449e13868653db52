#pragma once

#include "OvFileCalibration.h"

#include <QImage>
#include <QString>
#include <QVector>

struct tiff;

// Reads TIFF pictures through libtiff: 8- and 16-bit greyscale, RGB (8 or 16
// bits per sample), any compression libtiff knows, strips or tiles, every
// page of a multi-page file or ImageJ stack (also ImageJ's large stacks that
// keep all images behind a single directory). Reduced-resolution copies
// (thumbnails) are skipped. Pages come back with their
// stored values: Format_Grayscale8, Format_Grayscale16, Format_RGB32,
// Format_ARGB32 or Format_RGBA64; nothing is scaled for display here.
class OvTiffReader
{
public:
    explicit OvTiffReader(const QString& aFile);
    ~OvTiffReader();
    OvTiffReader(const OvTiffReader&) = delete;
    OvTiffReader& operator=(const OvTiffReader&) = delete;

    // Opens the file and counts its pages; false with a message that names
    // the file and says why (missing, not a TIFF, damaged or cut short).
    bool open(QString* anError);
    int pageCount() const { return pages; }
    // Page aPage (from 0); a null image and a message when it cannot be read.
    QImage readPage(int aPage, QString* anError);

    // The first page's description (ImageJ or OME-XML text, else whatever
    // the writer put there) and its calibration.
    QString description() const { return firstDescription; }
    OvFileCalibration calibration() const { return firstCalibration; }

    // True when aFile starts like a TIFF (classic or BigTIFF, either byte order).
    static bool looksLikeTiff(const QString& aFile);

private:
    // An ImageJ stack stored as one directory with the images one after the
    // other: counts them as pages. False (refused) when the file is too
    // short for the images its description announces.
    bool findContiguousImages(QString* anError);
    QImage readContiguous(int aPage, QString* anError);
    // "damaged or cut short", with libtiff's own words when it gave some.
    QString damaged() const;
    QString fail(QString* anError, const QString& aReason) const;

    QString file;
    tiff* handle = nullptr;
    int pages = 0;
    // The directory of each page (reduced-resolution copies left out).
    QVector<unsigned int> directories;
    // Where the images of a contiguous ImageJ stack start, and the bytes of one.
    quint64 contiguousOffset = 0;
    quint64 contiguousBytes = 0;
    QString firstDescription;
    OvFileCalibration firstCalibration;
    // libtiff's last complaint about this file.
    QString libraryMessage;
};
