<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>AddressService</name>
    <message>
        <source>Search for an address</source>
        <translation>Nach einer Adresse suchen</translation>
    </message>
    <message>
        <source>No service is chosen that finds addresses. MAPGEOCODING in the settings names one.</source>
        <translation>Es ist kein Dienst gewählt, der Adressen findet. MAPGEOCODING in den Einstellungen nennt einen.</translation>
    </message>
    <message>
        <source>The service at %1 cannot be reached, or answers with an error.</source>
        <translation>Der Dienst unter %1 ist nicht erreichbar oder antwortet mit einem Fehler.</translation>
    </message>
    <message>
        <source>The service at %1 gives no answer that can be read.</source>
        <translation>Der Dienst unter %1 gibt keine lesbare Antwort.</translation>
    </message>
    <message>
        <source>Nothing is found under this address.</source>
        <translation>Unter dieser Adresse wurde nichts gefunden.</translation>
    </message>
</context>
<context>
    <name>AppCards</name>
    <message>
        <source>Written</source>
        <translation>Geschrieben</translation>
    </message>
    <message>
        <source>Not written</source>
        <translation>Nicht geschrieben</translation>
    </message>
</context>
<context>
    <name>CommandBar</name>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
</context>
<context>
    <name>CommandPanelBase</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
</context>
<context>
    <name>DetailsPage</name>
    <message>
        <source>Select an object, here or in the scene</source>
        <translation>Ein Objekt auswählen, hier oder in der Szene</translation>
    </message>
</context>
<context>
    <name>EmptyStart</name>
    <message>
        <source>No project is open</source>
        <translation>Kein Projekt ist offen</translation>
    </message>
    <message>
        <source>Open a folder ...</source>
        <translation>Einen Ordner öffnen ...</translation>
    </message>
</context>
<context>
    <name>GoToCommands</name>
    <message>
        <source>Go to</source>
        <translation>Gehe zu</translation>
    </message>
    <message>
        <source>Latitude and longitude…</source>
        <translation>Breite und Länge …</translation>
    </message>
    <message>
        <source>The last address</source>
        <translation>Die letzte Adresse</translation>
    </message>
    <message>
        <source>An address…</source>
        <translation>Eine Adresse …</translation>
    </message>
</context>
<context>
    <name>HandWork</name>
    <message>
        <source>Pipe</source>
        <translation>Rohr</translation>
    </message>
    <message>
        <source>Joint of a lateral</source>
        <translation>Anschlussstelle</translation>
    </message>
    <message>
        <source>Building</source>
        <translation>Gebäude</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>Anschlusspunkt</translation>
    </message>
    <message>
        <source>Manhole</source>
        <translation>Schacht</translation>
    </message>
</context>
<context>
    <name>InputForm</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>InputScreens</name>
    <message>
        <source>This is not a number.</source>
        <translation>Das ist keine Zahl.</translation>
    </message>
    <message>
        <source>Between %1 and %2.</source>
        <translation>Zwischen %1 und %2.</translation>
    </message>
    <message>
        <source>At least %1.</source>
        <translation>Mindestens %1.</translation>
    </message>
    <message>
        <source>Latitude (degrees, north is positive)</source>
        <translation>Breite (Grad, Norden positiv)</translation>
    </message>
    <message>
        <source>Longitude (degrees, east is positive)</source>
        <translation>Länge (Grad, Osten positiv)</translation>
    </message>
    <message>
        <source>Where I am now</source>
        <translation>Mein Standort</translation>
    </message>
    <message>
        <source>A street, a city or a country is needed.</source>
        <translation>Eine Straße, ein Ort oder ein Land wird gebraucht.</translation>
    </message>
    <message>
        <source>Heights of the floors</source>
        <translation>Höhen der Stockwerke</translation>
    </message>
    <message>
        <source>Floor %1: height above the floor below, in %2</source>
        <translation>Stockwerk %1: Höhe über dem Stockwerk darunter, in %2</translation>
    </message>
    <message>
        <source>Floor %1: height above the zero level of the view, in %2</source>
        <translation>Stockwerk %1: Höhe über der Nullhöhe der Ansicht, in %2</translation>
    </message>
</context>
<context>
    <name>KeyCommands</name>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>KeysCard</name>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>open a project</source>
        <translation>ein Projekt öffnen</translation>
    </message>
    <message>
        <source>look from the top, in 3D, from the front</source>
        <translation>von oben, in 3D, von vorn sehen</translation>
    </message>
    <message>
        <source>the whole project in view</source>
        <translation>das ganze Projekt zeigen</translation>
    </message>
    <message>
        <source>nearer, farther</source>
        <translation>näher, weiter</translation>
    </message>
    <message>
        <source>cancel, let go what is selected</source>
        <translation>abbrechen, Auswahl loslassen</translation>
    </message>
    <message>
        <source>Del</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>delete what is selected, after a question</source>
        <translation>Ausgewähltes löschen, nach einer Frage</translation>
    </message>
    <message>
        <source>a picture of the view as PNG</source>
        <translation>ein Bild der Ansicht als PNG</translation>
    </message>
    <message>
        <source>Ctrl+P</source>
        <translation>Strg+P</translation>
    </message>
    <message>
        <source>a page with the view as PDF</source>
        <translation>eine Seite mit der Ansicht als PDF</translation>
    </message>
    <message>
        <source>this card</source>
        <translation>diese Karte</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>MainView</name>
    <message>
        <source>Dismiss</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Open a project&apos;s folder</source>
        <translation>Ordner eines Projekts öffnen</translation>
    </message>
    <message>
        <source>Play a recording</source>
        <translation>Aufzeichnung abspielen</translation>
    </message>
</context>
<context>
    <name>MapShift</name>
    <message>
        <source>Shift the map</source>
        <translation>Karte verschieben</translation>
    </message>
    <message>
        <source>A drag then moves the map under the network. All of the project gets the coordinates of its new place, and they are stored. Begin?</source>
        <translation>Der Finger bewegt dann die Karte unter dem Netz. Alles im Projekt bekommt die Koordinaten seines neuen Ortes, und sie werden gespeichert. Beginnen?</translation>
    </message>
