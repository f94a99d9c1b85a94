<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>ActionHints</name>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Open with the default application</source>
        <translation>Mit der Standardanwendung öffnen</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Zeigen</translation>
    </message>
    <message>
        <source>Show in the file manager</source>
        <translation>In der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Show parent</source>
        <translation>Übergeordneten zeigen</translation>
    </message>
    <message>
        <source>Show in the parent folder, in the file manager</source>
        <translation>In der Dateiverwaltung im übergeordneten Ordner zeigen</translation>
    </message>
    <message>
        <source>Copy path</source>
        <translation>Pfad kopieren</translation>
    </message>
    <message>
        <source>Copy the path to the clipboard</source>
        <translation>Den Pfad in die Zwischenablage kopieren</translation>
    </message>
    <message>
        <source>Open with the application “%1”</source>
        <translation>Mit der Anwendung „%1“ öffnen</translation>
    </message>
    <message>
        <source>Run %1</source>
        <translation>%1 ausführen</translation>
    </message>
    <message>
        <source>Nothing</source>
        <translation>Nichts</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>Select in the file manager window</source>
        <translation>Im Fenster des Dateimanagers auswählen</translation>
    </message>
</context>
<context>
    <name>HotKey</name>
    <message>
        <source>Show or hide the search panel</source>
        <translation>Das Suchfenster zeigen oder verbergen</translation>
    </message>
</context>
<context>
    <name>PanelTexts</name>
    <message>
        <source>No folders to search yet</source>
        <translation>Noch keine Ordner zum Durchsuchen</translation>
    </message>
    <message>
        <source>Press Return to search your home folder, or choose folders in the preferences</source>
        <translation>Die Eingabetaste durchsucht Ihren persönlichen Ordner; andere wählen Sie in den Einstellungen</translation>
    </message>
    <message>
        <source>Indexing your folders…</source>
        <translation>Ihre Ordner werden erfasst…</translation>
    </message>
    <message numerus="yes">
        <source>%Ln folder(s) so far: you can already search</source>
        <translation>
            <numerusform>%Ln Ordner bis jetzt: Sie können schon suchen</numerusform>
            <numerusform>%Ln Ordner bis jetzt: Sie können schon suchen</numerusform>
        </translation>
    </message>
    <message>
        <source>Type a part of a folder’s name</source>
        <translation>Tippen Sie einen Teil eines Ordnernamens</translation>
    </message>
    <message>
        <source>The folders you open most will be listed here</source>
        <translation>Hier stehen später die Ordner, die Sie am häufigsten öffnen</translation>
    </message>
    <message>
        <source>Type one more letter</source>
        <translation>Tippen Sie noch einen Buchstaben</translation>
    </message>
    <message>
        <source>A search begins with the second one</source>
        <translation>Die Suche beginnt mit dem zweiten</translation>
    </message>
    <message>
        <source>No folder matches “%1”</source>
        <translation>Kein Ordner passt zu „%1“</translation>
    </message>
    <message>
        <source>Try it without the blanks</source>
        <translation>Versuchen Sie es ohne die Leerzeichen</translation>
    </message>
    <message>
        <source>Try fewer letters, or add a search folder in the preferences</source>
        <translation>Versuchen Sie weniger Buchstaben, oder fügen Sie in den Einstellungen einen Suchordner hinzu</translation>
    </message>
    <message numerus="yes">
        <source>%Ln folder(s)</source>
        <translation>
            <numerusform>%Ln Ordner</numerusform>
            <numerusform>%Ln Ordner</numerusform>
        </translation>
    </message>
    <message>
        <source>Indexing: %1</source>
        <translation>Wird erfasst: %1</translation>
    </message>
