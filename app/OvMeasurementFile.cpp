#include "OvMeasurementFile.h"

#include "KxKernelData.h"
#include "KxKernelDocument.h"
#include "OvViewerMainWindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QUndoStack>

namespace {

QString tr(const char* aText)
{
    return QCoreApplication::translate("OvMeasurementFile", aText);
}

} // namespace

QString OvMeasurementFile::defaultPathFor(const QString& aPictureFile)
{
    if (aPictureFile.isEmpty() || aPictureFile.startsWith(QLatin1Char(':')))
        return QString();
    const QFileInfo info(aPictureFile);
    return info.dir().filePath(info.completeBaseName() + QStringLiteral(".measurements.json"));
}

bool OvMeasurementFile::save(const QString& aFileName, QString* anError)
{
    QSaveFile file(aFileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(KxKernelDocument::fromStore().toJson()) < 0
        || !file.commit()) {
        if (anError)
            *anError = tr("Cannot write %1: %2").arg(aFileName, file.errorString());
        return false;
    }
    return true;
}

bool OvMeasurementFile::load(const QString& aFileName, OvViewerMainWindow* aWindow, QString* anError,
                             QString* aWarning)
{
    const auto fail = [&](const QString& aReason) {
        if (anError)
            *anError = tr("Cannot open %1: %2").arg(aFileName, aReason);
        return false;
    };
    QFile file(aFileName);
    if (!file.exists())
        return fail(tr("the file does not exist"));
    if (file.size() > kMaxFileSize)
        return fail(tr("the file is larger than %1 MiB").arg(kMaxFileSize / (1024 * 1024)));
    if (!file.open(QIODevice::ReadOnly))
        return fail(file.errorString());
    KxKernelDocument document;
    QString reason;
    if (!document.fromJson(file.readAll(), &reason))
        return fail(reason);

    KxKernelData* kernel = KxKernelData::getInstance();
    const QSize size = kernel->getCurrentImageSize();
    if (aWarning) {
        aWarning->clear();
        if (document.imageSize.isValid() && !document.imageSize.isEmpty() && document.imageSize != size)
            *aWarning = tr("%1 was measured on a picture of %2 x %3 pixels; this one has %4 x %5")
                            .arg(QFileInfo(aFileName).fileName())
                            .arg(document.imageSize.width()).arg(document.imageSize.height())
                            .arg(size.width()).arg(size.height());
    }
    // Commands on the stack belong to the measurements being replaced.
    aWindow->undoStack()->clear();
    // The values were measured at the file's calibration; a picture with the
    // same x calibration keeps its own (and its y and source).
    if (document.umPerPixel > 0.0 && document.umPerPixel != aWindow->calibration())
        aWindow->setCalibration(document.umPerPixel, tr("from the measurement file"));
    document.applyToStore();
    aWindow->undoStack()->setClean();
    return true;
}