</context>
<context>
    <name>MessageBoxUtils</name>
    <message>
        <source>%1 cannot be read. It is damaged, or no file of its kind. Copy it again from where it came.</source>
        <translation>%1 kann nicht gelesen werden. Die Datei ist beschädigt oder keine ihrer Art. Kopieren Sie sie noch einmal von ihrer Herkunft.</translation>
    </message>
    <message>
        <source>%1 x %2 pixels are too many; a plan has at most %3 x %4. Make it smaller and try again.</source>
        <translation>%1 x %2 Bildpunkte sind zu viele; ein Plan hat höchstens %3 x %4. Verkleinern Sie ihn und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>No picture can be made of this PDF. Save it as PNG and choose that file.</source>
        <translation>Aus diesem PDF lässt sich kein Bild machen. Speichern Sie es als PNG und wählen Sie diese Datei.</translation>
    </message>
    <message>
        <source>The plan cannot be loaded</source>
        <translation>Der Plan kann nicht geladen werden</translation>
    </message>
</context>
<context>
    <name>MessageBoxes</name>
    <message>
        <source>Please wait</source>
        <translation>Bitte warten</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
</context>
<context>
    <name>ObjectContent</name>
    <message>
        <source>Street</source>
        <translation>Straße</translation>
    </message>
    <message>
        <source>District</source>
        <translation>Ortsteil</translation>
    </message>
    <message>
        <source>City</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Diameter</source>
        <translation>Durchmesser</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>Depth at the start</source>
        <translation>Tiefe am Anfang</translation>
    </message>
    <message>
        <source>Depth at the end</source>
        <translation>Tiefe am Ende</translation>
    </message>
    <message>
        <source>Material</source>
        <translation>Werkstoff</translation>
    </message>
    <message>
        <source>Year</source>
        <translation>Baujahr</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Depth to invert</source>
        <translation>Tiefe bis zur Sohle</translation>
    </message>
</context>
<context>
    <name>ObjectLists</name>
    <message>
        <source>Nodes</source>
        <translation>Schächte</translation>
    </message>
    <message>
        <source>Pipes</source>
        <translation>Rohre</translation>
    </message>
    <message>
        <source>Inspections</source>
        <translation>Inspektionen</translation>
    </message>
    <message>
        <source>Observations</source>
        <translation>Befunde</translation>
    </message>
    <message>
        <source>No project</source>
        <translation>Kein Projekt</translation>
    </message>
    <message>
        <source>Search by name</source>
        <translation>Nach Namen suchen</translation>
    </message>
    <message>
        <source>Nothing found</source>
        <translation>Nichts gefunden</translation>
    </message>
    <message>
        <source>Nothing here</source>
        <translation>Nichts vorhanden</translation>
    </message>
    <message>
        <source>Project</source>
        <translation>Projekt</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
</context>
<context>
    <name>ObjectTools</name>
    <message>
        <source>Connect it like this?</source>
        <translation>So verbinden?</translation>
    </message>
    <message>
        <source>%1 → %2</source>
        <translation>%1 → %2</translation>
    </message>
    <message>
        <source>Nothing selected</source>
        <translation>Nichts ausgewählt</translation>
    </message>
    <message>
        <source>Apply stores it, Cancel takes it back</source>
        <translation>Übernehmen speichert, Abbrechen nimmt zurück</translation>
    </message>
    <message>
        <source>Tap the pipe that is to be connected</source>
        <translation>Das anzuschließende Rohr antippen</translation>
    </message>
    <message>
        <source>A pipe must come first; cancel and begin anew</source>
        <translation>Ein Rohr muss zuerst kommen; abbrechen und neu beginnen</translation>
    </message>
    <message>
        <source>Tap what it leads to</source>
        <translation>Antippen, wohin es führt</translation>
    </message>
    <message>
        <source>Connect shows how it will be</source>
        <translation>Verbinden zeigt, wie es wird</translation>
    </message>
    <message>
        <source>Tap a manhole or a pipe</source>
        <translation>Schacht oder Rohr antippen</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Height free</source>
        <translation>Höhe frei</translation>
    </message>
    <message>
        <source>Height locked</source>
        <translation>Höhe fest</translation>
    </message>
    <message>
        <source>Arrows</source>
        <translation>Pfeile</translation>
    </message>
    <message>
        <source>Turn</source>
        <translation>Drehen</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Schieben</translation>
    </message>
</context>
<context>
    <name>ObservationEditor</name>
    <message>
        <source>New observation</source>
        <translation>Neuer Befund</translation>
    </message>
    <message>
        <source>Change the observation</source>
        <translation>Befund ändern</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Kürzel</translation>
    </message>
    <message>
        <source>Distance along the pipe (%1)</source>
        <translation>Entfernung im Rohr (%1)</translation>
    </message>
    <message>
        <source>Clock (0 to 12)</source>
        <translation>Uhr (0 bis 12)</translation>
    </message>
    <message>
        <source>Angle (degrees)</source>
        <translation>Winkel (Grad)</translation>
    </message>
    <message>
        <source>Quantity</source>
        <translation>Menge</translation>
    </message>
    <message>
        <source>Lateral</source>
        <translation>Anschlussleitung</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>ObservationForm</name>
    <message>
        <source>This is not a number</source>
        <translation>Das ist keine Zahl</translation>
    </message>
    <message>
        <source>A distance is needed</source>
        <translation>Eine Entfernung wird gebraucht</translation>
    </message>
    <message>
        <source>A distance is not negative</source>
        <translation>Eine Entfernung ist nicht negativ</translation>
    </message>
    <message>
        <source>A whole hour from 0 to 12</source>
        <translation>Eine volle Stunde von 0 bis 12</translation>
    </message>
    <message>
        <source>A bend needs the hour towards which it turns</source>
        <translation>Ein Bogen braucht die Stunde, zu der er abbiegt</translation>
    </message>
    <message>
        <source>At most 180 degrees</source>
        <translation>Höchstens 180 Grad</translation>
    </message>
    <message>
        <source>A bend needs its angle</source>
        <translation>Ein Bogen braucht seinen Winkel</translation>
    </message>
    <message>
        <source>Only a connection carries a lateral; its code begins with BCA</source>
        <translation>Nur ein Anschluss trägt eine Anschlussleitung; sein Kürzel beginnt mit BCA</translation>
    </message>
    <message>
        <source>A pipe cannot be its own lateral</source>
        <translation>Ein Rohr kann nicht sein eigener Anschluss sein</translation>
    </message>
    <message>
        <source>The project does not have this lateral</source>
        <translation>Das Projekt hat diese Anschlussleitung nicht</translation>
    </message>
    <message>
        <source>Taken already by %1</source>
        <translation>Schon vergeben an %1</translation>
    </message>
    <message>
        <source>A code is needed</source>
        <translation>Ein Kürzel wird gebraucht</translation>
    </message>
