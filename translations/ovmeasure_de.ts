<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>CmdChangeObject</name>
    <message>
        <source>Change %1</source>
        <translation>%1 ändern</translation>
    </message>
</context>
<context>
    <name>CmdCreateObject</name>
    <message>
        <source>Add %1</source>
        <translation>%1 hinzufügen</translation>
    </message>
</context>
<context>
    <name>CmdRemoveObject</name>
    <message>
        <source>Delete %1</source>
        <translation>%1 löschen</translation>
    </message>
</context>
<context>
    <name>KxGsEditor</name>
    <message>
        <source>Delete measurements</source>
        <translation>Messungen löschen</translation>
    </message>
</context>
<context>
    <name>KxGsManipulator</name>
    <message>
        <source>Object</source>
        <translation>Objekt</translation>
    </message>
</context>
<context>
    <name>KxKernelData</name>
    <message>
        <source>object</source>
        <translation>Objekt</translation>
    </message>
</context>
<context>
    <name>OvBrightnessContrastDialog</name>
    <message>
        <source>&amp;Auto</source>
        <translation>&amp;Automatisch</translation>
    </message>
    <message>
        <source>&amp;Reset</source>
        <translation>&amp;Zurücksetzen</translation>
    </message>
    <message>
        <source>Brightness/Contrast</source>
        <translation>Helligkeit/Kontrast</translation>
    </message>
    <message>
        <source>Spread the picture&apos;s values over black to white, a few saturated at each end</source>
        <translation>Die Werte des Bildes von Schwarz bis Weiß spreizen, an beiden Enden einige gesättigt</translation>
    </message>
    <message>
        <source>Show the whole range the picture&apos;s samples can hold</source>
        <translation>Den ganzen Wertebereich zeigen, den die Pixel des Bildes fassen können</translation>
    </message>
    <message>
        <source>Minimum</source>
        <translation>Minimum</translation>
    </message>
    <message>
        <source>Maximum</source>
        <translation>Maximum</translation>
    </message>
    <message>
        <source>Changes only how the picture is shown, on every frame; its values, the files and the measurements stay as they are.</source>
        <translation>Ändert nur die Darstellung des Bildes, auf jedem Bild der Serie; seine Werte, die Dateien und die Messungen bleiben unverändert.</translation>
    </message>
    <message>
        <source>Values %1 to %2 of 0 to %3</source>
        <translation>Werte %1 bis %2 von 0 bis %3</translation>
    </message>
</context>
<context>
    <name>OvCalibrateCommand</name>
    <message>
        <source>Calibrate %1 µm/px</source>
        <translation>Kalibrierung auf %1 µm/px</translation>
    </message>
</context>
<context>
    <name>OvCalibrationPage</name>
    <message>
        <source>Apply</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>Verwenden</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>uncalibrated</source>
        <translation>nicht kalibriert</translation>
    </message>
    <message>
        <source>Calibration</source>
        <translation>Kalibrierung</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>Quelle</translation>
    </message>
    <message>
        <source>&lt;b&gt;Device Configuration&lt;/b&gt;</source>
        <translation>&lt;b&gt;Gerätekonfiguration&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Size of one image pixel. Measurements are shown in calibrated units once this is set.</source>
        <translation>Größe eines Bildpixels. Sobald sie eingetragen ist, werden Messwerte in kalibrierten Einheiten angezeigt.</translation>
    </message>
    <message>
        <source>e.g. 20x objective</source>
        <translation>z. B. Objektiv 20x</translation>
    </message>
    <message>
        <source>Saved</source>
        <translation>Gespeichert</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>Speichern als</translation>
    </message>
    <message>
        <source>&lt;b&gt;Named calibrations&lt;/b&gt;</source>
        <translation>&lt;b&gt;Benannte Kalibrierungen&lt;/b&gt;</translation>
    </message>
    <message>
        <source>%1 (%2 µm/px)</source>
        <translation>%1 (%2 µm/px)</translation>
    </message>