</context>
<context>
    <name>PreferenceTexts</name>
    <message>
        <source>New Window</source>
        <translation>Neues Fenster</translation>
    </message>
    <message>
        <source>Existing Window</source>
        <translation>Vorhandenes Fenster</translation>
    </message>
    <message>
        <source>Open in Default App</source>
        <translation>In der Standardanwendung öffnen</translation>
    </message>
    <message>
        <source>Show in File Manager</source>
        <translation>In der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Show Parent in File Manager</source>
        <translation>Übergeordneten Ordner in der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Copy Path to Clipboard</source>
        <translation>Pfad in die Zwischenablage kopieren</translation>
    </message>
    <message>
        <source>Open Application</source>
        <translation>Anwendung öffnen</translation>
    </message>
    <message>
        <source>Execute Shell Command</source>
        <translation>Programm ausführen</translation>
    </message>
    <message>
        <source>the selected row</source>
        <translation>der ausgewählten Zeile</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>%1 will %2 with %3</source>
        <extracomment>A sentence about the keys %1: what they do (%2), and to or with what (%3).</extracomment>
        <translation>%1: %2, mit %3</translation>
    </message>
    <message>
        <source>The settings could not be written.</source>
        <translation>Die Einstellungen konnten nicht geschrieben werden.</translation>
    </message>
</context>
<context>
    <name>RowText</name>
    <message>
        <source>%1, in the front window</source>
        <translation>%1 im vordersten Fenster</translation>
    </message>
    <message>
        <source>%1, in %2</source>
        <translation>%1 in %2</translation>
    </message>
</context>
<context>
    <name>quillon::ActionPreferencesViewController</name>
    <message>
        <source>A&amp;dd…</source>
        <translation>&amp;Hinzufügen…</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Actions</source>
        <translation>Aktionen</translation>
    </message>
    <message>
        <source>What Return does with the selected row, depending on the keys held with it. Where several actions have the same keys the first one is carried out.</source>
        <translation>Was die Eingabetaste mit der ausgewählten Zeile tut, je nachdem, welche Tasten mit ihr gehalten werden. Haben mehrere Aktionen dieselben Tasten, wird die erste ausgeführt.</translation>
    </message>
</context>
<context>
    <name>quillon::AddActionViewController</name>
    <message>
        <source>Add Action</source>
        <translation>Aktion hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Done</source>
        <translation>&amp;Fertig</translation>
    </message>
    <message>
        <source>C&amp;hoose…</source>
        <translation>&amp;Wählen…</translation>
    </message>
    <message>
        <source>&amp;Keys:</source>
        <translation>&amp;Tasten:</translation>
    </message>
    <message>
        <source>&amp;Action:</source>
        <translation>&amp;Aktion:</translation>
    </message>
    <message>
        <source>&amp;With:</source>
        <translation>&amp;Mit:</translation>
    </message>
    <message>
        <source>Every combination has an action. Remove one to make room for another.</source>
        <translation>Jede Kombination hat schon eine Aktion. Entfernen Sie eine, um Platz für eine andere zu schaffen.</translation>
    </message>
    <message>
        <source>Which program is to be run?</source>
        <translation>Welches Programm soll ausgeführt werden?</translation>
    </message>
    <message>
        <source>Which application is to open the row?</source>
        <translation>Welche Anwendung soll die Zeile öffnen?</translation>
    </message>
    <message>
        <source>No application of this name is installed.</source>
        <translation>Eine Anwendung dieses Namens ist nicht installiert.</translation>
    </message>
    <message>
        <source>The path of a program begins with “/”.</source>
        <translation>Der Pfad eines Programms beginnt mit „/“.</translation>
    </message>
    <message>
        <source>There is no such file.</source>
        <translation>Diese Datei gibt es nicht.</translation>
    </message>
    <message>
        <source>This is a folder, not a program.</source>
        <translation>Das ist ein Ordner, kein Programm.</translation>
    </message>
    <message>
        <source>This file may not be run.</source>
        <translation>Diese Datei darf nicht ausgeführt werden.</translation>
    </message>
    <message>
        <source>Choose a Program</source>
        <translation>Programm wählen</translation>
    </message>
