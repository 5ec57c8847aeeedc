<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AdvancedPane</name>
    <message>
        <source>Advanced</source>
        <translation>Erweitert</translation>
    </message>
    <message>
        <source>Automatic steps for every new screenshot</source>
        <translation>Automatische Schritte für jedes neue Bildschirmfoto</translation>
    </message>
    <message>
        <source>The agent applies these steps to every new screenshot, in this order.</source>
        <translation>Der Agent wendet diese Schritte in dieser Reihenfolge auf jedes neue Bildschirmfoto an.</translation>
    </message>
    <message>
        <source>Accept &amp;lenient dates and times in screenshot names</source>
        <translation>&amp;Ungewöhnliche Datums- und Zeitangaben in Bildschirmfotonamen akzeptieren</translation>
    </message>
    <message>
        <source>Recognises screenshots whose names hold dates and times in unusual forms.</source>
        <translation>Erkennt Bildschirmfotos, deren Namen Datum und Uhrzeit in ungewöhnlicher Form enthalten.</translation>
    </message>
    <message>
        <source>Rename:</source>
        <translation>Umbenennen:</translation>
    </message>
    <message>
        <source>Convert:</source>
        <translation>Umwandeln:</translation>
    </message>
    <message>
        <source>Move:</source>
        <translation>Verschieben:</translation>
    </message>
    <message>
        <source>Open:</source>
        <translation>Öffnen:</translation>
    </message>
    <message>
        <source>Names:</source>
        <translation>Namen:</translation>
    </message>
    <message>
        <source>&amp;Rename new screenshots by this pattern:</source>
        <translation>Neue Bildschirmfotos nach diesem Muster &amp;umbenennen:</translation>
    </message>
    <message>
        <source>The counter stands at %1.</source>
        <translation>Der Zähler steht bei %1.</translation>
    </message>
    <message>
        <source>Reset &amp;Counter</source>
        <translation>&amp;Zähler zurücksetzen</translation>
    </message>
    <message>
        <source>Reset the counter</source>
        <translation>Den Zähler zurücksetzen</translation>
    </message>
    <message>
        <source>The next counter token starts again at 1.</source>
        <translation>Das nächste Zähler-Element beginnt wieder bei 1.</translation>
    </message>
    <message>
        <source>Con&amp;vert new screenshots to</source>
        <translation>Neue Bildschirmfotos &amp;umwandeln in</translation>
    </message>
    <message>
        <source>Format of converted screenshots</source>
        <translation>Format umgewandelter Bildschirmfotos</translation>
    </message>
    <message>
        <source>Unknown format (%1)</source>
        <translation>Unbekanntes Format (%1)</translation>
    </message>
    <message>
        <source>&amp;Move new screenshots to this folder:</source>
        <translation>Neue Bildschirmfotos in diesen Ordner &amp;verschieben:</translation>
    </message>
    <message>
        <source>Folder for new screenshots</source>
        <translation>Ordner für neue Bildschirmfotos</translation>
    </message>
    <message>
        <source>No folder chosen</source>
        <translation>Kein Ordner gewählt</translation>
    </message>
    <message>
        <source>C&amp;hoose…</source>
        <translation>&amp;Wählen …</translation>
    </message>
    <message>
        <source>Choose the folder for new screenshots</source>
        <translation>Den Ordner für neue Bildschirmfotos wählen</translation>
    </message>
    <message>
        <source>This folder cannot be found.</source>
        <translation>Dieser Ordner ist nicht zu finden.</translation>
    </message>
    <message>
        <source>Folder for New Screenshots</source>
        <translation>Ordner für neue Bildschirmfotos</translation>
    </message>
    <message>
        <source>&amp;Open new screenshots with</source>
        <translation>Neue Bildschirmfotos ö&amp;ffnen mit</translation>
    </message>
</context>
<context>
    <name>AgentStatusMenu</name>
    <message>
        <source>Corvex Preferences…</source>
        <translation>Corvex-Einstellungen …</translation>
    </message>
    <message>
        <source>Show Log</source>
        <translation>Protokoll anzeigen</translation>
    </message>
    <message>
        <source>Pause Automatic Steps</source>
        <translation>Automatische Schritte anhalten</translation>
    </message>
    <message>
        <source>Quit Corvex Agent</source>
        <translation>Corvex-Agent beenden</translation>
    </message>