</context>
<context>
    <name>OvFileCalibration</name>
    <message>
        <source>ImageJ description</source>
        <translation>ImageJ-Beschreibung</translation>
    </message>
    <message>
        <source>OME-XML metadata</source>
        <translation>OME-XML-Metadaten</translation>
    </message>
    <message>
        <source>resolution tags</source>
        <translation>Auflösungs-Tags</translation>
    </message>
    <message>
        <source>UmPerPixel text</source>
        <translation>UmPerPixel-Text</translation>
    </message>
</context>
<context>
    <name>OvFrameBar</name>
    <message>
        <source>Previous frame (Page Up)</source>
        <translation>Vorheriges Bild (Bild auf)</translation>
    </message>
    <message>
        <source>Play / pause (Ctrl+Space)</source>
        <translation>Abspielen / Pause (Strg+Leertaste)</translation>
    </message>
    <message>
        <source>Next frame (Page Down)</source>
        <translation>Nächstes Bild (Bild ab)</translation>
    </message>
    <message>
        <source>Frame %1 / %2</source>
        <translation>Bild %1 / %2</translation>
    </message>
</context>
<context>
    <name>OvGsCircle</name>
    <message>
        <source>R</source>
        <translation>R</translation>
    </message>
    <message>
        <source>D</source>
        <translation>D</translation>
    </message>
</context>
<context>
    <name>OvGsManipAngle</name>
    <message>
        <source>Angle</source>
        <translation>Winkel</translation>
    </message>
    <message>
        <source>Inner angle</source>
        <translation>Innenwinkel</translation>
    </message>
    <message>
        <source>Outer angle</source>
        <translation>Außenwinkel</translation>
    </message>
</context>
<context>
    <name>OvGsManipCircle</name>
    <message>
        <source>Circle</source>
        <translation>Kreis</translation>
    </message>
    <message>
        <source>Radius</source>
        <translation>Radius</translation>
    </message>
    <message>
        <source>Diameter</source>
        <translation>Durchmesser</translation>
    </message>
</context>
<context>
    <name>OvGsManipDistance</name>
    <message>
        <source>Distance</source>
        <translation>Abstand</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
</context>
<context>
    <name>OvGsManipFrame</name>
    <message>
        <source>Objects color change</source>
        <translation>Farbe der Objekte ändern</translation>
    </message>
    <message>
        <source>Objects width change</source>
        <translation>Linienbreite der Objekte ändern</translation>
    </message>
    <message>
        <source>Objects font size change</source>
        <translation>Schriftgröße der Objekte ändern</translation>
    </message>
    <message>
        <source>Objects unit type change</source>
        <translation>Einheit der Objekte ändern</translation>
    </message>
</context>
<context>
    <name>OvGsManipFreeForm</name>
    <message>
        <source>Free form</source>
        <translation>Freiform</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>Fläche</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
</context>
<context>
    <name>OvGsManipFreeLine</name>
    <message>
        <source>LEN</source>
        <translation>Freihandlinie</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
</context>
<context>
    <name>OvGsManipMultiply</name>
    <message>
        <source>base</source>
        <translation>Basis</translation>
    </message>
    <message>
        <source>M_DST</source>
        <translation>Mehrfachabstand</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
</context>
<context>
    <name>OvGsManipParalell</name>
    <message>
        <source>base</source>
        <translation>Basis</translation>
    </message>
    <message>
        <source>P_DST</source>
        <translation>Parallelabstand</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
</context>
<context>
    <name>OvGsManipRelative</name>
    <message>
        <source>Move %1</source>
        <translation>%1 verschieben</translation>
    </message>
</context>
<context>
    <name>OvGuiMainWindowBase</name>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>Konfiguration</translation>
    </message>