</context>
<context>
    <name>quillon::AdvancedPreferencesViewController</name>
    <message>
        <source>Include &amp;beta versions</source>
        <translation>&amp;Betaversionen einbeziehen</translation>
    </message>
    <message>
        <source>Save Index as &amp;Text…</source>
        <translation>Suchindex als &amp;Text speichern…</translation>
    </message>
    <message>
        <source>&amp;Forget Uses…</source>
        <translation>&amp;Zählungen vergessen…</translation>
    </message>
    <message>
        <source>Set &amp;Up Again…</source>
        <translation>Neu &amp;einrichten…</translation>
    </message>
    <message>
        <source>Updates:</source>
        <translation>Aktualisierungen:</translation>
    </message>
    <message>
        <source>They come earlier and have been tried out less.</source>
        <translation>Sie kommen früher und sind weniger erprobt.</translation>
    </message>
    <message>
        <source>Use counts:</source>
        <translation>Zählungen:</translation>
    </message>
    <message>
        <source>How often you opened a folder lifts it in the list of matches.</source>
        <translation>Je öfter Sie einen Ordner geöffnet haben, desto weiter oben steht er unter den Treffern.</translation>
    </message>
    <message>
        <source>Set-up:</source>
        <translation>Einrichtung:</translation>
    </message>
    <message>
        <source>Forgets the shortcut, the search locations and the use counts, and asks as at the first start.</source>
        <translation>Vergisst das Tastenkürzel, die Suchorte und die Zählungen und fragt wie beim ersten Start.</translation>
    </message>
    <message>
        <source>Index:</source>
        <translation>Suchindex:</translation>
    </message>
    <message>
        <source>Writes the log below and every folder found into a text file.</source>
        <translation>Schreibt das Protokoll unten und jeden gefundenen Ordner in eine Textdatei.</translation>
    </message>
    <message>
        <source>Nothing has happened yet.</source>
        <translation>Noch ist nichts geschehen.</translation>
    </message>
    <message>
        <source>Log of the index</source>
        <translation>Protokoll des Suchindex</translation>
    </message>
    <message>
        <source>Dump File Location</source>
        <translation>Ort der Textdatei</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Choose where you want to save the file tree dump file</source>
        <translation>Wählen Sie, wo die Textdatei mit dem Verzeichnisbaum gespeichert werden soll</translation>
    </message>
    <message>
        <source>Writing %1…</source>
        <translation>%1 wird geschrieben…</translation>
    </message>
    <message>
        <source>Written to %1</source>
        <translation>Nach %1 geschrieben</translation>
    </message>
    <message>
        <source>Nothing was written.</source>
        <translation>Es wurde nichts geschrieben.</translation>
    </message>
    <message>
        <source>The index could not be written to “%1”.</source>
        <translation>Der Suchindex konnte nicht nach „%1“ geschrieben werden.</translation>
    </message>
    <message>
        <source>Set Up Again</source>
        <translation>Neu einrichten</translation>
    </message>
    <message>
        <source>&amp;Forget and Set Up Again</source>
        <translation>&amp;Vergessen und neu einrichten</translation>
    </message>
    <message>
        <source>The shortcut, the search locations with their patterns, and the count of every use are removed from the settings and cannot be brought back. Then Quillon asks for a shortcut and folders as it did at its first start. Your folders and files are not touched.</source>
        <translation>Das Tastenkürzel, die Suchorte mit ihren Mustern und alle Zählungen werden aus den Einstellungen entfernt und können nicht wiederhergestellt werden. Dann fragt Quillon wie beim ersten Start nach einem Tastenkürzel und nach Ordnern. Ihre Ordner und Dateien werden nicht angetastet.</translation>
    </message>
</context>
<context>
    <name>quillon::AppDelegate</name>
    <message>
        <source>Rebuild Quillon Search</source>
        <translation>Suchindex von Quillon neu aufbauen</translation>
    </message>