</context>
<context>
    <name>AppDelegate</name>
    <message>
        <source>The application “%1” could not be launched.</source>
        <translation>Das Programm „%1“ konnte nicht gestartet werden.</translation>
    </message>
    <message>
        <source>About Corvex</source>
        <translation>Über Corvex</translation>
    </message>
    <message>
        <source>&lt;h3&gt;Corvex&lt;/h3&gt;&lt;p&gt;Version %1&lt;/p&gt;&lt;p&gt;Renames, converts and files your screenshots.&lt;/p&gt;</source>
        <translation>&lt;h3&gt;Corvex&lt;/h3&gt;&lt;p&gt;Version %1&lt;/p&gt;&lt;p&gt;Benennt, wandelt und legt Ihre Bildschirmfotos ab.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Reset Preferences?</source>
        <translation>Einstellungen zurücksetzen?</translation>
    </message>
    <message>
        <source>Resetting the preferences to their default values can help with troubleshooting.</source>
        <translation>Das Zurücksetzen der Einstellungen auf ihre Standardwerte kann bei der Fehlersuche helfen.</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>ApplicationChooser</name>
    <message>
        <source>Application that opens new screenshots</source>
        <translation>Programm, das neue Bildschirmfotos öffnet</translation>
    </message>
    <message>
        <source>Default image viewer</source>
        <translation>Standard-Bildbetrachter</translation>
    </message>
    <message>
        <source>Default image viewer (%1)</source>
        <translation>Standard-Bildbetrachter (%1)</translation>
    </message>
    <message>
        <source>Default text editor</source>
        <translation>Standard-Texteditor</translation>
    </message>
    <message>
        <source>Default text editor (%1)</source>
        <translation>Standard-Texteditor (%1)</translation>
    </message>
    <message>
        <source>%1 (not installed)</source>
        <translation>%1 (nicht installiert)</translation>
    </message>
    <message>
        <source>No installed application has the id %1.</source>
        <translation>Kein installiertes Programm hat die Kennung %1.</translation>
    </message>
</context>
<context>
    <name>ApplicationMenus</name>
    <message>
        <source>About Corvex</source>
        <translation>Über Corvex</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Reset Preferences…</source>
        <translation>Einstellungen zurücksetzen …</translation>
    </message>
    <message>
        <source>Reset Counter</source>
        <translation>Zähler zurücksetzen</translation>
    </message>
    <message>
        <source>Welcome to Corvex</source>
        <translation>Willkommen bei Corvex</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Show Log File</source>
        <translation>Protokolldatei zeigen</translation>
    </message>
    <message>
        <source>Corvex Help</source>
        <translation>Corvex-Hilfe</translation>
    </message>
    <message>
        <source>Send Feedback…</source>
        <translation>Feedback senden …</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Updates suchen …</translation>
    </message>
    <message>
        <source>Quit Corvex</source>
        <translation>Corvex beenden</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>&amp;Fenster</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
</context>
<context>
    <name>CorvexError</name>
    <message>
        <source>The operation couldn’t be completed. %1</source>
        <translation>Der Vorgang konnte nicht abgeschlossen werden. %1</translation>
    </message>
    <message>
        <source>The file doesn’t exist.</source>
        <translation>Die Datei existiert nicht.</translation>
    </message>
    <message>
        <source>The file “%1” couldn’t be opened because there is no such file.</source>
        <translation>Die Datei „%1“ konnte nicht geöffnet werden, da sie nicht existiert.</translation>
    </message>
    <message>
        <source>The file “%1” couldn’t be opened because you don’t have permission to view it.</source>
        <translation>Die Datei „%1“ konnte nicht geöffnet werden, da Sie keine Berechtigung zum Anzeigen haben.</translation>
    </message>
    <message>
        <source>You don’t have permission to save the file “%1” in the folder where it is.</source>
        <translation>Sie haben keine Berechtigung, die Datei „%1“ in ihrem Ordner zu sichern.</translation>
    </message>
    <message>
        <source>The file “%1” couldn’t be saved because a file with the same name already exists.</source>
        <translation>Die Datei „%1“ konnte nicht gesichert werden, da bereits eine Datei mit diesem Namen existiert.</translation>
    </message>
    <message>
        <source>The file “%1” couldn’t be saved because there isn’t enough space.</source>
        <translation>Die Datei „%1“ konnte nicht gesichert werden, da nicht genügend Speicherplatz vorhanden ist.</translation>
    </message>
    <message>
        <source>The file “%1” couldn’t be saved because the volume is read only.</source>
        <translation>Die Datei „%1“ konnte nicht gesichert werden, da das Volume schreibgeschützt ist.</translation>
    </message>
    <message>
        <source>The operation couldn’t be completed. (%1 error %2.)</source>
        <translation>Der Vorgang konnte nicht abgeschlossen werden. (%1 Fehler %2.)</translation>
    </message>
</context>
<context>
    <name>CorvexWindowController</name>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
    <message>
        <source>Where:</source>
        <translation>Ort:</translation>
    </message>
    <message>
        <source>Format:</source>
        <translation>Format:</translation>
    </message>
    <message>
        <source>Move to Trash</source>
        <translation>In den Papierkorb legen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Print…</source>
        <translation>Drucken …</translation>
    </message>
    <message>
        <source>Close Window</source>
        <translation>Fenster schließen</translation>
    </message>