</context>
<context>
    <name>OvGuiMeasurementTool</name>
    <message>
        <source>auto</source>
        <translation>auto</translation>
    </message>
    <message>
        <source>nm</source>
        <translation>nm</translation>
    </message>
    <message>
        <source>mm</source>
        <translation>mm</translation>
    </message>
    <message>
        <source>cm</source>
        <translation>cm</translation>
    </message>
    <message>
        <source>mil</source>
        <translation>mil</translation>
    </message>
    <message>
        <source>inch</source>
        <translation>Zoll</translation>
    </message>
    <message>
        <source>ft</source>
        <translation>ft</translation>
    </message>
    <message>
        <source>m</source>
        <translation>m</translation>
    </message>
    <message>
        <source>deg</source>
        <translation>Grad</translation>
    </message>
</context>
<context>
    <name>OvGuiMeasurementToolUi</name>
    <message>
        <source>Freeform</source>
        <translation>Freiform</translation>
    </message>
    <message>
        <source>Line Measurement</source>
        <translation>Linienmessung</translation>
    </message>
    <message>
        <source>Line Measurement - can measure distance</source>
        <translation>Linienmessung – misst Abstände</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>Kreis</translation>
    </message>
    <message>
        <source>Angle</source>
        <translation>Winkel</translation>
    </message>
    <message>
        <source>Unit type</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Unit Type</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Font size</source>
        <translation>Schriftgröße</translation>
    </message>
    <message>
        <source>px</source>
        <translation>px</translation>
    </message>
    <message>
        <source>Outline width</source>
        <translation>Linienbreite</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>color picker</source>
        <translation>Farbauswahl</translation>
    </message>
    <message>
        <source>Qt solutions color picker</source>
        <translation>Farbauswahl</translation>
    </message>
</context>
<context>
    <name>OvHistoryView</name>
    <message>
        <source>&lt;empty&gt;</source>
        <translation>&lt;leer&gt;</translation>
    </message>
</context>
<context>
    <name>OvImageSequence</name>
    <message>
        <source>%1 has no page %2</source>
        <translation>%1 hat keine Seite %2</translation>
    </message>
    <message>
        <source>Cannot open %1: %2</source>
        <translation>%1 lässt sich nicht öffnen: %2</translation>
    </message>
    <message>
        <source>Cannot open %1: the file does not exist</source>
        <translation>%1 lässt sich nicht öffnen: Die Datei existiert nicht</translation>
    </message>
    <message>
        <source>No picture to open</source>
        <translation>Kein Bild zum Öffnen</translation>
    </message>
    <message>
        <source>Frame %1 (%2) has %3 x %4 pixels; the first frame has %5 x %6</source>
        <translation>Bild %1 (%2) hat %3 × %4 Pixel, das erste Bild hat %5 × %6</translation>
    </message>
    <message>
        <source>%1 channels</source>
        <translation>%1 Kanäle</translation>
    </message>
    <message>
        <source>%1 slices</source>
        <translation>%1 Schnittebenen</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 Zeitpunkte</translation>
    </message>
    <message>
        <source>ImageJ hyperstack: %1</source>
        <translation>ImageJ-Hyperstack: %1</translation>
    </message>
    <message>
        <source>ImageJ stack: %1</source>
        <translation>ImageJ-Stapel: %1</translation>
    </message>