</context>
<context>
    <name>quillon::AppleEventPermissionViewController</name>
    <message>
        <source>To show folders</source>
        <translation>Um Ordner zu zeigen</translation>
    </message>
    <message>
        <source>When you open a folder, Quillon tells the file manager to show it: in a new window, in the one that is in front, or selected inside its parent, as you choose.</source>
        <translation>Wenn Sie einen Ordner öffnen, lässt Quillon ihn von der Dateiverwaltung zeigen: in einem neuen Fenster, im vordersten Fenster oder ausgewählt im übergeordneten Ordner, ganz wie Sie möchten.</translation>
    </message>
    <message>
        <source>To search the window in front</source>
        <translation>Um das vorderste Fenster zu durchsuchen</translation>
    </message>
    <message>
        <source>When you bring up the panel over a window of the file manager, Quillon asks which folder it shows, so that the items you are looking at are found first. This is off until you switch on quick search.</source>
        <translation>Wenn Sie das Suchfenster über einem Fenster der Dateiverwaltung aufrufen, fragt Quillon, welchen Ordner es zeigt, damit das, was Sie gerade vor sich haben, zuerst gefunden wird. Das geschieht erst, wenn Sie die Schnellsuche einschalten.</translation>
    </message>
    <message>
        <source>What Quillon learns stays in the memory of this computer. If you allow it, it asks the file manager one harmless question now, so that a desktop that wants your consent asks for it now, too. Otherwise Quillon quits.</source>
        <translation>Was Quillon erfährt, bleibt im Speicher dieses Rechners. Wenn Sie es erlauben, stellt Quillon der Dateiverwaltung jetzt eine harmlose Frage, damit auch eine Arbeitsumgebung, die Ihre Zustimmung verlangt, gleich danach fragt. Andernfalls beendet sich Quillon.</translation>
    </message>
    <message>
        <source>May Quillon talk to your file manager?</source>
        <translation>Darf Quillon mit Ihrer Dateiverwaltung sprechen?</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Allow</source>
        <translation>Erlauben</translation>
    </message>
</context>
<context>
    <name>quillon::BuildSearchBaseViewController</name>
    <message>
        <source>Indexing your folders</source>
        <translation>Ihre Ordner werden erfasst</translation>
    </message>
    <message>
        <source>Quillon reads the names of all folders that it searches. You can already search: what has been found so far is listed.</source>
        <translation>Quillon liest die Namen aller Ordner, die es durchsucht. Sie können schon suchen: Was bis jetzt gefunden wurde, wird gezeigt.</translation>
    </message>
    <message>
        <source>&amp;Erase All Settings and Quit…</source>
        <translation>Alle Einstellungen &amp;löschen und beenden…</translation>
    </message>
    <message>
        <source>Continue in &amp;Background</source>
        <translation>Im &amp;Hintergrund weiterarbeiten</translation>
    </message>
    <message>
        <source>Erase all settings and quit?</source>
        <translation>Alle Einstellungen löschen und beenden?</translation>
    </message>
    <message>
        <source>This does more than stop the indexing. Every setting of Quillon is erased for good: the shortcut, the folders to search, the patterns, the actions, and how often you opened each folder. Then Quillon quits; it starts with its set-up the next time. Your folders and files stay as they are.</source>
        <translation>Das hält nicht nur das Erfassen an. Alle Einstellungen von Quillon werden endgültig gelöscht: das Tastenkürzel, die durchsuchten Ordner, die Muster, die Aktionen und wie oft Sie welchen Ordner geöffnet haben. Dann beendet sich Quillon; beim nächsten Start beginnt es mit der Einrichtung. Ihre Ordner und Dateien bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>&amp;Erase All Settings and Quit</source>
        <translation>Alle Einstellungen &amp;löschen und beenden</translation>
    </message>
    <message>
        <source>&amp;Keep Everything</source>
        <translation>Alles &amp;behalten</translation>
    </message>
    <message>
        <source>1 folder so far</source>
        <translation>1 Ordner bis jetzt</translation>
    </message>
    <message>
        <source>%1 folders so far</source>
        <translation>%1 Ordner bis jetzt</translation>
    </message>
    <message>
        <source>%1, %2 a second</source>
        <translation>%1, %2 in der Sekunde</translation>
    </message>
    <message>
        <source>The settings could not be erased.</source>
        <translation>Die Einstellungen konnten nicht gelöscht werden.</translation>
    </message>
