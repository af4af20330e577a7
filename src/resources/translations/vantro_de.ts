<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AllZoomsSection</name>
    <message>
        <source>All Zooms (%1)</source>
        <translation>Alle Zooms (%1)</translation>
    </message>
    <message>
        <source>Remove All Zooms</source>
        <translation>Alle Zooms entfernen</translation>
    </message>
    <message>
        <source>They differ. What you set here is set for all.</source>
        <translation>Sie sind verschieden. Was hier eingestellt wird, gilt für alle.</translation>
    </message>
</context>
<context>
    <name>BackgroundSection</name>
    <message>
        <source>Background</source>
        <translation>Hintergrund</translation>
    </message>
    <message>
        <source>Choose Picture...</source>
        <translation>Bild wählen …</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Colors</source>
        <translation>Farben</translation>
    </message>
    <message>
        <source>Fewer Colors</source>
        <translation>Weniger Farben</translation>
    </message>
    <message>
        <source>More Colors</source>
        <translation>Mehr Farben</translation>
    </message>
    <message>
        <source>Or drop one here</source>
        <translation>Oder eines hierher ziehen</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>Bilder</translation>
    </message>
</context>
<context>
    <name>CameraPicture</name>
    <message>
        <source>Camera picture</source>
        <translation>Kamerabild</translation>
    </message>
</context>
<context>
    <name>ChosenScreen</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Choose Again</source>
        <translation>Neu wählen</translation>
    </message>
    <message>
        <source>Choose anew in your desktop&apos;s dialog</source>
        <translation>Im Dialog der Arbeitsumgebung neu wählen</translation>
    </message>
    <message>
        <source>Picture of what will be recorded</source>
        <translation>Bild dessen, was aufgenommen wird</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Aufnehmen</translation>
    </message>
    <message>
        <source>This will be recorded</source>
        <translation>Das wird aufgenommen</translation>
    </message>
</context>
<context>
    <name>ColorPicker</name>
    <message>
        <source>%1 % and %2 %</source>
        <translation>%1 % und %2 %</translation>
    </message>
    <message>
        <source>Color as #RRGGBB</source>
        <translation>Farbe als #RRGGBB</translation>
    </message>
    <message>
        <source>Hue</source>
        <translation>Farbton</translation>
    </message>
    <message>
        <source>Saturation and brightness</source>
        <translation>Sättigung und Helligkeit</translation>
    </message>
</context>
<context>
    <name>DeviceMenuButton</name>
    <message>
        <source>Unavailable</source>
        <translation>Nicht verfügbar</translation>
    </message>
</context>
<context>
    <name>Edit</name>
    <message>
        <source>Accept Suggested Zoom</source>
        <translation>Vorgeschlagenen Zoom annehmen</translation>
    </message>
    <message>
        <source>Accept Suggested Zooms</source>
        <translation>Vorgeschlagene Zooms annehmen</translation>
    </message>
    <message>
        <source>Add Zoom</source>
        <translation>Zoom anlegen</translation>
    </message>
    <message>
        <source>Change All Lead-Ins</source>
        <translation>Alle Vorläufe ändern</translation>
    </message>
    <message>
        <source>Change All Lead-Outs</source>
        <translation>Alle Nachläufe ändern</translation>
    </message>
    <message>
        <source>Change All Zoom Levels</source>
        <translation>Alle Zoomstufen ändern</translation>
    </message>
    <message>
        <source>Change Background</source>
        <translation>Hintergrund ändern</translation>
    </message>
    <message>
        <source>Change Canvas</source>
        <translation>Leinwand ändern</translation>
    </message>
    <message>
        <source>Change Corner Radius</source>
        <translation>Eckenradius ändern</translation>
    </message>
    <message>
        <source>Change Lead-In</source>
        <translation>Vorlauf ändern</translation>
    </message>
    <message>
        <source>Change Lead-Out</source>
        <translation>Nachlauf ändern</translation>
    </message>
    <message>
        <source>Change Microphone Volume</source>
        <translation>Lautstärke des Mikrofons ändern</translation>
    </message>
    <message>
        <source>Change Padding</source>
        <translation>Abstand ändern</translation>
    </message>
    <message>
        <source>Change Speed</source>
        <translation>Tempo ändern</translation>
    </message>
    <message>
        <source>Change System Audio Volume</source>
        <translation>Lautstärke des Systemtons ändern</translation>
    </message>
    <message>
        <source>Change Timeline</source>
        <translation>Zeitleiste ändern</translation>
    </message>
    <message>
        <source>Change Zoom Lead-In</source>
        <translation>Vorlauf des Zooms ändern</translation>
    </message>
    <message>
        <source>Change Zoom Lead-Out</source>
        <translation>Nachlauf des Zooms ändern</translation>
    </message>
    <message>
        <source>Change Zoom Level</source>
        <translation>Zoomstufe ändern</translation>
    </message>
    <message>
        <source>Change Zooms</source>
        <translation>Zooms ändern</translation>
    </message>
    <message>
        <source>Cut Range</source>
        <translation>Bereich herausschneiden</translation>
    </message>
    <message>
        <source>Delete Segment</source>
        <translation>Segment löschen</translation>
    </message>
    <message>
        <source>Delete Zoom</source>
        <translation>Zoom löschen</translation>
    </message>
    <message>
        <source>Hide Pointer</source>
        <translation>Zeiger verbergen</translation>
    </message>
    <message>
        <source>Hide Webcam</source>
        <translation>Webcam verbergen</translation>
    </message>
    <message>
        <source>Keep Noise</source>
        <translation>Rauschen behalten</translation>
    </message>
    <message>
        <source>Mirror Webcam</source>
        <translation>Webcam spiegeln</translation>
    </message>
    <message>
        <source>Move Cut</source>
        <translation>Schnitt verschieben</translation>
    </message>
    <message>
        <source>Move Webcam</source>
        <translation>Webcam verschieben</translation>
    </message>
    <message>
        <source>Move Zoom Center</source>
        <translation>Mitte des Zooms verschieben</translation>
    </message>
    <message>
        <source>Move Zoom</source>
        <translation>Zoom verschieben</translation>
    </message>
    <message>
        <source>Recompute Zooms</source>
        <translation>Zooms neu berechnen</translation>
    </message>
    <message>
        <source>Reduce Noise</source>
        <translation>Rauschen mindern</translation>
    </message>
    <message>
        <source>Remove All Zooms</source>
        <translation>Alle Zooms entfernen</translation>
    </message>
    <message>
        <source>Reset All Zooms</source>
        <translation>Alle Zooms zurücksetzen</translation>
    </message>
    <message>
        <source>Reset Background</source>
        <translation>Hintergrund zurücksetzen</translation>
    </message>
    <message>
        <source>Reset Frame</source>
        <translation>Rahmen zurücksetzen</translation>
    </message>
    <message>
        <source>Reset Pointer</source>
        <translation>Zeiger zurücksetzen</translation>
    </message>
    <message>
        <source>Reset Sound</source>
        <translation>Ton zurücksetzen</translation>
    </message>
    <message>
        <source>Reset Webcam</source>
        <translation>Webcam zurücksetzen</translation>
    </message>
    <message>
        <source>Reset Zoom</source>
        <translation>Zoom zurücksetzen</translation>
    </message>
    <message>
        <source>Resize Pointer</source>
        <translation>Größe des Zeigers ändern</translation>
    </message>
    <message>
        <source>Resize Webcam</source>
        <translation>Größe der Webcam ändern</translation>
    </message>
    <message>
        <source>Restore Changes</source>
        <translation>Änderungen wiederherstellen</translation>
    </message>
    <message>
        <source>Show Pointer</source>
        <translation>Zeiger zeigen</translation>
    </message>
    <message>
        <source>Show Webcam</source>
        <translation>Webcam zeigen</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>Teilen</translation>
    </message>
    <message>
        <source>Trim End</source>
        <translation>Ende kürzen</translation>
    </message>
    <message>
        <source>Trim Start</source>
        <translation>Anfang kürzen</translation>
    </message>
    <message>
        <source>Trim</source>
        <translation>Kürzen</translation>
    </message>
</context>
<context>
    <name>EditorToolbar</name>
    <message>
        <source>%1 (Ctrl+Shift+Z)</source>
        <translation>%1 (Strg+Umschalt+Z)</translation>
    </message>
    <message>
        <source>%1 (Ctrl+Z)</source>
        <translation>%1 (Strg+Z)</translation>
    </message>
    <message>
        <source>Export (Ctrl+E)</source>
        <translation>Exportieren (Strg+E)</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>New Recording (Ctrl+N)</source>
        <translation>Neue Aufnahme (Strg+N)</translation>
    </message>
    <message>
        <source>New Recording</source>
        <translation>Neue Aufnahme</translation>
    </message>
    <message>
        <source>Open Project (Ctrl+O)</source>
        <translation>Projekt öffnen (Strg+O)</translation>
    </message>
    <message>
        <source>Open Project</source>
        <translation>Projekt öffnen</translation>
    </message>
    <message>
        <source>Recording Name</source>
        <translation>Name der Aufnahme</translation>
    </message>
    <message>
        <source>Save Project (Ctrl+S), Save As (Ctrl+Shift+S)</source>
        <translation>Projekt speichern (Strg+S), Speichern unter (Strg+Umschalt+S)</translation>
    </message>
    <message>
        <source>Save Project</source>
        <translation>Projekt speichern</translation>
    </message>
    <message>
        <source>Working...</source>
        <translation>In Arbeit …</translation>
    </message>
</context>
<context>
    <name>ExportDone</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Copy File</source>
        <translation>Datei kopieren</translation>
    </message>
    <message>
        <source>Exported %1</source>
        <translation>Exportiert: %1</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>Im Ordner zeigen</translation>
    </message>
</context>
<context>
    <name>ExportPopover</name>
    <message>
        <source>Best for a GIF</source>
        <translation>Bestmöglich für GIF</translation>
    </message>
    <message>
        <source>Copy Frame</source>
        <translation>Bild kopieren</translation>
    </message>
    <message>
        <source>Export Settings</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Frame at the Playhead</source>
        <translation>Bild an der Abspielmarke</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualität</translation>
    </message>
    <message>
        <source>Resolution</source>
        <translation>Auflösung</translation>
    </message>
    <message>
        <source>Save Frame…</source>
        <translation>Bild speichern …</translation>
    </message>
    <message>
        <source>Up to 640 wide</source>
        <translation>Bis 640 breit</translation>
    </message>
</context>
<context>
    <name>ExportProgress</name>
    <message>
        <source>Cancel the export</source>
        <translation>Export abbrechen</translation>
    </message>
    <message>
        <source>Export progress</source>
        <translation>Fortschritt des Exports</translation>
    </message>
