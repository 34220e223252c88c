<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>ChangeTexts</name>
    <message>
        <source>point</source>
        <translation>Punkt</translation>
    </message>
    <message>
        <source>sub point</source>
        <translation>Unterpunkt</translation>
    </message>
    <message>
        <source>records of</source>
        <translation>Datensätze von</translation>
    </message>
    <message>
        <source>choice</source>
        <translation>Auswahlwert</translation>
    </message>
    <message>
        <source>attribute</source>
        <translation>Attribut</translation>
    </message>
    <message numerus="yes">
        <source>%n items</source>
        <translation>
            <numerusform>%n Element</numerusform>
            <numerusform>%n Elemente</numerusform>
        </translation>
    </message>
    <message>
        <source>Deleted %1</source>
        <translation>Gelöscht: %1</translation>
    </message>
    <message>
        <source>Deleted %1 with one entry</source>
        <translation>Gelöscht: %1 mit einem Eintrag</translation>
    </message>
    <message numerus="yes">
        <source>Deleted %1 with %n entries</source>
        <translation>
            <numerusform>Gelöscht: %1 mit %n Eintrag</numerusform>
            <numerusform>Gelöscht: %1 mit %n Einträgen</numerusform>
        </translation>
    </message>
    <message>
        <source>Added %1</source>
        <translation>Hinzugefügt: %1</translation>
    </message>
    <message>
        <source>Moved %1</source>
        <translation>Verschoben: %1</translation>
    </message>
    <message>
        <source>Changed &apos;%1&apos; of %2</source>
        <translation>Geändert: „%1“ von %2</translation>
    </message>
    <message>
        <source>plug-in</source>
        <translation>Plug-in</translation>
    </message>
</context>
<context>
    <name>Core::AboutPluginsDialog</name>
    <message>
        <source>Not loaded</source>
        <translation>Nicht geladen</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>Läuft</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Beendet</translation>
    </message>
    <message>
        <source>Found</source>
        <translation>Gefunden</translation>
    </message>
    <message>
        <source>About Plug-ins</source>
        <translation>Über die Plug-ins</translation>
    </message>
    <message>
        <source>Plug-ins</source>
        <translation>Plug-ins</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>These could not be loaded:</source>
        <translation>Diese konnten nicht geladen werden:</translation>
    </message>
</context>
<context>
    <name>Core::BusyIndicator</name>
    <message>
        <source>Reading plug-ins…</source>
        <translation>Plug-ins werden gelesen …</translation>
    </message>
</context>
<context>
    <name>Core::EditorManager</name>
    <message>
        <source>line %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
    <message>
        <source>line %1, column %2: %3</source>
        <translation>Zeile %1, Spalte %2: %3</translation>
    </message>
    <message>
        <source>The content of the file cannot be parsed.</source>
        <translation>Der Inhalt der Datei kann nicht ausgewertet werden.</translation>
    </message>
    <message>
        <source>The saved file has no content but its XML declaration. It will not open again.</source>
        <translation>Die gespeicherte Datei enthält nur ihre XML-Deklaration. Sie lässt sich nicht wieder öffnen.</translation>
    </message>
    <message>
        <source>The saved file is damaged (line %1, column %2: %3). It will not open again.</source>
        <translation>Die gespeicherte Datei ist beschädigt (Zeile %1, Spalte %2: %3). Sie lässt sich nicht wieder öffnen.</translation>
    </message>
    <message>
        <source>No plug-in edits files of this kind (%1).</source>
        <translation>Kein Plug-in bearbeitet Dateien dieser Art (%1).</translation>
    </message>
    <message>
        <source>The plug-in for this kind of file made no editor.</source>
        <translation>Das Plug-in für diese Art von Datei hat keinen Editor erstellt.</translation>
    </message>
    <message>
        <source>The file is still being read or written.</source>
        <translation>Die Datei wird noch gelesen oder geschrieben.</translation>
    </message>
</context>
<context>
    <name>Core::FileCare</name>
    <message>
        <source>&amp;Restore</source>
        <translation>&amp;Wiederherstellen</translation>
    </message>
    <message>
        <source>D&amp;iscard</source>
        <translation>&amp;Verwerfen</translation>
    </message>
    <message>
        <source>Re&amp;load</source>
        <translation>&amp;Neu laden</translation>
    </message>
    <message>
        <source>%1 is no longer on the disk. Saving writes it again.</source>
        <translation>%1 ist nicht mehr auf dem Datenträger. Speichern schreibt die Datei erneut.</translation>
    </message>
    <message>
        <source>%1 was changed by another program, and you have unsaved changes. Reloading gives yours up; keeping them lets the next save replace what the other program wrote.</source>
        <translation>%1 wurde von einem anderen Programm geändert, und es gibt nicht gespeicherte Änderungen. Neu laden verwirft die eigenen; behalten lässt das nächste Speichern ersetzen, was das andere Programm geschrieben hat.</translation>
    </message>
    <message>
        <source>%1 was changed by another program, and can&apos;t be read as it is now: %2</source>
        <translation>%1 wurde von einem anderen Programm geändert und kann so nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>&amp;Keep Mine</source>
        <translation>&amp;Meine behalten</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>The workbench ended with unsaved changes to this file. They were kept on %1.</source>
        <translation>Die Workbench endete mit nicht gespeicherten Änderungen an dieser Datei. Sie wurden am %1 aufbewahrt.</translation>
    </message>
    <message>
        <source>It was %1 then.</source>
        <translation>Damals hieß sie %1.</translation>
    </message>
    <message>
        <source>The file itself is no longer there.</source>
        <translation>Die Datei selbst gibt es nicht mehr.</translation>
    </message>
    <message>
        <source>The file itself was changed since: saving after a restore replaces what was written then.</source>
        <translation>Die Datei selbst wurde seither geändert: Speichern nach dem Wiederherstellen ersetzt, was dabei geschrieben wurde.</translation>
    </message>
</context>
<context>
    <name>Core::FileSaving</name>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <translation>
            <numerusform>%1 und %n weiteres</numerusform>
            <numerusform>%1 und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>Save &amp;Without Them</source>
        <translation>Speichern &amp;ohne sie</translation>
    </message>
    <message>
        <source>&amp;Cancel Saving</source>
        <translation>Speichern abbre&amp;chen</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
    <message>
        <source>Saving waits for the plug-ins that are still being read: %1. Without them it is not known which texts of theirs are translatable.</source>
        <translation>Das Speichern wartet auf Plug-ins, die noch gelesen werden: %1. Ohne sie ist nicht bekannt, welche ihrer Texte übersetzbar sind.</translation>
    </message>
    <message>
        <source>The file is saved as soon as the other plug-ins have been read.</source>
        <translation>Die Datei wird gespeichert, sobald die anderen Plug-ins gelesen sind.</translation>
    </message>
    <message>
        <source>Not saved: %1 was changed by another program</source>
        <translation>Nicht gespeichert: %1 wurde von einem anderen Programm geändert</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>&amp;Save Anyway</source>
        <translation>&amp;Trotzdem speichern</translation>
    </message>
    <message>
        <source>The file could not be saved.</source>
        <translation>Die Datei konnte nicht gespeichert werden.</translation>
    </message>
    <message>
        <source>The file was saved, but it will not open again.</source>
        <translation>Die Datei wurde gespeichert, lässt sich aber nicht wieder öffnen.</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>%1 gespeichert</translation>
    </message>
    <message>
        <source>What the last save changed beside</source>
        <translation>Was das letzte Speichern außerdem geändert hat</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Speichern unter</translation>
    </message>
    <message>
        <source>A file keeps its name and its place: &quot;%1&quot; is what every plug-in calls it, and its directory says whose it is.</source>
        <translation>Eine Datei behält ihren Namen und ihren Ort: „%1“ heißt sie in jedem Plug-in, und ihr Verzeichnis sagt, zu welchem sie gehört.</translation>
    </message>
    <message>
        <source>To begin a plug-in from this one, save it, copy its directory
%1
under another name beside it, and change the id in the copy before you open it. An empty plug-in is made with File &gt; New.</source>
        <translation>Um aus diesem Plug-in ein neues zu machen: speichern, sein Verzeichnis