</context>
<context>
    <name>quillon::ForgetUsesViewController</name>
    <message>
        <source>Forget Uses</source>
        <translation>Zählungen vergessen</translation>
    </message>
    <message>
        <source>&amp;Done</source>
        <translation>&amp;Fertig</translation>
    </message>
    <message>
        <source>&amp;Forget</source>
        <translation>&amp;Vergessen</translation>
    </message>
    <message>
        <source>Forget &amp;All</source>
        <translation>&amp;Alle vergessen</translation>
    </message>
    <message>
        <source>The folders and files that you opened, and how often. Forgotten ones stand in the list of matches where their names put them.</source>
        <translation>Die Ordner und Dateien, die Sie geöffnet haben, und wie oft. Vergessene stehen unter den Treffern dort, wo ihr Name sie hinstellt.</translation>
    </message>
    <message>
        <source>Uses</source>
        <translation>Zählungen</translation>
    </message>
    <message>
        <source>Nothing has been opened yet.</source>
        <translation>Noch wurde nichts geöffnet.</translation>
    </message>
</context>
<context>
    <name>quillon::FormSheet</name>
    <message>
        <source>&amp;Cancel</source>
        <translation>A&amp;bbrechen</translation>
    </message>
</context>
<context>
    <name>quillon::GeneralPreferencesViewController</name>
    <message>
        <source>Sho&amp;rtcut:</source>
        <translation>Tasten&amp;kürzel:</translation>
    </message>
    <message>
        <source>Shows the search panel from anywhere, and hides it again.</source>
        <translation>Zeigt das Suchfenster von überall her und verbirgt es wieder.</translation>
    </message>
    <message>
        <source>&amp;File manager:</source>
        <translation>&amp;Dateiverwaltung:</translation>
    </message>
    <message>
        <source>&amp;Open folders in:</source>
        <translation>&amp;Ordner öffnen in:</translation>
    </message>
    <message>
        <source>Find &amp;items of the window in front first</source>
        <translation>&amp;Inhalt des vordersten Fensters zuerst finden</translation>
    </message>
    <message>
        <source>Quick search:</source>
        <translation>Schnellsuche:</translation>
    </message>
    <message>
        <source>When the panel comes up over a window of the file manager, the items that it shows stand before all others.</source>
        <translation>Erscheint das Suchfenster über einem Fenster der Dateiverwaltung, stehen die Dinge, die es zeigt, vor allen anderen.</translation>
    </message>
    <message>
        <source>Choosin&amp;g one of them:</source>
        <translation>Da&amp;von gewählt:</translation>
    </message>
    <message>
        <source>Start at &amp;login</source>
        <translation>Bei der Anmeldung &amp;starten</translation>
    </message>
    <message>
        <source>Start:</source>
        <translation>Start:</translation>
    </message>
    <message>
        <source>Quillon then waits in the background for its shortcut.</source>
        <translation>Quillon wartet dann im Hintergrund auf sein Tastenkürzel.</translation>
    </message>
    <message>
        <source>The desktop&apos;s default</source>
        <translation>Standard der Arbeitsumgebung</translation>
    </message>
    <message>
        <source>The desktop&apos;s default (%1)</source>
        <translation>Standard der Arbeitsumgebung (%1)</translation>
    </message>
    <message>
        <source>%1 (not installed)</source>
        <translation>%1 (nicht installiert)</translation>
    </message>