</context>
<context>
    <name>FrameSection</name>
    <message>
        <source>Canvas</source>
        <translation>Leinwand</translation>
    </message>
    <message>
        <source>Corner radius</source>
        <translation>Eckenradius</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>Rahmen</translation>
    </message>
    <message>
        <source>New recordings begin with this background, padding, corner radius and canvas</source>
        <translation>Neue Aufnahmen beginnen mit diesem Hintergrund, Abstand, Eckenradius und dieser Leinwand</translation>
    </message>
    <message>
        <source>Padding</source>
        <translation>Abstand</translation>
    </message>
    <message>
        <source>Use This Look for New Recordings</source>
        <translation>Für neue Aufnahmen verwenden</translation>
    </message>
</context>
<context>
    <name>KeyField</name>
    <message>
        <source>Press the keys…</source>
        <translation>Tasten drücken …</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
</context>
<context>
    <name>KeyboardHelp</name>
    <message>
        <source>Accept or dismiss a suggested zoom</source>
        <translation>Vorgeschlagenen Zoom annehmen oder verwerfen</translation>
    </message>
    <message>
        <source>Add a zoom on the empty zoom bar</source>
        <translation>Zoom an freier Stelle der Zoomleiste anlegen</translation>
    </message>
    <message>
        <source>Begin or end the film at the playhead</source>
        <translation>Film an der Abspielmarke beginnen oder enden</translation>
    </message>
    <message>
        <source>Ctrl+Comma, Ctrl+Q</source>
        <translation>Strg+Komma, Strg+Q</translation>
    </message>
    <message>
        <source>Ctrl+E</source>
        <translation>Strg+E</translation>
    </message>
    <message>
        <source>Ctrl+N, Ctrl+O</source>
        <translation>Strg+N, Strg+O</translation>
    </message>
    <message>
        <source>Ctrl+S</source>
        <translation>Strg+S</translation>
    </message>
    <message>
        <source>Ctrl+Shift+S</source>
        <translation>Strg+Umschalt+S</translation>
    </message>
    <message>
        <source>Ctrl+Shift+Z</source>
        <translation>Strg+Umschalt+Z</translation>
    </message>
    <message>
        <source>Ctrl+Z</source>
        <translation>Strg+Z</translation>
    </message>
    <message>
        <source>Delete the zoom, range or segment</source>
        <translation>Zoom, Bereich oder Segment löschen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>Double click</source>
        <translation>Doppelklick</translation>
    </message>
    <message>
        <source>Enter, Delete</source>
        <translation>Eingabe, Entf</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exportieren</translation>
    </message>
    <message>
        <source>First and last picture</source>
        <translation>Erstes und letztes Bild</translation>
    </message>
    <message>
        <source>Give the keys back to the film</source>
        <translation>Tasten wieder dem Film geben</translation>
    </message>
    <message>
        <source>Go to the next control, zoom or segment</source>
        <translation>Zum nächsten Bedienelement, Zoom oder Segment</translation>
    </message>
    <message>
        <source>Home, End</source>
        <translation>Pos1, Ende</translation>
    </message>
    <message>
        <source>I O</source>
        <translation>I O</translation>
    </message>
    <message>
        <source>Keyboard</source>
        <translation>Tastatur</translation>
    </message>
    <message>
        <source>Magnify the timeline, show all</source>
        <translation>Zeitleiste vergrößern, alles zeigen</translation>
    </message>
    <message>
        <source>Mark a range</source>
        <translation>Bereich markieren</translation>
    </message>
    <message>
        <source>Mark where a range begins and ends</source>
        <translation>Anfang und Ende eines Bereichs markieren</translation>
    </message>
    <message>
        <source>Move it by 0.1 s, with Shift by a picture</source>
        <translation>Um 0,1 s verschieben, mit Umschalt um ein Bild</translation>
    </message>
    <message>
        <source>New Recording, Open Project</source>
        <translation>Neue Aufnahme, Projekt öffnen</translation>
    </message>
    <message>
        <source>Next zoom or segment</source>
        <translation>Nächster Zoom oder nächstes Segment</translation>
    </message>
    <message>
        <source>One picture back or forward</source>
        <translation>Ein Bild zurück oder vor</translation>
    </message>
    <message>
        <source>One second back or forward</source>
        <translation>Eine Sekunde zurück oder vor</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>Abspielen oder anhalten</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>S, Ctrl+B</source>
        <translation>S, Strg+B</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Speichern unter</translation>
    </message>
    <message>
        <source>Save Project</source>
        <translation>Projekt speichern</translation>
    </message>
    <message>
        <source>Settings, Quit</source>
        <translation>Einstellungen, Beenden</translation>
    </message>
    <message>
        <source>Shift+drag</source>
        <translation>Umschalt+Ziehen</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Split at the playhead</source>
        <translation>An der Abspielmarke teilen</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Wheel, + - 0</source>
        <translation>Rad, + - 0</translation>
    </message>
</context>
<context>
    <name>LevelMeter</name>
    <message>
        <source>%1 dB</source>
        <translation>%1 dB</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Choose what to record in your desktop&apos;s dialog</source>
        <translation>Im Dialog der Arbeitsumgebung wählen, was aufgenommen wird</translation>
    </message>
    <message>
        <source>New Recording</source>
        <translation>Neue Aufnahme</translation>
    </message>
    <message>
        <source>No recording available</source>
        <translation>Keine Aufnahme vorhanden</translation>
    </message>
    <message>
        <source>Select area...</source>
        <translation>Bereich auswählen …</translation>
    </message>
    <message>
        <source>Waiting for permission...</source>
        <translation>Warten auf Erlaubnis …</translation>
    </message>
</context>
<context>
    <name>Messages</name>
    <message>
        <source>%1 What was recorded until then is whole.</source>
        <translation>%1 Was bis dahin aufgenommen wurde, ist unversehrt.</translation>
    </message>
    <message>
        <source>A recording is running</source>
        <translation>Eine Aufnahme läuft</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Delete recording?</source>
        <translation>Aufnahme löschen?</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Keep Recording</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation>Nicht jetzt</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Opened to be looked at</source>
        <translation>Nur zum Ansehen geöffnet</translation>
    </message>
    <message>
        <source>Recover recording?</source>
        <translation>Aufnahme wiederherstellen?</translation>
    </message>
    <message>
        <source>Recover</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>Restore unsaved changes?</source>
        <translation>Änderungen wiederherstellen?</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>Save changes to “%1”?</source>
        <translation>Änderungen an „%1“ speichern?</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Stop and Quit</source>
        <translation>Stoppen und beenden</translation>
    </message>
    <message>
        <source>Stop it and quit? What was recorded is kept and offered at the next start.</source>
        <translation>Aufnahme stoppen und Vantro beenden? Das Aufgenommene bleibt erhalten und wird beim nächsten Start angeboten.</translation>
    </message>
    <message>
        <source>The background picture is missing</source>
        <translation>Das Hintergrundbild fehlt</translation>
    </message>
    <message>
        <source>The changes are lost if they are not saved. The recording itself stays.</source>
        <translation>Ohne Speichern gehen die Änderungen verloren. Die Aufnahme selbst bleibt.</translation>
    </message>
    <message>
        <source>The film has the plain background instead (%1). Saving needs that picture, or another background.</source>
        <translation>Der Film hat stattdessen den einfarbigen Hintergrund (%1). Zum Speichern ist dieses Bild nötig oder ein anderer Hintergrund.</translation>
    </message>
    <message>
        <source>The recording was stopped</source>
        <translation>Die Aufnahme wurde gestoppt</translation>
    </message>
    <message>
        <source>Vantro ended before the changes to “%1” were saved. Discard deletes these changes, but neither the recording nor the saved project.</source>
        <translation>Vantro endete, bevor die Änderungen an „%1“ gespeichert waren. „Verwerfen“ löscht diese Änderungen, aber weder die Aufnahme noch das gespeicherte Projekt.</translation>
    </message>
    <message>
        <source>Vantro ended while this was recorded. It takes %1 on disk.</source>
        <translation>Vantro endete während dieser Aufnahme. Sie belegt %1.</translation>
    </message>
    <message>
        <source>“%1” (%2) is not saved as a project. It cannot be brought back.</source>
        <translation>„%1“ (%2) ist nicht als Projekt gespeichert und kann nicht wiederhergestellt werden.</translation>
    </message>
    <message>
        <source>“%1” cannot be changed where it is: %2. It can be edited and exported; saving asks for another place.</source>
        <translation>„%1“ kann an seinem Ort nicht geändert werden: %2. Bearbeiten und Exportieren sind möglich; beim Speichern wird nach einem anderen Ort gefragt.</translation>
    </message>
</context>
<context>
    <name>PointerSection</name>
    <message>
        <source>Pointer</source>
        <translation>Zeiger</translation>
    </message>
    <message>
        <source>Show pointer</source>
        <translation>Zeiger zeigen</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
</context>
<context>
    <name>PreviewPlayerView</name>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
</context>
<context>
    <name>PushButton</name>
    <message>
        <source>Unavailable</source>
        <translation>Nicht verfügbar</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 ist bereits vorhanden.
Soll sie ersetzt werden?</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>Animated GIF (*.gif)</source>
        <translation>Animiertes GIF (*.gif)</translation>
    </message>
    <message>
        <source>Background Picture</source>
        <translation>Hintergrundbild</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Exporting: %1 %</source>
        <translation>Export: %1 %</translation>
    </message>
    <message>
        <source>Interrupted, %1</source>
        <translation>Abgebrochen, %1</translation>
    </message>
    <message>
        <source>MPEG-4 movie (*.mp4)</source>
        <translation>MPEG-4-Film (*.mp4)</translation>
    </message>
    <message>
        <source>Movies (*.mp4 *.mov *.mkv *.webm *.m4v)</source>
        <translation>Filme (*.mp4 *.mov *.mkv *.webm *.m4v)</translation>
    </message>
    <message>
        <source>Open Movie</source>
        <translation>Film öffnen</translation>
    </message>
    <message>
        <source>Open Movie…</source>
        <translation>Film öffnen …</translation>
    </message>
    <message>
        <source>Open Project</source>
        <translation>Projekt öffnen</translation>
    </message>
    <message>
        <source>PNG picture (*.png)</source>
        <translation>PNG-Bild (*.png)</translation>
    </message>
    <message>
        <source>Pause Recording</source>
        <translation>Aufnahme anhalten</translation>
    </message>
    <message>
        <source>Paused at %1 (click to stop)</source>
        <translation>Angehalten bei %1 (Klick zum Stoppen)</translation>
    </message>
    <message>
        <source>Pictures (*.jpg *.jpeg *.png *.webp)</source>
        <translation>Bilder (*.jpg *.jpeg *.png *.webp)</translation>
    </message>
    <message>
        <source>Recording %1 (click to stop)</source>
        <translation>Aufnahme %1 (Klick zum Stoppen)</translation>
    </message>
    <message>
        <source>Recording the screen</source>
        <translation>Der Bildschirm wird aufgenommen</translation>
    </message>
    <message>
        <source>Resume Recording</source>
        <translation>Aufnahme fortsetzen</translation>
    </message>
    <message>
        <source>Save Frame</source>
        <translation>Bild speichern</translation>
    </message>
    <message>
        <source>Save Project</source>
        <translation>Projekt speichern</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Show Vantro</source>
        <translation>Vantro zeigen</translation>
    </message>
    <message>
        <source>Stop Recording</source>
        <translation>Aufnahme stoppen</translation>
    </message>
    <message>
        <source>Vantro project, a folder (*.vantro)</source>
        <translation>Vantro-Projekt, ein Ordner (*.vantro)</translation>
    </message>
    <message>
        <source>Vantro project, one file to pass on (*.vantro)</source>
        <translation>Vantro-Projekt, eine Datei zum Weitergeben (*.vantro)</translation>
    </message>
    <message>
        <source>Vantro projects (*.vantro project.json)</source>
        <translation>Vantro-Projekte (*.vantro project.json)</translation>
    </message>