%1
unter einem anderen Namen daneben kopieren und die Id in der Kopie ändern, bevor sie geöffnet wird. Ein leeres Plug-in entsteht mit Datei &gt; Neu.</translation>
    </message>
    <message>
        <source>ExtPoint Workbench</source>
        <translation>ExtPoint Workbench</translation>
    </message>
    <message>
        <source>%1, and not everything as it was: one remark</source>
        <translation>%1, und nicht alles, wie es war: eine Anmerkung</translation>
    </message>
    <message numerus="yes">
        <source>%1, and not everything as it was: %n remarks</source>
        <translation>
            <numerusform>%1, und nicht alles, wie es war: %n Anmerkung</numerusform>
            <numerusform>%1, und nicht alles, wie es war: %n Anmerkungen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Core::FileStamp</name>
    <message>
        <source>The file is a link to something that does not exist.</source>
        <translation>Die Datei ist eine Verknüpfung mit etwas, das es nicht gibt.</translation>
    </message>
    <message>
        <source>The name of the file, or of a directory above it, is not in the encoding of the system.</source>
        <translation>Der Name der Datei oder eines Verzeichnisses darüber ist nicht in der Zeichenkodierung des Systems.</translation>
    </message>
    <message>
        <source>The file does not exist.</source>
        <translation>Die Datei gibt es nicht.</translation>
    </message>
    <message>
        <source>The file cannot be reached: %1.</source>
        <translation>Die Datei ist nicht erreichbar: %1.</translation>
    </message>
    <message>
        <source>This is a directory, not a file.</source>
        <translation>Das ist ein Verzeichnis, keine Datei.</translation>
    </message>
    <message>
        <source>This is not a regular file.</source>
        <translation>Das ist keine gewöhnliche Datei.</translation>
    </message>
    <message>
        <source>The file cannot be read: %1.</source>
        <translation>Die Datei kann nicht gelesen werden: %1.</translation>
    </message>
    <message>
        <source>The directory of the file does not exist.</source>
        <translation>Das Verzeichnis der Datei gibt es nicht.</translation>
    </message>
    <message>
        <source>The file cannot be written: %1.</source>
        <translation>Die Datei kann nicht geschrieben werden: %1.</translation>
    </message>
    <message>
        <source>The file cannot be written: this process may write no more than %1 bytes to a file.</source>
        <translation>Die Datei kann nicht geschrieben werden: Dieser Prozess darf höchstens %1 Bytes in eine Datei schreiben.</translation>
    </message>
    <message>
        <source>The directory of the file cannot be written: %1.</source>
        <translation>In das Verzeichnis der Datei kann nicht geschrieben werden: %1.</translation>
    </message>
    <message>
        <source>The file on disk was not changed.</source>
        <translation>Die Datei auf dem Datenträger wurde nicht geändert.</translation>
    </message>
</context>
<context>
    <name>Core::FindDock</name>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Id, name or text, of all plug-ins</source>
        <translation>Id, Name oder Text, in allen Plug-ins</translation>
    </message>
    <message>
        <source>Find in the product</source>
        <translation>Im Produkt suchen</translation>
    </message>
    <message>
        <source>What was found</source>
        <translation>Gefundenes</translation>
    </message>
    <message>
        <source>What</source>
        <translation>Was</translation>
    </message>
    <message>
        <source>Id</source>
        <translation>Id</translation>
    </message>
    <message>
        <source>Label</source>
        <translation>Beschriftung</translation>
    </message>
    <message>
        <source>Plug-in</source>
        <translation>Plug-in</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>Find in &amp;Product…</source>
        <translation>Im &amp;Produkt suchen …</translation>
    </message>
    <message>
        <source>%1 of %2, go on typing</source>
        <translation>%1 von %2, bitte weitertippen</translation>
    </message>
    <message>
        <source>%1 found</source>
        <translation>%1 gefunden</translation>
    </message>
    <message>
        <source>It is no longer there</source>
        <translation>Das gibt es nicht mehr</translation>
    </message>
</context>
<context>
    <name>Core::GuideWindow</name>
    <message>
        <source>User Guide</source>
        <translation>Benutzerhandbuch</translation>
    </message>
    <message>
        <source>The guide can&apos;t be read. It should be in %1.</source>
        <translation>Das Handbuch kann nicht gelesen werden. Es sollte in %1 liegen.</translation>
    </message>
    <message>
        <source>&amp;User Guide</source>
        <translation>&amp;Benutzerhandbuch</translation>
    </message>
    <message>
        <source>&amp;Keyboard Shortcuts</source>
        <translation>&amp;Tastenkürzel</translation>
    </message>
</context>
<context>
    <name>Core::LogDock</name>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Nothing was logged.</source>
        <translation>Es wurde nichts protokolliert.</translation>
    </message>
</context>
<context>
    <name>Core::MainWindow</name>
    <message>
        <source>%1 was read again: another program has changed it</source>
        <translation>%1 wurde neu gelesen: Ein anderes Programm hat die Datei geändert</translation>
    </message>
    <message>
        <source>Restore the changes that were kept? What was changed since the file was opened is lost.</source>
        <translation>Die aufbewahrten Änderungen wiederherstellen? Was seit dem Öffnen der Datei geändert wurde, geht verloren.</translation>
    </message>
    <message>
        <source>&amp;Restore</source>
        <translation>&amp;Wiederherstellen</translation>
    </message>
    <message>
        <source>The changes could not be restored.</source>
        <translation>Die Änderungen konnten nicht wiederhergestellt werden.</translation>
    </message>
    <message>
        <source>%1 is not what the kept changes were made to. Open them in its place? Saving replaces the file then.</source>
        <translation>%1 ist nicht das, woran die aufbewahrten Änderungen gemacht wurden. Sie stattdessen öffnen? Speichern ersetzt dann die Datei.</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>No recovery copy can be written: %1</source>
        <translation>Es kann keine Sicherungskopie geschrieben werden: %1</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;New…</source>
        <translation>&amp;Neu …</translation>
    </message>
    <message>
        <source>&amp;Open…</source>
        <translation>Ö&amp;ffnen …</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>Recovered &amp;Files…</source>
        <translation>&amp;Wiederhergestellte Dateien …</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;As…</source>
        <translation>Speichern &amp;unter …</translation>
    </message>
    <message>
        <source>Re&amp;vert to Saved</source>
        <translation>Gespeichertes &amp;laden</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>E&amp;dit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>About &amp;Plug-ins…</source>
        <translation>Über die &amp;Plug-ins …</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>&amp;Über</translation>
    </message>
    <message>
        <source>A plug-in could not be loaded</source>
        <translation>Ein Plug-in konnte nicht geladen werden</translation>
    </message>
    <message>
        <source>No second window could be started for the file.</source>
        <translation>Für die Datei konnte kein zweites Fenster gestartet werden.</translation>
    </message>
    <message>
        <source>The file could not be opened.</source>
        <translation>Die Datei konnte nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>Open a File</source>
        <translation>Datei öffnen</translation>
    </message>
    <message>
        <source>Extension files (extension.xml)</source>
        <translation>Erweiterungsdateien (extension.xml)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Clear Menu</source>
        <translation>Menü leeren</translation>
    </message>
    <message>
        <source>The file could not be read again.</source>
        <translation>Die Datei konnte nicht neu gelesen werden.</translation>
    </message>
    <message>
        <source>Revert to the file on disk? What was changed since the last save is lost.</source>
        <translation>Zur Datei auf dem Datenträger zurückkehren? Was seit dem letzten Speichern geändert wurde, geht verloren.</translation>
    </message>
    <message>
        <source>&amp;Revert</source>
        <translation>&amp;Zurückkehren</translation>
    </message>
    <message>
        <source>Unsaved Changes</source>
        <translation>Nicht gespeicherte Änderungen</translation>
    </message>
    <message>
        <source>Save the changes to %1 before closing it?</source>
        <translation>Die Änderungen an %1 vor dem Schließen speichern?</translation>
    </message>
    <message>
        <source>ExtPoint Workbench</source>
        <translation>ExtPoint Workbench</translation>
    </message>
    <message>
        <source>%1[*] — %2 — ExtPoint Workbench</source>
        <translation>%1[*] — %2 — ExtPoint Workbench</translation>
    </message>
    <message>
        <source>About ExtPoint Workbench</source>
        <translation>Über ExtPoint Workbench</translation>
    </message>
    <message>
        <source>ExtPoint Workbench %1</source>
        <translation>ExtPoint Workbench %1</translation>
    </message>
    <message>
        <source>A small host for editor plug-ins. It opens one file per window.</source>
        <translation>Ein kleines Programm, das Editor-Plug-ins aufnimmt. Es öffnet eine Datei je Fenster.</translation>
    </message>
    <message numerus="yes">
        <source>%n plug-ins could not be loaded</source>
        <translation>
            <numerusform>%n Plug-in konnte nicht geladen werden</numerusform>
            <numerusform>%n Plug-ins konnten nicht geladen werden</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Core::NewFile</name>
    <message>
        <source>A plug-in needs an id.</source>
        <translation>Ein Plug-in braucht eine Id.</translation>
    </message>
    <message>
        <source>An id is made of letters, digits, &quot;_&quot; and &quot;-&quot;, in parts divided by dots; a letter comes first.</source>
        <translation>Eine Id besteht aus Buchstaben, Ziffern, „_“ und „-“, in Teilen, die Punkte trennen; ein Buchstabe steht am Anfang.</translation>
    </message>
    <message>
        <source>A plug-in needs a name.</source>
        <translation>Ein Plug-in braucht einen Namen.</translation>
    </message>
    <message>
        <source>The name or the vendor holds a character that a file can&apos;t hold.</source>
        <translation>Der Name oder der Hersteller enthält ein Zeichen, das eine Datei nicht aufnehmen kann.</translation>
    </message>
    <message>
        <source>There is no such directory of plug-ins.</source>
        <translation>Ein solches Verzeichnis mit Plug-ins gibt es nicht.</translation>
    </message>
    <message>
        <source>The plug-in needs a directory name, without &quot;/&quot; and with no dot at the beginning.</source>
        <translation>Das Plug-in braucht einen Verzeichnisnamen ohne „/“ und ohne Punkt am Anfang.</translation>
    </message>
    <message>
        <source>%1 is there already.</source>
        <translation>%1 gibt es schon.</translation>
    </message>
    <message>
        <source>The directory %1 can&apos;t be made.</source>
        <translation>Das Verzeichnis %1 kann nicht angelegt werden.</translation>
    </message>
    <message>
        <source>%1 can&apos;t be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>Core::NewFileDialog</name>
    <message>
        <source>New Extension File</source>
        <translation>Neue Erweiterungsdatei</translation>
    </message>
    <message>
        <source>&amp;Id:</source>
        <translation>&amp;Id:</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>&amp;Vendor:</source>
        <translation>&amp;Hersteller:</translation>
    </message>
    <message>
        <source>May be left out</source>
        <translation>Kann frei bleiben</translation>
    </message>
    <message>
        <source>&amp;Plug-ins in:</source>
        <translation>&amp;Plug-ins in:</translation>
    </message>
    <message>
        <source>&amp;Directory:</source>
        <translation>&amp;Verzeichnis:</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Durchsuchen</translation>
    </message>
    <message>
        <source>Browse for the directory of plug-ins</source>
        <translation>Verzeichnis der Plug-ins suchen</translation>
    </message>
    <message>
        <source>C&amp;reate</source>
        <translation>&amp;Erstellen</translation>
    </message>
    <message>
        <source>Directory of Plug-ins</source>
        <translation>Verzeichnis der Plug-ins</translation>
    </message>
    <message>
        <source>The plug-in in &quot;%1&quot; has this id already.