</context>
<context>
    <name>ObservationsPage</name>
    <message>
        <source>Pipe without a name</source>
        <translation>Rohr ohne Namen</translation>
    </message>
    <message>
        <source>Select a pipe with an inspection, here or in the scene</source>
        <translation>Ein Rohr mit Inspektion auswählen, hier oder in der Szene</translation>
    </message>
    <message>
        <source>%1  %2</source>
        <translation>%1  %2</translation>
    </message>
    <message>
        <source>No observations</source>
        <translation>Keine Befunde</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Ändern</translation>
    </message>
    <message>
        <source>Really?</source>
        <translation>Wirklich?</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>OpenCard</name>
    <message>
        <source>Open a project</source>
        <translation>Ein Projekt öffnen</translation>
    </message>
    <message>
        <source>Choose a folder ...</source>
        <translation>Einen Ordner wählen ...</translation>
    </message>
    <message>
        <source>Close this project</source>
        <translation>Dieses Projekt schließen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>PlanBar</name>
    <message>
        <source>This cannot be a plan</source>
        <translation>Das kann kein Plan sein</translation>
    </message>
    <message>
        <source>Replace the plan?</source>
        <translation>Den Plan ersetzen?</translation>
    </message>
    <message>
        <source>The plan stays where it is</source>
        <translation>Der Plan bleibt, wo er ist</translation>
    </message>
    <message>
        <source>Floor %1</source>
        <translation>Stockwerk %1</translation>
    </message>
    <message>
        <source>%1 is taken out of the view and out of the project. Its file stays among the project&apos;s documents.</source>
        <translation>%1 wird aus der Ansicht und aus dem Projekt genommen. Die Datei bleibt bei den Dokumenten des Projekts.</translation>
    </message>
    <message>
        <source>Remove the plan?</source>
        <translation>Den Plan entfernen?</translation>
    </message>
    <message>
        <source>The plan cannot be laid</source>
        <translation>Der Plan kann nicht gelegt werden</translation>
    </message>
    <message>
        <source>Not all of the plan is there</source>
        <translation>Nicht alles vom Plan ist da</translation>
    </message>
    <message>
        <source>Under the network</source>
        <translation>Unter dem Netz</translation>
    </message>
    <message>
        <source>Heights…</source>
        <translation>Höhen…</translation>
    </message>
    <message>
        <source>Choose a file…</source>
        <translation>Datei wählen…</translation>
    </message>
    <message>
        <source>Place by two lines</source>
        <translation>Mit zwei Linien platzieren</translation>
    </message>
    <message>
        <source>Scale by a length</source>
        <translation>Nach einer Länge skalieren</translation>
    </message>
    <message>
        <source>North by two points</source>
        <translation>Norden mit zwei Punkten</translation>
    </message>
    <message>
        <source>Move with the view</source>
        <translation>Mit der Ansicht bewegen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>No plan here</source>
        <translation>Hier liegt kein Plan</translation>
    </message>
    <message>
        <source>Choose a plan</source>
        <translation>Einen Plan wählen</translation>
    </message>
    <message>
        <source>%1 is taken out of the view. Its file stays where it is.</source>
        <translation>%1 wird aus der Ansicht genommen. Die Datei bleibt, wo sie ist.</translation>
    </message>
    <message>
        <source>Not stored</source>
        <translation>Nicht gespeichert</translation>
    </message>
    <message>
        <source>%1, for a look</source>
        <translation>%1, nur zur Ansicht</translation>
    </message>
    <message>
        <source>%1 is taken off this floor. Its file stays among the project&apos;s documents.</source>
        <translation>%1 wird von diesem Stockwerk genommen. Die Datei bleibt bei den Dokumenten des Projekts.</translation>
    </message>
</context>
<context>
    <name>PlanKinds</name>
    <message>
        <source>Plans (%1)</source>
        <translation>Pläne (%1)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
</context>
<context>
    <name>PlanSteps</name>
    <message>
        <source>NEXT STEP</source>
        <translation>WEITER</translation>
    </message>
    <message>
        <source>BACK</source>
        <translation>ZURÜCK</translation>
    </message>
    <message>
        <source>CANCEL</source>
        <translation>ABBRECHEN</translation>
    </message>
</context>
<context>
    <name>PrintedPage</name>
    <message>
        <source>N</source>
        <comment>north</comment>
        <translation>N</translation>
    </message>
</context>
<context>
    <name>ProjectLists</name>
    <message>
        <source>connection</source>
        <translation>Anschluss</translation>
    </message>
    <message>
        <source>building</source>
        <translation>Gebäude</translation>
    </message>
    <message>
        <source>manhole</source>
        <translation>Schacht</translation>
    </message>
    <message>
        <source>no position</source>
        <translation>ohne Lage</translation>
    </message>
    <message>
        <source>lateral</source>
        <translation>Anschlussleitung</translation>
    </message>
    <message>
        <source>DN %1</source>
        <translation>DN %1</translation>
    </message>
    <message>
        <source>downstream</source>
        <translation>in Fließrichtung</translation>
    </message>
    <message>
        <source>downstream from %1</source>
        <translation>in Fließrichtung ab %1</translation>
    </message>
    <message>
        <source>upstream</source>
        <translation>gegen die Fließrichtung</translation>
    </message>
    <message>
        <source>upstream from %1</source>
        <translation>gegen die Fließrichtung ab %1</translation>
    </message>
    <message>
        <source>from %1</source>
        <translation>ab %1</translation>
    </message>
    <message>
        <source>1 observation</source>
        <translation>1 Befund</translation>
    </message>
    <message>
        <source>%1 observations</source>
        <translation>%1 Befunde</translation>
    </message>
    <message>
        <source>%1 deep</source>
        <translation>%1 tief</translation>
    </message>