</context>
<context>
    <name>OvLineCalibrationDialog</name>
    <message>
        <source>Calibrate from Line</source>
        <translation>Mit einer Linie kalibrieren</translation>
    </message>
    <message>
        <source> px</source>
        <translation> px</translation>
    </message>
    <message>
        <source>optional, e.g. 20x objective</source>
        <translation>optional, z. B. Objektiv 20x</translation>
    </message>
    <message>
        <source>The line is %1 pixels long. Enter its true length, e.g. the length of the scale bar it covers.</source>
        <translation>Die Linie ist %1 Pixel lang. Geben Sie ihre wahre Länge ein, z. B. die Länge des Maßstabsbalkens, den sie überdeckt.</translation>
    </message>
    <message>
        <source>Select a distance line drawn over a scale bar or a stage micrometer first, or enter the length in pixels of something you know.</source>
        <translation>Wählen Sie zuerst eine Abstandslinie aus, die über einem Maßstabsbalken oder einem Objektmikrometer liegt, oder geben Sie die Länge eines bekannten Objekts in Pixeln ein.</translation>
    </message>
    <message>
        <source>Line length</source>
        <translation>Linienlänge</translation>
    </message>
    <message>
        <source>True length</source>
        <translation>Wahre Länge</translation>
    </message>
    <message>
        <source>Pixel size</source>
        <translation>Pixelgröße</translation>
    </message>
    <message>
        <source>Keep as</source>
        <translation>Speichern als</translation>
    </message>
    <message>
        <source>Calibrate</source>
        <translation>Kalibrieren</translation>
    </message>
    <message>
        <source>%1 µm per pixel</source>
        <translation>%1 µm pro Pixel</translation>
    </message>
    <message>
        <source>enter both lengths</source>
        <translation>beide Längen eingeben</translation>
    </message>
</context>
<context>
    <name>OvMeasurementExporter</name>
    <message>
        <source>Angle</source>
        <translation>Winkel</translation>
    </message>
    <message>
        <source>Distance</source>
        <translation>Abstand</translation>
    </message>
    <message>
        <source>Free form</source>
        <translation>Freiform</translation>
    </message>
    <message>
        <source>Circle</source>
        <translation>Kreis</translation>
    </message>
    <message>
        <source>Multiple distance</source>
        <translation>Mehrfachabstand</translation>
    </message>
    <message>
        <source>Parallel distance</source>
        <translation>Parallelabstand</translation>
    </message>
    <message>
        <source>Free line</source>
        <translation>Freie Linie</translation>
    </message>
</context>
<context>
    <name>OvMeasurementFile</name>
    <message>
        <source>Cannot write %1: %2</source>
        <translation>%1 lässt sich nicht schreiben: %2</translation>
    </message>
    <message>
        <source>Cannot open %1: %2</source>
        <translation>%1 lässt sich nicht öffnen: %2</translation>
    </message>
    <message>
        <source>the file does not exist</source>
        <translation>Die Datei existiert nicht</translation>
    </message>
    <message>
        <source>the file is larger than %1 MiB</source>
        <translation>Die Datei ist größer als %1 MiB</translation>
    </message>
    <message>
        <source>%1 was measured on a picture of %2 x %3 pixels; this one has %4 x %5</source>
        <translation>%1 wurde auf einem Bild mit %2 × %3 Pixeln gemessen, dieses hat %4 × %5</translation>
    </message>
    <message>
        <source>from the measurement file</source>
        <translation>aus der Messdatei</translation>
    </message>
</context>
<context>
    <name>OvMeasurementToolPlugin</name>
    <message>
        <source>Measurement</source>
        <translation>Messung</translation>
    </message>