</context>
<context>
    <name>RecordingControls</name>
    <message>
        <source>Area</source>
        <translation>Bereich</translation>
    </message>
    <message>
        <source>Capture mode</source>
        <translation>Aufnahmeart</translation>
    </message>
    <message>
        <source>Choose a screen…</source>
        <translation>Bildschirm wählen …</translation>
    </message>
    <message>
        <source>Choose a window…</source>
        <translation>Fenster wählen …</translation>
    </message>
    <message>
        <source>Choose camera</source>
        <translation>Kamera wählen</translation>
    </message>
    <message>
        <source>Choose microphone</source>
        <translation>Mikrofon wählen</translation>
    </message>
    <message>
        <source>Display</source>
        <translation>Bildschirm</translation>
    </message>
    <message>
        <source>Microphone level</source>
        <translation>Pegel des Mikrofons</translation>
    </message>
    <message>
        <source>Microphone off</source>
        <translation>Mikrofon aus</translation>
    </message>
    <message>
        <source>Microphone on</source>
        <translation>Mikrofon ein</translation>
    </message>
    <message>
        <source>Open Project (Ctrl+O)</source>
        <translation>Projekt öffnen (Strg+O)</translation>
    </message>
    <message>
        <source>Open Project</source>
        <translation>Projekt öffnen</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Record (Ctrl+R)</source>
        <translation>Aufnehmen (Strg+R)</translation>
    </message>
    <message>
        <source>Record, and choose anew in your desktop&apos;s dialog</source>
        <translation>Aufnehmen und dazu im Dialog der Arbeitsumgebung neu wählen</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>Bildschirm</translation>
    </message>
    <message>
        <source>System audio level</source>
        <translation>Pegel des Systemtons</translation>
    </message>
    <message>
        <source>System audio off</source>
        <translation>Systemton aus</translation>
    </message>
    <message>
        <source>System audio on</source>
        <translation>Systemton ein</translation>
    </message>
    <message>
        <source>The microphone is silent.</source>
        <translation>Das Mikrofon ist stumm.</translation>
    </message>
    <message>
        <source>Webcam off</source>
        <translation>Webcam aus</translation>
    </message>
    <message>
        <source>Webcam on</source>
        <translation>Webcam ein</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenster</translation>
    </message>
</context>
<context>
    <name>RecordingScreen</name>
    <message>
        <source>Finishing...</source>
        <translation>Wird abgeschlossen …</translation>
    </message>
    <message>
        <source>Microphone level</source>
        <translation>Pegel des Mikrofons</translation>
    </message>
    <message>
        <source>Pause (Ctrl+P)</source>
        <translation>Anhalten (Strg+P)</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Resume (Ctrl+P)</source>
        <translation>Fortsetzen (Strg+P)</translation>
    </message>
    <message>
        <source>Stop (Ctrl+S)</source>
        <translation>Stopp (Strg+S)</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>System audio level</source>
        <translation>Pegel des Systemtons</translation>
    </message>
</context>
<context>
    <name>SegmentSection</name>
    <message>
        <source>Delete Segment</source>
        <translation>Segment löschen</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Tempo</translation>
    </message>