%2</source>
        <translation>Das Plug-in in „%1“ hat diese Id schon.
%2</translation>
    </message>
</context>
<context>
    <name>Core::OneWindowPerFile</name>
    <message>
        <source>%1 is open in another window</source>
        <translation>%1 ist in einem anderen Fenster geöffnet</translation>
    </message>
    <message>
        <source>This file has a second window now: another one has it open, but does not answer.</source>
        <translation>Diese Datei hat jetzt ein zweites Fenster: In einem anderen ist sie geöffnet, aber es antwortet nicht.</translation>
    </message>
    <message>
        <source>What is saved in one of them is not in the other one until that reads the file again.</source>
        <translation>Was in einem gespeichert wird, ist im anderen erst zu sehen, wenn es die Datei neu liest.</translation>
    </message>
</context>
<context>
    <name>Core::ProblemsDock</name>
    <message>
        <source>Problems</source>
        <translation>Probleme</translation>
    </message>
    <message>
        <source>Problems of the opened file</source>
        <translation>Probleme der geöffneten Datei</translation>
    </message>
    <message>
        <source>Problem</source>
        <translation>Problem</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>Show the list of problems</source>
        <translation>Liste der Probleme zeigen</translation>
    </message>
    <message>
        <source>1 problem</source>
        <translation>1 Problem</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message numerus="yes">
        <source>%n problems</source>
        <translation>
            <numerusform>%n Problem</numerusform>
            <numerusform>%n Probleme</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n more are not listed</source>
        <translation>
            <numerusform>%n weiteres ist nicht aufgeführt</numerusform>
            <numerusform>%n weitere sind nicht aufgeführt</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Core::RecoveredFilesDialog</name>
    <message>
        <source>Unknown file</source>
        <translation>Unbekannte Datei</translation>
    </message>
    <message>
        <source>This copy is damaged and can&apos;t be opened. It is kept as %1.</source>
        <translation>Diese Kopie ist beschädigt und kann nicht geöffnet werden. Sie bleibt als %1 erhalten.</translation>
    </message>
    <message>
        <source>This copy doesn&apos;t tell which file it is of.</source>
        <translation>Diese Kopie sagt nicht, von welcher Datei sie ist.</translation>
    </message>
    <message>
        <source>The file is no longer there. If it was moved, or a directory above it renamed, open the copy for the file in its new place; otherwise saving writes it again.</source>
        <translation>Die Datei gibt es nicht mehr. Wurde sie verschoben oder ein Verzeichnis darüber umbenannt, die Kopie für die Datei an ihrem neuen Ort öffnen; sonst schreibt Speichern sie erneut.</translation>
    </message>
    <message>
        <source>The file was changed since. Saving the opened copy replaces what was written then.</source>
        <translation>Die Datei wurde seither geändert. Speichern der geöffneten Kopie ersetzt, was dabei geschrieben wurde.</translation>
    </message>
    <message>
        <source>The file is as it was before these changes.</source>
        <translation>Die Datei ist, wie sie vor diesen Änderungen war.</translation>
    </message>
    <message>
        <source>Recovered Files</source>
        <translation>Wiederhergestellte Dateien</translation>
    </message>
    <message>
        <source>&amp;Unsaved changes that were kept when the workbench ended unexpectedly. They stay here until they are saved or discarded.</source>
        <translation>&amp;Nicht gespeicherte Änderungen, die aufbewahrt wurden, als die Workbench unerwartet endete. Sie bleiben hier, bis sie gespeichert oder verworfen sind.</translation>
    </message>
    <message>
        <source>Recovered files</source>
        <translation>Wiederhergestellte Dateien</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Directory</source>
        <translation>Verzeichnis</translation>
    </message>
    <message>
        <source>Kept on</source>
        <translation>Aufbewahrt am</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Open &amp;for Another File…</source>
        <translation>Für eine &amp;andere Datei öffnen …</translation>
    </message>
    <message>
        <source>&amp;Discard…</source>
        <translation>&amp;Verwerfen …</translation>
    </message>
    <message>
        <source>%1 (damaged)</source>
        <translation>%1 (beschädigt)</translation>
    </message>
    <message>
        <source>Nothing is kept.</source>
        <translation>Nichts ist aufbewahrt.</translation>
    </message>
    <message>
        <source>Open the Copy for a File</source>
        <translation>Kopie für eine Datei öffnen</translation>
    </message>
    <message>
        <source>Discard the changes to %1 that were kept on %2? They can&apos;t be brought back.</source>
        <translation>Die Änderungen an %1 verwerfen, die am %2 aufbewahrt wurden? Sie können nicht zurückgeholt werden.</translation>
    </message>
</context>
<context>
    <name>Core::StartupJob</name>
    <message>
        <source>The file was changed by another program while the product was read.</source>
        <translation>Die Datei wurde von einem anderen Programm geändert, während das Produkt gelesen wurde.</translation>
    </message>
    <message>
        <source>the window has no picture</source>
        <translation>das Fenster hat kein Bild</translation>
    </message>
    <message>
        <source>%1 is not in the encoding of the system</source>
        <translation>%1 ist nicht in der Zeichenkodierung des Systems</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>Core::UndoHistory</name>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Undone: %1</source>
        <translation>Rückgängig gemacht: %1</translation>
    </message>
    <message>
        <source>Done again: %1</source>
        <translation>Wiederholt: %1</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Undo: %1</source>
        <translation>&amp;Rückgängig: %1</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>&amp;Redo: %1</source>
        <translation>&amp;Wiederholen: %1</translation>
    </message>