</context>
<context>
    <name>OvPanelMenuTexts</name>
    <message>
        <source>Distance</source>
        <translation>Abstand</translation>
    </message>
    <message>
        <source>Distance: a straight line between two points</source>
        <translation>Abstand: eine gerade Linie zwischen zwei Punkten</translation>
    </message>
    <message>
        <source>Free line</source>
        <translation>Freie Linie</translation>
    </message>
    <message>
        <source>Free line: the length of a line drawn by hand</source>
        <translation>Freie Linie: die Länge einer von Hand gezogenen Linie</translation>
    </message>
    <message>
        <source>Multiple distances</source>
        <translation>Mehrfachabstände</translation>
    </message>
    <message>
        <source>Multiple distances: perpendicular distances from points to a base line</source>
        <translation>Mehrfachabstände: senkrechte Abstände von Punkten zu einer Basislinie</translation>
    </message>
    <message>
        <source>Parallel distances</source>
        <translation>Parallelabstände</translation>
    </message>
    <message>
        <source>Parallel distances: lines parallel to a base line, labelled with their distance from it</source>
        <translation>Parallelabstände: Linien parallel zu einer Basislinie, beschriftet mit ihrem Abstand von ihr</translation>
    </message>
    <message>
        <source>Circle-to-circle distance</source>
        <translation>Abstand Kreis zu Kreis</translation>
    </message>
    <message>
        <source>Circle-to-circle distance: a line between the centres of two circles</source>
        <translation>Abstand Kreis zu Kreis: eine Linie zwischen den Mittelpunkten zweier Kreise</translation>
    </message>
    <message>
        <source>Diameter</source>
        <translation>Durchmesser</translation>
    </message>
    <message>
        <source>Circle through three rim points, labelled with its diameter</source>
        <translation>Kreis durch drei Randpunkte, beschriftet mit seinem Durchmesser</translation>
    </message>
    <message>
        <source>Radius</source>
        <translation>Radius</translation>
    </message>
    <message>
        <source>Circle through three rim points, labelled with its radius</source>
        <translation>Kreis durch drei Randpunkte, beschriftet mit seinem Radius</translation>
    </message>
    <message>
        <source>Inner angle</source>
        <translation>Innenwinkel</translation>
    </message>
    <message>
        <source>Inner angle: the angle between two lines, below 180°</source>
        <translation>Innenwinkel: der Winkel zwischen zwei Linien, unter 180°</translation>
    </message>
    <message>
        <source>Outer angle</source>
        <translation>Außenwinkel</translation>
    </message>
    <message>
        <source>Outer angle: 360° minus the inner angle</source>
        <translation>Außenwinkel: 360° minus der Innenwinkel</translation>
    </message>
</context>
<context>
    <name>OvResultsDock</name>
    <message>
        <source>Results</source>
        <translation>Ergebnisse</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
</context>
<context>
    <name>OvResultsModel</name>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>Nr.</translation>
    </message>
    <message>
        <source>Value name</source>
        <translation>Messgröße</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Einheit</translation>
    </message>
    <message>
        <source>Label</source>
        <translation>Beschriftung</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>Bild</translation>
    </message>
</context>
<context>
    <name>OvTiffReader</name>
    <message>
        <source>the TIFF is damaged or cut short</source>
        <translation>Das TIFF ist beschädigt oder unvollständig</translation>
    </message>
    <message>
        <source>the TIFF is damaged or cut short (%1)</source>
        <translation>Das TIFF ist beschädigt oder unvollständig (%1)</translation>
    </message>
    <message>
        <source>Cannot open %1: %2</source>
        <translation>%1 lässt sich nicht öffnen: %2</translation>
    </message>
    <message>
        <source>the file does not exist</source>
        <translation>Die Datei existiert nicht</translation>
    </message>
    <message>
        <source>it is not a TIFF picture</source>
        <translation>Es ist kein TIFF-Bild</translation>
    </message>
    <message>
        <source>the TIFF has no readable page</source>
        <translation>Das TIFF hat keine lesbare Seite</translation>
    </message>
    <message>
        <source>the ImageJ stack holds %1 images, but the file ends before the last (cut short)</source>
        <translation>Der ImageJ-Stapel umfasst %1 Bilder, doch die Datei endet vor dem letzten (unvollständig)</translation>
    </message>
    <message>
        <source>page %1: %2</source>
        <translation>Seite %1: %2</translation>
    </message>
    <message>
        <source>there is no such page</source>
        <translation>Diese Seite gibt es nicht</translation>
    </message>
    <message>
        <source>the page has no valid size (%1 x %2)</source>
        <translation>Die Seite hat keine gültige Größe (%1 × %2)</translation>
    </message>
    <message>
        <source>the page of %1 x %2 pixels is too large</source>
        <translation>Die Seite mit %1 × %2 Pixeln ist zu groß</translation>
    </message>
    <message>
        <source>floating-point samples are not supported (8- and 16-bit pictures are)</source>
        <translation>Gleitkomma-Pixelwerte werden nicht unterstützt (8- und 16-Bit-Bilder schon)</translation>
    </message>
    <message>
        <source>the TIFF&apos;s tiles have no size</source>
        <translation>Die Kacheln des TIFF haben keine Größe</translation>
    </message>
    <message>
        <source>%1-bit samples are not supported (8- and 16-bit pictures are)</source>
        <translation>%1-Bit-Pixelwerte werden nicht unterstützt (8- und 16-Bit-Bilder schon)</translation>
    </message>
    <message>
        <source>this kind of TIFF is not supported (%1)</source>
        <translation>Diese Art von TIFF wird nicht unterstützt (%1)</translation>
    </message>