</context>
<context>
    <name>Sentences</name>
    <message>
        <source>%1 Stop with your desktop&apos;s own button, or a key for `vantro stop`.</source>
        <translation>%1 Gestoppt wird mit dem Knopf der Arbeitsumgebung oder einer Taste für „vantro stop“.</translation>
    </message>
    <message>
        <source>%1 breaks off at %2 s of %3 s</source>
        <translation>%1 bricht bei %2 s von %3 s ab</translation>
    </message>
    <message>
        <source>%1 cannot be used from anywhere.</source>
        <translation>%1 ist als globale Taste nicht möglich.</translation>
    </message>
    <message>
        <source>%1 cannot do two things; take another key.</source>
        <translation>%1 kann nicht zweierlei bewirken; bitte eine andere Taste nehmen.</translation>
    </message>
    <message>
        <source>%1 exists and is not a project in one file; it is left as it is</source>
        <translation>%1 ist vorhanden und kein Projekt in einer Datei; es bleibt, wie es ist</translation>
    </message>
    <message>
        <source>%1 exists and is not a project; it is left as it is</source>
        <translation>%1 ist vorhanden und kein Projekt; es bleibt, wie es ist</translation>
    </message>
    <message>
        <source>%1 exists; use --force to replace it</source>
        <translation>%1 ist vorhanden; --force ersetzt es</translation>
    </message>
    <message>
        <source>%1 in it is compressed, but must be stored as it is</source>
        <translation>%1 darin ist komprimiert, muss aber unkomprimiert abgelegt sein</translation>
    </message>
    <message>
        <source>%1 in it is damaged</source>
        <translation>%1 darin ist beschädigt</translation>
    </message>
    <message>
        <source>%1 in it is encrypted</source>
        <translation>%1 darin ist verschlüsselt</translation>
    </message>
    <message>
        <source>%1 is not where its directory says</source>
        <translation>%1 ist nicht dort, wo es dem Verzeichnis nach sein soll</translation>
    </message>
    <message>
        <source>1080p</source>
        <translation>1080p</translation>
    </message>
    <message>
        <source>4K (3840x2160)</source>
        <translation>4K (3840x2160)</translation>
    </message>
    <message>
        <source>720p</source>
        <translation>720p</translation>
    </message>
    <message>
        <source>A canvas of %1x%2 pixels cannot be drawn</source>
        <translation>Eine Leinwand von %1x%2 Pixeln kann nicht gezeichnet werden</translation>
    </message>
    <message>
        <source>A picture has an impossible size</source>
        <translation>Ein Bild hat eine unmögliche Größe</translation>
    </message>
    <message>
        <source>A picture is cut off</source>
        <translation>Ein Bild ist abgeschnitten</translation>
    </message>
    <message>
        <source>A picture is damaged</source>
        <translation>Ein Bild ist beschädigt</translation>
    </message>
    <message>
        <source>A picture is shorter than its size says</source>
        <translation>Ein Bild ist kürzer, als seine Größe verlangt</translation>
    </message>
    <message>
        <source>A side is longer than 16384 pixels</source>
        <translation>Eine Seite ist länger als 16384 Pixel</translation>
    </message>
    <message>
        <source>Allow screen sharing for Vantro in your desktop&apos;s settings, then try again.</source>
        <translation>Die Bildschirmfreigabe für Vantro in den Einstellungen der Arbeitsumgebung erlauben und es dann noch einmal versuchen.</translation>
    </message>
    <message>
        <source>Another program has %1 already; take another key.</source>
        <translation>Ein anderes Programm verwendet %1 schon; bitte eine andere Taste nehmen.</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Cannot decode</source>
        <translation>Dekodieren nicht möglich</translation>
    </message>
    <message>
        <source>Cannot encode %1x%2 pictures</source>
        <translation>Bilder von %1x%2 können nicht kodiert werden</translation>
    </message>
    <message>
        <source>Cannot encode sound</source>
        <translation>Ton kann nicht kodiert werden</translation>
    </message>
    <message>
        <source>Cannot encode: the encoder libx264 has no header</source>
        <translation>Kodieren nicht möglich: Dem Kodierer libx264 fehlt der Kopf</translation>
    </message>
    <message>
        <source>Cannot open %1</source>
        <translation>%1 kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Cannot open</source>
        <translation>Öffnen nicht möglich</translation>
    </message>
    <message>
        <source>Cannot read the picture %1</source>
        <translation>Das Bild %1 kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>Cannot read the picture</source>
        <translation>Das Bild kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>Cannot recover</source>
        <translation>Wiederherstellen nicht möglich</translation>
    </message>
    <message>
        <source>Cannot search</source>
        <translation>Suchen nicht möglich</translation>
    </message>
    <message>
        <source>Cannot write</source>
        <translation>Schreiben nicht möglich</translation>
    </message>
    <message>
        <source>Clicks are not recorded, so no zooms come by themselves: Wayland tells programs nothing of clicks in others. The package vantro-clicks adds a service that does; a key for `vantro mark` makes zooms by hand.</source>
        <translation>Klicks werden nicht aufgenommen, daher entstehen Zooms nicht von selbst: Wayland teilt Programmen nichts von Klicks in anderen mit. Das Paket vantro-clicks enthält einen Dienst, der es tut; eine Taste für „vantro mark“ setzt Zooms von Hand.</translation>
    </message>
    <message>
        <source>Clicks are not recorded, so no zooms come by themselves: you have not allowed it. You are asked again after Vantro&apos;s next start; a key for `vantro mark` makes zooms by hand.</source>
        <translation>Klicks werden nicht aufgenommen, daher entstehen Zooms nicht von selbst: Es wurde nicht erlaubt. Nach dem nächsten Start von Vantro wird wieder gefragt; eine Taste für „vantro mark“ setzt Zooms von Hand.</translation>
    </message>
    <message>
        <source>Clicks are not recorded: the display lacks the extension XInputExtension 2.</source>
        <translation>Klicks werden nicht aufgenommen: Dem Display fehlt die Erweiterung XInputExtension 2.</translation>
    </message>
    <message>
        <source>Clicks are not recorded</source>
        <translation>Klicks werden nicht aufgenommen</translation>
    </message>
    <message>
        <source>Clicks are read directly; note that any program of yours can read your keyboard.</source>
        <translation>Klicks werden direkt gelesen; jedes Programm dieses Benutzers kann hier auch die Tastatur mitlesen.</translation>
    </message>
    <message>
        <source>Clicks are recorded if you allow it: you are asked once, when a recording begins.</source>
        <translation>Klicks werden aufgenommen, wenn es erlaubt wird: Zu Beginn einer Aufnahme wird einmal gefragt.</translation>
    </message>
    <message>
        <source>Clicks are recorded without their places.</source>
        <translation>Klicks werden ohne ihren Ort aufgenommen.</translation>
    </message>
    <message>
        <source>Clicks</source>
        <translation>Klicks</translation>
    </message>
    <message>
        <source>Display not found</source>
        <translation>Bildschirm nicht gefunden</translation>
    </message>
    <message>
        <source>Encoding failed</source>
        <translation>Kodieren fehlgeschlagen</translation>
    </message>
    <message>
        <source>Encoding sound failed</source>
        <translation>Kodieren des Tons fehlgeschlagen</translation>
    </message>
    <message>
        <source>Export failed</source>
        <translation>Export fehlgeschlagen</translation>
    </message>
    <message>
        <source>Failed to create GIF destination</source>
        <translation>Die GIF-Datei kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>Failed to create output buffer</source>
        <translation>Der Ausgabepuffer kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>Failed to create writer</source>
        <translation>Die Datei kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>Failed to finalize GIF</source>
        <translation>Die GIF-Datei kann nicht abgeschlossen werden</translation>
    </message>
    <message>
        <source>Failed to open project</source>
        <translation>Projekt kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Failed to save project</source>
        <translation>Projekt kann nicht gespeichert werden</translation>
    </message>
    <message>
        <source>Failed to start screen capture</source>
        <translation>Bildschirmaufnahme kann nicht gestartet werden</translation>
    </message>
    <message>
        <source>Failed to write video</source>
        <translation>Video kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>File name too long</source>
        <translation>Der Dateiname ist zu lang</translation>
    </message>
    <message>
        <source>Input/output error</source>
        <translation>Eingabe-/Ausgabefehler</translation>
    </message>
    <message>
        <source>Invalid screen area selected.</source>
        <translation>Der gewählte Bildschirmbereich ist ungültig.</translation>
    </message>
    <message>
        <source>Is a directory</source>
        <translation>Es ist ein Ordner</translation>
    </message>
    <message>
        <source>It cannot be read</source>
        <translation>Sie kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>It is neither JPEG, PNG nor WebP</source>
        <translation>Es ist weder JPEG noch PNG noch WebP</translation>
    </message>
    <message>
        <source>It is still being recorded</source>
        <translation>Die Aufnahme läuft noch</translation>
    </message>
    <message>
        <source>It was never finished, is damaged, or is no movie</source>
        <translation>Nie abgeschlossen, beschädigt oder kein Film</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Mikrofon</translation>
    </message>
    <message>
        <source>Missing source frame</source>
        <translation>Ein Bild der Aufnahme fehlt</translation>
    </message>
    <message>
        <source>No %1 track found</source>
        <translation>Keine Spur für %1 gefunden</translation>
    </message>
    <message>
        <source>No PNG encoder is installed</source>
        <translation>Es ist kein PNG-Kodierer installiert</translation>
    </message>
    <message>
        <source>No camera can be recorded</source>
        <translation>Kameras können nicht aufgenommen werden</translation>
    </message>
    <message>
        <source>No decoder for %1</source>
        <translation>Kein Dekodierer für %1</translation>
    </message>
    <message>
        <source>No decoder is installed</source>
        <translation>Es ist kein Dekodierer installiert</translation>
    </message>
    <message>
        <source>No frame at %1 s: %2 runs from 0 to %3 s</source>
        <translation>Kein Bild bei %1 s: %2 geht von 0 bis %3 s</translation>
    </message>
    <message>
        <source>No frame was written</source>
        <translation>Es wurde kein Bild geschrieben</translation>
    </message>
    <message>
        <source>No keys</source>
        <translation>Keine Tasten</translation>
    </message>
    <message>
        <source>No microphone can be recorded</source>
        <translation>Mikrofone können nicht aufgenommen werden</translation>
    </message>
    <message>
        <source>No picture was recorded</source>
        <translation>Es wurde kein Bild aufgenommen</translation>
    </message>
    <message>
        <source>No recording data available.</source>
        <translation>Es sind keine Aufnahmedaten vorhanden.</translation>
    </message>
    <message>
        <source>No recording metadata available</source>
        <translation>Es sind keine Angaben zur Aufnahme vorhanden</translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation>Auf dem Datenträger ist kein Platz mehr</translation>
    </message>
    <message>
        <source>No such file or directory</source>
        <translation>Datei oder Ordner nicht vorhanden</translation>
    </message>
    <message>
        <source>No video track found</source>
        <translation>Keine Videospur gefunden</translation>
    </message>
    <message>
        <source>No window selected</source>
        <translation>Kein Fenster ausgewählt</translation>
    </message>
    <message>
        <source>Noise cannot be reduced</source>
        <translation>Rauschen kann nicht gemindert werden</translation>
    </message>
    <message>
        <source>Not a directory</source>
        <translation>Es ist kein Ordner</translation>
    </message>
    <message>
        <source>Nothing can be recorded</source>
        <translation>Aufnehmen ist nicht möglich</translation>
    </message>
    <message>
        <source>Nothing is left of the recording</source>
        <translation>Von der Aufnahme ist nichts übrig</translation>
    </message>
    <message>
        <source>On this desktop Vantro&apos;s own windows are hidden while recording.</source>
        <translation>In dieser Arbeitsumgebung sind Vantros eigene Fenster während der Aufnahme verborgen.</translation>
    </message>
    <message>
        <source>Original</source>
        <translation>Original</translation>
    </message>
    <message>
        <source>Pause or resume a recording</source>
        <translation>Aufnahme anhalten oder fortsetzen</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>Keine Berechtigung</translation>
    </message>
    <message>
        <source>Pictures of this kind cannot be converted</source>
        <translation>Bilder dieser Art können nicht umgewandelt werden</translation>
    </message>
    <message>
        <source>Pictures of this kind cannot be scaled</source>
        <translation>Bilder dieser Art können nicht skaliert werden</translation>
    </message>
    <message>
        <source>PipeWire cannot make a loop</source>
        <translation>PipeWire kann keine Schleife anlegen</translation>
    </message>
    <message>
        <source>PipeWire cannot make an event</source>
        <translation>PipeWire kann kein Ereignis anlegen</translation>
    </message>
    <message>
        <source>PipeWire denies access</source>
        <translation>PipeWire verweigert den Zugriff</translation>
    </message>
    <message>
        <source>PipeWire does not answer</source>
        <translation>PipeWire antwortet nicht</translation>
    </message>
    <message>
        <source>PipeWire has gone</source>
        <translation>PipeWire ist beendet</translation>
    </message>
    <message>
        <source>PipeWire is not running</source>
        <translation>PipeWire läuft nicht</translation>
    </message>
    <message>
        <source>PipeWire says</source>
        <translation>PipeWire meldet</translation>
    </message>
    <message>
        <source>Pointer</source>
        <translation>Zeiger</translation>
    </message>
    <message>
        <source>Read-only file system</source>
        <translation>Das Dateisystem ist schreibgeschützt</translation>
    </message>
    <message>
        <source>Record a screen capture first before previewing or exporting.</source>
        <translation>Vor Vorschau und Export zuerst den Bildschirm aufnehmen.</translation>
    </message>
    <message>
        <source>Renderer unavailable</source>
        <translation>Renderer nicht verfügbar</translation>
    </message>
    <message>
        <source>Screen recording permission is required to capture your screen.</source>
        <translation>Um den Bildschirm aufzunehmen, ist die Erlaubnis dazu nötig.</translation>
    </message>
    <message>
        <source>Single windows cannot be recorded: the display lacks the extension Composite.</source>
        <translation>Einzelne Fenster können nicht aufgenommen werden: Dem Display fehlt die Erweiterung Composite.</translation>
    </message>
    <message>
        <source>Sound of this kind cannot be converted</source>
        <translation>Ton dieser Art kann nicht umgewandelt werden</translation>
    </message>
    <message>
        <source>Sound with %1 channels at %2 Hz cannot be converted</source>
        <translation>Ton mit %1 Kanälen bei %2 Hz kann nicht umgewandelt werden</translation>
    </message>
    <message>
        <source>Start or stop a recording</source>
        <translation>Aufnahme starten oder stoppen</translation>
    </message>
    <message>
        <source>System audio</source>
        <translation>Systemton</translation>
    </message>
    <message>
        <source>The AAC encoder is not installed</source>
        <translation>Der AAC-Kodierer ist nicht installiert</translation>
    </message>
    <message>
        <source>The GPU renderer is not available</source>
        <translation>Der GPU-Renderer ist nicht verfügbar</translation>
    </message>
    <message>
        <source>The H.264 encoder %1 is not installed</source>
        <translation>Der H.264-Kodierer %1 ist nicht installiert</translation>
    </message>
    <message>
        <source>The desktop cannot bind the keys.</source>
        <translation>Die Arbeitsumgebung kann die Tasten nicht belegen.</translation>
    </message>
    <message>
        <source>The desktop has taken the keys back.</source>
        <translation>Die Arbeitsumgebung hat die Tasten zurückgenommen.</translation>
    </message>
    <message>
        <source>The desktop itself asks what to record, in a dialog of its own, when a recording begins.</source>
        <translation>Zu Beginn einer Aufnahme fragt die Arbeitsumgebung in einem eigenen Dialog, was aufgenommen wird.</translation>
    </message>
    <message>
        <source>The desktop sent no picture</source>
        <translation>Die Arbeitsumgebung hat kein Bild gesendet</translation>
    </message>
    <message>
        <source>The desktop&apos;s service for keys has ended.</source>
        <translation>Der Dienst der Arbeitsumgebung für Tasten ist beendet.</translation>
    </message>
    <message>
        <source>The display is gone, and the keys with it.</source>
        <translation>Das Display ist nicht mehr da, und mit ihm die Tasten.</translation>
    </message>
    <message>
        <source>The encoder libx264 does not know its presets</source>
        <translation>Der Kodierer libx264 kennt seine Voreinstellungen nicht</translation>
    </message>
    <message>
        <source>The encoder libx264 lacks the High profile</source>
        <translation>Dem Kodierer libx264 fehlt das Profil High</translation>
    </message>
    <message>
        <source>The file holds neither pictures nor sound</source>
        <translation>Die Datei enthält weder Bilder noch Ton</translation>
    </message>
    <message>
        <source>The file is empty</source>
        <translation>Die Datei ist leer</translation>
    </message>
    <message>
        <source>The keyboard has no key for %1.</source>
        <translation>Die Tastatur hat keine Taste für %1.</translation>
    </message>
    <message>
        <source>The movie holds no picture</source>
        <translation>Der Film enthält kein Bild</translation>
    </message>
    <message>
        <source>The picture size must be even and the rate positive</source>
        <translation>Die Bildgröße muss gerade und die Rate positiv sein</translation>
    </message>
    <message>
        <source>The pointer is not recorded: this desktop does not tell where it is.</source>
        <translation>Der Zeiger wird nicht aufgenommen: Diese Arbeitsumgebung teilt nicht mit, wo er ist.</translation>
    </message>
    <message>
        <source>The pointer is recorded apart from the picture, but as part of it where a single window is recorded.</source>
        <translation>Der Zeiger wird getrennt vom Bild aufgenommen, nur bei einzelnen Fenstern als Teil des Bildes.</translation>
    </message>
    <message>
        <source>The pointer is recorded as part of the picture: this desktop does not tell where it is.</source>
        <translation>Der Zeiger wird als Teil des Bildes aufgenommen: Diese Arbeitsumgebung teilt nicht mit, wo er ist.</translation>
    </message>
    <message>
        <source>The range from %1 s to %2 s lies outside of the recording, which lasts %3 s</source>
        <translation>Der Bereich von %1 s bis %2 s liegt außerhalb der Aufnahme, die %3 s dauert</translation>
    </message>
    <message>
        <source>The session bus is lost, and the keys with it.</source>
        <translation>Der Sitzungsbus ist verloren, und mit ihm die Tasten.</translation>
    </message>
    <message>
        <source>The sound of %1 breaks off at %2 s</source>
        <translation>Der Ton von %1 bricht bei %2 s ab</translation>
    </message>
    <message>
        <source>The sound of the system cannot be recorded: there is no output.</source>
        <translation>Der Systemton kann nicht aufgenommen werden: Es gibt keine Tonausgabe.</translation>
    </message>
    <message>
        <source>The sound of the system cannot be recorded</source>
        <translation>Der Systemton kann nicht aufgenommen werden</translation>
    </message>
    <message>
        <source>There is no camera.</source>
        <translation>Es gibt keine Kamera.</translation>
    </message>
    <message>
        <source>There is no decoder for motion JPEG</source>
        <translation>Es gibt keinen Dekodierer für Motion JPEG</translation>
    </message>
    <message>
        <source>There is no microphone.</source>
        <translation>Es gibt kein Mikrofon.</translation>
    </message>
    <message>
        <source>This desktop does not share single windows.</source>
        <translation>Diese Arbeitsumgebung gibt keine einzelnen Fenster frei.</translation>
    </message>
    <message>
        <source>This desktop does not share whole screens.</source>
        <translation>Diese Arbeitsumgebung gibt keine ganzen Bildschirme frei.</translation>
    </message>
    <message>
        <source>This desktop gives no keys to programs: in its keyboard settings, bind keys to the commands “vantro toggle”, “vantro pause” and “vantro mark”.</source>
        <translation>Diese Arbeitsumgebung gibt Programmen keine Tasten: In ihren Tastatureinstellungen Tasten mit den Befehlen „vantro toggle“, „vantro pause“ und „vantro mark“ belegen.</translation>
    </message>
    <message>
        <source>Try selecting a different area or restarting the app.</source>
        <translation>Einen anderen Bereich wählen oder das Programm neu starten.</translation>
    </message>
    <message>
        <source>Unknown built-in background</source>
        <translation>Unbekannter mitgelieferter Hintergrund</translation>
    </message>
    <message>
        <source>Vantro&apos;s own windows are hidden while recording: the display lacks the extension Composite.</source>
        <translation>Vantros eigene Fenster sind während der Aufnahme verborgen: Dem Display fehlt die Erweiterung Composite.</translation>
    </message>
    <message>
        <source>Zoom to the pointer</source>
        <translation>Zum Zeiger zoomen</translation>
    </message>
    <message>
        <source>a list</source>
        <translation>eine Liste</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>eine Zahl</translation>
    </message>
    <message>
        <source>a picture came out of turn</source>
        <translation>ein Bild kam außer der Reihe</translation>
    </message>
    <message>
        <source>a project&apos;s name ends in %1</source>
        <translation>der Name eines Projekts endet auf %1</translation>
    </message>
    <message>
        <source>a string</source>
        <translation>ein Text</translation>
    </message>
    <message>
        <source>access to it was denied</source>
        <translation>der Zugriff darauf wurde verweigert</translation>
    </message>
    <message>
        <source>an integer</source>
        <translation>eine ganze Zahl</translation>
    </message>
    <message>
        <source>an object</source>
        <translation>ein Objekt</translation>
    </message>
    <message>
        <source>another program uses the camera</source>
        <translation>ein anderes Programm verwendet die Kamera</translation>
    </message>
    <message>
        <source>cannot be read</source>
        <translation>kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>cannot copy</source>
        <translation>Kopieren nicht möglich</translation>
    </message>
    <message>
        <source>cannot link</source>
        <translation>Verknüpfen nicht möglich</translation>
    </message>
    <message>
        <source>cannot open display %1</source>
        <translation>das Display %1 kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>cannot read</source>
        <translation>Lesen nicht möglich</translation>
    </message>
    <message>
        <source>cannot save</source>
        <translation>Speichern nicht möglich</translation>
    </message>
    <message>
        <source>cannot write</source>
        <translation>Schreiben nicht möglich</translation>
    </message>
    <message>
        <source>changes that are not saved would be lost in a crash</source>
        <translation>nicht gespeicherte Änderungen gingen bei einem Absturz verloren</translation>
    </message>
    <message>
        <source>changes that were not saved cannot be restored</source>
        <translation>nicht gespeicherte Änderungen können nicht wiederhergestellt werden</translation>
    </message>
    <message>
        <source>ended prematurely</source>
        <translation>vorzeitig beendet</translation>
    </message>
    <message>
        <source>expected %1, found %2</source>
        <translation>erwartet wurde %1, gefunden %2</translation>
    </message>
    <message>
        <source>expected %1, found &quot;%2%3&quot;</source>
        <translation>erwartet wurde %1, gefunden „%2%3“</translation>
    </message>
    <message>
        <source>expected an integer, found %1</source>
        <translation>erwartet wurde eine ganze Zahl, gefunden %1</translation>
    </message>
    <message>
        <source>it breaks off</source>
        <translation>bricht ab</translation>
    </message>
    <message>
        <source>it did not give back every picture</source>
        <translation>nicht jedes Bild kam zurück</translation>
    </message>
    <message>
        <source>it has no pictures</source>
        <translation>enthält keine Bilder</translation>
    </message>
    <message>
        <source>it holds %1 twice</source>
        <translation>enthält %1 zweimal</translation>
    </message>
    <message>
        <source>it holds another recording than the one that was edited</source>
        <translation>enthält eine andere Aufnahme als die bearbeitete</translation>
    </message>
    <message>
        <source>it holds no %1</source>
        <translation>enthält kein %1</translation>
    </message>
    <message>
        <source>it holds no pictures</source>
        <translation>enthält keine Bilder</translation>
    </message>
    <message>
        <source>it is not a zip file</source>
        <translation>ist keine Zip-Datei</translation>
    </message>
    <message>
        <source>it is not complete: its end is missing</source>
        <translation>ist nicht vollständig: Das Ende fehlt</translation>
    </message>
    <message>
        <source>it is open in another Vantro</source>
        <translation>in einem anderen Vantro geöffnet</translation>
    </message>
    <message>
        <source>it is shorter than it was</source>
        <translation>ist kürzer als zuvor</translation>
    </message>
    <message>
        <source>it is too large</source>
        <translation>ist zu groß</translation>
    </message>
    <message>
        <source>it lasts %1 s, but the recording that %2 tells of lasted %3 s; they do not belong together</source>
        <translation>dauert %1 s, aber die Aufnahme, von der %2 berichtet, dauerte %3 s; sie gehören nicht zusammen</translation>
    </message>
    <message>
        <source>it names a file outside of itself, %1</source>
        <translation>nennt eine Datei außerhalb seiner selbst, %1</translation>
    </message>
    <message>
        <source>it sends damaged pictures</source>
        <translation>sie sendet beschädigte Bilder</translation>
    </message>
    <message>
        <source>it sends no pictures</source>
        <translation>sie sendet keine Bilder</translation>
    </message>
    <message>
        <source>its journal does not fit</source>
        <translation>das Journal dazu passt nicht</translation>
    </message>
    <message>
        <source>its movie cannot be written</source>
        <translation>der Film dazu kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>must be at least %1, is %2</source>
        <translation>muss mindestens %1 sein, ist %2</translation>
    </message>
    <message>
        <source>must be at least 0 and below 0.5, is %1</source>
        <translation>muss mindestens 0 und kleiner als 0,5 sein, ist %1</translation>
    </message>
    <message>
        <source>must be at most %1, is %2</source>
        <translation>darf höchstens %1 sein, ist %2</translation>
    </message>
    <message>
        <source>must be from %1 to %2, is %3</source>
        <translation>muss von %1 bis %2 sein, ist %3</translation>
    </message>
    <message>
        <source>must be from 1 to %1, is %2</source>
        <translation>muss von 1 bis %1 sein, ist %2</translation>
    </message>
    <message>
        <source>must be greater than 0, is %1</source>
        <translation>muss größer als 0 sein, ist %1</translation>
    </message>
    <message>
        <source>must lie after startFraction</source>
        <translation>muss nach startFraction liegen</translation>
    </message>
    <message>
        <source>must not lie before startTime</source>
        <translation>darf nicht vor startTime liegen</translation>
    </message>
    <message>
        <source>must not lie before the end of the segment before it</source>
        <translation>darf nicht vor dem Ende des vorigen Segments liegen</translation>
    </message>
    <message>
        <source>names no file</source>
        <translation>nennt keine Datei</translation>
    </message>
    <message>
        <source>no frame in it</source>
        <translation>kein Bild darin</translation>
    </message>
    <message>
        <source>no frames</source>
        <translation>keine Bilder</translation>
    </message>
    <message>
        <source>no project: it holds no %1</source>
        <translation>kein Projekt: enthält kein %1</translation>
    </message>
    <message>
        <source>no screen-sharing service answers on this desktop; install xdg-desktop-portal and the part of it for your desktop (xdg-desktop-portal-gnome, -kde or -wlr)</source>
        <translation>in dieser Arbeitsumgebung antwortet kein Dienst zur Bildschirmfreigabe; nötig sind xdg-desktop-portal und sein Teil für die Arbeitsumgebung (xdg-desktop-portal-gnome, -kde oder -wlr)</translation>
    </message>
    <message>
        <source>no such file</source>
        <translation>Datei nicht vorhanden</translation>
    </message>
    <message>
        <source>no such folder</source>
        <translation>Ordner nicht vorhanden</translation>
    </message>
    <message>
        <source>no such project</source>
        <translation>Projekt nicht vorhanden</translation>
    </message>
    <message>
        <source>nobody has allowed it in time</source>
        <translation>es wurde nicht rechtzeitig erlaubt</translation>
    </message>
    <message>
        <source>not a finite number, which cannot be saved</source>
        <translation>keine endliche Zahl, sie kann nicht gespeichert werden</translation>
    </message>
    <message>
        <source>not a project folder</source>
        <translation>kein Projektordner</translation>
    </message>
    <message>
        <source>not valid JSON at line %1, column %2</source>
        <translation>kein gültiges JSON in Zeile %1, Spalte %2</translation>
    </message>
    <message>
        <source>nothing comes from %1</source>
        <translation>von %1 kommt nichts</translation>
    </message>
    <message>
        <source>nothing has been chosen in the desktop&apos;s dialog</source>
        <translation>im Dialog der Arbeitsumgebung wurde nichts gewählt</translation>
    </message>
    <message>
        <source>nothing is left of the recording</source>
        <translation>von der Aufnahme ist nichts übrig</translation>
    </message>
    <message>
        <source>one of</source>
        <translation>eines von</translation>
    </message>
    <message>
        <source>out of range, must be from %1 to %2</source>
        <translation>außerhalb des Bereichs, muss von %1 bis %2 sein</translation>
    </message>
    <message>
        <source>single windows cannot be captured: the display lacks the extension Composite</source>
        <translation>einzelne Fenster können nicht aufgenommen werden: Dem Display fehlt die Erweiterung Composite</translation>
    </message>
    <message>
        <source>the area lies outside of the screen</source>
        <translation>der Bereich liegt außerhalb des Bildschirms</translation>
    </message>
    <message>
        <source>the camera has ended</source>
        <translation>die Kamera ist beendet</translation>
    </message>
    <message>
        <source>the camera is gone</source>
        <translation>die Kamera ist nicht mehr da</translation>
    </message>
    <message>
        <source>the camera says</source>
        <translation>die Kamera meldet</translation>
    </message>
    <message>
        <source>the connection to the display was lost</source>
        <translation>die Verbindung zum Display ist abgebrochen</translation>
    </message>
    <message>
        <source>the desktop cannot share what was asked for (it answers %1 with %2)</source>
        <translation>die Arbeitsumgebung kann das Gewünschte nicht freigeben (sie antwortet auf %1 mit %2)</translation>
    </message>
    <message>
        <source>the desktop has granted nothing to record</source>
        <translation>die Arbeitsumgebung hat nichts zum Aufnehmen freigegeben</translation>
    </message>
    <message>
        <source>the desktop has stopped sending pictures</source>
        <translation>die Arbeitsumgebung sendet keine Bilder mehr</translation>
    </message>
    <message>
        <source>the desktop&apos;s camera portal fails</source>
        <translation>das Kameraportal der Arbeitsumgebung versagt</translation>
    </message>
    <message>
        <source>the desktop&apos;s screen-sharing service fails</source>
        <translation>der Dienst zur Bildschirmfreigabe versagt</translation>
    </message>
    <message>
        <source>the desktop&apos;s screen-sharing service has ended</source>
        <translation>der Dienst zur Bildschirmfreigabe ist beendet</translation>
    </message>
    <message>
        <source>the device is gone</source>
        <translation>das Gerät ist nicht mehr da</translation>
    </message>
    <message>
        <source>the discarded changes are still there</source>
        <translation>die verworfenen Änderungen sind noch da</translation>
    </message>
    <message>
        <source>the disk of %1 is nearly full: %2 MB are free, %3 MB are needed</source>
        <translation>der Datenträger von %1 ist fast voll: %2 MB sind frei, %3 MB sind nötig</translation>
    </message>
    <message>
        <source>the display was disconnected</source>
        <translation>der Bildschirm wurde getrennt</translation>
    </message>
    <message>
        <source>the number is too large</source>
        <translation>die Zahl ist zu groß</translation>
    </message>
    <message>
        <source>the output</source>
        <translation>die Ausgabe</translation>
    </message>
    <message>
        <source>the recording is paused</source>
        <translation>die Aufnahme ist angehalten</translation>
    </message>
    <message>
        <source>the recording</source>
        <translation>die Aufnahme</translation>
    </message>
    <message>
        <source>the screen cannot be read any more</source>
        <translation>der Bildschirm kann nicht mehr gelesen werden</translation>
    </message>
    <message>
        <source>the screen has no visual</source>
        <translation>der Bildschirm hat kein Visual</translation>
    </message>
    <message>
        <source>the screen&apos;s pixels cannot be read: visual %1 of depth %2 with %3 bits a pixel, %4 byte order, red mask %5; 32 bits of blue, green and red are needed</source>
        <translation>die Pixel des Bildschirms können nicht gelesen werden: Visual %1 mit Tiefe %2, %3 Bit je Pixel, Bytefolge %4, Rotmaske %5; nötig sind 32 Bit aus Blau, Grün und Rot</translation>
    </message>
    <message>
        <source>the service that tells of them has ended</source>
        <translation>der Dienst, der sie mitteilt, ist beendet</translation>
    </message>
    <message>
        <source>the service vantro-clickd does not work</source>
        <translation>der Dienst vantro-clickd funktioniert nicht</translation>
    </message>
    <message>
        <source>the session bus cannot be reached</source>
        <translation>der Sitzungsbus ist nicht erreichbar</translation>
    </message>
    <message>
        <source>the sound server denies access</source>
        <translation>der Tonserver verweigert den Zugriff</translation>
    </message>
    <message>
        <source>the sound server does not answer</source>
        <translation>der Tonserver antwortet nicht</translation>
    </message>
    <message>
        <source>the sound server gives another device than %1</source>
        <translation>der Tonserver gibt ein anderes Gerät als %1</translation>
    </message>
    <message>
        <source>the sound server has gone</source>
        <translation>der Tonserver ist beendet</translation>
    </message>
    <message>
        <source>the sound server says</source>
        <translation>der Tonserver meldet</translation>
    </message>
    <message>
        <source>the system bus has gone</source>
        <translation>der Systembus ist nicht mehr da</translation>
    </message>
    <message>
        <source>the system denies access to it</source>
        <translation>das System verweigert den Zugriff darauf</translation>
    </message>
    <message>
        <source>the system&apos;s sound is being recorded</source>
        <translation>der Systemton wird aufgenommen</translation>
    </message>
    <message>
        <source>the text ends here</source>
        <translation>der Text endet hier</translation>
    </message>
    <message>
        <source>the window was closed</source>
        <translation>das Fenster wurde geschlossen</translation>
    </message>
    <message>
        <source>there is no %1</source>
        <translation>es gibt kein %1</translation>
    </message>
    <message>
        <source>there is no camera</source>
        <translation>es gibt keine Kamera</translation>
    </message>
    <message>
        <source>there is no home folder to keep them in</source>
        <translation>es gibt kein Benutzerverzeichnis dafür</translation>
    </message>
    <message>
        <source>there is no microphone</source>
        <translation>es gibt kein Mikrofon</translation>
    </message>
    <message>
        <source>there is no output</source>
        <translation>es gibt keine Tonausgabe</translation>
    </message>
    <message>
        <source>there is no room for a stream</source>
        <translation>für einen Strom ist kein Platz</translation>
    </message>
    <message>
        <source>there is no sound server</source>
        <translation>es läuft kein Tonserver</translation>
    </message>
    <message>
        <source>this desktop does not tell any more where it is</source>
        <translation>diese Arbeitsumgebung teilt nicht mehr mit, wo er ist</translation>
    </message>
    <message>
        <source>this desktop does not tell where it is</source>
        <translation>diese Arbeitsumgebung teilt nicht mit, wo er ist</translation>
    </message>
    <message>
        <source>this machine has no graphics device</source>
        <translation>dieser Rechner hat kein Grafikgerät</translation>
    </message>
    <message>
        <source>too large, 4 GiB or more</source>
        <translation>zu groß, 4 GiB oder mehr</translation>
    </message>
    <message>
        <source>unexpected text</source>
        <translation>unerwarteter Text</translation>
    </message>