</context>
<context>
    <name>Core::WelcomePage</name>
    <message>
        <source>Welcome</source>
        <translation>Willkommen</translation>
    </message>
    <message>
        <source>ExtPoint Workbench</source>
        <translation>ExtPoint Workbench</translation>
    </message>
    <message>
        <source>Open the &quot;extension.xml&quot; of a plug-in to edit the extension points that it declares and the data that it gives to those of other plug-ins. The other plug-ins of the product are read from the directories beside it.</source>
        <translation>Die „extension.xml“ eines Plug-ins öffnen, um die Erweiterungspunkte zu bearbeiten, die es deklariert, und die Daten, die es denen anderer Plug-ins gibt. Die anderen Plug-ins des Produkts werden aus den Verzeichnissen daneben gelesen.</translation>
    </message>
    <message>
        <source>&amp;Open a File…</source>
        <translation>Datei ö&amp;ffnen …</translation>
    </message>
    <message>
        <source>… or drop a file on this window.</source>
        <translation>… oder eine Datei auf dieses Fenster ziehen.</translation>
    </message>
    <message>
        <source>Recovered Files…</source>
        <translation>Wiederhergestellte Dateien …</translation>
    </message>
    <message>
        <source>The workbench ended with unsaved changes to a file. They were kept.</source>
        <translation>Die Workbench endete mit nicht gespeicherten Änderungen an einer Datei. Sie wurden aufbewahrt.</translation>
    </message>
    <message>
        <source>Opened last:</source>
        <translation>Zuletzt geöffnet:</translation>
    </message>
    <message numerus="yes">
        <source>The workbench ended with unsaved changes to files. %n copies were kept.</source>
        <translation>
            <numerusform>Die Workbench endete mit nicht gespeicherten Änderungen an Dateien. %n Kopie wurde aufbewahrt.</numerusform>
            <numerusform>Die Workbench endete mit nicht gespeicherten Änderungen an Dateien. %n Kopien wurden aufbewahrt.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DefintionPageBuilder</name>
    <message>
        <source>Extension points of this plug-in</source>
        <translation>Erweiterungspunkte dieses Plug-ins</translation>
    </message>
    <message>
        <source>Basic information</source>
        <translation>Grundangaben</translation>
    </message>
    <message>
        <source>Attribute</source>
        <translation>Attribut</translation>
    </message>
    <message>
        <source>Add a point</source>
        <translation>Punkt hinzufügen</translation>
    </message>
    <message>
        <source>Add an attribute</source>
        <translation>Attribut hinzufügen</translation>
    </message>
    <message>
        <source>Delete the attribute</source>
        <translation>Attribut löschen</translation>
    </message>
    <message>
        <source>Add an entry</source>
        <translation>Eintrag hinzufügen</translation>
    </message>
    <message>
        <source>Delete the entry</source>
        <translation>Eintrag löschen</translation>
    </message>
    <message>
        <source>Attributes of the selected point</source>
        <translation>Attribute des ausgewählten Punkts</translation>
    </message>
    <message>
        <source>Entries of the enumeration</source>
        <translation>Einträge der Aufzählung</translation>
    </message>
    <message>
        <source>Add Property</source>
        <translation>Eigenschaft hinzufügen</translation>
    </message>
    <message>
        <source>Add a property that the selected point does not have yet</source>
        <translation>Eine Eigenschaft hinzufügen, die der ausgewählte Punkt noch nicht hat</translation>
    </message>
</context>
<context>
    <name>DropWords</name>
    <message>
        <source>Into &apos;%1&apos;, recorded in this plug-in&apos;s file</source>
        <translation>In „%1“, vermerkt in der Datei dieses Plug-ins</translation>
    </message>
    <message>
        <source>Into &apos;%1&apos;</source>
        <translation>In „%1“</translation>
    </message>
    <message>
        <source>Before &apos;%1&apos;</source>
        <translation>Vor „%1“</translation>
    </message>
    <message>
        <source>After &apos;%1&apos;</source>
        <translation>Nach „%1“</translation>
    </message>
    <message>
        <source>There is no row here to drop onto</source>
        <translation>Hier ist keine Zeile, auf die etwas gelegt werden kann</translation>
    </message>
    <message>
        <source>There is no file that this could be recorded in</source>
        <translation>Es gibt keine Datei, in der das vermerkt werden könnte</translation>
    </message>
    <message>
        <source>What is being dragged has gone, or is no record</source>
        <translation>Was gezogen wird, gibt es nicht mehr, oder es ist kein Datensatz</translation>
    </message>
    <message>
        <source>&apos;%1&apos; takes no &apos;%2&apos;</source>
        <translation>„%1“ nimmt kein „%2“ auf</translation>
    </message>
    <message>
        <source>&apos;%1&apos; has a &apos;%2&apos; already</source>
        <translation>„%1“ hat schon ein „%2“</translation>
    </message>
    <message>
        <source>&apos;%1&apos; belongs to another plug-in</source>
        <translation>„%1“ gehört zu einem anderen Plug-in</translation>
    </message>
    <message>
        <source>The entries of this format belong to other plug-ins</source>
        <translation>Die Einträge dieses Formats gehören zu anderen Plug-ins</translation>
    </message>
    <message>
        <source>Nothing can be placed beside an entry of another plug-in</source>
        <translation>Neben einen Eintrag eines anderen Plug-ins kann nichts gestellt werden</translation>
    </message>
    <message>
        <source>&apos;%1&apos; can&apos;t go to where it is itself</source>
        <translation>„%1“ kann nicht in sich selbst verschoben werden</translation>
    </message>
    <message>
        <source>&apos;%1&apos; can&apos;t be moved to there</source>
        <translation>„%1“ kann nicht dorthin verschoben werden</translation>
    </message>
    <message>
        <source>A new record of &apos;%1&apos;</source>
        <translation>Ein neuer Datensatz von „%1“</translation>
    </message>
    <message>
        <source>Only points and sub points become records</source>
        <translation>Nur Punkte und Unterpunkte werden zu Datensätzen</translation>
    </message>
    <message>
        <source>The records of a point without an id are shown nowhere</source>
        <translation>Die Datensätze eines Punkts ohne Id werden nirgends gezeigt</translation>
    </message>
</context>
<context>
    <name>ExtPointWidget</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>ExtPointEdit</source>
        <translation>Erweiterungspunkte</translation>
    </message>
    <message>
        <source>Extension Point Tree</source>
        <translation>Erweiterungspunkte</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>Hin&amp;zufügen</translation>
    </message>
    <message>
        <source>Basic Information</source>
        <translation>Grundangaben</translation>
    </message>
    <message>
        <source>Extension Information</source>
        <translation>Attribute</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>D&amp;elete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Enum Editor</source>
        <translation>Aufzählung</translation>
    </message>
    <message>
        <source>RealizationExit</source>
        <translation>Realisierungen</translation>
    </message>
    <message>
        <source>Realization Tree</source>
        <translation>Realisierungen</translation>
    </message>
    <message>
        <source>Add Format Tree</source>
        <translation>Formatbaum hinzufügen</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
