<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>ActionHints</name>
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
        <translation>Im Ordner zeigen</translation>
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
        <translation>Im Fenster der Dateiverwaltung auswählen</translation>
    </message>
    <message>
        <source>Open in %1</source>
        <translation>In %1 öffnen</translation>
    </message>
</context>
<context>
    <name>Feedback</name>
    <message>
        <source>Quillon – Feedback</source>
        <translation>Quillon – Rückmeldung</translation>
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
    <name>IncludeFolders</name>
    <message>
        <source>“%1” is searched already.</source>
        <translation>„%1“ wird schon durchsucht.</translation>
    </message>
    <message>
        <source>“%1” is no folder.</source>
        <translation>„%1“ ist kein Ordner.</translation>
    </message>
    <message>
        <source>“%1” cannot be read, so it cannot be searched.</source>
        <translation>„%1“ kann nicht gelesen und deshalb nicht durchsucht werden.</translation>
    </message>
    <message>
        <source>“%1” counts as a single item: nothing in it would be found.</source>
        <translation>„%1“ gilt als ein einziges Ding: Nichts darin würde gefunden.</translation>
    </message>
    <message>
        <source>“%1” is searched already, as a part of “%2”.</source>
        <translation>„%1“ wird schon durchsucht, als Teil von „%2“.</translation>
    </message>
</context>
<context>
    <name>KeyNames</name>
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
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Rücktaste</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>Insert</source>
        <translation>Einfg</translation>
    </message>
    <message>
        <source>PageUp</source>
        <translation>Bild auf</translation>
    </message>
    <message>
        <source>PageDown</source>
        <translation>Bild ab</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Pos1</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Druck</translation>
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
    <message>
        <source>The folders to search are away</source>
        <translation>Die zu durchsuchenden Ordner fehlen gerade</translation>
    </message>
    <message>
        <source>Connect the disk or the network share of “%1”, or choose other folders in the preferences</source>
        <translation>Verbinden Sie den Datenträger oder die Netzwerkfreigabe von „%1“, oder wählen Sie in den Einstellungen andere Ordner</translation>
    </message>
    <message>
        <source>“%1” is away</source>
        <translation>„%1“ fehlt gerade</translation>
    </message>
    <message numerus="yes">
        <source>%Ln search folder(s) away</source>
        <translation>
            <numerusform>%Ln Suchordner fehlt gerade</numerusform>
            <numerusform>%Ln Suchordner fehlen gerade</numerusform>
        </translation>
    </message>
    <message>
        <source>There is no “%1”</source>
        <translation>„%1“ gibt es nicht</translation>
    </message>
    <message>
        <source>Check the path for a typing mistake.</source>
        <translation>Prüfen Sie, ob Sie sich beim Pfad vertippt haben.</translation>
    </message>
    <message>
        <source>“%1” is gone</source>
        <translation>„%1“ ist nicht mehr da</translation>
    </message>
    <message>
        <source>%1 was moved, renamed or deleted. Search for its new name, or look in the trash.</source>
        <translation>%1 wurde verschoben, umbenannt oder gelöscht. Suchen Sie nach dem neuen Namen, oder sehen Sie im Papierkorb nach.</translation>
    </message>
    <message>
        <source>“%1” does not answer</source>
        <translation>„%1“ antwortet nicht</translation>
    </message>
    <message>
        <source>Check that the disk or the network share of %1 is connected, then try again.</source>
        <translation>Prüfen Sie, ob der Datenträger oder die Netzwerkfreigabe von %1 verbunden ist, und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>“%1” could not be opened</source>
        <translation>„%1“ konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>No file manager is installed. Install one, then try again.</source>
        <translation>Es ist kein Dateimanager installiert. Installieren Sie einen, und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>The file manager did not answer. Try again, or choose another one in the preferences under “General”.</source>
        <translation>Der Dateimanager hat nicht geantwortet. Versuchen Sie es noch einmal, oder wählen Sie in den Einstellungen unter „Allgemein“ einen anderen.</translation>
    </message>
    <message>
        <source>No application opens files of this kind. Choose one in your file manager.</source>
        <translation>Kein Programm öffnet Dateien dieser Art. Wählen Sie in Ihrem Dateimanager eines aus.</translation>
    </message>
    <message>
        <source>“%1” could not be opened with “%2”</source>
        <translation>„%1“ konnte nicht mit „%2“ geöffnet werden</translation>
    </message>
    <message>
        <source>Install the application, or choose another one in the preferences under “Actions”.</source>
        <translation>Installieren Sie das Programm, oder wählen Sie in den Einstellungen unter „Aktionen“ ein anderes.</translation>
    </message>
    <message>
        <source>“%1” could not be started</source>
        <translation>„%1“ konnte nicht gestartet werden</translation>
    </message>
    <message>
        <source>Check that %1 is there and may be run, or choose another program in the preferences under “Actions”.</source>
        <translation>Prüfen Sie, ob %1 vorhanden und ausführbar ist, oder wählen Sie in den Einstellungen unter „Aktionen“ ein anderes Programm.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>Quillon – Not Opened</source>
        <translation>Quillon – Nicht geöffnet</translation>
    </message>
    <message>
        <source>Indexing stopped: %1</source>
        <translation>Angehalten: %1</translation>
    </message>
    <message>
        <source>Checking for changes: %1</source>
        <translation>Sucht nach Änderungen: %1</translation>
    </message>
    <message>
        <source>“%1” is not there now</source>
        <translation>„%1“ ist gerade nicht da</translation>
    </message>
    <message>
        <source>Connect “%1”, which holds %2, then try again.</source>
        <translation>Schließen Sie „%1“ an, dort liegt %2, und versuchen Sie es noch einmal.</translation>
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
        <source>%1 will %2 with %3</source>
        <extracomment>A sentence about the keys %1: what they do (%2), and to or with what (%3).</extracomment>
        <translation>%1: %2, mit %3</translation>
    </message>
    <message>
        <source>By the whole path</source>
        <translation>Nach dem ganzen Pfad</translation>
    </message>
    <message>
        <source>Names first</source>
        <translation>Namen zuerst</translation>
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
    <message>
        <source>%1, kept on top</source>
        <translation>%1, oben gehalten</translation>
    </message>
    <message>
        <source>%1, not there now</source>
        <translation>%1, gerade nicht da</translation>
    </message>