</context>
<context>
    <name>Readout</name>
    <message>
        <source>1 : %1</source>
        <translation>1 : %1</translation>
    </message>
    <message>
        <source>E %1   N %2</source>
        <translation>O %1   N %2</translation>
    </message>
</context>
<context>
    <name>RecentList</name>
    <message>
        <source>Opened last</source>
        <translation>Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>%1 (missing)</source>
        <translation>%1 (fehlt)</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
</context>
<context>
    <name>SettingsCard</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>Lengths, until a project that says its own is opened</source>
        <translation>Längen, bis ein Projekt mit eigener Einheit geöffnet wird</translation>
    </message>
    <message>
        <source>Metric (m)</source>
        <translation>Metrisch (m)</translation>
    </message>
    <message>
        <source>Imperial (ft)</source>
        <translation>Imperial (ft)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
</context>
<context>
    <name>ToolCommands</name>
    <message>
        <source>Lists</source>
        <translation>Listen</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Look</source>
        <translation>Blick</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Oben</translation>
    </message>
    <message>
        <source>3D</source>
        <translation>3D</translation>
    </message>
    <message>
        <source>Front</source>
        <translation>Vorn</translation>
    </message>
    <message>
        <source>Finger</source>
        <translation>Finger</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Schieben</translation>
    </message>
    <message>
        <source>Rotate</source>
        <translation>Drehen</translation>
    </message>
    <message>
        <source>Tilt</source>
        <translation>Neigen</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Alles</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>Labels</source>
        <translation>Namen</translation>
    </message>
    <message>
        <source>Manhole info</source>
        <translation>Schachtdaten</translation>
    </message>
    <message>
        <source>Names of observations</source>
        <translation>Namen der Beobachtungen</translation>
    </message>
    <message>
        <source>Labels back</source>
        <translation>Namen zurück</translation>
    </message>
    <message>
        <source>Grid</source>
        <translation>Raster</translation>
    </message>
    <message>
        <source>Map</source>
        <translation>Karte</translation>
    </message>
    <message>
        <source>Lengths in feet</source>
        <translation>Längen in Fuß</translation>
    </message>
    <message>
        <source>Plan</source>
        <translation>Plan</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Teilen</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Drucken</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Measure</source>
        <translation>Messen</translation>
    </message>
    <message>
        <source>Inspect %1</source>
        <translation>%1 untersuchen</translation>
    </message>
    <message>
        <source>Inspect the selected pipe</source>
        <translation>Das gewählte Rohr untersuchen</translation>
    </message>
    <message>
        <source>End the inspection</source>
        <translation>Untersuchung beenden</translation>
    </message>
    <message>
        <source>Play a recording…</source>
        <translation>Aufzeichnung abspielen …</translation>
    </message>
    <message>
        <source>Measure in 3D</source>
        <translation>In 3D messen</translation>
    </message>
    <message>
        <source>Shift the map</source>
        <translation>Karte verschieben</translation>
    </message>
</context>
<context>
    <name>Torvik::DXF</name>
    <message>
        <source>Save it as DXF in text form (ASCII DXF) and choose that file.</source>
        <translation>Speichern Sie die Zeichnung als DXF in Textform (ASCII-DXF) und wählen Sie diese Datei.</translation>
    </message>
    <message>
        <source>%1 is no DXF or DWG drawing, whatever its name says.</source>
        <translation>%1 ist trotz des Namens keine DXF- oder DWG-Zeichnung.</translation>
    </message>
    <message>
        <source>%1 is no drawing, whatever its name says, but a %2 file. Rename it so that its name ends in .%3, and choose it again.</source>
        <translation>%1 ist trotz des Namens keine Zeichnung, sondern eine %2-Datei. Benennen Sie sie um, sodass ihr Name auf .%3 endet, und wählen Sie sie erneut.</translation>
    </message>
    <message>
        <source>%1 is not there any more.</source>
        <translation>%1 ist nicht mehr da.</translation>
    </message>
    <message>
        <source>%1 cannot be read. Look whether it is a file, whether you may open it, and whether its disk is connected.</source>
        <translation>%1 ist nicht lesbar. Prüfen Sie, ob es eine Datei ist, ob Sie sie öffnen dürfen und ob ihr Datenträger verbunden ist.</translation>
    </message>
    <message>
        <source>%1 is empty. Copy it again from where it came.</source>
        <translation>%1 ist leer. Kopieren Sie die Datei noch einmal von ihrer Quelle.</translation>
    </message>
    <message>
        <source>%1 is a DXF in binary form, which cannot be read here.</source>
        <translation>%1 ist ein DXF in binärer Form, das hier nicht gelesen werden kann.</translation>
    </message>
    <message>
        <source>%1 is a DWG%2 drawing (%3); only DWG 2000 can be read here.</source>
        <translation>%1 ist eine DWG-Zeichnung der Version%2 (%3); hier kann nur DWG 2000 gelesen werden.</translation>
    </message>
    <message>
        <source>%1 is damaged in line %2. Copy it again from where it came, or save the drawing again.</source>
        <translation>%1 ist in Zeile %2 beschädigt. Kopieren Sie die Datei noch einmal von ihrer Quelle oder speichern Sie die Zeichnung noch einmal.</translation>
    </message>
    <message>
        <source>%1 is cut off: it ends before its drawing does. Copy it again from where it came.</source>
        <translation>%1 ist abgeschnitten: die Datei endet vor der Zeichnung. Kopieren Sie sie noch einmal von ihrer Quelle.</translation>
    </message>
    <message>
        <source>%1 holds more lines than can be shown, most of them in blocks. Save the part that is needed as a drawing of its own.</source>
        <translation>%1 enthält mehr Linien, als gezeigt werden können, die meisten in Blöcken. Speichern Sie den Teil, der gebraucht wird, als eigene Zeichnung.</translation>
    </message>
    <message>
        <source>%1 (DWG%2) cannot be read.</source>
        <translation>%1 (DWG%2) ist nicht lesbar.</translation>
    </message>
    <message>
        <source>%1 cannot be read.</source>
        <translation>%1 ist nicht lesbar.</translation>
    </message>
    <message>
        <source>%1 holds nothing that can be drawn, or only on layers that are frozen or off.</source>
        <translation>%1 enthält nichts, was gezeichnet werden kann, oder nur auf Layern, die gefroren oder ausgeschaltet sind.</translation>
    </message>
    <message>
        <source>%1: only %2 of %3 entities can be read, too few for a plan.</source>
        <translation>%1: nur %2 von %3 Objekten sind lesbar, zu wenige für einen Plan.</translation>
    </message>
    <message>
        <source>%1: %2 of %3 entities could not be read%4. Save it again as DXF in text form if something is missing.</source>
        <translation>%1: %2 von %3 Objekten waren nicht lesbar%4. Speichern Sie die Zeichnung noch einmal als DXF in Textform, falls etwas fehlt.</translation>
    </message>
    <message>
        <source>%1: some kinds of entities cannot be drawn here and are left out: %2. Where they matter, break them up into lines in the CAD program, and save the drawing again.</source>
        <translation>%1: manche Arten von Objekten können hier nicht gezeichnet werden und fehlen: %2. Wo sie wichtig sind, lösen Sie sie im CAD-Programm in Linien auf und speichern Sie die Zeichnung noch einmal.</translation>
    </message>
    <message>
        <source>%1 has no end mark; what comes after its entities may be missing.</source>
        <translation>%1 hat keine Endmarke; was nach den Objekten kommt, fehlt vielleicht.</translation>
    </message>
    <message>
        <source>%1 is a DWG, of which only a part of the entities can be read. Save it as DXF in text form if something is missing.</source>
        <translation>%1 ist ein DWG, von dessen Objekten nur ein Teil gelesen werden kann. Speichern Sie die Zeichnung als DXF in Textform, falls etwas fehlt.</translation>
    </message>