</context>
<context>
    <name>ExtensionFile</name>
    <message>
        <source>No backup could be made in %1: %2</source>
        <translation>In %1 konnte keine Sicherung angelegt werden: %2</translation>
    </message>
    <message>
        <source>Encoding %1 is not known.</source>
        <translation>Die Zeichenkodierung %1 ist nicht bekannt.</translation>
    </message>
    <message>
        <source>The text is not valid %1.</source>
        <translation>Der Text ist kein gültiges %1.</translation>
    </message>
    <message>
        <source>The declared encoding is not the one of the file.</source>
        <translation>Die angegebene Zeichenkodierung ist nicht die der Datei.</translation>
    </message>
    <message>
        <source>The file does not hold what was written.</source>
        <translation>Die Datei enthält nicht, was geschrieben wurde.</translation>
    </message>
    <message>
        <source>The file is too large to be kept while it is written.</source>
        <translation>Die Datei ist zu groß, um aufbewahrt zu werden, während sie geschrieben wird.</translation>
    </message>
    <message>
        <source> The old contents could not be put back. They are kept in %1</source>
        <translation> Der alte Inhalt konnte nicht zurückgeschrieben werden. Er ist aufbewahrt in %1</translation>
    </message>
    <message>
        <source>out of memory</source>
        <translation>Zu wenig Speicher</translation>
    </message>
    <message>
        <source>syntax error</source>
        <translation>Syntaxfehler</translation>
    </message>
    <message>
        <source>no element found</source>
        <translation>Kein Element gefunden</translation>
    </message>
    <message>
        <source>not well-formed (invalid token)</source>
        <translation>Nicht wohlgeformt (ungültiges Zeichen)</translation>
    </message>
    <message>
        <source>unclosed token</source>
        <translation>Nicht abgeschlossenes Zeichen</translation>
    </message>
    <message>
        <source>partial character</source>
        <translation>Unvollständiges Zeichen</translation>
    </message>
    <message>
        <source>mismatched tag</source>
        <translation>Endmarke passt nicht</translation>
    </message>
    <message>
        <source>duplicate attribute</source>
        <translation>Attribut doppelt</translation>
    </message>
    <message>
        <source>junk after document element</source>
        <translation>Etwas steht nach dem Ende des Dokuments</translation>
    </message>
    <message>
        <source>undefined entity</source>
        <translation>Nicht deklarierte Entität</translation>
    </message>
    <message>
        <source>recursive entity reference</source>
        <translation>Entität enthält sich selbst</translation>
    </message>
    <message>
        <source>asynchronous entity</source>
        <translation>Asynchrone Entität</translation>
    </message>
    <message>
        <source>reference to invalid character number</source>
        <translation>Verweis auf eine ungültige Zeichennummer</translation>
    </message>
    <message>
        <source>XML or text declaration not at start of entity</source>
        <translation>XML-Deklaration steht nicht am Anfang</translation>
    </message>
    <message>
        <source>XML declaration not well-formed</source>
        <translation>XML-Deklaration ist nicht wohlgeformt</translation>
    </message>
    <message>
        <source>unclosed CDATA section</source>
        <translation>Nicht abgeschlossener CDATA-Abschnitt</translation>
    </message>
    <message>
        <source>illegal character(s) in public id</source>
        <translation>Unerlaubte Zeichen in der öffentlichen Kennung</translation>
    </message>
    <message>
        <source>limit on input amplification factor (from DTD and entities) breached</source>
        <translation>Die Entitäten wachsen über jedes Maß</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>Es ist nicht genug Speicher da.</translation>
    </message>
    <message>
        <source>External entities are not read.</source>
        <translation>Externe Entitäten werden nicht gelesen.</translation>
    </message>
    <message>
        <source>The text is not valid UTF-8.</source>
        <translation>Der Text ist kein gültiges UTF-8.</translation>
    </message>
    <message>
        <source>XML %1 is not known.</source>
        <translation>XML %1 ist nicht bekannt.</translation>
    </message>
    <message>
        <source>Parameter entities are not supported.</source>
        <translation>Parameter-Entitäten werden nicht unterstützt.</translation>
    </message>
    <message>
        <source>The document type has more than %1 bytes of declarations.</source>
        <translation>Der Dokumenttyp hat mehr als %1 Bytes Deklarationen.</translation>
    </message>
    <message>
        <source>The entity %1 is not declared in the file, and nothing else is read.</source>
        <translation>Die Entität %1 ist in der Datei nicht deklariert, und anderes wird nicht gelesen.</translation>
    </message>
    <message>
        <source>Elements are nested more than %1 deep.</source>
        <translation>Elemente sind mehr als %1 Ebenen tief geschachtelt.</translation>
    </message>
    <message>
        <source>There are more than %1 elements.</source>
        <translation>Es gibt mehr als %1 Elemente.</translation>
    </message>
    <message>
        <source>An element has more than %1 attributes.</source>
        <translation>Ein Element hat mehr als %1 Attribute.</translation>
    </message>
    <message>
        <source>There are more than %1 attributes.</source>
        <translation>Es gibt mehr als %1 Attribute.</translation>
    </message>
    <message>
        <source>The attributes have more than %1 characters.</source>
        <translation>Die Attribute haben mehr als %1 Zeichen.</translation>
    </message>
    <message>
        <source>The file has more than %1 bytes.</source>
        <translation>Die Datei hat mehr als %1 Bytes.</translation>
    </message>
    <message>
        <source>Not a regular file.</source>
        <translation>Keine gewöhnliche Datei.</translation>
    </message>
    <message>
        <source>Not a file name.</source>
        <translation>Kein Dateiname.</translation>
    </message>
    <message>
        <source>The new contents could not be read again: %1</source>
        <translation>Der neue Inhalt konnte nicht wieder gelesen werden: %1</translation>
    </message>
    <message>
        <source>The name of the file is not in the encoding of the system.</source>
        <translation>Der Name der Datei ist nicht in der Zeichenkodierung des Systems.</translation>
    </message>
    <message>
        <source>a second root element &quot;%1&quot;</source>
        <translation>ein zweites Wurzelelement „%1“</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no legal name for the root element</source>
        <translation>„%1“ ist kein erlaubter Name für das Wurzelelement</translation>
    </message>
    <message>
        <source>element &quot;%1&quot; has no legal name, its children take its place</source>
        <translation>Element „%1“ hat keinen erlaubten Namen, seine Kinder treten an seine Stelle</translation>
    </message>
    <message>
        <source>elements nested more than %1 deep</source>
        <translation>Elemente mehr als %1 Ebenen tief geschachtelt</translation>
    </message>
    <message>
        <source>more than %1 elements</source>
        <translation>mehr als %1 Elemente</translation>
    </message>
    <message>
        <source>attribute &quot;%1&quot; outside of a start tag</source>
        <translation>Attribut „%1“ außerhalb einer Startmarke</translation>
    </message>
    <message>
        <source>attribute &quot;%1&quot; has no legal name</source>
        <translation>Attribut „%1“ hat keinen erlaubten Namen</translation>
    </message>
    <message>
        <source>attribute &quot;%1&quot; is there already</source>
        <translation>Attribut „%1“ ist schon da</translation>
    </message>
    <message>
        <source>characters in the value of attribute &quot;%1&quot;</source>
        <translation>Zeichen im Wert des Attributs „%1“</translation>
    </message>
    <message>
        <source>an element with more than %1 attributes</source>
        <translation>ein Element mit mehr als %1 Attributen</translation>
    </message>
    <message>
        <source>more than %1 attributes</source>
        <translation>mehr als %1 Attribute</translation>
    </message>
    <message>
        <source>more than %1 characters in the attributes</source>
        <translation>mehr als %1 Zeichen in den Attributen</translation>
    </message>
    <message>
        <source>more than %1 bytes</source>
        <translation>mehr als %1 Bytes</translation>
    </message>
    <message>
        <source>an element ends that was not started</source>
        <translation>ein Element endet, das nicht begonnen wurde</translation>
    </message>
    <message>
        <source>%1 elements are not ended</source>
        <translation>%1 Elemente sind nicht beendet</translation>
    </message>
    <message>
        <source>%1: can&apos;t be written: %2</source>
        <translation>%1: kann nicht geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>ExtensionSystem::PluginManager</name>
    <message>
        <source>&quot;%1&quot; %2 is needed, but the one found serves versions %3 to %4</source>
        <translation>„%1“ %2 wird gebraucht, das gefundene dient den Versionen %3 bis %4</translation>
    </message>
    <message>
        <source>&quot;%1&quot; %2 is needed and was not found</source>
        <translation>„%1“ %2 wird gebraucht und wurde nicht gefunden</translation>
    </message>
    <message>
        <source>dependency cycle: %1</source>
        <translation>Abhängigkeiten im Kreis: %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is needed and could not be started</source>
        <translation>„%1“ wird gebraucht und konnte nicht gestartet werden</translation>
    </message>
    <message>
        <source>the metadata can&apos;t be read: %1</source>
        <translation>die Metadaten können nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was found before, in %2</source>
        <translation>„%1“ wurde schon in %2 gefunden</translation>
    </message>
    <message>
        <source>the root object is not a plug-in</source>
        <translation>das Wurzelobjekt ist kein Plug-in</translation>
    </message>
    <message>
        <source>the file was built for another machine</source>
        <translation>die Datei wurde für eine andere Maschine gebaut</translation>
    </message>
    <message>
        <source>initializing failed for a reason that the plug-in did not tell</source>
        <translation>die Initialisierung ist gescheitert, ohne dass das Plug-in den Grund nannte</translation>
    </message>
    <message>
        <source>initializing failed: %1</source>
        <translation>die Initialisierung ist gescheitert: %1</translation>
    </message>