</context>
<context>
    <name>SearchBaseLocation</name>
    <message>
        <source> – Include Folder, Recursive</source>
        <translation> – Ordner mit allen Unterordnern</translation>
    </message>
    <message>
        <source> – Exclude Pattern</source>
        <translation> – Ausschlussmuster</translation>
    </message>
    <message>
        <source> – Include Files with Extension</source>
        <translation> – Dateien mit dieser Endung</translation>
    </message>
    <message>
        <source> – not there now</source>
        <translation> – zurzeit nicht da</translation>
    </message>
    <message>
        <source> – may not be read</source>
        <translation> – darf nicht gelesen werden</translation>
    </message>
</context>
<context>
    <name>SettingsGate</name>
    <message>
        <source>Quillon – Settings</source>
        <translation>Quillon – Einstellungen</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2.</source>
        <translation>%1 kann nicht gelesen werden: %2.</translation>
    </message>
    <message>
        <source>There is a mistake in line %2, column %3 of %1: %4.</source>
        <translation>In Zeile %2, Spalte %3 von %1 ist ein Fehler: %4.</translation>
    </message>
    <message>
        <source>The settings cannot be read</source>
        <translation>Die Einstellungen sind nicht lesbar</translation>
    </message>
    <message>
        <source>Quillon starts as soon as the file is right. If you begin anew instead, the file gets another name and Quillon starts with its set-up.</source>
        <translation>Quillon startet, sobald die Datei stimmt. Wenn Sie stattdessen neu beginnen, bekommt die Datei einen anderen Namen und Quillon startet mit der Einrichtung.</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>Begin &amp;Anew</source>
        <translation>&amp;Neu beginnen</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>“%1” is “%2”, and has to be one of these: %3.</source>
        <translation>„%1“ ist „%2“, möglich ist aber nur eines davon: %3.</translation>
    </message>
    <message>
        <source>A setting is wrong</source>
        <translation>Eine Einstellung stimmt nicht</translation>
    </message>
    <message>
        <source>Quillon starts as soon as this is right in %1.</source>
        <translation>Quillon startet, sobald das in %1 stimmt.</translation>
    </message>
    <message>
        <source>&amp;Open the File</source>
        <translation>Datei &amp;öffnen</translation>
    </message>
    <message>
        <source>No program opens the file by itself. Open it in a text editor: %1</source>
        <translation>Kein Programm öffnet die Datei von sich aus. Öffnen Sie sie in einem Texteditor: %1</translation>
    </message>
    <message>
        <source>Your former settings are kept</source>
        <translation>Ihre bisherigen Einstellungen sind aufbewahrt</translation>
    </message>
    <message>
        <source>They are in %1. Quillon now starts with its set-up.</source>
        <translation>Sie stehen in %1. Quillon startet jetzt mit der Einrichtung.</translation>
    </message>
    <message>
        <source>&amp;Continue</source>
        <translation>&amp;Weiter</translation>
    </message>
    <message>
        <source>%1 could not be renamed, so nothing was changed.</source>
        <translation>%1 konnte nicht umbenannt werden, darum wurde nichts geändert.</translation>
    </message>