</context>
<context>
    <name>FavoriteFoldersEditor</name>
    <message>
        <source>Favourite folders</source>
        <translation>Lieblingsordner</translation>
    </message>
    <message>
        <source>&amp;Add…</source>
        <translation>&amp;Hinzufügen …</translation>
    </message>
    <message>
        <source>Add a favourite folder</source>
        <translation>Einen Lieblingsordner hinzufügen</translation>
    </message>
    <message>
        <source>Re&amp;move</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Remove the selected favourite folders</source>
        <translation>Die ausgewählten Lieblingsordner entfernen</translation>
    </message>
    <message>
        <source>Move &amp;Up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <source>Move the selected favourite folders up</source>
        <translation>Die ausgewählten Lieblingsordner nach oben verschieben</translation>
    </message>
    <message>
        <source>Move Do&amp;wn</source>
        <translation>Nach &amp;unten</translation>
    </message>
    <message>
        <source>Move the selected favourite folders down</source>
        <translation>Die ausgewählten Lieblingsordner nach unten verschieben</translation>
    </message>
    <message>
        <source>Unknown folder</source>
        <translation>Unbekannter Ordner</translation>
    </message>
    <message>
        <source>cannot be found</source>
        <translation>ist nicht zu finden</translation>
    </message>
    <message>
        <source>This folder can no longer be found.</source>
        <translation>Dieser Ordner ist nicht mehr zu finden.</translation>
    </message>
    <message>
        <source>This folder can no longer be found: %1</source>
        <translation>Dieser Ordner ist nicht mehr zu finden: %1</translation>
    </message>
    <message>
        <source>%1, missing</source>
        <translation>%1, fehlt</translation>
    </message>
    <message>
        <source>Add a Favourite Folder</source>
        <translation>Einen Lieblingsordner hinzufügen</translation>
    </message>
    <message>
        <source>The folder could not be added: it cannot be found.</source>
        <translation>Der Ordner konnte nicht hinzugefügt werden: Er ist nicht zu finden.</translation>
    </message>
    <message>
        <source>The list of favourite folders could not be saved.</source>
        <translation>Die Liste der Lieblingsordner konnte nicht gesichert werden.</translation>
    </message>
</context>
<context>
    <name>GeneralPane</name>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>The renaming window, start-up, the tray icon and favourite folders</source>
        <translation>Das Umbenennungsfenster, der Start, das Symbol im Infobereich und die Lieblingsordner</translation>
    </message>
    <message>
        <source>the screen capture settings</source>
        <translation>die Einstellungen für Bildschirmfotos</translation>
    </message>
    <message>
        <source>An unknown folder</source>
        <translation>Ein unbekannter Ordner</translation>
    </message>
    <message>
        <source>in an unknown format</source>
        <translation>in einem unbekannten Format</translation>
    </message>
    <message>
        <source>as %1</source>
        <translation>als %1</translation>
    </message>
    <message>
        <source>(settings of %1)</source>
        <translation>(Einstellungen von %1)</translation>
    </message>
    <message>
        <source> and </source>
        <translation> und </translation>
    </message>
    <message>
        <source>&amp;Show the renaming window for new screenshots</source>
        <translation>Für neue Bildschirmfotos das Umbenennungsfenster &amp;zeigen</translation>
    </message>
    <message>
        <source>Start in the &amp;last used folder and format</source>
        <translation>Im &amp;zuletzt benutzten Ordner und Format beginnen</translation>
    </message>
    <message>
        <source>&amp;Hide file name extensions</source>
        <translation>Datei-Endungen &amp;ausblenden</translation>
    </message>
    <message>
        <source>&amp;Quit Corvex when the last renaming window closes</source>
        <translation>Corvex &amp;beenden, wenn das letzte Umbenennungsfenster geschlossen wird</translation>
    </message>
    <message>
        <source>Start Corvex when you l&amp;og in</source>
        <translation>Corvex beim &amp;Anmelden starten</translation>
    </message>
    <message>
        <source>&amp;Keep the agent running when Corvex quits</source>
        <translation>Den Agenten &amp;weiterlaufen lassen, wenn Corvex beendet wird</translation>
    </message>
    <message>
        <source>The agent applies the automatic steps to new screenshots; without it, nothing happens to a screenshot while Corvex is not running.</source>
        <translation>Der Agent wendet die automatischen Schritte auf neue Bildschirmfotos an; ohne ihn geschieht nichts mit einem Bildschirmfoto, solange Corvex nicht läuft.</translation>
    </message>
    <message>
        <source>Show the Corvex icon in the &amp;tray</source>
        <translation>Das Corvex-Symbol im &amp;Infobereich zeigen</translation>
    </message>
    <message>
        <source>Draw the icon in &amp;grey</source>
        <translation>Das Symbol in &amp;Grau zeichnen</translation>
    </message>
    <message>
        <source>Ctrl+1 to Ctrl+9 choose these folders in the renaming window.</source>
        <translation>Strg+1 bis Strg+9 wählen diese Ordner im Umbenennungsfenster.</translation>
    </message>
    <message>
        <source>&amp;Favourite folders:</source>
        <translation>&amp;Lieblingsordner:</translation>
    </message>
    <message>
        <source>New screenshots:</source>
        <translation>Neue Bildschirmfotos:</translation>
    </message>
    <message>
        <source>Renaming window:</source>
        <translation>Umbenennungsfenster:</translation>
    </message>
    <message>
        <source>Start-up:</source>
        <translation>Start:</translation>
    </message>
    <message>
        <source>Tray:</source>
        <translation>Infobereich:</translation>
    </message>
    <message>
        <source>Desktop saves:</source>
        <translation>Die Arbeitsumgebung sichert:</translation>
    </message>
