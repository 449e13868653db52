#include "OvFileCalibration.h"

#include <QCoreApplication>
#include <QHash>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <cmath>

namespace {

QString tr(const char* aText)
{
    return QCoreApplication::translate("OvFileCalibration", aText);
}

bool positive(double aValue)
{
    return std::isfinite(aValue) && aValue > 0.0;
}

// TIFF resolution unit codes.
const int kUnitInch = 2;
const int kUnitCentimetre = 3;

} // namespace

OvFileCalibration::OvFileCalibration(double anUmPerPixelX, double anUmPerPixelY, Source aSource)
    : umX(positive(anUmPerPixelX) ? anUmPerPixelX : 0.0)
    , umY(positive(anUmPerPixelY) ? anUmPerPixelY : 0.0)
    , from(aSource)
{
    if (!isValid()) {
        umX = umY = 0.0;
        from = NoSource;
    }
}

bool OvFileCalibration::isValid() const
{
    return umX > 0.0 && umY > 0.0;
}

QString OvFileCalibration::sourceText() const
{
    switch (from) {
    case ImageJDescription:
        return tr("ImageJ description");
    case OmeXml:
        return tr("OME-XML metadata");
    case ResolutionTags:
        return tr("resolution tags");
    case PictureText:
        return tr("UmPerPixel text");
    case NoSource:
        break;
    }
    return QString();
}

double OvFileCalibration::umPerUnit(const QString& aUnit)
{
    static const QHash<QString, double> kUnits = {
        { QStringLiteral("pm"), 1e-6 },
        { QStringLiteral("\u00C5"), 1e-4 }, { QStringLiteral("\u212B"), 1e-4 }, { QStringLiteral("angstrom"), 1e-4 },
        { QStringLiteral("nm"), 1e-3 }, { QStringLiteral("nanometer"), 1e-3 }, { QStringLiteral("nanometre"), 1e-3 },
        { QStringLiteral("um"), 1.0 }, { QStringLiteral("\u00B5m"), 1.0 }, { QStringLiteral("\u03BCm"), 1.0 },
        { QStringLiteral("micron"), 1.0 }, { QStringLiteral("microns"), 1.0 },
        { QStringLiteral("micrometer"), 1.0 }, { QStringLiteral("micrometre"), 1.0 },
        { QStringLiteral("mm"), 1e3 }, { QStringLiteral("millimeter"), 1e3 }, { QStringLiteral("millimetre"), 1e3 },
        { QStringLiteral("cm"), 1e4 }, { QStringLiteral("centimeter"), 1e4 }, { QStringLiteral("centimetre"), 1e4 },
        { QStringLiteral("dm"), 1e5 },
        { QStringLiteral("m"), 1e6 }, { QStringLiteral("meter"), 1e6 }, { QStringLiteral("metre"), 1e6 },
        { QStringLiteral("mil"), 25.4 }, { QStringLiteral("thou"), 25.4 },
        { QStringLiteral("in"), 25400.0 }, { QStringLiteral("inch"), 25400.0 }, { QStringLiteral("inches"), 25400.0 },
        { QStringLiteral("ft"), 304800.0 }, { QStringLiteral("foot"), 304800.0 }, { QStringLiteral("feet"), 304800.0 },
    };
    QString unit = aUnit.trimmed();
    // ImageJ escapes the micro sign in its descriptions.
    unit.replace(QLatin1String("\\u00B5"), QStringLiteral("\u00B5"), Qt::CaseInsensitive);
    const auto found = kUnits.constFind(unit);
    if (found != kUnits.constEnd())
        return found.value();
    // "Um", "MICRON": case only matters between m (metre) and M (mega).
    return kUnits.value(unit.toLower(), 0.0);
}

OvFileCalibration OvFileCalibration::fromTiff(const QString& aDescription, double anXResolution,
                                              double aYResolution, int aResolutionUnit)
{
    const OvFileCalibration ome = fromOmeXml(aDescription);
    if (ome.isValid())
        return ome;
    const OvFileCalibration imageJ = fromImageJ(aDescription, anXResolution, aYResolution);
    if (imageJ.isValid())
        return imageJ;
    return fromResolution(anXResolution, aYResolution, aResolutionUnit);
}

OvFileCalibration OvFileCalibration::fromImageJ(const QString& aDescription, double anXResolution,
                                                double aYResolution)
{
    if (!aDescription.startsWith(QLatin1String("ImageJ=")) || !positive(anXResolution))
        return OvFileCalibration();
    static const QRegularExpression kUnit(QStringLiteral("^unit=(.*)$"), QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = kUnit.match(aDescription);
    if (!match.hasMatch())
        return OvFileCalibration();
    const double um = umPerUnit(match.captured(1));
    // The resolution tags hold pixels per unit; a missing y means square pixels.
    const double yResolution = positive(aYResolution) ? aYResolution : anXResolution;
    return OvFileCalibration(um / anXResolution, um / yResolution, ImageJDescription);
}

OvFileCalibration OvFileCalibration::fromOmeXml(const QString& aDescription)
{
    if (!aDescription.contains(QLatin1String("<OME")))
        return OvFileCalibration();
    QXmlStreamReader xml(aDescription);
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement() || xml.name() != QLatin1String("Pixels"))
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        const auto size = [&](const QString& anAxis) {
            const QString value = attributes.value(QStringLiteral("PhysicalSize") + anAxis).toString();
            if (value.isEmpty())
                return 0.0;
            // The unit defaults to micrometres, as the schema says.
            const QString unit = attributes.value(QStringLiteral("PhysicalSize") + anAxis + QStringLiteral("Unit"))
                                     .toString();
            bool ok = false;
            const double number = value.toDouble(&ok);
            return ok ? number * (unit.isEmpty() ? 1.0 : umPerUnit(unit)) : 0.0;
        };
        const double x = size(QStringLiteral("X"));
        const double y = size(QStringLiteral("Y"));
        return OvFileCalibration(x, positive(y) ? y : x, OmeXml);
    }
    return OvFileCalibration();
}

OvFileCalibration OvFileCalibration::fromResolution(double anXResolution, double aYResolution, int aResolutionUnit)
{
    double umPerUnit = 0.0;
    if (aResolutionUnit == kUnitInch)
        umPerUnit = 25400.0;
    else if (aResolutionUnit == kUnitCentimetre)
        umPerUnit = 10000.0;
    if (umPerUnit <= 0.0 || !positive(anXResolution))
        return OvFileCalibration();
    const double yResolution = positive(aYResolution) ? aYResolution : anXResolution;
    for (double dpi : { 72.0, 96.0 }) {
        const double perUnit = aResolutionUnit == kUnitInch ? dpi : dpi / 2.54;
        if (std::abs(anXResolution - perUnit) < 0.01 * perUnit && std::abs(yResolution - perUnit) < 0.01 * perUnit)
            return OvFileCalibration();
    }
    return OvFileCalibration(umPerUnit / anXResolution, umPerUnit / yResolution, ResolutionTags);
}

OvFileCalibration OvFileCalibration::fromPictureText(const QString& anUmPerPixel, const QString& anUmPerPixelY)
{
    bool ok = false;
    const double x = anUmPerPixel.toDouble(&ok);
    if (!ok)
        return OvFileCalibration();
    bool okY = false;
    const double y = anUmPerPixelY.toDouble(&okY);
    return OvFileCalibration(x, okY ? y : x, PictureText);
}