</context>
<context>
    <name>UpdateNotices</name>
    <message>
        <source>The server that knows of new versions cannot be reached. Is this computer online?</source>
        <translation>Der Server, der neue Versionen kennt, ist nicht erreichbar. Ist dieser Rechner online?</translation>
    </message>
    <message>
        <source>The server that knows of new versions did not answer in time. Try again later.</source>
        <translation>Der Server, der neue Versionen kennt, hat nicht rechtzeitig geantwortet. Versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>The connection to the server that knows of new versions is not secure, so nothing was taken from it. A network that wants you to log in first can be the reason.</source>
        <translation>Die Verbindung zum Server, der neue Versionen kennt, ist nicht sicher, deshalb wurde nichts von ihm übernommen. Der Grund kann ein Netz sein, an dem Sie sich erst anmelden müssen.</translation>
    </message>
    <message>
        <source>The server that knows of new versions has no answer just now. Try again later.</source>
        <translation>Der Server, der neue Versionen kennt, hat gerade keine Antwort. Versuchen Sie es später noch einmal.</translation>
    </message>
    <message>
        <source>The answer was not signed by the makers of Quillon, so it was ignored. A network that wants you to log in first can be the reason.</source>
        <translation>Die Antwort war nicht von den Herstellern von Quillon unterschrieben und wurde deshalb nicht beachtet. Der Grund kann ein Netz sein, an dem Sie sich erst anmelden müssen.</translation>
    </message>
    <message>
        <source>This version of Quillon does not understand the answer.</source>
        <translation>Diese Version von Quillon versteht die Antwort nicht.</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>Es wird nach Aktualisierungen gesucht…</translation>
    </message>
    <message>
        <source>You have version %1.</source>
        <translation>Sie haben Version %1.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>Quillon %1 is available</source>
        <translation>Quillon %1 ist verfügbar</translation>
    </message>
    <message>
        <source>You have version %1. Quillon installs nothing by itself: “Download” opens the page of the new version in your web browser.</source>
        <translation>Sie haben Version %1. Quillon installiert nichts von selbst: „Herunterladen“ öffnet die Seite der neuen Version im Webbrowser.</translation>
    </message>
    <message>
        <source>&amp;Later</source>
        <translation>&amp;Später</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>&amp;Herunterladen</translation>
    </message>
    <message>
        <source>&amp;What’s New</source>
        <translation>&amp;Was ist neu</translation>
    </message>
    <message>
        <source>Quillon is up to date</source>
        <translation>Quillon ist aktuell</translation>
    </message>
    <message>
        <source>Version %1 is the newest one.</source>
        <translation>Version %1 ist die neueste.</translation>
    </message>
    <message>
        <source>This Quillon does not look for updates</source>
        <translation>Dieses Quillon sucht nicht nach Aktualisierungen</translation>
    </message>
    <message>
        <source>You have version %1. New versions come the way this one was installed, usually with the updates of your system.</source>
        <translation>Sie haben Version %1. Neue Versionen kommen auf dem Weg, auf dem diese installiert wurde, meist mit den Aktualisierungen des Systems.</translation>
    </message>
    <message>
        <source>Quillon could not check for updates</source>
        <translation>Quillon konnte nicht nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>No web browser was found</source>
        <translation>Kein Webbrowser gefunden</translation>
    </message>
    <message>
        <source>The page is here: %1</source>
        <translation>Die Seite steht hier: %1</translation>
    </message>