</context>
<context>
    <name>LogWindowController</name>
    <message>
        <source>Corvex Log</source>
        <translation>Corvex-Protokoll</translation>
    </message>
</context>
<context>
    <name>MoveApplication</name>
    <message>
        <source>Could not move to Applications folder</source>
        <translation>Das Programm konnte nicht in den Programme-Ordner bewegt werden</translation>
    </message>
    <message>
        <source>Move to Applications folder in your Home folder?</source>
        <translation>In den Programme-Ordner in Ihrem Benutzerordner bewegen?</translation>
    </message>
    <message>
        <source>Move to Applications folder?</source>
        <translation>In den Programme-Ordner bewegen?</translation>
    </message>
    <message>
        <source>I can move myself to the Applications folder if you&apos;d like.</source>
        <translation>Ich kann mich selbst in den Programme-Ordner bewegen, wenn Sie möchten.</translation>
    </message>
    <message>
        <source>Note that this will require an administrator password.</source>
        <translation>Dazu ist das Passwort eines Administrators nötig.</translation>
    </message>
    <message>
        <source>This will keep your Downloads folder uncluttered.</source>
        <translation>So bleibt Ihr Download-Ordner aufgeräumt.</translation>
    </message>
    <message>
        <source>Move to Applications Folder</source>
        <translation>In den Programme-Ordner bewegen</translation>
    </message>
    <message>
        <source>Do Not Move</source>
        <translation>Nicht bewegen</translation>
    </message>
    <message>
        <source>Do not show this message again</source>
        <translation>Diese Meldung nicht mehr anzeigen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>QZAlert</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>RenameFlow</name>
    <message>
        <source>You cannot save this document with extension “.%1” at the end of the name.  The required extension is “.%2”.</source>
        <translation>Sie können dieses Dokument nicht mit der Endung „.%1“ am Ende des Namens sichern.  Die erforderliche Endung ist „.%2“.</translation>
    </message>
    <message>
        <source>You can choose to use both, so that your file name ends in “.%1.%2”.</source>
        <translation>Sie können beide verwenden, sodass Ihr Dateiname auf „.%1.%2“ endet.</translation>
    </message>
    <message>
        <source>Use .%1</source>
        <translation>.%1 verwenden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Use both</source>
        <translation>Beide verwenden</translation>
    </message>
    <message>
        <source>“%1” already exists. Do you want to replace it?</source>
        <translation>„%1“ existiert bereits. Möchten Sie es ersetzen?</translation>
    </message>
    <message>
        <source>A file or folder with the same name already exists on the %1. Replacing it will overwrite its current contents.</source>
        <translation>Auf %1 existiert bereits eine Datei oder ein Ordner mit demselben Namen. Beim Ersetzen wird der aktuelle Inhalt überschrieben.</translation>
    </message>
    <message>
        <source>A file or folder with the same name already exists in the folder %1. Replacing it will overwrite its current contents.</source>
        <translation>Im Ordner %1 existiert bereits eine Datei oder ein Ordner mit demselben Namen. Beim Ersetzen wird der aktuelle Inhalt überschrieben.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>The name “%1” is already taken. Please choose a different name.</source>
        <translation>Der Name „%1“ ist bereits vergeben. Bitte wählen Sie einen anderen Namen.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>RenamePatternEditor</name>
    <message>
        <source>Clear the pattern</source>
        <translation>Muster leeren</translation>
    </message>
    <message>
        <source>Renaming pattern</source>
        <translation>Umbenennungsmuster</translation>
    </message>
    <message>
        <source>Screenshot $DateYYYY$-$DateMM$-$DateDD$</source>
        <translation>Bildschirmfoto $DateYYYY$-$DateMM$-$DateDD$</translation>
    </message>
    <message>
        <source>Text and tokens; a token such as $DateYYYY$ is replaced by its value. Colons are not allowed.</source>
        <translation>Text und Elemente; ein Element wie $DateYYYY$ wird durch seinen Wert ersetzt. Doppelpunkte sind nicht erlaubt.</translation>
    </message>
    <message>
        <source>&amp;Insert Token</source>
        <translation>Element &amp;einfügen</translation>
    </message>
    <message>
        <source>Insert a token into the pattern</source>
        <translation>Ein Element in das Muster einfügen</translation>
    </message>
    <message>
        <source>Example name</source>
        <translation>Beispielname</translation>
    </message>
    <message>
        <source>&amp;Date</source>
        <translation>&amp;Datum</translation>
    </message>
    <message>
        <source>&amp;Time</source>
        <translation>&amp;Uhrzeit</translation>
    </message>
    <message>
        <source>&amp;Counter</source>
        <translation>&amp;Zähler</translation>
    </message>
    <message>
        <source>D&amp;imensions</source>
        <translation>&amp;Abmessungen</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Without a pattern, screenshots keep their names.</source>
        <translation>Ohne Muster behalten Bildschirmfotos ihre Namen.</translation>
    </message>
    <message>
        <source>Example: %1</source>
        <translation>Beispiel: %1</translation>
    </message>