</context>
<context>
    <name>SettingsKeys</name>
    <message>
        <source>Keys From Anywhere</source>
        <translation>Globale Tasten</translation>
    </message>
    <message>
        <source>Set Up…</source>
        <translation>Einrichten …</translation>
    </message>
    <message>
        <source>These keys work whatever program you are in. Your desktop asks which they are.</source>
        <translation>Diese Tasten wirken in jedem Programm. Die Arbeitsumgebung fragt, welche es sein sollen.</translation>
    </message>
    <message>
        <source>These keys work whatever program you are in.</source>
        <translation>Diese Tasten wirken in jedem Programm.</translation>
    </message>
    <message>
        <source>Turn Off</source>
        <translation>Ausschalten</translation>
    </message>
    <message>
        <source>Use These Keys</source>
        <translation>Diese Tasten verwenden</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
</context>
<context>
    <name>SettingsSection</name>
    <message>
        <source>Reset %1</source>
        <translation>%1 zurücksetzen</translation>
    </message>
</context>
<context>
    <name>SettingsWindow</name>
    <message>
        <source>Appearance</source>
        <translation>Erscheinungsbild</translation>
    </message>
    <message>
        <source>Choose the folder of recordings</source>
        <translation>Ordner der Aufnahmen wählen</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Wählen …</translation>
    </message>
    <message>
        <source>Countdown</source>
        <translation>Countdown</translation>
    </message>
    <message>
        <source>Folder of recordings</source>
        <translation>Ordner der Aufnahmen</translation>
    </message>
    <message>
        <source>Frame rate</source>
        <translation>Bildrate</translation>
    </message>
    <message>
        <source>Kept in</source>
        <translation>Ablage</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>Look of new recordings</source>
        <translation>Aussehen neuer Aufnahmen</translation>
    </message>
    <message>
        <source>Look</source>
        <translation>Aussehen</translation>
    </message>
    <message>
        <source>New Recordings</source>
        <translation>Neue Aufnahmen</translation>
    </message>
    <message>
        <source>New recordings have the usual look</source>
        <translation>Neue Aufnahmen sehen wie üblich aus</translation>
    </message>
    <message>
        <source>Recordings go to the usual place</source>
        <translation>Aufnahmen kommen an den üblichen Ort</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Vantro speaks it from its next start on.</source>
        <translation>Gilt ab dem nächsten Start von Vantro.</translation>
    </message>