</context>
<context>
    <name>Updater</name>
    <message>
        <source>Quillon – Updates</source>
        <translation>Quillon – Aktualisierungen</translation>
    </message>
</context>
<context>
    <name>WriteFault</name>
    <message>
        <source>The settings could not be written.</source>
        <translation>Die Einstellungen konnten nicht geschrieben werden.</translation>
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
    <message>
        <source>&amp;Change…</source>
        <translation>Än&amp;dern…</translation>
    </message>
    <message>
        <source>Set &amp;Back…</source>
        <translation>&amp;Zurücksetzen…</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Set Actions Back</source>
        <translation>Aktionen zurücksetzen</translation>
    </message>
    <message>
        <source>&amp;Set Back</source>
        <translation>&amp;Zurücksetzen</translation>
    </message>
    <message>
        <source>Your list is replaced by the actions that Quillon came with. It cannot be brought back.</source>
        <translation>Ihre Liste wird durch die Aktionen ersetzt, die Quillon mitbringt. Sie lässt sich nicht wiederherstellen.</translation>
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
    <message>
        <source>Change Action</source>
        <translation>Aktion ändern</translation>
    </message>
</context>
<context>
    <name>quillon::AddExcludePatternSearchLocation</name>
    <message>
        <source>Exclude Folders Matching Pattern</source>
        <translation>Ordner nach Muster ausschließen</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Pattern:</source>
        <translation>&amp;Muster:</translation>
    </message>
    <message>
        <source>“%1” is listed already.</source>
        <translation>„%1“ steht schon in der Liste.</translation>
    </message>
    <message>
        <source>A folder is left out when its path contains this text, and everything below it, too. Capital letters match only themselves.</source>
        <translation>Ein Ordner wird ausgelassen, wenn sein Pfad diesen Text enthält, und alles darunter ebenso. Groß- und Kleinbuchstaben werden unterschieden.</translation>
    </message>
    <message>
        <source>Nothing that is indexed now would be left out.</source>
        <translation>Nichts, was jetzt erfasst ist, würde ausgelassen.</translation>
    </message>
    <message>
        <source>Leaves out %1 of %2 indexed folders, among them:
%3</source>
        <translation>Lässt %1 von %2 erfassten Ordnern aus, darunter:
%3</translation>
    </message>
    <message>
        <source>Leaves out everything that is indexed, %1 folders, among them:
%2</source>
        <translation>Lässt alles aus, was erfasst ist, %1 Ordner, darunter:
%2</translation>
    </message>
    <message>
        <source>&amp;Add Anyway</source>
        <translation>&amp;Trotzdem hinzufügen</translation>
    </message>
    <message>
        <source>Which text is to keep folders out?</source>
        <translation>Welcher Text soll Ordner ausschließen?</translation>
    </message>