</context>
<context>
    <name>quillon::LightningSearchTableRowView</name>
    <message>
        <source>front window</source>
        <translation>vorderstes Fenster</translation>
    </message>
</context>
<context>
    <name>quillon::MenuButton</name>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Menu (F10)</source>
        <translation>Menü (F10)</translation>
    </message>
</context>
<context>
    <name>quillon::PanelMenus</name>
    <message>
        <source>Preferences…</source>
        <translation>Einstellungen…</translation>
    </message>
    <message>
        <source>Send Feedback…</source>
        <translation>Feedback senden…</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Updates suchen…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
</context>
<context>
    <name>quillon::PanelMessage</name>
    <message>
        <source>Search the Home Folder</source>
        <translation>Persönlichen Ordner durchsuchen</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Einstellungen…</translation>
    </message>
</context>
<context>
    <name>quillon::PreferencesViewController</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>&amp;General</source>
        <translation>&amp;Allgemein</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>S&amp;uche</translation>
    </message>
    <message>
        <source>&amp;Actions</source>
        <translation>Aktio&amp;nen</translation>
    </message>
    <message>
        <source>Ad&amp;vanced</source>
        <translation>E&amp;rweitert</translation>
    </message>
</context>
<context>
    <name>quillon::ProgressIndicator</name>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
</context>
<context>
    <name>quillon::QLNShortcutValidator</name>
    <message>
        <source>%1 needs Ctrl, Alt or Super with it, or a function key.</source>
        <translation>%1 braucht Strg, Alt oder Super dazu oder eine Funktionstaste.</translation>
    </message>
    <message>
        <source>%1 is in use by another program.</source>
        <translation>%1 wird von einem anderen Programm benutzt.</translation>
    </message>
    <message>
        <source>No key of this keyboard is %1.</source>
        <translation>Auf dieser Tastatur gibt es %1 nicht.</translation>
    </message>
    <message>
        <source>The desktop did not give %1 to Quillon.</source>
        <translation>Die Arbeitsumgebung hat Quillon %1 nicht gegeben.</translation>
    </message>
    <message>
        <source>Programs cannot take keys in this session. Bind a key to “quillon --toggle” in the desktop’s keyboard settings.</source>
        <translation>In dieser Sitzung können sich Programme keine Tasten nehmen. Legen Sie in den Tastatureinstellungen der Arbeitsumgebung „quillon --toggle“ auf eine Taste.</translation>
    </message>
</context>
<context>
    <name>quillon::QLNShortcutView</name>
    <message>
        <source>Click, then press the keys that bring the panel up</source>
        <translation>Klicken Sie und drücken Sie dann die Tasten, die das Suchfenster aufrufen</translation>
    </message>
    <message>
        <source>Escape keeps the shortcut as it is, Backspace removes it.</source>
        <translation>Escape lässt das Tastenkürzel, wie es ist, die Rücktaste entfernt es.</translation>
    </message>
    <message>
        <source>The settings could not be written.</source>
        <translation>Die Einstellungen konnten nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>Record Shortcut</source>
        <translation>Tastenkürzel aufnehmen</translation>
    </message>
    <message>
        <source>Press the keys…</source>
        <translation>Tasten drücken…</translation>
    </message>
    <message>
        <source>Bound by the desktop</source>
        <translation>Von der Arbeitsumgebung belegt</translation>
    </message>
    <message>
        <source>Shortcut that shows the panel: %1</source>
        <translation>Tastenkürzel, das das Suchfenster zeigt: %1</translation>
    </message>
</context>
<context>
    <name>quillon::SearchPanelView</name>
    <message>
        <source>Find a folder</source>
        <translation>Ordner suchen</translation>
    </message>
    <message>
        <source>Update…</source>
        <translation>Update…</translation>
    </message>
</context>
<context>
    <name>quillon::SearchResultsTable</name>
    <message>
        <source>Folders</source>
        <translation>Ordner</translation>
    </message>
</context>
</TS>