</context>
<context>
    <name>Sidebar</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
</context>
<context>
    <name>SoundSection</name>
    <message>
        <source>Microphone</source>
        <translation>Mikrofon</translation>
    </message>
    <message>
        <source>Reduce microphone noise</source>
        <translation>Rauschen des Mikrofons mindern</translation>
    </message>
    <message>
        <source>Sound</source>
        <translation>Ton</translation>
    </message>
    <message>
        <source>System audio</source>
        <translation>Systemton</translation>
    </message>
</context>
<context>
    <name>Spinner</name>
    <message>
        <source>Loading</source>
        <translation>Wird geladen</translation>
    </message>
</context>
<context>
    <name>StartRow</name>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
</context>
<context>
    <name>StartScreen</name>
    <message>
        <source>Delete…</source>
        <translation>Löschen …</translation>
    </message>
    <message>
        <source>Not found: %1</source>
        <translation>Nicht gefunden: %1</translation>
    </message>
    <message>
        <source>Recent projects</source>
        <translation>Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>Recordings not saved</source>
        <translation>Nicht gespeicherte Aufnahmen</translation>
    </message>
    <message>
        <source>Remove from this list</source>
        <translation>Aus der Liste entfernen</translation>
    </message>
</context>
<context>
    <name>SymbolButton</name>
    <message>
        <source>Unavailable</source>
        <translation>Nicht verfügbar</translation>
    </message>