</context>
<context>
    <name>quillon::AddIncludeFilePatternViewController</name>
    <message>
        <source>Include Files with Extension</source>
        <translation>Dateien mit Endung einbeziehen</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Extension:</source>
        <translation>&amp;Endung:</translation>
    </message>
    <message>
        <source>The dot is dropped: it stands before every extension.</source>
        <translation>Der Punkt entfällt: Er steht vor jeder Endung.</translation>
    </message>
    <message>
        <source>Files whose names end in a dot and this are found like folders. Capital letters match only themselves.</source>
        <translation>Dateien, deren Name auf einen Punkt und diese Endung endet, werden wie Ordner gefunden. Groß- und Kleinbuchstaben werden unterschieden.</translation>
    </message>
    <message>
        <source>Which extension is to be included?</source>
        <translation>Welche Endung soll einbezogen werden?</translation>
    </message>
    <message>
        <source>“%1” is listed already.</source>
        <translation>„%1“ steht schon in der Liste.</translation>
    </message>
    <message>
        <source>An extension holds no slash.</source>
        <translation>Eine Endung enthält keinen Schrägstrich.</translation>
    </message>
    <message>
        <source>Only what follows the last dot counts: “%1”.</source>
        <translation>Nur was auf den letzten Punkt folgt, zählt: „%1“.</translation>
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
        <source>Set-up:</source>
        <translation>Einrichtung:</translation>
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
        <source>&amp;Forget Folders…</source>
        <translation>Ordner &amp;vergessen…</translation>
    </message>
    <message>
        <source>Opened and kept:</source>
        <translation>Geöffnet, gehalten:</translation>
    </message>
    <message>
        <source>How often you opened a folder lifts it in the list of matches. What you keep on top stands first when nothing is typed.</source>
        <translation>Je öfter Sie einen Ordner geöffnet haben, desto weiter oben steht er unter den Treffern. Was Sie oben halten, steht vorn, wenn nichts getippt ist.</translation>
    </message>
    <message>
        <source>Forgets the shortcut, the search locations, the use counts and what you keep on top, and asks as at the first start.</source>
        <translation>Vergisst das Tastenkürzel, die Suchorte, die Zählungen und was Sie oben halten, und fragt wie beim ersten Start.</translation>
    </message>
    <message>
        <source>The shortcut, the search locations with their patterns, the count of every use and the list of what you keep on top are removed from the settings and cannot be brought back. Then Quillon asks for a shortcut and folders as it did at its first start. Your folders and files are not touched.</source>
        <translation>Das Tastenkürzel, die Suchorte mit ihren Mustern, alle Zählungen und die Liste dessen, was Sie oben halten, werden aus den Einstellungen entfernt und können nicht wiederhergestellt werden. Dann fragt Quillon wie beim ersten Start nach einem Tastenkürzel und nach Ordnern. Ihre Ordner und Dateien werden nicht angetastet.</translation>
    </message>
</context>
<context>
    <name>quillon::AppDelegate</name>
    <message>
        <source>%1 does not work. Preferences…</source>
        <translation>%1 funktioniert nicht. Einstellungen…</translation>
    </message>
    <message>
        <source>%1 does not bring Quillon up</source>
        <translation>%1 holt Quillon nicht nach vorn</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Einstellungen…</translation>
    </message>
    <message>
        <source>Quillon – Keys</source>
        <translation>Quillon – Tasten</translation>
    </message>
</context>
<context>
    <name>quillon::AppleEventPermissionViewController</name>
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
    <message>
        <source>Quillon opens the folders you choose in your file manager and, if you switch that on, searches its front window. What it learns stays on this computer. Your desktop may ask, too.</source>
        <translation>Quillon öffnet die gewählten Ordner in Ihrer Dateiverwaltung und durchsucht, wenn Sie es einschalten, deren vorderstes Fenster. Was es dabei erfährt, bleibt auf diesem Rechner. Vielleicht fragt auch Ihr Desktop nach.</translation>
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
        <source>Continue in &amp;Background</source>
        <translation>Im &amp;Hintergrund weiterarbeiten</translation>
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
    <message>
        <source>&amp;Stop…</source>
        <translation>&amp;Anhalten…</translation>
    </message>
    <message>
        <source>Stop indexing?</source>
        <translation>Indizierung anhalten?</translation>
    </message>
    <message>
        <source>Until the index is rebuilt, Quillon then finds only the folders that it has read so far.</source>
        <translation>Bis der Index neu aufgebaut wird, findet Quillon dann nur die Ordner, die es schon gelesen hat.</translation>
    </message>
    <message>
        <source>To begin anew instead, you can erase every setting for good: the shortcut, the folders to search, the patterns, the actions and the use counts. Quillon then quits and starts with its set-up the next time. Your folders and files stay as they are.</source>
        <translation>Um stattdessen ganz neu zu beginnen, können Sie alle Einstellungen endgültig löschen: das Tastenkürzel, die zu durchsuchenden Ordner, die Muster, die Aktionen und die Nutzungszähler. Quillon beendet sich dann und beginnt beim nächsten Start mit der Einrichtung. Ihre Ordner und Dateien bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>&amp;Erase All and Quit</source>
        <translation>Alles &amp;löschen und beenden</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>&amp;Anhalten</translation>
    </message>
    <message>
        <source>&amp;Continue</source>
        <translation>&amp;Weiter</translation>
    </message>
    <message>
        <source>Processing %1</source>
        <translation>Liest %1</translation>
    </message>
