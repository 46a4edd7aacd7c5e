<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en" language="de_DE">
<context>
    <name>Ostel.Sightlog.App.EditGPSAddress</name>
    <message>
        <source>GoToAddressButton</source>
        <translation>Zur
Adresse</translation>
    </message>
    <message>
        <source>TxtGpsAddressInput</source>
        <translation>Adresse ändern</translation>
    </message>
    <message>
        <source>TxtGpsStreet</source>
        <translation>Straße</translation>
    </message>
    <message>
        <source>TxtGpsCity</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>TxtGpsCountry</source>
        <translation>Land</translation>
    </message>
</context>
<context>
    <name>Ostel.Sightlog.App.EditGPSPosition</name>
    <message>
        <source>EditGpsButton</source>
        <translation>Breite
Länge
GPS
ändern</translation>
    </message>
    <message>
        <source>TxtGpsPositionInput</source>
        <translation>GPS-Position ändern</translation>
    </message>
</context>
<context>
    <name>Ostel.Sightlog.App.Essential3DCommands</name>
    <message>
        <source>GoToGpsButton</source>
        <translation>Zu
GPS</translation>
    </message>
    <message>
        <source>GoToNodeUpstreamButton</source>
        <translation>Zum
Schacht
oberhalb</translation>
    </message>
    <message>
        <source>GoToNodeDownstreamButton</source>
        <translation>Zum
Schacht
unterhalb</translation>
    </message>
    <message>
        <source>GoToCameraButton</source>
        <translation>Zur
Kamera</translation>
    </message>
    <message>
        <source>GoToSectionButton</source>
        <translation>Zur
Haltung</translation>
    </message>
</context>
<context>
    <name>Torvik.Belmora.App.CameraDistanceInfoPanel</name>
    <message>
        <source>CameraTooFarMessage</source>
        <translation>Die 3D-Ansicht oder Karte ist zu weit vom Ort der Inspektion entfernt.
Ein Klick auf den Kompass führt dorthin zurück.</translation>
    </message>
    <message>
        <source>CameraTooFarFitMessage</source>
        <translation>Die 3D-Ansicht oder Karte ist zu weit vom Ort der Inspektion entfernt.
„Alles“ führt dorthin zurück.</translation>
    </message>
</context>
<context>
    <name>Torvik.Belmora.App.LateralQuickAccessButton</name>
    <message>
        <source>MsgStopVideoRecordingCaption</source>
        <translation>Bestätigung nötig</translation>
    </message>
    <message>
        <source>MsgStopVideoRecording</source>
        <translation>Gerade wird ein Video aufgezeichnet; die Aufzeichnung endet beim Verlassen.

Die laufende Inspektion wirklich schließen?</translation>
    </message>
    <message>
        <source>ErrorMessageCaption</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>Torvik.Belmora.App.TwoSectionInterface</name>
    <message>
        <source>TwoSectionsScaleAndPlace1</source>
        <translation>Schritt 1: Auf den Plan tippen, um die Bezugsstrecke festzulegen</translation>
    </message>
    <message>
        <source>TwoSectionsScaleAndPlace2</source>
        <translation>Schritt 2: Mit NÄCHSTER SCHRITT fortfahren</translation>
    </message>
    <message>
        <source>TwoSectionsScaleAndPlace3</source>
        <translation>Schritt 3: Auf die Karte tippen, um die Zielstrecke festzulegen</translation>
    </message>
    <message>
        <source>TwoSectionsScaleAndPlace4</source>
        <translation>Schritt 4: Noch einmal NÄCHSTER SCHRITT zeigt das Ergebnis</translation>
    </message>
    <message>
        <source>TwoSectionsNorthDirection1</source>
        <translation>Schritt 1: Auf den Plan tippen, um den Südpunkt des Kompasses festzulegen</translation>
    </message>
    <message>
        <source>TwoSectionsNorthDirection2</source>
        <translation>Schritt 2: Auf den Plan tippen, um den Nordpunkt des Kompasses festzulegen</translation>
    </message>
    <message>
        <source>TwoSectionsNorthDirection3</source>
        <translation>Schritt 3: Noch einmal NÄCHSTER SCHRITT zeigt das Ergebnis</translation>
    </message>
    <message>
        <source>TwoSectionsScaleByValue1</source>
        <translation>Schritt 1: Auf den Plan tippen, um die Strecke festzulegen, deren Länge eingegeben wird</translation>
    </message>
    <message>
        <source>TwoSectionsScaleByValue2</source>
        <translation>Schritt 2: Mit NÄCHSTER SCHRITT die Länge eingeben und das Ergebnis sehen</translation>
    </message>
    <message>
        <source>CaptionSetSectionDistanceValue</source>
        <translation>Länge der Strecke eingeben</translation>
    </message>
    <message>
        <source>TxtSetSectionDistanceValue</source>
        <translation>Länge der Strecke</translation>
    </message>
</context>
<context>
    <name>Torvik.ErrorCodes</name>
    <message>
        <source>ErrorCode</source>
        <translation>Ein Fehler ist aufgetreten (Code 0x%1).</translation>
    </message>
</context>
<context>
    <name>Torvik.Belmora.App.LocationValidInfoPanel</name>
    <message>
        <source>LocationInvalid</source>
        <translation>Der gewählte Ort liegt außerhalb des gewählten Koordinatensystems.
Bitte einen anderen Ort oder ein anderes Koordinatensystem wählen.</translation>
    </message>
</context>
<context>
    <name>Ostel.Sightlog.App.PlanLoadingScreen</name>
    <message>
        <source>TxtPlanFileCaption</source>
        <translation>Plan wird geladen</translation>
    </message>
    <message>
        <source>TxtPlanFileLabel</source>
        <translation>Plandatei:</translation>
    </message>
    <message>
        <source>PlanLoadFinishedCaption</source>
        <translation>Der Plan ist geladen. Schließen Sie diesen Dialog; danach können Sie den USB-Stick gefahrlos entfernen.</translation>
    </message>
    <message>
        <source>PlanLoadFinishedTitle</source>
        <translation>Der Plan ist geladen</translation>
    </message>
</context>
</TS>