</context>
<context>
    <name>TimelineBars</name>
    <message numerus="yes">
        <source>%n zooms</source>
        <translation>
            <numerusform>%n Zoom</numerusform>
            <numerusform>%n Zooms</numerusform>
        </translation>
    </message>
    <message>
        <source>Cut between segments %1 and %2</source>
        <translation>Schnitt zwischen Segment %1 und %2</translation>
    </message>
    <message>
        <source>End of segment %1</source>
        <translation>Ende von Segment %1</translation>
    </message>
    <message>
        <source>Segment %1, %2</source>
        <translation>Segment %1, %2</translation>
    </message>
    <message>
        <source>Start of segment %1</source>
        <translation>Anfang von Segment %1</translation>
    </message>
    <message>
        <source>Suggested zoom at %1: the picture changed</source>
        <translation>Vorgeschlagener Zoom bei %1: Das Bild hat sich geändert</translation>
    </message>
    <message>
        <source>Suggested zoom at %1: the pointer stayed</source>
        <translation>Vorgeschlagener Zoom bei %1: Der Zeiger blieb stehen</translation>
    </message>
    <message>
        <source>Zoom %1 at %2</source>
        <translation>Zoom %1 bei %2</translation>
    </message>
</context>
<context>
    <name>TimelineBarsGroup</name>
    <message>
        <source>Timeline</source>
        <translation>Zeitleiste</translation>
    </message>
</context>
<context>
    <name>TimelinePanel</name>
    <message>
        <source>Keyboard (?)</source>
        <translation>Tastatur (?)</translation>
    </message>
    <message>
        <source>Show less of the timeline (+)</source>
        <translation>Weniger von der Zeitleiste zeigen (+)</translation>
    </message>
    <message>
        <source>Show more of the timeline (-)</source>
        <translation>Mehr von der Zeitleiste zeigen (-)</translation>
    </message>
    <message>
        <source>Show the whole timeline (0)</source>
        <translation>Ganze Zeitleiste zeigen (0)</translation>
    </message>
    <message>
        <source>Sound off in the preview</source>
        <translation>Ton der Vorschau aus</translation>
    </message>
    <message>
        <source>Sound on in the preview</source>
        <translation>Ton der Vorschau ein</translation>
    </message>
</context>
<context>
    <name>TimelinePlayhead</name>
    <message>
        <source>Playhead</source>
        <translation>Abspielmarke</translation>
    </message>
</context>
<context>
    <name>TimelineRuler</name>
    <message>
        <source>Ruler</source>
        <translation>Lineal</translation>
    </message>
</context>
<context>
    <name>TimelineTools</name>
    <message>
        <source>Accept All suggested zooms</source>
        <translation>Alle vorgeschlagenen Zooms annehmen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Delete the selected zoom, range or segment (Delete)</source>
        <translation>Ausgewählten Zoom, Bereich oder Segment löschen (Entf)</translation>
    </message>
    <message>
        <source>Dismiss all suggested zooms</source>
        <translation>Alle vorgeschlagenen Zooms verwerfen</translation>
    </message>
    <message>
        <source>Looking for zooms… %1 %</source>
        <translation>Suche nach Zooms … %1 %</translation>
    </message>
    <message>
        <source>Recompute Zooms: start anew from the recorded clicks</source>
        <translation>Zooms neu berechnen: wieder von den aufgenommenen Klicks ausgehen</translation>
    </message>
    <message>
        <source>Recompute Zooms?</source>
        <translation>Zooms neu berechnen?</translation>
    </message>
    <message>
        <source>Recompute</source>
        <translation>Neu berechnen</translation>
    </message>
    <message>
        <source>Split at the playhead (S)</source>
        <translation>An der Abspielmarke teilen (S)</translation>
    </message>
    <message>
        <source>Stop looking for zooms</source>
        <translation>Suche nach Zooms beenden</translation>
    </message>
    <message>
        <source>Suggest Zooms: find where the pointer rested and the picture changed</source>
        <translation>Zooms vorschlagen: suchen, wo der Zeiger ruhte und sich das Bild änderte</translation>
    </message>
    <message>
        <source>Zooms that you added by hand are dropped. Undo brings them back.</source>
        <translation>Von Hand angelegte Zooms fallen weg. „Rückgängig“ bringt sie zurück.</translation>
    </message>
</context>
<context>
    <name>TransportControls</name>
    <message>
        <source>Pause (Space)</source>
        <translation>Anhalten (Leertaste)</translation>
    </message>
    <message>
        <source>Play (Space)</source>
        <translation>Abspielen (Leertaste)</translation>
    </message>
    <message>
        <source>Skip 5 seconds back</source>
        <translation>5 Sekunden zurück</translation>
    </message>
    <message>
        <source>Skip 5 seconds forward</source>
        <translation>5 Sekunden vor</translation>
    </message>
</context>
<context>
    <name>VideoPreviewArea</name>
    <message>
        <source>Loading preview...</source>
        <translation>Vorschau wird geladen …</translation>
    </message>
</context>
<context>
    <name>VideoTrimBar</name>
    <message>
        <source>Segments</source>
        <translation>Segmente</translation>
    </message>
</context>
<context>
    <name>WebcamSection</name>
    <message>
        <source>Bottom left</source>
        <translation>Unten links</translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation>Unten rechts</translation>
    </message>
    <message>
        <source>Corner</source>
        <translation>Ecke</translation>
    </message>
    <message>
        <source>Mirror</source>
        <translation>Spiegeln</translation>
    </message>
    <message>
        <source>Show webcam</source>
        <translation>Webcam zeigen</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Top left</source>
        <translation>Oben links</translation>
    </message>
    <message>
        <source>Top right</source>
        <translation>Oben rechts</translation>
    </message>
    <message>
        <source>Webcam</source>
        <translation>Webcam</translation>
    </message>
</context>
<context>
    <name>WindowPicker</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Could not list windows</source>
        <translation>Fenster können nicht aufgelistet werden</translation>
    </message>
    <message>
        <source>No windows available</source>
        <translation>Keine Fenster vorhanden</translation>
    </message>
    <message>
        <source>Select a Window</source>
        <translation>Fenster auswählen</translation>
    </message>
    <message>
        <source>Windows</source>
        <translation>Fenster</translation>
    </message>
</context>
<context>
    <name>WindowRow</name>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
</context>
<context>
    <name>ZoomBlockView</name>
    <message>
        <source>Delete zoom</source>
        <translation>Zoom löschen</translation>
    </message>
</context>
<context>
    <name>ZoomEventsBar</name>
    <message>
        <source>Zooms</source>
        <translation>Zooms</translation>
    </message>
</context>
<context>
    <name>ZoomSection</name>
    <message>
        <source>Center, from the left</source>
        <translation>Mitte, von links</translation>
    </message>
    <message>
        <source>Center, from the top</source>
        <translation>Mitte, von oben</translation>
    </message>
    <message>
        <source>Delete Zoom</source>
        <translation>Zoom löschen</translation>
    </message>
</context>
<context>
    <name>ZoomTargetView</name>
    <message>
        <source>Zoom center</source>
        <translation>Mitte des Zooms</translation>
    </message>
</context>
<context>
    <name>ZoomValueRows</name>
    <message>
        <source>After the click</source>
        <translation>Nach dem Klick</translation>
    </message>
    <message>
        <source>Before the click</source>
        <translation>Vor dem Klick</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Stufe</translation>
    </message>
</context>
<context>
    <name>vantro::app::flows::RecordingFlow</name>
    <message>
        <source>The desktop has ended the sharing.</source>
        <translation>Die Arbeitsumgebung hat die Freigabe beendet.</translation>
    </message>
    <message>
        <source>The disk is nearly full.</source>
        <translation>Der Datenträger ist fast voll.</translation>
    </message>
    <message>
        <source>The recording cannot be written any more.</source>
        <translation>Die Aufnahme kann nicht mehr geschrieben werden.</translation>
    </message>
</context>
<context>
    <name>vantro::app::flows::RecordingPreparation</name>
    <message>
        <source>recordings cannot go to %1. The settings take another folder.</source>
        <translation>Aufnahmen können nicht nach %1 geschrieben werden. In den Einstellungen lässt sich ein anderer Ordner wählen.</translation>
    </message>
</context>
<context>
    <name>vantro::editor::EditorModel</name>
    <message>
        <source>%1%2 — Vantro</source>
        <comment>name of the recording, mark of unsaved changes</comment>
        <translation>%1%2 – Vantro</translation>
    </message>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>About %1 min left</source>
        <translation>Noch etwa %1 min</translation>
    </message>
    <message>
        <source>About %1 s left</source>
        <translation>Noch etwa %1 s</translation>
    </message>
    <message>
        <source>About %1</source>
        <translation>Etwa %1</translation>
    </message>
    <message>
        <source>Animated GIF</source>
        <translation>Animiertes GIF</translation>
    </message>
    <message>
        <source>Balanced</source>
        <translation>Ausgewogen</translation>
    </message>
    <message>
        <source>Fast export</source>
        <translation>Schneller Export</translation>
    </message>
    <message>
        <source>MP4 video</source>
        <translation>MP4-Video</translation>
    </message>
    <message>
        <source>New recordings will look like this</source>
        <translation>Neue Aufnahmen sehen künftig so aus</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>Gespeichert: %1</translation>
    </message>
    <message>
        <source>Small file</source>
        <translation>Kleine Datei</translation>
    </message>
</context>
<context>
    <name>vantro::editor::FrameExport</name>
    <message>
        <source>Copied the frame</source>
        <translation>Bild kopiert</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>Gespeichert: %1</translation>
    </message>
</context>
<context>
    <name>vantro::editor::bars::BarGestures</name>
    <message>
        <source>There is no room for a zoom here.</source>
        <translation>Hier ist kein Platz für einen Zoom.</translation>
    </message>
    <message>
        <source>This part is cut out, so a zoom would not be seen.</source>
        <translation>Dieser Teil ist herausgeschnitten, ein Zoom wäre nicht zu sehen.</translation>
    </message>