</context>
<context>
    <name>quillon::FolderChoice</name>
    <message>
        <source>counting…</source>
        <translation>wird gezählt…</translation>
    </message>
    <message>
        <source>%1 folders…</source>
        <translation>%1 Ordner…</translation>
    </message>
    <message>
        <source>1 folder</source>
        <translation>1 Ordner</translation>
    </message>
    <message>
        <source>%1 folders</source>
        <translation>%1 Ordner</translation>
    </message>
</context>
<context>
    <name>quillon::ForgetFoldersViewController</name>
    <message>
        <source>Forget Folders</source>
        <translation>Ordner vergessen</translation>
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
        <source>Do &amp;Not Keep on Top</source>
        <translation>&amp;Nicht oben halten</translation>
    </message>
    <message>
        <source>Forget &amp;All</source>
        <translation>&amp;Alle vergessen</translation>
    </message>
    <message>
        <source>The folders and files that you keep on top, and those that you opened, and how often. Forgotten ones stand in the list of matches where their names put them.</source>
        <translation>Die Ordner und Dateien, die Sie oben halten, und die, die Sie geöffnet haben, und wie oft. Vergessene stehen unter den Treffern dort, wo ihr Name sie hinstellt.</translation>
    </message>
    <message>
        <source>Kept and opened folders</source>
        <translation>Gehaltene und geöffnete Ordner</translation>
    </message>
    <message>
        <source>Nothing has been opened yet.</source>
        <translation>Noch wurde nichts geöffnet.</translation>
    </message>
    <message>
        <source>kept on top</source>
        <translation>oben gehalten</translation>
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
        <source>Choosing one of &amp;them:</source>
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
    <message>
        <source>Or&amp;der of the rows:</source>
        <translation>Reihen&amp;folge der Zeilen:</translation>
    </message>
    <message>
        <source>Folders whose own names begin with what is typed come first.</source>
        <translation>Ordner, deren eigener Name mit dem Getippten beginnt, stehen vorn.</translation>
    </message>
    <message>
        <source>The letters count by where they lie in the whole path.</source>
        <translation>Die Buchstaben zählen danach, wo sie im ganzen Pfad stehen.</translation>
    </message>
    <message>
        <source>Find &amp;words in any order, and without their accents</source>
        <translation>&amp;Wörter in beliebiger Reihenfolge und ohne Akzente finden</translation>
    </message>
    <message>
        <source>Further rows:</source>
        <translation>Weitere Zeilen:</translation>
    </message>
    <message>
        <source>They follow when few folders match as typed.</source>
        <translation>Sie folgen, wenn auf das Getippte nur wenige Ordner passen.</translation>
    </message>
    <message>
        <source>Answer in GNOME&apos;s overview and in &amp;KRunner</source>
        <translation>In der Übersicht von &amp;GNOME und in KRunner antworten</translation>
    </message>
    <message>
        <source>Desktop search:</source>
        <translation>Suche des Desktops:</translation>
    </message>
    <message>
        <source>&amp;Enter what is opened in the desktop&apos;s list</source>
        <translation>In die Liste der Arbeitsumgebung &amp;eintragen, was geöffnet wird</translation>
    </message>
    <message>
        <source>Recent files:</source>
        <translation>Zuletzt benutzt:</translation>
    </message>
    <message>
        <source>File choosers show it. If the desktop is set to remember nothing, nothing is entered.</source>
        <translation>Dateiauswahlfenster zeigen sie. Soll sich die Arbeitsumgebung nichts merken, wird nichts eingetragen.</translation>
    </message>
</context>
<context>
    <name>quillon::IndexStatusNote</name>
    <message>
        <source>1 folder</source>
        <translation>1 Ordner</translation>
    </message>
    <message>
        <source>%1 folders</source>
        <translation>%1 Ordner</translation>
    </message>
    <message>
        <source>Indexing: %1 so far.</source>
        <translation>Wird erfasst: bis jetzt %1.</translation>
    </message>
    <message>
        <source>%1 indexed</source>
        <translation>%1 erfasst</translation>
    </message>
    <message>
        <source>%1 of %2 watched</source>
        <translation>%1 von %2 beobachtet</translation>
    </message>
    <message>
        <source>%1 MB of memory</source>
        <translation>%1 MB Speicher</translation>
    </message>
    <message>
        <source>built at %1 in %2 s</source>
        <translation>um %1 in %2 s aufgebaut</translation>
    </message>