</context>
<context>
    <name>SS_PrefsController</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Previous Pane</source>
        <translation>Vorheriger Bereich</translation>
    </message>
    <message>
        <source>Next Pane</source>
        <translation>Nächster Bereich</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Updates suchen …</translation>
    </message>
    <message>
        <source>Preferences are not available for %1.</source>
        <translation>Für %1 sind keine Einstellungen verfügbar.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>SUAppcast</name>
    <message>
        <source>The update feed is empty.</source>
        <translation>Der Update-Feed ist leer.</translation>
    </message>
    <message>
        <source>the document is &lt;%1&gt;, not an RSS feed</source>
        <translation>das Dokument ist &lt;%1&gt;, kein RSS-Feed</translation>
    </message>
    <message>
        <source>it holds no RSS channel</source>
        <translation>er enthält keinen RSS-Kanal</translation>
    </message>
    <message>
        <source>The update feed cannot be read: %1 (line %2).</source>
        <translation>Der Update-Feed kann nicht gelesen werden: %1 (Zeile %2).</translation>
    </message>
</context>
<context>
    <name>SUAppcastItem</name>
    <message>
        <source>The update %1 names no archive to download.</source>
        <translation>Das Update %1 nennt kein Archiv zum Laden.</translation>
    </message>
    <message>
        <source>The update at %1 gives no version.</source>
        <translation>Das Update unter %1 nennt keine Version.</translation>
    </message>
    <message>
        <source>The update %1 is not signed, so it cannot be trusted.</source>
        <translation>Das Update %1 ist nicht signiert und daher nicht vertrauenswürdig.</translation>
    </message>
</context>
<context>
    <name>SUInstaller</name>
    <message>
        <source>The update holds no application bundle with an Info.plist.</source>
        <translation>Das Update enthält kein Programmpaket mit einer Info.plist.</translation>
    </message>
    <message>
        <source>The update is for &quot;%1&quot;, not for &quot;%2&quot;.</source>
        <translation>Das Update ist für „%1“, nicht für „%2“.</translation>
    </message>
    <message>
        <source>The update holds version %1, but the feed announced version %2.</source>
        <translation>Das Update enthält Version %1, der Feed hat aber Version %2 angekündigt.</translation>
    </message>
    <message>
        <source>The update&apos;s version %1 is not newer than the installed version %2; it is not installed.</source>
        <translation>Version %1 des Updates ist nicht neuer als die installierte Version %2; sie wird nicht installiert.</translation>
    </message>
    <message>
        <source>The update&apos;s bundle has no program at %1.</source>
        <translation>Das Programmpaket des Updates hat kein Programm unter %1.</translation>
    </message>
    <message>
        <source>The installed copy at %1 cannot be moved to the Trash: %2</source>
        <translation>Die installierte Kopie unter %1 kann nicht in den Papierkorb gelegt werden: %2</translation>
    </message>
    <message>
        <source>The new version cannot be put at %1: %2</source>
        <translation>Die neue Version kann nicht unter %1 abgelegt werden: %2</translation>
    </message>
    <message>
        <source>%1 needs administrator rights to be updated, but pkexec is not installed.</source>
        <translation>%1 braucht zum Aktualisieren Administratorrechte, aber pkexec ist nicht installiert.</translation>
    </message>
    <message>
        <source>pkexec cannot be started: %1</source>
        <translation>pkexec kann nicht gestartet werden: %1</translation>
    </message>
    <message>
        <source>The update was not installed: administrator authorisation was cancelled.</source>
        <translation>Das Update wurde nicht installiert: Die Anmeldung als Administrator wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The update was not installed: you are not allowed to change %1.</source>
        <translation>Das Update wurde nicht installiert: Sie dürfen %1 nicht ändern.</translation>
    </message>
    <message>
        <source>Could not copy the new version to %1 with administrator rights.</source>
        <translation>Die neue Version konnte nicht mit Administratorrechten nach %1 kopiert werden.</translation>
    </message>