</context>
<context>
    <name>ExtensionSystem::PluginMetaData</name>
    <message>
        <source>the interface id is &quot;%1&quot;, not &quot;%2&quot;</source>
        <translation>die Kennung der Schnittstelle ist „%1“, nicht „%2“</translation>
    </message>
    <message>
        <source>the metadata is not a JSON object</source>
        <translation>die Metadaten sind kein JSON-Objekt</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a string</source>
        <translation>„%1“ ist keine Zeichenkette</translation>
    </message>
    <message>
        <source>%1 has no &quot;%2&quot;</source>
        <translation>%1 hat kein „%2“</translation>
    </message>
    <message>
        <source>the &quot;%1&quot; &quot;%2&quot; of %3 is not of the form &quot;1.2.3&quot; or &quot;1.2.3_4&quot;</source>
        <translation>„%1“ „%2“ von %3 hat nicht die Form „1.2.3“ oder „1.2.3_4“</translation>
    </message>
    <message>
        <source>the plug-in</source>
        <translation>das Plug-in</translation>
    </message>
    <message>
        <source>&quot;CompatVersion&quot; %1 is newer than &quot;Version&quot; %2</source>
        <translation>„CompatVersion“ %1 ist neuer als „Version“ %2</translation>
    </message>
    <message>
        <source>&quot;Dependencies&quot; is not an array</source>
        <translation>„Dependencies“ ist kein Array</translation>
    </message>
    <message>
        <source>dependency %1</source>
        <translation>Abhängigkeit %1</translation>
    </message>
    <message>
        <source>%1 is not a JSON object</source>
        <translation>%1 ist kein JSON-Objekt</translation>
    </message>
    <message>
        <source>the &quot;Type&quot; &quot;%1&quot; of %2 is neither &quot;required&quot; nor &quot;optional&quot;</source>
        <translation>„Type“ „%1“ von %2 ist weder „required“ noch „optional“</translation>
    </message>
    <message>
        <source>%1 is the plug-in itself</source>
        <translation>%1 ist das Plug-in selbst</translation>
    </message>
    <message>
        <source>%1 names &quot;%2&quot; once more</source>
        <translation>%1 nennt „%2“ noch einmal</translation>
    </message>
</context>
<context>
    <name>FilterLine</name>
    <message>
        <source>Filter</source>
        <translation>Filtern</translation>
    </message>
    <message>
        <source>Filter: %1</source>
        <translation>Filtern: %1</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
</context>
<context>
    <name>FindActions</name>
    <message>
        <source>Find &amp;Users</source>
        <translation>&amp;Verwender suchen</translation>
    </message>
    <message>
        <source>&amp;Find</source>
        <translation>&amp;Suchen</translation>
    </message>
</context>
<context>
    <name>FormatSheet</name>
    <message>
        <source>Back to the Record&apos;s</source>
        <translation>Zurück zum Wert des Datensatzes</translation>
    </message>
    <message>
        <source>Back to the Default</source>
        <translation>Zurück zur Vorgabe</translation>
    </message>
    <message>
        <source>Taken over from the record</source>
        <translation>Vom Datensatz übernommen</translation>
    </message>
    <message>
        <source>The default of the attribute</source>
        <translation>Die Vorgabe des Attributs</translation>
    </message>
</context>
<context>
    <name>FormatTree</name>
    <message>
        <source>Format Tree</source>
        <translation>Formatbaum</translation>
    </message>
    <message>
        <source>Select a point that has formats to see this format.</source>
        <translation>Einen Punkt mit Formaten auswählen, um dieses Format zu sehen.</translation>
    </message>
</context>
<context>
    <name>FoundNodes</name>
    <message>
        <source>Users of %1</source>
        <translation>Verwender von %1</translation>
    </message>
    <message>
        <source>%1, in %2</source>
        <translation>%1, in %2</translation>
    </message>
    <message>
        <source>plug-in</source>
        <translation>Plug-in</translation>
    </message>
    <message>
        <source>point</source>
        <translation>Punkt</translation>
    </message>
    <message>
        <source>sub point</source>
        <translation>Unterpunkt</translation>
    </message>
    <message>
        <source>attribute</source>
        <translation>Attribut</translation>
    </message>
    <message>
        <source>choice</source>
        <translation>Auswahlwert</translation>
    </message>
    <message>
        <source>record</source>
        <translation>Datensatz</translation>
    </message>
    <message>
        <source>format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>entry</source>
        <translation>Eintrag</translation>
    </message>
</context>
<context>
    <name>GroupPropertyBrowser</name>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
</context>
<context>
    <name>MetaDialog</name>
    <message>
        <source>MetaDialog</source>
        <translation>Metadaten</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Meta entry</source>
        <translation>Metaeintrag</translation>
    </message>
    <message>
        <source>Meta entries</source>
        <translation>Metaeinträge</translation>
    </message>
</context>
<context>
    <name>NodeWords</name>
    <message>
        <source>Plug-in %1</source>
        <translation>Plug-in %1</translation>
    </message>
    <message>
        <source>Point %1</source>
        <translation>Punkt %1</translation>
    </message>
    <message>
        <source>Sub point %1 of %2</source>
        <translation>Unterpunkt %1 von %2</translation>
    </message>
    <message>
        <source>Entry %1 of the attribute %2</source>
        <translation>Eintrag %1 des Attributs %2</translation>
    </message>
    <message>
        <source>%1 attribute %2 of %3</source>
        <translation>%1-Attribut %2 von %3</translation>
    </message>
    <message>
        <source>Records of %1 in this plug-in</source>
        <translation>Datensätze von %1 in diesem Plug-in</translation>
    </message>
    <message>
        <source>%1 of the tab %2</source>
        <translation>%1 des Reiters %2</translation>
    </message>
    <message>
        <source>%1, record of %2</source>
        <translation>%1, Datensatz von %2</translation>
    </message>
    <message>
        <source>%1, entry of the tab %2</source>
        <translation>%1, Eintrag des Reiters %2</translation>
    </message>
    <message>
        <source>%1, 1 use</source>
        <translation>%1, einmal verwendet</translation>
    </message>
    <message numerus="yes">
        <source>%1, %n uses</source>
        <translation>
            <numerusform>%1, %n-mal verwendet</numerusform>
            <numerusform>%1, %n-mal verwendet</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>OpenWith::Editors</name>
    <message>
        <source>ExtPoint Editor</source>
        <translation>ExtPoint-Editor</translation>
    </message>
</context>
<context>
    <name>PageMenus</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Create Record</source>
        <translation>Datensatz erstellen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>PointEditor::Internal::ExtPointEditorW</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>ProblemMark</name>
    <message>
        <source>Attribute %1, %2</source>
        <translation>Attribut %1, %2</translation>
    </message>
</context>
<context>
    <name>Problems</name>
    <message>
        <source>Must be at least %1</source>
        <translation>Muss mindestens %1 sein</translation>
    </message>
    <message>
        <source>Must be at most %1</source>
        <translation>Darf höchstens %1 sein</translation>
    </message>
    <message>
        <source>Must be a whole number</source>
        <translation>Muss eine ganze Zahl sein</translation>
    </message>
    <message>
        <source>Must be a number</source>
        <translation>Muss eine Zahl sein</translation>
    </message>
    <message>
        <source>Must be one of: %1</source>
        <translation>Muss eines davon sein: %1</translation>
    </message>
    <message>
        <source>The file is very large: only its first %1 nodes were looked at</source>
        <translation>Die Datei ist sehr groß: Nur ihre ersten %1 Knoten wurden betrachtet</translation>
    </message>
    <message>
        <source>Another point of this plug-in has the same id</source>
        <translation>Ein anderer Punkt dieses Plug-ins hat dieselbe Id</translation>
    </message>
    <message>
        <source>A point of the plug-in %1 has the same id</source>
        <translation>Ein Punkt des Plug-ins %1 hat dieselbe Id</translation>
    </message>
    <message>
        <source>Another sub point of this point has the same key</source>
        <translation>Ein anderer Unterpunkt dieses Punkts hat denselben Schlüssel</translation>
    </message>
    <message>
        <source>Another attribute beside it has the same key</source>
        <translation>Ein anderes Attribut daneben hat denselben Schlüssel</translation>
    </message>
    <message>
        <source>No plug-in declares the point %1</source>
        <translation>Kein Plug-in deklariert den Punkt %1</translation>
    </message>
    <message>
        <source>Another record of this point has the same id</source>
        <translation>Ein anderer Datensatz dieses Punkts hat dieselbe Id</translation>
    </message>
    <message>
        <source>No plug-in has a record %1</source>
        <translation>Kein Plug-in hat einen Datensatz %1</translation>
    </message>
    <message>
        <source>Its tab has no entry %1</source>
        <translation>Sein Reiter hat keinen Eintrag %1</translation>
    </message>
    <message>
        <source>A point of %1 has the same id</source>
        <translation>Ein Punkt von %1 hat dieselbe Id</translation>
    </message>
    <message>
        <source>A record (%1) of this point has the same id</source>
        <translation>Ein Datensatz (%1) dieses Punkts hat dieselbe Id</translation>
    </message>
    <message>
        <source>%1 beside it has the same key</source>
        <translation>%1 daneben hat denselben Schlüssel</translation>
    </message>