</context>
<context>
    <name>quillon::KeysView</name>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>Show the panel, or hide it</source>
        <translation>Das Suchfenster zeigen oder schließen</translation>
    </message>
    <message>
        <source>Choose a row</source>
        <translation>Eine Zeile wählen</translation>
    </message>
    <message>
        <source>Choose the first or the last row</source>
        <translation>Die erste oder letzte Zeile wählen</translation>
    </message>
    <message>
        <source>Do the same as Return alone</source>
        <translation>Dasselbe wie die Eingabetaste allein</translation>
    </message>
    <message>
        <source>Open one of the first nine rows</source>
        <translation>Eine der ersten neun Zeilen öffnen</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>List what can be done with the row</source>
        <translation>Zeigen, was sich mit der Zeile tun lässt</translation>
    </message>
    <message>
        <source>Go to the buttons</source>
        <translation>Zu den Schaltflächen gehen</translation>
    </message>
    <message>
        <source>Open the preferences</source>
        <translation>Die Einstellungen öffnen</translation>
    </message>
    <message>
        <source>Show this page</source>
        <translation>Diese Seite zeigen</translation>
    </message>
    <message>
        <source>Quit Quillon</source>
        <translation>Quillon beenden</translation>
    </message>
    <message>
        <source>Close the panel</source>
        <translation>Das Suchfenster schließen</translation>
    </message>
    <message>
        <source>Keep the row on top, or no longer</source>
        <translation>Die Zeile oben halten oder nicht länger</translation>
    </message>
    <message>
        <source>Forget the row’s uses and keep it on top no longer</source>
        <translation>Vergessen, wie oft die Zeile geöffnet wurde, und sie nicht länger oben halten</translation>
    </message>
</context>
<context>
    <name>quillon::LightningSearchTableRowView</name>
    <message>
        <source>front window</source>
        <translation>vorderstes Fenster</translation>
    </message>
    <message>
        <source>kept on top</source>
        <translation>oben gehalten</translation>
    </message>
    <message>
        <source>not there now · %1</source>
        <translation>gerade nicht da · %1</translation>
    </message>
</context>
<context>
    <name>quillon::LightningSearchViewController</name>
    <message>
        <source>Leave this folder out…</source>
        <translation>Diesen Ordner auslassen…</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>Keep on top</source>
        <translation>Oben halten</translation>
    </message>
    <message>
        <source>Forget this folder</source>
        <translation>Diesen Ordner vergessen</translation>
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
    <name>quillon::OnboardingFolders</name>
    <message>
        <source>The folders to search</source>
        <translation>Die Ordner, die durchsucht werden</translation>
    </message>
    <message>
        <source>Home folder (%1)</source>
        <translation>Persönlicher Ordner (%1)</translation>
    </message>
    <message>
        <source>Choose &amp;Folder…</source>
        <translation>&amp;Ordner wählen…</translation>
    </message>
    <message>
        <source>Everything below them is found, except what is hidden.</source>
        <translation>Alles darunter wird gefunden, nur Verstecktes nicht.</translation>
    </message>
    <message>
        <source>Choose the folders to search</source>
        <translation>Ordner zum Durchsuchen wählen</translation>
    </message>
    <message>
        <source>1 folder chosen</source>
        <translation>1 Ordner gewählt</translation>
    </message>
    <message>
        <source>%1 folders chosen</source>
        <translation>%1 Ordner gewählt</translation>
    </message>