</context>
<context>
    <name>SUUpdateArchive</name>
    <message>
        <source>The update cannot be unpacked into %1: it is not an empty folder.</source>
        <translation>Das Update kann nicht in %1 entpackt werden: Dies ist kein leerer Ordner.</translation>
    </message>
    <message>
        <source>The update archive %1 cannot be opened: %2</source>
        <translation>Das Update-Archiv %1 kann nicht geöffnet werden: %2</translation>
    </message>
    <message>
        <source>The update archive %1 cannot be opened; it is damaged or no archive: %2</source>
        <translation>Das Update-Archiv %1 kann nicht geöffnet werden; es ist beschädigt oder kein Archiv: %2</translation>
    </message>
    <message>
        <source>The update archive is damaged: %1</source>
        <translation>Das Update-Archiv ist beschädigt: %1</translation>
    </message>
    <message>
        <source>The update archive is refused: its entry &quot;%1&quot; lies outside its folder.</source>
        <translation>Das Update-Archiv wird abgelehnt: Sein Eintrag „%1“ liegt außerhalb seines Ordners.</translation>
    </message>
    <message>
        <source>The update archive is refused: its entry &quot;%1&quot; is not a file, folder or link.</source>
        <translation>Das Update-Archiv wird abgelehnt: Sein Eintrag „%1“ ist weder Datei noch Ordner noch Verknüpfung.</translation>
    </message>
    <message>
        <source>The update archive is refused: its link &quot;%1&quot; points outside its folder (%2).</source>
        <translation>Das Update-Archiv wird abgelehnt: Seine Verknüpfung „%1“ zeigt aus seinem Ordner hinaus (%2).</translation>
    </message>
    <message>
        <source>The update cannot be unpacked: %1</source>
        <translation>Das Update kann nicht entpackt werden: %1</translation>
    </message>
    <message>
        <source>The update archive is empty.</source>
        <translation>Das Update-Archiv ist leer.</translation>
    </message>
    <message>
        <source>The update archive does not hold one application bundle (it holds: %1).</source>
        <translation>Das Update-Archiv enthält nicht genau ein Programmpaket (es enthält: %1).</translation>
    </message>
</context>
<context>
    <name>SUUpdater</name>
    <message>
        <source>Operating System</source>
        <translation>Betriebssystem</translation>
    </message>
    <message>
        <source>OS Version</source>
        <translation>Betriebssystemversion</translation>
    </message>
    <message>
        <source>Kernel Version</source>
        <translation>Kernel-Version</translation>
    </message>
    <message>
        <source>CPU Architecture</source>
        <translation>Prozessorarchitektur</translation>
    </message>
    <message>
        <source>Number of CPUs</source>
        <translation>Anzahl der Prozessoren</translation>
    </message>
    <message>
        <source>Preferred Language</source>
        <translation>Bevorzugte Sprache</translation>
    </message>
    <message>
        <source>Application Name</source>
        <translation>Programmname</translation>
    </message>
    <message>
        <source>Application Version</source>
        <translation>Programmversion</translation>
    </message>
    <message>
        <source>No update feed is set: Info.plist and the preferences name no valid &quot;SUFeedURL&quot;.</source>
        <translation>Kein Update-Feed festgelegt: Info.plist und die Einstellungen nennen keine gültige „SUFeedURL“.</translation>
    </message>
    <message>
        <source>The update feed lists no release with a version.</source>
        <translation>Der Update-Feed nennt keine Version mit einer Versionsnummer.</translation>
    </message>
    <message>
        <source>Corvex was installed with the package &quot;%1&quot;. Update it with your system&apos;s package manager (for example &quot;sudo apt update &amp;&amp; sudo apt upgrade&quot;).</source>
        <translation>Corvex wurde mit dem Paket „%1“ installiert. Aktualisieren Sie es mit der Paketverwaltung Ihres Systems (zum Beispiel „sudo apt update &amp;&amp; sudo apt upgrade“).</translation>
    </message>
    <message>
        <source>No folder for the download can be made in %1: %2</source>
        <translation>In %1 kann kein Ordner für den Download angelegt werden: %2</translation>
    </message>
    <message>
        <source>This copy of Corvex has no valid public key (&quot;SUPublicEDKey&quot;) to check updates with: %1</source>
        <translation>Diese Kopie von Corvex hat keinen gültigen öffentlichen Schlüssel („SUPublicEDKey“), um Updates zu prüfen: %1</translation>
    </message>
    <message>
        <source>No folder to unpack the update into can be made in %1: %2</source>
        <translation>In %1 kann kein Ordner zum Entpacken des Updates angelegt werden: %2</translation>
    </message>
</context>
<context>
    <name>UpdateScheduler</name>
    <message>
        <source>A new version of Corvex is available</source>
        <translation>Eine neue Version von Corvex ist verfügbar</translation>
    </message>
    <message>
        <source>Corvex %1 is now available—you have %2.</source>
        <translation>Corvex %1 ist jetzt verfügbar – Sie haben %2.</translation>
    </message>
    <message>
        <source>Show Update</source>
        <translation>Update zeigen</translation>
    </message>