</context>
<context>
    <name>OvToolBase</name>
    <message>
        <source>Reset to defaults</source>
        <translation>Auf Standardwerte zurücksetzen</translation>
    </message>
    <message>
        <source>Show or hide the settings</source>
        <translation>Einstellungen ein- oder ausblenden</translation>
    </message>
    <message>
        <source>Not available for this picture</source>
        <translation>Für dieses Bild nicht verfügbar</translation>
    </message>
</context>
<context>
    <name>OvUndoGrouper</name>
    <message>
        <source>Panel change</source>
        <translation>Änderung im Bedienfeld</translation>
    </message>
</context>
<context>
    <name>OvViewerMainWindow</name>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Device Configuration</source>
        <translation>Gerätekonfiguration</translation>
    </message>
    <message>
        <source>&lt;picture opened&gt;</source>
        <translation>&lt;Bild geöffnet&gt;</translation>
    </message>
    <message>
        <source>Frames</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Ö&amp;ffnen...</translation>
    </message>
    <message>
        <source>Open &amp;Sample</source>
        <translation>&amp;Beispielbild öffnen</translation>
    </message>
    <message>
        <source>Open &amp;Measurements...</source>
        <translation>&amp;Messungen öffnen...</translation>
    </message>
    <message>
        <source>Sa&amp;ve Measurements...</source>
        <translation>Messungen &amp;speichern...</translation>
    </message>
    <message>
        <source>&amp;Export Results...</source>
        <translation>Ergebnisse e&amp;xportieren...</translation>
    </message>
    <message>
        <source>Save Screens&amp;hot of the Window...</source>
        <translation>Bildschirmf&amp;oto des Fensters speichern...</translation>
    </message>
    <message>
        <source>Save &amp;Picture with Measurements...</source>
        <translation>B&amp;ild mit Messungen speichern...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>B&amp;eenden</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>Ctrl+Y</source>
        <translation>Ctrl+Y</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>&amp;Alles auswählen</translation>
    </message>
    <message>
        <source>Cancel Drawing / Deselect</source>
        <translation>Zeichnen abbrechen / Auswahl aufheben</translation>
    </message>
    <message>
        <source>&amp;Delete Selected</source>
        <translation>Ausgewählte &amp;löschen</translation>
    </message>
    <message>
        <source>&amp;Calibration...</source>
        <translation>&amp;Kalibrierung...</translation>
    </message>
    <message>
        <source>Calibrate from &amp;Line...</source>
        <translation>Mit Li&amp;nie kalibrieren...</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>&amp;Vergrößern</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>&amp;Fit</source>
        <translation>&amp;Einpassen</translation>
    </message>
    <message>
        <source>Ctrl+0</source>
        <translation>Ctrl+0</translation>
    </message>
    <message>
        <source>&amp;Actual Pixels</source>
        <translation>&amp;Originalgröße</translation>
    </message>
    <message>
        <source>Ctrl+1</source>
        <translation>Ctrl+1</translation>
    </message>
    <message>
        <source>&amp;Tools</source>
        <translation>&amp;Werkzeuge</translation>
    </message>
    <message>
        <source>&amp;History</source>
        <translation>Ver&amp;lauf</translation>
    </message>
    <message>
        <source>&amp;Previous Frame</source>
        <translation>Vo&amp;rheriges Bild</translation>
    </message>
    <message>
        <source>&amp;Next Frame</source>
        <translation>&amp;Nächstes Bild</translation>
    </message>
    <message>
        <source>P&amp;lay / Pause</source>
        <translation>Abs&amp;pielen / Pause</translation>
    </message>
    <message>
        <source>Opened %1 frames from %2 (%3 x %4 pixels)</source>
        <translation>%1 Bilder aus %2 geöffnet (%3 × %4 Pixel)</translation>
    </message>
    <message>
        <source>Opened %1 (%2 x %3 pixels)</source>
        <translation>%1 geöffnet (%2 × %3 Pixel)</translation>
    </message>
    <message>
        <source>Ov Viewer</source>
        <translation>Ov Viewer</translation>
    </message>
    <message>
        <source>Measurements were saved with this picture (%1). Open them?</source>
        <translation>Zu diesem Bild sind Messungen gespeichert (%1). Sollen sie geöffnet werden?</translation>
    </message>
    <message>
        <source>Cannot read frame %1 of %2</source>
        <translation>Bild %1 von %2 lässt sich nicht lesen</translation>
    </message>
    <message>
        <source>Zoom %1 %</source>
        <translation>Zoom %1 %</translation>
    </message>
    <message>
        <source>The measurements on %1 have changed. %2 discards them.</source>
        <translation>Die Messungen auf %1 wurden geändert. %2 verwirft sie.</translation>
    </message>
    <message>
        <source>this picture</source>
        <translation>diesem Bild</translation>
    </message>
    <message>
        <source>Save Measurements</source>
        <translation>Messungen speichern</translation>
    </message>
    <message>
        <source>Measurements (*.json)</source>
        <translation>Messungen (*.json)</translation>
    </message>
    <message>
        <source>Quitting</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Cannot write %1</source>
        <translation>%1 lässt sich nicht schreiben</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>%1 gespeichert</translation>
    </message>
    <message>
        <source>Values written to %1</source>
        <translation>Werte in %1 geschrieben</translation>
    </message>
    <message>
        <source>no picture</source>
        <translation>kein Bild</translation>
    </message>
    <message>
        <source>%1[*] - Ov Viewer</source>
        <translation>%1[*] - Ov Viewer</translation>
    </message>
    <message>
        <source>%1 µm/px</source>
        <translation>%1 µm/px</translation>
    </message>
    <message>
        <source>uncalibrated</source>
        <translation>nicht kalibriert</translation>
    </message>
    <message>
        <source>Opening another picture</source>
        <translation>Das Öffnen eines anderen Bildes</translation>
    </message>
    <message>
        <source>Open Pictures</source>
        <translation>Bilder öffnen</translation>
    </message>
    <message>
        <source>Pictures (*.png *.jpg *.jpeg *.tif *.tiff *.bmp)</source>
        <translation>Bilder (*.png *.jpg *.jpeg *.tif *.tiff *.bmp)</translation>
    </message>
    <message>
        <source>Opening the sample</source>
        <translation>Das Öffnen des Beispielbilds</translation>
    </message>
    <message>
        <source>Export Values</source>
        <translation>Werte exportieren</translation>
    </message>
    <message>
        <source>CSV (*.csv)</source>
        <translation>CSV (*.csv)</translation>
    </message>
    <message>
        <source>Save Screenshot of the Window</source>
        <translation>Bildschirmfoto des Fensters speichern</translation>
    </message>
    <message>
        <source>PNG (*.png)</source>
        <translation>PNG (*.png)</translation>
    </message>
    <message>
        <source>Save Picture with Measurements</source>
        <translation>Bild mit Messungen speichern</translation>
    </message>
    <message>
        <source>A calibration needs a line and a true length above 0</source>
        <translation>Zum Kalibrieren braucht es eine Linie und eine wahre Länge über 0</translation>
    </message>
    <message>
        <source>Calibrated: %1 µm per pixel</source>
        <translation>Kalibriert: %1 µm pro Pixel</translation>
    </message>
    <message>
        <source>Measurements saved to %1</source>
        <translation>Messungen in %1 gespeichert</translation>
    </message>
    <message>
        <source>Measurements opened from %1</source>
        <translation>Messungen aus %1 geöffnet</translation>
    </message>
    <message>
        <source>Opening other measurements</source>
        <translation>Das Öffnen anderer Messungen</translation>
    </message>
    <message>
        <source>Open Measurements</source>
        <translation>Messungen öffnen</translation>
    </message>
    <message>
        <source>Drag a line over the scale bar or stage micrometer to calibrate from (Esc cancels)</source>
        <translation>Ziehen Sie zum Kalibrieren eine Linie über den Maßstabsbalken oder das Objektmikrometer (Esc bricht ab)</translation>
    </message>
    <message>
        <source>Calibrate...</source>
        <translation>Kalibrieren...</translation>
    </message>
    <message>
        <source>Calibrate…</source>
        <translation>Kalibrieren…</translation>
    </message>
    <message>
        <source>Type the size of one pixel</source>
        <translation>Die Größe eines Pixels eingeben</translation>
    </message>
    <message>
        <source>From a Line...</source>
        <translation>Mit einer Linie...</translation>
    </message>
    <message>
        <source>From a Line…</source>
        <translation>Mit einer Linie…</translation>
    </message>
    <message>
        <source>Drag a line over the scale bar and type its true length</source>
        <translation>Eine Linie über den Maßstabsbalken ziehen und ihre wahre Länge eingeben</translation>
    </message>
    <message>
        <source>&amp;Brightness/Contrast...</source>
        <translation>&amp;Helligkeit/Kontrast...</translation>
    </message>
    <message>
        <source>Ctrl+Shift+C</source>
        <translation>Ctrl+Shift+C</translation>
    </message>
    <message>
        <source>from the file&apos;s %1</source>
        <translation>aus der Datei (%1)</translation>
    </message>
    <message>
        <source>; %1</source>
        <translation>; %1</translation>
    </message>
    <message>
        <source>; calibrated from its %1</source>
        <translation>; kalibriert über %1</translation>
    </message>
    <message>
        <source>; uncalibrated</source>
        <translation>; nicht kalibriert</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>%1 × %2 µm/px</source>
        <translation>%1 × %2 µm/px</translation>
    </message>
    <message>
        <source> (%1)</source>
        <translation> (%1)</translation>
    </message>
    <message>
        <source>typed</source>
        <translation>eingegeben</translation>
    </message>
    <message>
        <source>Measuring needs a calibration: this picture does not say how large its pixels are.</source>
        <translation>Zum Messen braucht es eine Kalibrierung: Dieses Bild gibt nicht an, wie groß seine Pixel sind.</translation>
    </message>
    <message>
        <source>from a line</source>
        <translation>mit einer Linie</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Plug-in %1 could not be loaded: %2</source>
        <translation>Plug-in %1 konnte nicht geladen werden: %2</translation>
    </message>
    <message>
        <source>Plug-in %1 does not implement the interface %2</source>
        <translation>Plug-in %1 implementiert die Schnittstelle %2 nicht</translation>
    </message>
    <message>
        <source>No measurement plug-in found in %1</source>
        <translation>Kein Mess-Plug-in gefunden in %1</translation>
    </message>
    <message>
        <source>any plug-in folder</source>
        <translation>einem der Plug-in-Ordner</translation>
    </message>
    <message>
        <source>Plug-in %1 refused its feature %2</source>
        <translation>Plug-in %1 hat seine Funktion %2 abgelehnt</translation>
    </message>
</context>
</TS>