</context>
<context>
    <name>quillon::OnboardingViewController</name>
    <message>
        <source>Set up Quillon</source>
        <translation>Quillon einrichten</translation>
    </message>
    <message>
        <source>The key that brings the panel up</source>
        <translation>Die Taste, die das Suchfenster aufruft</translation>
    </message>
    <message>
        <source>Programs cannot take keys in this session. Bind a key to this command in the desktop’s keyboard settings:</source>
        <translation>In dieser Sitzung können sich Programme keine Tasten nehmen. Legen Sie in den Tastatureinstellungen der Arbeitsumgebung diesen Befehl auf eine Taste:</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Done</source>
        <translation>&amp;Fertig</translation>
    </message>
    <message>
        <source>Choose a folder to go on.</source>
        <translation>Wählen Sie einen Ordner, um fortzufahren.</translation>
    </message>
    <message>
        <source>Record a shortcut to go on.</source>
        <translation>Nehmen Sie ein Tastenkürzel auf, um fortzufahren.</translation>
    </message>
    <message>
        <source>Record a shortcut and choose a folder to go on.</source>
        <translation>Nehmen Sie ein Tastenkürzel auf und wählen Sie einen Ordner, um fortzufahren.</translation>
    </message>
    <message>
        <source>Quit before the set-up is done?</source>
        <translation>Vor dem Ende der Einrichtung beenden?</translation>
    </message>
    <message>
        <source>Quillon cannot search without a key and a folder, so closing the set-up quits it. The next start continues from here, and what you have chosen so far is kept.</source>
        <translation>Ohne Tastenkürzel und Ordner kann Quillon nicht suchen, darum beendet es sich, wenn Sie die Einrichtung schließen. Der nächste Start fährt hier fort, und was Sie bisher gewählt haben, bleibt erhalten.</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Continue Set-Up</source>
        <translation>&amp;Weiter einrichten</translation>
    </message>
    <message>
        <source>Start at &amp;login</source>
        <translation>Beim An&amp;melden starten</translation>
    </message>
    <message>
        <source>Press another one here to change it.</source>
        <translation>Drücken Sie hier eine andere, um sie zu ändern.</translation>
    </message>
    <message>
        <source>Quillon cannot be started at login here.</source>
        <translation>Quillon kann hier nicht beim Anmelden gestartet werden.</translation>
    </message>
</context>
<context>
    <name>quillon::PanelFooter</name>
    <message>
        <source>More that can be done with the row</source>
        <translation>Was sich mit der Zeile noch tun lässt</translation>
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
        <translation>Rückmeldung senden…</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Aktualisierungen suchen…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Rebuild Now</source>
        <translation>Jetzt neu aufbauen</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
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
    <name>quillon::PanelSearch</name>
    <message>
        <source>Kept on top</source>
        <translation>Oben gehalten</translation>
    </message>
    <message>
        <source>Most used</source>
        <translation>Am häufigsten geöffnet</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Orte</translation>
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
    <name>quillon::SearchPreferencesViewController</name>
    <message>
        <source>A&amp;dd</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Re&amp;build Now</source>
        <translation>&amp;Jetzt neu aufbauen</translation>
    </message>
    <message>
        <source>Search locations</source>
        <translation>Suchorte</translation>
    </message>
    <message>
        <source>Drop folders here to search them</source>
        <translation>Ordner hier ablegen, um sie zu durchsuchen</translation>
    </message>
    <message>
        <source>What is searched, and what is left out of it. Folders can be dropped here.</source>
        <translation>Was durchsucht wird und was dabei ausgelassen wird. Ordner können hier abgelegt werden.</translation>
    </message>
    <message>
        <source>Add Search Folder (recursive search)</source>
        <translation>Suchordner hinzufügen (mit allen Unterordnern)</translation>
    </message>
    <message>
        <source>Exclude Folders Matching Pattern</source>
        <translation>Ordner nach Muster ausschließen</translation>
    </message>
    <message>
        <source>Include Files with Extension</source>
        <translation>Dateien mit Endung einbeziehen</translation>
    </message>
    <message>
        <source>Choose the folders to search</source>
        <translation>Ordner zum Durchsuchen wählen</translation>
    </message>
    <message>
        <source>Takes effect after a rebuild</source>
        <translation>Gilt nach dem Neuaufbau</translation>
    </message>
    <message>
        <source>Search hidden folders too</source>
        <translation>Auch versteckte Ordner durchsuchen</translation>
    </message>
</context>
<context>
    <name>quillon::SearchResultsTable</name>
    <message>
        <source>Folders</source>
        <translation>Ordner</translation>
    </message>
</context>
<context>
    <name>quillon::SetUpFlow</name>
    <message>
        <source>Rebuild Quillon Search</source>
        <translation>Suchindex von Quillon neu aufbauen</translation>
    </message>
    <message>
        <source>Set Up Quillon</source>
        <translation>Quillon einrichten</translation>
    </message>
</context>
</TS>