</context>
<context>
    <name>UpdateStatusWindow</name>
    <message>
        <source>Software Update</source>
        <translation>Softwareaktualisierung</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>Suche nach Updates …</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>You&apos;re up to date!</source>
        <translation>Sie sind auf dem neuesten Stand!</translation>
    </message>
    <message>
        <source>Corvex %1 is currently the newest version available.</source>
        <translation>Corvex %1 ist derzeit die neueste verfügbare Version.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Update Error!</source>
        <translation>Update-Fehler!</translation>
    </message>
</context>
<context>
    <name>UpdateUserDriver</name>
    <message>
        <source>Verifying update…</source>
        <translation>Update wird überprüft …</translation>
    </message>
    <message>
        <source>Extracting update…</source>
        <translation>Update wird entpackt …</translation>
    </message>
    <message>
        <source>Installing update…</source>
        <translation>Update wird installiert …</translation>
    </message>
    <message>
        <source>Restarting Corvex…</source>
        <translation>Corvex wird neu gestartet …</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>Softwareaktualisierung</translation>
    </message>
    <message>
        <source>Check for updates automatically?</source>
        <translation>Automatisch nach Updates suchen?</translation>
    </message>
    <message>
        <source>Should Corvex automatically check for updates once a day? You can always check for updates manually from the Help menu or in the preferences.</source>
        <translation>Soll Corvex einmal am Tag automatisch nach Updates suchen? Sie können jederzeit im Hilfe-Menü oder in den Einstellungen von Hand nach Updates suchen.</translation>
    </message>
    <message>
        <source>Include anonymous system profile</source>
        <translation>Anonymes Systemprofil mitsenden</translation>
    </message>
    <message>
        <source>Sends the versions of Corvex and of the system, the processor type, the language and the graphics card with each check. No personal information is sent.</source>
        <translation>Sendet bei jeder Suche die Versionen von Corvex und des Systems, den Prozessortyp, die Sprache und die Grafikkarte. Es werden keine persönlichen Daten gesendet.</translation>
    </message>
    <message>
        <source>Check Automatically</source>
        <translation>Automatisch suchen</translation>
    </message>
    <message>
        <source>Don&apos;t Check</source>
        <translation>Nicht suchen</translation>
    </message>
</context>
<context>
    <name>UpdateWindowController</name>
    <message>
        <source>Software Update</source>
        <translation>Softwareaktualisierung</translation>
    </message>
    <message>
        <source>A new version of Corvex is available!</source>
        <translation>Eine neue Version von Corvex ist verfügbar!</translation>
    </message>
    <message>
        <source>Corvex %1 is now available—you have %2. Would you like to download it now?</source>
        <translation>Corvex %1 ist jetzt verfügbar – Sie haben %2. Möchten Sie es jetzt laden?</translation>
    </message>
    <message>
        <source>Release Notes:</source>
        <translation>Versionshinweise:</translation>
    </message>
    <message>
        <source>&lt;p&gt;The release notes are on the web: &lt;a href=&quot;%1&quot;&gt;%2&lt;/a&gt;&lt;/p&gt;</source>
        <translation>&lt;p&gt;Die Versionshinweise stehen im Web: &lt;a href=&quot;%1&quot;&gt;%2&lt;/a&gt;&lt;/p&gt;</translation>
    </message>
    <message>
        <source>No release notes were published with this version.</source>
        <translation>Zu dieser Version wurden keine Versionshinweise veröffentlicht.</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Diese Version überspringen</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Später erinnern</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>Update installieren</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Downloading update… %1 of %2</source>
        <translation>Update wird geladen … %1 von %2</translation>
    </message>
    <message>
        <source>Downloading update… %1</source>
        <translation>Update wird geladen … %1</translation>
    </message>
</context>
<context>
    <name>UpdatesPane</name>
    <message>
        <source>Updates</source>
        <translation>Updates</translation>
    </message>
    <message>
        <source>Checking for new versions of Corvex</source>
        <translation>Nach neuen Versionen von Corvex suchen</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Nie</translation>
    </message>
    <message>
        <source>&amp;Check for updates automatically</source>
        <translation>&amp;Automatisch nach Updates suchen</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Automatisch nach Updates suchen</translation>
    </message>
    <message>
        <source>The agent looks for a new version once a day.</source>
        <translation>Der Agent sucht einmal am Tag nach einer neuen Version.</translation>
    </message>
    <message>
        <source>Check &amp;Now</source>
        <translation>&amp;Jetzt suchen</translation>
    </message>
    <message>
        <source>Check for updates now</source>
        <translation>Jetzt nach Updates suchen</translation>
    </message>
    <message>
        <source>Corvex cannot check for updates from here.</source>
        <translation>Corvex kann von hier aus nicht nach Updates suchen.</translation>
    </message>
    <message>
        <source>Updates:</source>
        <translation>Updates:</translation>
    </message>
    <message>
        <source>Last checked:</source>
        <translation>Zuletzt gesucht:</translation>
    </message>
    <message>
        <source>Looks for a new version of Corvex now.</source>
        <translation>Sucht jetzt nach einer neuen Version von Corvex.</translation>
    </message>