</context>
<context>
    <name>vantro::editor::bars::EditorActions</name>
    <message>
        <source>A piece would be left that is too short to be kept.</source>
        <translation>Es bliebe ein Stück übrig, das zu kurz ist.</translation>
    </message>
    <message>
        <source>Nothing of the film lies there.</source>
        <translation>Dort liegt nichts vom Film.</translation>
    </message>
    <message>
        <source>Nothing would be left of the film.</source>
        <translation>Vom Film bliebe nichts übrig.</translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation>Wiederholen: %1</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>There is nothing to split here.</source>
        <translation>Hier gibt es nichts zu teilen.</translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation>Rückgängig: %1</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
</context>
<context>
    <name>vantro::editor::bars::ZoomBarPicture</name>
    <message>
        <source>Delete %1</source>
        <translation>%1 löschen</translation>
    </message>
    <message>
        <source>Dismiss %1</source>
        <translation>%1 verwerfen</translation>
    </message>
    <message>
        <source>End of %1</source>
        <translation>Ende von %1</translation>
    </message>
    <message>
        <source>Start of %1</source>
        <translation>Anfang von %1</translation>
    </message>
</context>
<context>
    <name>vantro::editor::bars::ZoomSuggestions</name>
    <message>
        <source>Hatched zooms are suggestions: click one to accept it.</source>
        <translation>Schraffierte Zooms sind Vorschläge: Ein Klick nimmt an.</translation>
    </message>
    <message>
        <source>Nothing to suggest: nothing changed where the pointer rested.</source>
        <translation>Keine Vorschläge: Wo der Zeiger ruhte, änderte sich nichts.</translation>
    </message>
    <message>
        <source>Nothing to suggest: the pointer never came to rest.</source>
        <translation>Keine Vorschläge: Der Zeiger kam nie zur Ruhe.</translation>
    </message>
    <message>
        <source>Nothing to suggest: this desktop did not tell where the pointer was.</source>
        <translation>Keine Vorschläge: Die Arbeitsumgebung hat nicht mitgeteilt, wo der Zeiger war.</translation>
    </message>
    <message>
        <source>Suggested since the picture changed where the pointer was.</source>
        <translation>Vorgeschlagen, weil sich das Bild dort änderte, wo der Zeiger war.</translation>
    </message>
    <message>
        <source>Suggested since the pointer went there and stayed.</source>
        <translation>Vorgeschlagen, weil der Zeiger dorthin ging und blieb.</translation>
    </message>
    <message>
        <source>The picture could not be searched; these are the places where the pointer stayed.</source>
        <translation>Das Bild konnte nicht durchsucht werden; dies sind die Stellen, an denen der Zeiger blieb.</translation>
    </message>
</context>
<context>
    <name>vantro::editor::sidebar::BackgroundGroup</name>
    <message>
        <source>Picture %1</source>
        <translation>Bild %1</translation>
    </message>
</context>
<context>
    <name>vantro::editor::sidebar::FrameGroup</name>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
</context>
<context>
    <name>vantro::editor::sidebar::SegmentGroup</name>
    <message>
        <source>Segment %1 of %2</source>
        <translation>Segment %1 von %2</translation>
    </message>
</context>
<context>
    <name>vantro::editor::sidebar::ZoomGroup</name>
    <message>
        <source>Zoom at %1</source>
        <translation>Zoom bei %1</translation>
    </message>
</context>
<context>
    <name>vantro::window::DesktopNews</name>
    <message>
        <source>Nothing has moved for ten minutes.</source>
        <translation>Seit zehn Minuten hat sich nichts bewegt.</translation>
    </message>
    <message>
        <source>Show in Folder</source>
        <translation>Im Ordner zeigen</translation>
    </message>
    <message>
        <source>Still recording</source>
        <translation>Die Aufnahme läuft noch</translation>
    </message>
    <message>
        <source>The disk is nearly full</source>
        <translation>Der Datenträger ist fast voll</translation>
    </message>
    <message>
        <source>The export has failed</source>
        <translation>Der Export ist fehlgeschlagen</translation>
    </message>
    <message>
        <source>The film is ready</source>
        <translation>Der Film ist fertig</translation>
    </message>
    <message>
        <source>The recording has ended</source>
        <translation>Die Aufnahme ist beendet</translation>
    </message>
    <message>
        <source>There is room for less than five minutes of the recording.</source>
        <translation>Für die Aufnahme ist noch Platz für weniger als fünf Minuten.</translation>
    </message>
</context>
<context>
    <name>vantro::window::DisplayChoice</name>
    <message>
        <source>%1 (%2 x %3)</source>
        <translation>%1 (%2 × %3)</translation>
    </message>
</context>
<context>
    <name>vantro::window::MainModel</name>
    <message>
        <source>Capture has ended. Stop to keep what was recorded.</source>
        <translation>Die Aufnahme ist zu Ende. Stoppen, um das Aufgenommene zu behalten.</translation>
    </message>
    <message>
        <source>Frames dropped: %1</source>
        <translation>Ausgelassene Bilder: %1</translation>
    </message>
    <message>
        <source>Not recorded: %1</source>
        <translation>Nicht aufgenommen: %1</translation>
    </message>
    <message>
        <source>The disk is full in %1. Vantro stops before.</source>
        <translation>Der Datenträger ist in %1 voll. Vantro stoppt vorher.</translation>
    </message>
    <message>
        <source>The microphone is silent.</source>
        <translation>Das Mikrofon ist stumm.</translation>
    </message>
    <message>
        <source>There is room for %1.</source>
        <translation>Noch Platz für %1.</translation>
    </message>
    <message>
        <source>This desktop does not tell clicks. Press %1 where a zoom should be.</source>
        <translation>Diese Arbeitsumgebung teilt Klicks nicht mit. Wo ein Zoom sein soll, %1 drücken.</translation>
    </message>
    <message>
        <source>This desktop does not tell clicks. The options set up a key for zooms.</source>
        <translation>Diese Arbeitsumgebung teilt Klicks nicht mit. In den Optionen lässt sich eine Taste für Zooms einrichten.</translation>
    </message>
</context>
<context>
    <name>vantro::window::StopNotice</name>
    <message>
        <source>Pause Recording</source>
        <translation>Aufnahme anhalten</translation>
    </message>
    <message>
        <source>Recording the screen</source>
        <translation>Der Bildschirm wird aufgenommen</translation>
    </message>
    <message>
        <source>Resume Recording</source>
        <translation>Aufnahme fortsetzen</translation>
    </message>
    <message>
        <source>Stop Recording</source>
        <translation>Aufnahme stoppen</translation>
    </message>
    <message>
        <source>The recording is paused</source>
        <translation>Die Aufnahme ist angehalten</translation>
    </message>
</context>
<context>
    <name>vantro::window::devices::DeviceChoice</name>
    <message>
        <source>%1 is not connected; the default camera is used.</source>
        <translation>%1 ist nicht angeschlossen; die Standardkamera wird verwendet.</translation>
    </message>
    <message>
        <source>%1 is not connected; the default microphone is used.</source>
        <translation>%1 ist nicht angeschlossen; das Standardmikrofon wird verwendet.</translation>
    </message>
    <message>
        <source>Default (%1)</source>
        <translation>Standard (%1)</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>Standard</translation>
    </message>
</context>
<context>
    <name>vantro::window::overlay::SelectionOverlay</name>
    <message>
        <source>Drag out an area, or type width, height, x and y. Arrows move it, Ctrl with arrows resizes it, Shift by 10. Enter takes it, Escape cancels.</source>
        <translation>Bereich aufziehen oder Breite, Höhe, x und y eintippen. Pfeiltasten verschieben ihn, Strg mit Pfeiltasten ändert die Größe, Umschalt in Zehnerschritten. Eingabe übernimmt ihn, Escape bricht ab.</translation>
    </message>
    <message>
        <source>Select area</source>
        <translation>Bereich auswählen</translation>
    </message>
    <message>
        <source>Width, height, x, y: %1|</source>
        <translation>Breite, Höhe, x, y: %1|</translation>
    </message>
</context>
<context>
    <name>vantro::window::picker::WindowPickerModel</name>
    <message>
        <source>Unknown App</source>
        <translation>Unbekanntes Programm</translation>
    </message>
</context>
<context>
    <name>vantro::window::settings::KeysModel</name>
    <message>
        <source>%1 alone is needed in other programs: hold Ctrl, Alt or Meta with it.</source>
        <translation>%1 allein wird in anderen Programmen gebraucht: Strg, Alt oder Meta dazu halten.</translation>
    </message>
    <message>
        <source>Pause or resume it</source>
        <translation>Anhalten oder fortsetzen</translation>
    </message>
    <message>
        <source>Start or stop a recording</source>
        <translation>Aufnehmen oder stoppen</translation>
    </message>
    <message>
        <source>The desktop was told not to give these keys to Vantro.</source>
        <translation>Die Arbeitsumgebung wurde angewiesen, Vantro diese Tasten nicht zu geben.</translation>
    </message>
    <message>
        <source>The keys from before still work.</source>
        <translation>Noch wirken die bisherigen Tasten.</translation>
    </message>
    <message>
        <source>The keys work now, and will at each start of Vantro.</source>
        <translation>Die Tasten wirken jetzt und nach jedem Start von Vantro.</translation>
    </message>
    <message>
        <source>These keys are not in use yet.</source>
        <translation>Diese Tasten wirken noch nicht.</translation>
    </message>
    <message>
        <source>Your desktop is asking.</source>
        <translation>Die Arbeitsumgebung fragt nach.</translation>
    </message>
    <message>
        <source>Zoom to the pointer</source>
        <translation>Zum Zeiger zoomen</translation>
    </message>
</context>
<context>
    <name>vantro::window::settings::SettingsModel</name>
    <message>
        <source>%1 pictures a second</source>
        <translation>%1 Bilder pro Sekunde</translation>
    </message>
    <message>
        <source>%1 seconds</source>
        <translation>%1 Sekunden</translation>
    </message>
    <message>
        <source>%1, padding %2 %, corners %3 px, canvas %4</source>
        <translation>%1, Abstand %2 %, Ecken %3 px, Leinwand %4</translation>
    </message>
    <message>
        <source>As usual. “Use This Look for New Recordings” beside a film changes it.</source>
        <translation>Wie üblich. „Für neue Aufnahmen verwenden“ neben einem Film ändert es.</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Folder of Recordings</source>
        <translation>Ordner der Aufnahmen</translation>
    </message>
    <message>
        <source>Follow the Desktop</source>
        <translation>Wie die Arbeitsumgebung</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Recordings cannot go to %1.</source>
        <translation>Aufnahmen können nicht nach %1 geschrieben werden.</translation>
    </message>
    <message>
        <source>The system&apos;s</source>
        <translation>Wie das System</translation>
    </message>
</context>
</TS>