</context>
<context>
    <name>ProjectExplorer::PluginDirectoryModel</name>
    <message>
        <source>%1 has no %2</source>
        <translation>%1 hat keine %2</translation>
    </message>
    <message>
        <source>can&apos;t be read</source>
        <translation>nicht lesbar</translation>
    </message>
    <message>
        <source>opened</source>
        <translation>geöffnet</translation>
    </message>
</context>
<context>
    <name>ProjectExplorer::ProductDock</name>
    <message>
        <source>Plug-ins</source>
        <translation>Plug-ins</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filtern</translation>
    </message>
    <message>
        <source>Filter plug-ins</source>
        <translation>Plug-ins filtern</translation>
    </message>
    <message>
        <source>Plug-ins of the product</source>
        <translation>Plug-ins des Produkts</translation>
    </message>
    <message>
        <source>Open a file to see its product.</source>
        <translation>Eine Datei öffnen, um ihr Produkt zu sehen.</translation>
    </message>
    <message>
        <source>%1 of %2 directories</source>
        <translation>%1 von %2 Verzeichnissen</translation>
    </message>
    <message>
        <source>1 plug-in</source>
        <translation>1 Plug-in</translation>
    </message>
    <message numerus="yes">
        <source>%n plug-ins, 1 other directory</source>
        <translation>
            <numerusform>%n Plug-in, 1 anderes Verzeichnis</numerusform>
            <numerusform>%n Plug-ins, 1 anderes Verzeichnis</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n plug-ins, %1 other directories</source>
        <translation>
            <numerusform>%n Plug-in, %1 andere Verzeichnisse</numerusform>
            <numerusform>%n Plug-ins, %1 andere Verzeichnisse</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n plug-ins</source>
        <translation>
            <numerusform>%n Plug-in</numerusform>
            <numerusform>%n Plug-ins</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PropertyBrowser</name>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>The value is %1, which is none of the choices</source>
        <translation>Der Wert ist %1 und steht nicht zur Auswahl</translation>
    </message>
    <message>
        <source>A colour: #rrggbb, #aarrggbb or a name</source>
        <translation>Eine Farbe: #rrggbb, #aarrggbb oder ein Name</translation>
    </message>
    <message>
        <source>Choose a colour</source>
        <translation>Farbe auswählen</translation>
    </message>
    <message>
        <source>A date as yyyy-MM-dd</source>
        <translation>Ein Datum als yyyy-MM-dd</translation>
    </message>
    <message>
        <source>A date and time as yyyy-MM-ddTHH:mm:ss</source>
        <translation>Datum und Zeit als yyyy-MM-ddTHH:mm:ss</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>Datei auswählen</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Durchsuchen</translation>
    </message>
    <message>
        <source>A number</source>
        <translation>Eine Zahl</translation>
    </message>
    <message>
        <source>%1, at most %2 digits after the point</source>
        <translation>%1, höchstens %2 Stellen nach dem Punkt</translation>
    </message>
    <message>
        <source>A font as Family, 10 pt, bold, italic</source>
        <translation>Eine Schrift als Family, 10 pt, bold, italic</translation>
    </message>
    <message>
        <source>Choose a font</source>
        <translation>Schrift auswählen</translation>
    </message>
    <message>
        <source>A whole number</source>
        <translation>Eine ganze Zahl</translation>
    </message>
    <message>
        <source>Choose a day</source>
        <translation>Tag auswählen</translation>
    </message>
    <message>
        <source>The value is %1, which is no shortcut</source>
        <translation>Der Wert ist %1 und kein Tastenkürzel</translation>
    </message>
    <message>
        <source>No shortcut</source>
        <translation>Kein Tastenkürzel</translation>
    </message>
    <message>
        <source>%1 (Backspace)</source>
        <translation>%1 (Rücktaste)</translation>
    </message>
    <message>
        <source>%1 from %2 to %3</source>
        <translation>%1 von %2 bis %3</translation>
    </message>
    <message>
        <source>%1, at least %2</source>
        <translation>%1, mindestens %2</translation>
    </message>
    <message>
        <source>%1, at most %2</source>
        <translation>%1, höchstens %2</translation>
    </message>
    <message>
        <source>A point as 10,20</source>
        <translation>Ein Punkt als 10,20</translation>
    </message>
    <message>
        <source>Too long to be edited here: %1 characters, of which these are the first</source>
        <translation>Zu lang, um hier bearbeitet zu werden: %1 Zeichen, von denen dies die ersten sind</translation>
    </message>
    <message>
        <source>A rectangle as 10,20 640x480: corner, size</source>
        <translation>Ein Rechteck als 10,20 640x480: Ecke, Größe</translation>
    </message>
    <message>
        <source>A size as 640x480</source>
        <translation>Eine Größe als 640x480</translation>
    </message>
    <message>
        <source>A time of day as HH:mm:ss</source>
        <translation>Eine Uhrzeit als HH:mm:ss</translation>
    </message>
</context>
<context>
    <name>PropertyEditor</name>
    <message>
        <source>%1 was not taken: %2 (%3)</source>
        <translation>%1 wurde nicht angenommen: %2 (%3)</translation>
    </message>
</context>
<context>
    <name>PropertyTree</name>
    <message>
        <source>Property</source>
        <translation>Eigenschaft</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Child Type</source>
        <translation>Untertyp</translation>
    </message>
    <message>
        <source>Format Tree</source>
        <translation>Formatbaum</translation>
    </message>
    <message>
        <source>Meta</source>
        <translation>Meta</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>RealizationPageBuilder</name>
    <message>
        <source>Extension points of all plug-ins</source>
        <translation>Erweiterungspunkte aller Plug-ins</translation>
    </message>
    <message>
        <source>Formats</source>
        <translation>Formate</translation>
    </message>
    <message>
        <source>Records of the selected point</source>
        <translation>Datensätze des ausgewählten Punkts</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>The file can&apos;t hold this text as it is: &quot;tr(&apos;&quot; and &quot;&apos;)&quot; mark what is translatable.</source>
        <translation>Die Datei kann diesen Text so nicht aufnehmen: „tr(&apos;“ und „&apos;)“ kennzeichnen, was übersetzbar ist.</translation>
    </message>
</context>
<context>
    <name>RealizationTreeWidget</name>
    <message>
        <source>Name: %1</source>
        <translation>Name: %1</translation>
    </message>
    <message>
        <source>Key: %1</source>
        <translation>Schlüssel: %1</translation>
    </message>
    <message>
        <source>Point: %1</source>
        <translation>Punkt: %1</translation>
    </message>
    <message>
        <source>Id: %1</source>
        <translation>Id: %1</translation>
    </message>
    <message>
        <source>Plug-in: %1</source>
        <translation>Plug-in: %1</translation>
    </message>
</context>
<context>
    <name>RecordSheet</name>
    <message>
        <source>The default of the attribute</source>
        <translation>Die Vorgabe des Attributs</translation>
    </message>
    <message>
        <source>Back to the Default</source>
        <translation>Zurück zur Vorgabe</translation>
    </message>
</context>
<context>
    <name>RecordTable</name>
    <message>
        <source>%1
Plug-in: %2</source>
        <translation>%1
Plug-in: %2</translation>
    </message>
    <message>
        <source>Icon of %1</source>
        <translation>Symbol von %1</translation>
    </message>
    <message>
        <source>Places in formats: %1</source>
        <translation>Stellen in Formaten: %1</translation>
    </message>