</context>
<context>
    <name>UserConsentPanelController</name>
    <message>
        <source>Corvex</source>
        <translation>Corvex</translation>
    </message>
    <message>
        <source>&lt;b&gt;Start Corvex when you log in?&lt;/b&gt;</source>
        <translation>&lt;b&gt;Corvex beim Anmelden starten?&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Corvex notices new screenshots with a small helper that runs in the background. It can start by itself each time you log in, so that no screenshot is missed. You can change this later in the preferences.</source>
        <translation>Corvex bemerkt neue Bildschirmfotos mit einem kleinen Helfer, der im Hintergrund läuft. Er kann bei jeder Anmeldung von selbst starten, sodass kein Bildschirmfoto verpasst wird. Sie können dies später in den Einstellungen ändern.</translation>
    </message>
    <message>
        <source>Start Corvex at log in</source>
        <translation>Corvex beim Anmelden starten</translation>
    </message>
</context>
<context>
    <name>WelcomeWindow</name>
    <message>
        <source>Welcome to Corvex</source>
        <translation>Willkommen bei Corvex</translation>
    </message>
    <message>
        <source>Every screenshot named and filed the moment you take it.</source>
        <translation>Jedes Bildschirmfoto benannt und abgelegt, sobald Sie es aufnehmen.</translation>
    </message>
</context>
<context>
    <name>WhereMenu</name>
    <message>
        <source>Screenshot’s Folder</source>
        <translation>Ordner des Bildschirmfotos</translation>
    </message>
    <message>
        <source>Other…</source>
        <translation>Andere …</translation>
    </message>
    <message>
        <source>Add to Favourites</source>
        <translation>Zu Favoriten hinzufügen</translation>
    </message>
    <message>
        <source>Edit Favourites…</source>
        <translation>Favoriten bearbeiten …</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Favoriten</translation>
    </message>
</context>
<context>
    <name>downloader</name>
    <message>
        <source>The update cannot be saved to %1: %2</source>
        <translation>Das Update kann nicht unter %1 gesichert werden: %2</translation>
    </message>
    <message>
        <source>The update download is larger than the %1 bytes the feed announced; it was stopped.</source>
        <translation>Der Update-Download ist größer als die %1 Bytes, die der Feed angekündigt hat; er wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The server sent more than %1 bytes; the download was stopped.</source>
        <translation>Der Server hat mehr als %1 Bytes gesendet; der Download wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The download was cancelled.</source>
        <translation>Der Download wurde abgebrochen.</translation>
    </message>
    <message>
        <source>The server %1 answered %2 %3 for %4.</source>
        <translation>Der Server %1 antwortete %2 %3 für %4.</translation>
    </message>
    <message>
        <source>%1 cannot be reached: %2</source>
        <translation>%1 ist nicht erreichbar: %2</translation>
    </message>
    <message>
        <source>The update download ended after %1 of the %2 bytes the feed announced.</source>
        <translation>Der Update-Download endete nach %1 der %2 Bytes, die der Feed angekündigt hat.</translation>
    </message>
    <message>
        <source>The download ended after %1 of the %2 bytes the server announced.</source>
        <translation>Der Download endete nach %1 der %2 Bytes, die der Server angekündigt hat.</translation>
    </message>
</context>
<context>
    <name>signature</name>
    <message>
        <source>No public key is given to check the update&apos;s signature with.</source>
        <translation>Es ist kein öffentlicher Schlüssel angegeben, mit dem die Signatur des Updates geprüft werden kann.</translation>
    </message>
    <message>
        <source>The public key is not an Ed25519 public key in PEM form.</source>
        <translation>Der öffentliche Schlüssel ist kein öffentlicher Ed25519-Schlüssel im PEM-Format.</translation>
    </message>
    <message>
        <source>The public key is not the base64 of 32 bytes.</source>
        <translation>Der öffentliche Schlüssel ist nicht das Base64 von 32 Bytes.</translation>
    </message>
    <message>
        <source>The archive %1 cannot be read: %2</source>
        <translation>Das Archiv %1 kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>The update&apos;s signature is not the base64 of a 64-byte Ed25519 signature.</source>
        <translation>Die Signatur des Updates ist nicht das Base64 einer 64 Byte langen Ed25519-Signatur.</translation>
    </message>
    <message>
        <source>The public key cannot be used by OpenSSL.</source>
        <translation>Der öffentliche Schlüssel kann von OpenSSL nicht verwendet werden.</translation>
    </message>
    <message>
        <source>The update&apos;s signature does not match the archive: it is damaged or was not made by Corvex&apos;s developers.</source>
        <translation>Die Signatur des Updates passt nicht zum Archiv: Es ist beschädigt oder stammt nicht von den Entwicklern von Corvex.</translation>
    </message>
</context>
<context>
    <name>updatearchive</name>
    <message>
        <source>unknown error</source>
        <translation>unbekannter Fehler</translation>
    </message>
</context>
</TS>