</context>
<context>
    <name>Torvik::Database::StoreTrouble</name>
    <message>
        <source>Close the other program, or wait until it is done.</source>
        <translation>Schließen Sie das andere Programm, oder warten Sie, bis es fertig ist.</translation>
    </message>
    <message>
        <source>Make the file and its folder writable again.</source>
        <translation>Geben Sie Datei und Ordner wieder zum Schreiben frei.</translation>
    </message>
    <message>
        <source>Make room on the disk.</source>
        <translation>Schaffen Sie Platz auf dem Datenträger.</translation>
    </message>
    <message>
        <source>Check that the disk is connected and that you may write to it.</source>
        <translation>Prüfen Sie, ob der Datenträger verbunden ist und Sie darauf schreiben dürfen.</translation>
    </message>
    <message>
        <source>%1. %2 What is measured and changed meanwhile is kept and stored as soon as that is possible; leave the program open.</source>
        <translation>%1. %2 Was inzwischen gemessen und geändert wird, bleibt erhalten und wird gespeichert, sobald es geht; lassen Sie das Programm offen.</translation>
    </message>
    <message>
        <source>Something that was measured could not be stored and is lost. %1</source>
        <translation>Etwas Gemessenes konnte nicht gespeichert werden und ist verloren. %1</translation>
    </message>
    <message numerus="yes">
        <source>%n change(s) could not be stored and are lost.</source>
        <translation>
            <numerusform>%n Änderung konnte nicht gespeichert werden und ist verloren.</numerusform>
            <numerusform>%n Änderungen konnten nicht gespeichert werden und sind verloren.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Torvik::View3d::PlanFiles</name>
    <message>
        <source>%1 cannot be moved to %2: %3</source>
        <translation>%1 lässt sich nicht nach %2 verschieben: %3</translation>
    </message>
    <message>
        <source>the disk may be full: %1</source>
        <translation>der Datenträger ist vielleicht voll: %1</translation>
    </message>
    <message>
        <source>it is not there any more</source>
        <translation>die Datei ist nicht mehr da</translation>
    </message>
    <message>
        <source>there is a file of that name already</source>
        <translation>dort gibt es schon eine Datei dieses Namens</translation>
    </message>
</context>
<context>
    <name>Torvik::View3d::PlanLoader</name>
    <message>
        <source>%1 is no kind of plan that can be laid</source>
        <translation>%1 ist keine Art von Plan, die sich auflegen lässt</translation>
    </message>
    <message>
        <source>The plan of the project cannot be laid: %1 is missing or too large</source>
        <translation>Der Plan des Projekts lässt sich nicht auflegen: %1 fehlt oder ist zu groß</translation>
    </message>
    <message>
        <source>%1
The plan %2 is laid, but perhaps not where it was: place it anew.</source>
        <translation>%1
Der Plan %2 liegt in der Ansicht, aber vielleicht nicht dort, wo er lag: Richten Sie ihn neu aus.</translation>
    </message>
</context>
<context>
    <name>Torvik::View3d::PlanSettingsIO</name>
    <message>
        <source>%1: &quot;%2&quot; should be three numbers with commas between them</source>
        <translation>%1: „%2“ sollte aus drei Zahlen mit Kommas dazwischen bestehen</translation>
    </message>
