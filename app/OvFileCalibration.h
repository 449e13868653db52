#pragma once

#include <QString>

// A pixel size read from a picture file, and where it was found. Microscopy
// programs store it in several ways; each reader below understands one and
// gives an empty (uncalibrated) result for anything it cannot trust.
class OvFileCalibration
{
public:
    enum Source
    {
        NoSource,
        ImageJDescription, // "ImageJ=" description with "unit=", sizes in the resolution tags
        OmeXml,            // OME-XML PhysicalSizeX/Y with their units
        ResolutionTags,    // resolution tags in pixels per centimetre or inch
        PictureText        // a "UmPerPixel" text entry (PNG tEXt), as this viewer writes
    };

    OvFileCalibration() = default;
    OvFileCalibration(double anUmPerPixelX, double anUmPerPixelY, Source aSource);

    double umPerPixelX() const { return umX; }
    double umPerPixelY() const { return umY; }
    Source source() const { return from; }
    // Both axes positive and finite.
    bool isValid() const;
    // Where it came from, for the status bar ("ImageJ description").
    QString sourceText() const;

    // The TIFF tags of a picture's first page: OME-XML first, then an
    // ImageJ description, then resolution tags in centimetres or inches.
    // aResolutionUnit is the TIFF code (1 none, 2 inch, 3 centimetre).
    static OvFileCalibration fromTiff(const QString& aDescription, double anXResolution, double aYResolution,
                                      int aResolutionUnit);
    static OvFileCalibration fromImageJ(const QString& aDescription, double anXResolution, double aYResolution);
    static OvFileCalibration fromOmeXml(const QString& aDescription);
    // 72 and 96 pixels per inch are what programs write when they know
    // nothing of the sample, so they are no calibration.
    static OvFileCalibration fromResolution(double anXResolution, double aYResolution, int aResolutionUnit);
    static OvFileCalibration fromPictureText(const QString& anUmPerPixel, const QString& anUmPerPixelY);

    // Micrometres in one aUnit ("micron", "µm", "nm", "mm", "cm", "m", "in",
    // "inch", "ft", "mil", "Å", ...); 0 for unknown units and "pixel".
    static double umPerUnit(const QString& aUnit);

private:
    double umX = 0.0;
    double umY = 0.0;
    Source from = NoSource;
};