</context>
<context>
    <name>SaveReport</name>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <translation>
            <numerusform>%1 und %n weiteres</numerusform>
            <numerusform>%1 und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>the point does not declare it translatable</source>
        <translation>der Punkt deklariert es nicht als übersetzbar</translation>
    </message>
    <message>
        <source>no plug-in declares the point</source>
        <translation>kein Plug-in deklariert den Punkt</translation>
    </message>
    <message>
        <source>the plug-in that may declare it could not be read: %1</source>
        <translation>das Plug-in, das es deklarieren mag, konnte nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>%1: written without translation marks; %2</source>
        <translation>%1: ohne Übersetzungsmarken geschrieben; %2</translation>
    </message>
    <message>
        <source>%1: written with translation marks</source>
        <translation>%1: mit Übersetzungsmarken geschrieben</translation>
    </message>
    <message>
        <source>%1: will be read again as &quot;%2&quot;</source>
        <translation>%1: wird als „%2“ wieder gelesen</translation>
    </message>
    <message>
        <source>XML can&apos;t hold: %1</source>
        <translation>XML kann das nicht aufnehmen: %1</translation>
    </message>
    <message>
        <source>%1: not written, the format has no such attribute here</source>
        <translation>%1: nicht geschrieben, das Format hat hier kein solches Attribut</translation>
    </message>
    <message>
        <source>not kept: %1</source>
        <translation>nicht behalten: %1</translation>
    </message>
    <message>
        <source>nothing is written but the XML declaration</source>
        <translation>nur die XML-Deklaration wird geschrieben</translation>
    </message>
    <message>
        <source>the file looks like UTF-8, but declares another encoding and was read in that: letters beyond ASCII are written as they were read</source>
        <translation>die Datei sieht nach UTF-8 aus, gibt aber eine andere Zeichenkodierung an und wurde in dieser gelesen: Zeichen jenseits von ASCII werden geschrieben, wie sie gelesen wurden</translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation>
            <numerusform>und %n weiteres</numerusform>
            <numerusform>und %n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>Everything in the file but the XML declaration would be lost, and it would not open again: it holds no &quot;ExtPointSet&quot; and no &quot;ExtDataSet&quot;.</source>
        <translation>Alles in der Datei außer der XML-Deklaration ginge verloren, und sie ließe sich nicht wieder öffnen: Sie enthält weder ein „ExtPointSet“ noch ein „ExtDataSet“.</translation>
    </message>
    <message>
        <source>Look at the names of its elements with a text editor, or create something here first.</source>
        <translation>Die Namen ihrer Elemente in einem Texteditor ansehen oder zuerst hier etwas erstellen.</translation>
    </message>
    <message>
        <source>A part of the file would be lost, since its name is not written as &quot;ExtPointSet&quot; or &quot;ExtDataSet&quot;, or it stands in the wrong place.</source>
        <translation>Ein Teil der Datei ginge verloren, da sein Name nicht „ExtPointSet“ oder „ExtDataSet“ geschrieben ist oder er an der falschen Stelle steht.</translation>
    </message>
    <message>
        <source>Correct the name with a text editor; the file is read again here by itself once nothing is unsaved.</source>
        <translation>Den Namen in einem Texteditor berichtigen; die Datei wird hier von selbst neu gelesen, sobald nichts mehr ungespeichert ist.</translation>
    </message>
    <message>
        <source>Repair the files of these plug-ins and open this one again, or wait until they have been read.</source>
        <translation>Die Dateien dieser Plug-ins in Ordnung bringen und diese erneut öffnen oder warten, bis sie gelesen sind.</translation>
    </message>
    <message>
        <source>A text would lose its translation marks, since not every plug-in could be read: %1.</source>
        <translation>Ein Text verlöre seine Übersetzungsmarken, da nicht jedes Plug-in gelesen werden konnte: %1.</translation>
    </message>
    <message numerus="yes">
        <source>%n texts would lose their translation marks, since not every plug-in could be read: %1.</source>
        <translation>
            <numerusform>%n Text verlöre seine Übersetzungsmarken, da nicht jedes Plug-in gelesen werden konnte: %1.</numerusform>
            <numerusform>%n Texte verlören ihre Übersetzungsmarken, da nicht jedes Plug-in gelesen werden konnte: %1.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SheetHelp</name>
    <message>
        <source>Whether the records of the point can be put into formats</source>
        <translation>Ob die Datensätze des Punkts in Formate gestellt werden können</translation>
    </message>
    <message>
        <source>The attribute whose value labels a record in the table</source>
        <translation>Das Attribut, dessen Wert einen Datensatz in der Tabelle beschriftet</translation>
    </message>
    <message>
        <source>The attribute whose value is the icon of a record in the table</source>
        <translation>Das Attribut, dessen Wert das Symbol eines Datensatzes in der Tabelle ist</translation>
    </message>
    <message>
        <source>What may be created under a record in a format</source>
        <translation>Was in einem Format unter einem Datensatz erstellt werden darf</translation>
    </message>
    <message>
        <source>Whether the values are translatable; they are saved with the mark for that</source>
        <translation>Ob die Werte übersetzbar sind; sie werden mit der Marke dafür gespeichert</translation>
    </message>
    <message>
        <source>The regular expression that the value has to match as a whole</source>
        <translation>Der reguläre Ausdruck, auf den der Wert als Ganzes passen muss</translation>
    </message>
    <message>
        <source>The name that formats refer to the record by</source>
        <translation>Der Name, mit dem Formate auf den Datensatz verweisen</translation>
    </message>
    <message>
        <source>The value of the attribute that the point names as its label</source>
        <translation>Der Wert des Attributs, das der Punkt als seine Beschriftung nennt</translation>
    </message>
    <message>
        <source>The icon, from the attribute that the point names for it</source>
        <translation>Das Symbol aus dem Attribut, das der Punkt dafür nennt</translation>
    </message>
    <message>
        <source>How many entries of formats in this file refer to the record</source>
        <translation>Wie viele Einträge von Formaten in dieser Datei auf den Datensatz verweisen</translation>
    </message>
    <message>
        <source>Ticked when any entry of a format in this file refers to the record</source>
        <translation>Angekreuzt, wenn ein Eintrag eines Formats in dieser Datei auf den Datensatz verweist</translation>
    </message>
    <message>
        <source>The name of the attribute in the files that use the point</source>
        <translation>Der Name des Attributs in den Dateien, die den Punkt verwenden</translation>
    </message>
    <message>
        <source>The name that is shown to people</source>
        <translation>Der Name, den Menschen sehen</translation>
    </message>
    <message>
        <source>What kind of value it is, and so how it is edited</source>
        <translation>Welche Art von Wert es ist und damit, wie er bearbeitet wird</translation>
    </message>
    <message>
        <source>The default that a record gets where it says nothing</source>
        <translation>Die Vorgabe, die ein Datensatz bekommt, der nichts anderes sagt</translation>
    </message>
    <message>
        <source>The choice as it is shown and stored</source>
        <translation>Der Auswahlwert, wie er gezeigt und gespeichert wird</translation>
    </message>
    <message>
        <source>The file with the icon of the choice</source>
        <translation>Die Datei mit dem Symbol des Auswahlwerts</translation>
    </message>
</context>
<context>
    <name>SheetPane</name>
    <message>
        <source>%1; belongs to %2 and can&apos;t be changed here</source>
        <translation>%1; gehört zu %2 und kann hier nicht geändert werden</translation>
    </message>
</context>
<context>
    <name>SiblingScan</name>
    <message>
        <source>%1: the directory can&apos;t be listed</source>
        <translation>%1: Das Verzeichnis kann nicht aufgelistet werden</translation>
    </message>
</context>
<context>
    <name>SourceDataManager</name>
    <message>
        <source>Defintion</source>
        <translation>Definition</translation>
    </message>
    <message>
        <source>Realization</source>
        <translation>Realisierung</translation>
    </message>
</context>
<context>
    <name>TextEntryEditor</name>
    <message>
        <source>%1 (F4)</source>
        <translation>%1 (F4)</translation>
    </message>
</context>
<context>
    <name>TextPattern</name>
    <message>
        <source>At most %1 characters</source>
        <translation>Höchstens %1 Zeichen</translation>
    </message>
    <message>
        <source>A letter first, then letters, digits, hyphens, underscores and dots; at most %1 characters</source>
        <translation>Zuerst ein Buchstabe, dann Buchstaben, Ziffern, Bindestriche, Unterstriche und Punkte; höchstens %1 Zeichen</translation>
    </message>
    <message>
        <source>Letters, digits, underscores and dots; at most %1 characters</source>
        <translation>Buchstaben, Ziffern, Unterstriche und Punkte; höchstens %1 Zeichen</translation>
    </message>
    <message>
        <source>None of the characters &lt; / &gt; &apos; &amp; &quot;; at most %1 characters</source>
        <translation>Keines der Zeichen &lt; / &gt; &apos; &amp; &quot;; höchstens %1 Zeichen</translation>
    </message>
    <message>
        <source>Must match %1</source>
        <translation>Muss auf %1 passen</translation>
    </message>
</context>
</TS>