</context>
<context>
    <name>Torvik::View3d::PlanXml</name>
    <message>
        <source>larger than %1 bytes, which no settings of a plan are</source>
        <translation>größer als %1 Bytes, so groß sind keine Einstellungen eines Plans</translation>
    </message>
    <message>
        <source>line %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::AppDesk</name>
    <message>
        <source>Delete the node %1 from the project? Pipes keep their place but lose this end.</source>
        <translation>Den Knoten %1 aus dem Projekt löschen? Rohre behalten ihre Lage, verlieren aber dieses Ende.</translation>
    </message>
    <message>
        <source>Delete the pipe %1 from the project, with all its inspections and observations?</source>
        <translation>Das Rohr %1 mit allen Inspektionen und Befunden aus dem Projekt löschen?</translation>
    </message>
    <message>
        <source>Delete this inspection of the pipe %1 from the project, with all its observations?</source>
        <translation>Diese Inspektion des Rohrs %1 mit allen Befunden aus dem Projekt löschen?</translation>
    </message>
    <message>
        <source>It is not in the project any more.</source>
        <translation>Es ist nicht mehr im Projekt.</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::FloorFile</name>
    <message>
        <source>%1 names a plan of no floor, or a second one of the same; it is not laid.</source>
        <translation>%1 nennt einen Plan ohne Stockwerk oder einen zweiten für dasselbe; er wird nicht gelegt.</translation>
    </message>
    <message>
        <source>%1: the plan of floor %2 is no file of the project; it is not laid.</source>
        <translation>%1: Der Plan von Stockwerk %2 ist keine Datei des Projekts; er wird nicht gelegt.</translation>
    </message>
    <message>
        <source>%1 does not tell where %2 lies on floor %3: place it anew.</source>
        <translation>%1 sagt nicht, wo %2 auf Stockwerk %3 liegt: Richten Sie den Plan neu aus.</translation>
    </message>
    <message>
        <source>The plans of the floors cannot be read: %1: %2</source>
        <translation>Die Pläne der Stockwerke sind nicht lesbar: %1: %2</translation>
    </message>
    <message>
        <source>another program has written it, or a newer version of this one.</source>
        <translation>Ein anderes Programm hat sie geschrieben oder eine neuere Version von diesem.</translation>
    </message>
    <message>
        <source>%1: the heights of the floors cannot be read; set them anew.</source>
        <translation>%1: Die Höhen der Stockwerke sind nicht lesbar; geben Sie sie neu ein.</translation>
    </message>
    <message>
        <source>it cannot be opened.</source>
        <translation>Die Datei lässt sich nicht öffnen.</translation>
    </message>
    <message>
        <source>it is far too large.</source>
        <translation>Die Datei ist viel zu groß.</translation>
    </message>
    <message>
        <source>%1: the folder cannot be made</source>
        <translation>%1: Der Ordner lässt sich nicht anlegen</translation>
    </message>
    <message>
        <source>%1: it is damaged, and no copy of it can be made</source>
        <translation>%1: Die Datei ist beschädigt, und es lässt sich keine Kopie von ihr anlegen</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::FloorKeeper</name>
    <message>
        <source>Floor %1: %2</source>
        <translation>Stockwerk %1: %2</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::GpsSimulation</name>
    <message numerus="yes">
        <source>%1: %n line(s) could not be read, the first of them line %2</source>
        <translation>
            <numerusform>%1: %n Zeile ist nicht lesbar, nämlich Zeile %2</numerusform>
            <numerusform>%1: %n Zeilen sind nicht lesbar, die erste davon ist Zeile %2</numerusform>
        </translation>
    </message>
    <message>
        <source>%1: neither off, none, 2d, 3d nor LATITUDE,LONGITUDE, and no track that can be read: %2</source>
        <translation>%1: weder off, none, 2d, 3d noch BREITE,LÄNGE und keine lesbare Spur: %2</translation>
    </message>
    <message>
        <source>%1: holds no point of a track and no line &quot;time,latitude,longitude&quot;</source>
        <translation>%1: enthält keinen Punkt einer Spur und keine Zeile &quot;time,latitude,longitude&quot;</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::InspectionDesk</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 holds no readings.</source>
        <translation>%1 enthält keine Messwerte.</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::ObjectDetails</name>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>To</source>
        <translation>Nach</translation>
    </message>
    <message>
        <source>Inspections</source>
        <translation>Inspektionen</translation>
    </message>
    <message>
        <source>Observations of all</source>
        <translation>Befunde insgesamt</translation>
    </message>
    <message>
        <source>Inspection</source>
        <translation>Inspektion</translation>
    </message>
    <message>
        <source>Begins at</source>
        <translation>Beginnt bei</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>Richtung</translation>
    </message>
    <message>
        <source>downstream</source>
        <translation>in Fließrichtung</translation>
    </message>
    <message>
        <source>upstream</source>
        <translation>gegen die Fließrichtung</translation>
    </message>
    <message>
        <source>Observations</source>
        <translation>Befunde</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::ObservationPage</name>
    <message>
        <source>bend</source>
        <translation>Bogen</translation>
    </message>
    <message>
        <source>connection</source>
        <translation>Anschluss</translation>
    </message>
    <message>
        <source>end of inspection</source>
        <translation>Ende der Inspektion</translation>
    </message>
    <message>
        <source>%1 o&apos;clock</source>
        <translation>%1 Uhr</translation>
    </message>
    <message>
        <source>%1°</source>
        <translation>%1°</translation>
    </message>
    <message>
        <source>quantity %1</source>
        <translation>Menge %1</translation>
    </message>
    <message>
        <source>lateral %1</source>
        <translation>Anschlussleitung %1</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>%1 at %2 in %3</source>
        <translation>%1 bei %2 in %3</translation>
    </message>
    <message>
        <source>It is not in the project any more</source>
        <translation>Er ist nicht mehr im Projekt</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::PhotoDesk</name>
    <message>
        <source>from the top</source>
        <translation>von oben</translation>
    </message>
    <message>
        <source>from the front</source>
        <translation>von vorn</translation>
    </message>
    <message>
        <source>3D, scale at the middle</source>
        <translation>3D, Maßstab in der Mitte</translation>
    </message>
    <message>
        <source>Project</source>
        <translation>Projekt</translation>
    </message>
    <message>
        <source>Client</source>
        <translation>Auftraggeber</translation>
    </message>
    <message>
        <source>Coordinate system</source>
        <translation>Koordinatensystem</translation>
    </message>
    <message>
        <source>Manholes and nodes</source>
        <translation>Schächte und Knoten</translation>
    </message>
    <message>
        <source>Sections</source>
        <translation>Haltungen</translation>
    </message>
    <message>
        <source>Laterals</source>
        <translation>Anschlussleitungen</translation>
    </message>
    <message>
        <source>Inspections</source>
        <translation>Inspektionen</translation>
    </message>
    <message>
        <source>Observations</source>
        <translation>Befunde</translation>
    </message>
    <message>
        <source>View</source>
        <translation>Ansicht</translation>
    </message>
    <message>
        <source>The picture does not come to rest.</source>
        <translation>Das Bild kommt nicht zur Ruhe.</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::PlanMessages</name>
    <message>
        <source>%1: there is no such file.</source>
        <translation>%1: diese Datei gibt es nicht.</translation>
    </message>
    <message>
        <source>%1: this drawing cannot be read. Save it as an ASCII DXF and try again.</source>
        <translation>%1: diese Zeichnung ist nicht lesbar. Speichern Sie sie als ASCII-DXF und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>%1: this cannot be read; it is damaged, or no picture of its kind. Open it in a picture program, save it as PNG or JPEG, and try again.</source>
        <translation>%1: das ist nicht lesbar; es ist beschädigt oder kein Bild seiner Art. Öffnen Sie es in einem Bildprogramm, speichern Sie es als PNG oder JPEG und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>%1: %2 x %3 pixels are too many; a plan has at most %4 x %5. Make it smaller and try again.</source>
        <translation>%1: %2 x %3 Pixel sind zu viele; ein Plan hat höchstens %4 x %5. Verkleinern Sie ihn und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>%1: the file is too large; a drawing of its kind has at most %2 MB. Leave out what is not needed of it.</source>
        <translation>%1: die Datei ist zu groß; eine Zeichnung dieser Art hat höchstens %2 MB. Lassen Sie weg, was nicht gebraucht wird.</translation>
    </message>
    <message>
        <source>%1: no picture can be made of this PDF. Is the package poppler-utils installed, and is there room on the disk?</source>
        <translation>%1: aus diesem PDF lässt sich kein Bild machen. Ist das Paket poppler-utils installiert, und ist Platz auf dem Datenträger?</translation>
    </message>
    <message>
        <source>%1: no file of this kind can be laid as a plan. Pictures (PNG, JPEG, TIFF, BMP, GIF), PDF, DXF and DWG can be; save it as one of them.</source>
        <translation>%1: Dateien dieser Art können nicht als Plan gelegt werden, wohl aber Bilder (PNG, JPEG, TIFF, BMP, GIF), PDF, DXF und DWG; speichern Sie sie in einem dieser Formate.</translation>
    </message>
    <message>
        <source>%1: you may not open this file. Ask whoever it belongs to, or copy it to a folder of yours.</source>
        <translation>%1: Sie dürfen diese Datei nicht öffnen. Fragen Sie, wem sie gehört, oder kopieren Sie sie in einen eigenen Ordner.</translation>
    </message>
    <message>
        <source>%1: the file could not be copied: %2. Is its disk still connected, and is there room on this one?</source>
        <translation>%1: Die Datei konnte nicht kopiert werden: %2. Ist ihr Datenträger noch verbunden, und ist auf diesem noch Platz?</translation>
    </message>
    <message>
        <source>%1: this file is empty. Copy it again from where it came.</source>
        <translation>%1: diese Datei ist leer. Kopieren Sie sie noch einmal von ihrer Quelle.</translation>
    </message>
    <message>
        <source>%1: whatever its name says, this is a %2 file. Rename it so that its name ends in .%3, and choose it again.</source>
        <translation>%1: trotz des Namens ist das eine %2-Datei. Benennen Sie sie um, sodass ihr Name auf .%3 endet, und wählen Sie sie erneut.</translation>
    </message>
    <message>
        <source>%1: this PDF cannot be read; it is damaged, or locked by a password. Open it in a PDF program, save it without a password, and try again.</source>
        <translation>%1: dieses PDF ist nicht lesbar; es ist beschädigt oder mit einem Passwort gesperrt. Öffnen Sie es in einem PDF-Programm, speichern Sie es ohne Passwort und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>%1: the page is too large: %2 x %3 cm; a plan has at most %4 x %5 cm. Print it to a smaller page, or in parts, and try again.</source>
        <translation>%1: Die Seite ist zu groß: %2 x %3 cm; ein Plan hat höchstens %4 x %5 cm. Drucken Sie sie auf eine kleinere Seite oder in Teilen, und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>%1: the plan is not laid, and all is as before: %2</source>
        <translation>%1: Der Plan ist nicht gelegt, alles ist wie zuvor: %2</translation>
    </message>
    <message>
        <source>%1: the plan is not laid, since the project&apos;s folder cannot be written to; what was there before still is. Is the disk full, or write-protected? Make room and lay the plan again.</source>
        <translation>%1: Der Plan ist nicht gelegt, denn in den Ordner des Projekts kann nicht geschrieben werden; was vorher da war, ist es noch. Ist die Platte voll oder schreibgeschützt? Schaffen Sie Platz und legen Sie den Plan noch einmal.</translation>
    </message>
    <message>
        <source>%1: where the plan lies now could not be stored in the project. Is the disk full, or write-protected? Make room, and place the plan once more before you close the project.</source>
        <translation>%1: Wo der Plan jetzt liegt, konnte nicht im Projekt gespeichert werden. Ist die Platte voll oder schreibgeschützt? Schaffen Sie Platz und richten Sie den Plan noch einmal aus, bevor Sie das Projekt schließen.</translation>
    </message>
    <message>
        <source>The plan is out of the view, but will be there again when the project is opened: %1 cannot be deleted. May it not be written to?</source>
        <translation>Der Plan ist aus der Ansicht, wird aber beim Öffnen des Projekts wieder da sein: %1 kann nicht gelöscht werden. Ist die Datei schreibgeschützt?</translation>
    </message>
    <message>
        <source>%1: there is no room for it on the disk of the project, which needs %2 MB. Make room and try again.</source>
        <translation>%1: Auf der Platte des Projekts ist kein Platz dafür; es braucht %2 MB. Schaffen Sie Platz und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>%1 has %2 pages; the first one is laid. Save another page as a file of its own to lay that.</source>
        <translation>%1 hat %2 Seiten; gelegt ist die erste. Speichern Sie eine andere Seite als eigene Datei, um diese zu legen.</translation>
    </message>
    <message>
        <source>%1: the plan lies on its floor, but will not when the project is opened again, since its file could not be brought into the project: %2</source>
        <translation>%1: Der Plan liegt auf seinem Stockwerk, aber nicht mehr, wenn das Projekt wieder geöffnet wird; seine Datei ließ sich nicht ins Projekt bringen: %2</translation>
    </message>
    <message>
        <source>The plans of the floors and their heights could not be stored in the project: %1. Is the disk full, or write-protected? Make room, and set the heights once more before you close the project.</source>
        <translation>Die Pläne der Stockwerke und ihre Höhen konnten nicht im Projekt gespeichert werden: %1. Ist die Platte voll oder schreibgeschützt? Schaffen Sie Platz und geben Sie die Höhen noch einmal ein, bevor Sie das Projekt schließen.</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::PlanUnits</name>
    <message>
        <source>millimetres</source>
        <translation>Millimetern</translation>
    </message>
    <message>
        <source>centimetres</source>
        <translation>Zentimetern</translation>
    </message>
    <message>
        <source>decimetres</source>
        <translation>Dezimetern</translation>
    </message>
    <message>
        <source>inches</source>
        <translation>Zoll</translation>
    </message>
    <message>
        <source>feet</source>
        <translation>Fuß</translation>
    </message>
    <message>
        <source>US survey feet</source>
        <translation>US-Vermessungsfuß</translation>
    </message>
    <message>
        <source>yards</source>
        <translation>Yards</translation>
    </message>
    <message>
        <source>kilometres</source>
        <translation>Kilometern</translation>
    </message>
    <message>
        <source>units of %1 m</source>
        <translation>Einheiten von %1 m</translation>
    </message>
    <message>
        <source>%1 says that it is drawn in %2, which does not fit its size; it is laid as drawn in metres, %3 m wide. If that is wrong, scale it by a length.</source>
        <translation>%1 gibt an, in %2 gezeichnet zu sein, was nicht zur Größe passt; gelegt ist der Plan wie in Metern gezeichnet, %3 m breit. Ist das falsch, skalieren Sie ihn nach einer Länge.</translation>
    </message>
    <message>
        <source>%1 is drawn in %2; it is laid at its true size, %3 m wide. If that is wrong, scale it by a length.</source>
        <translation>%1 ist in %2 gezeichnet; der Plan liegt in seiner wahren Größe, %3 m breit. Ist das falsch, skalieren Sie ihn nach einer Länge.</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::PlanWork</name>
    <message>
        <source>There is no project that a plan could belong to. Open one first.</source>
        <translation>Es ist kein Projekt offen, zu dem ein Plan gehören könnte. Öffnen Sie erst eines.</translation>
    </message>
    <message>
        <source>There is no plan any more.</source>
        <translation>Es gibt keinen Plan mehr.</translation>
    </message>
    <message>
        <source>Both ends of the line are at the same place. Tap two points that are apart.</source>
        <translation>Beide Enden der Linie liegen an derselben Stelle. Tippen Sie zwei Punkte an, die auseinanderliegen.</translation>
    </message>
    <message>
        <source>The length of the line must be greater than zero.</source>
        <translation>Die Länge der Linie muss größer als null sein.</translation>
    </message>
    <message>
        <source>Another plan is still being loaded. Wait until it is there, or cancel it.</source>
        <translation>Ein anderer Plan wird noch geladen. Warten Sie, bis er da ist, oder brechen Sie das Laden ab.</translation>
    </message>
    <message>
        <source>The project is still being opened, and its own plan may come. Wait until it is there.</source>
        <translation>Das Projekt wird noch geöffnet, und sein eigener Plan kann noch kommen. Warten Sie, bis es da ist.</translation>
    </message>
    <message>
        <source>%1 lies under the network. When the new plan has been loaded, the old one goes, and its file in the project is deleted.</source>
        <translation>%1 liegt unter dem Netz. Sobald der neue Plan geladen ist, weicht der alte, und seine Datei im Projekt wird gelöscht.</translation>
    </message>
    <message>
        <source>%1 is the plan of this project, though it could not be laid this time. When the new plan has been loaded, it takes its place, and where the old one lay is forgotten.</source>
        <translation>%1 ist der Plan dieses Projekts, konnte aber diesmal nicht gelegt werden. Wenn der neue Plan geladen ist, tritt er an dessen Stelle, und wo der alte lag, ist vergessen.</translation>
    </message>
    <message>
        <source>%1 lies on this floor. When the new plan has been loaded, the old one goes; its file stays among the project&apos;s documents.</source>
        <translation>%1 liegt auf diesem Stockwerk. Sobald der neue Plan geladen ist, weicht der alte; seine Datei bleibt bei den Dokumenten des Projekts.</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::ProjectTree</name>
    <message>
        <source>without a name</source>
        <translation>ohne Namen</translation>
    </message>
    <message>
        <source>Inspection %1</source>
        <translation>Inspektion %1</translation>
    </message>
    <message>
        <source>Nodes (%1)</source>
        <translation>Knoten (%1)</translation>
    </message>
    <message>
        <source>Sections (%1)</source>
        <translation>Haltungen (%1)</translation>
    </message>
    <message>
        <source>Laterals (%1)</source>
        <translation>Anschlussleitungen (%1)</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::VehicleDesk</name>
    <message>
        <source>connected</source>
        <translation>verbunden</translation>
    </message>
    <message>
        <source>nobody there</source>
        <translation>niemand da</translation>
    </message>
    <message>
        <source>Port %1: %2, %3 readings</source>
        <translation>Port %1: %2, %3 Messwerte</translation>
    </message>
    <message>
        <source>, %1 malformed</source>
        <translation>, %1 fehlerhaft</translation>
    </message>
</context>
<context>
    <name>Torvik::Viewer::ViewerController</name>
    <message>
        <source>Building the scene: %1 of %2</source>
        <translation>Die Szene entsteht: %1 von %2</translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation>%1 wird gelesen</translation>
    </message>
    <message>
        <source>%1 has no object with the key &quot;%2&quot;</source>
        <translation>%1 hat kein Objekt mit dem Schlüssel „%2“</translation>
    </message>
    <message>
        <source>%1 has no inspection &quot;%2&quot;</source>
        <translation>%1 hat keine Inspektion „%2“</translation>
    </message>
    <message>
        <source>This object has no place in the scene.</source>
        <translation>Dieses Objekt hat keinen Platz in der Szene.</translation>
    </message>
    <message>
        <source>%1 is no project. The one that is open stays open.</source>
        <translation>%1 ist kein Projekt. Das geöffnete bleibt offen.</translation>
    </message>
</context>
<context>
    <name>VehicleBar</name>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Max</source>
        <translation>Max</translation>
    </message>
    <message>
        <source>Measure</source>
        <translation>Messen</translation>
    </message>
</context>
</TS>
