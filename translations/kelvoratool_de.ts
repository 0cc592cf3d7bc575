<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>ArchiveFile</name>
    <message>
        <source>The file exists already</source>
        <translation>Die Datei ist bereits vorhanden</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>Write what the tool hears and does to FILE.</source>
        <translation>Schreibt in FILE, was das Programm hört und tut.</translation>
    </message>
    <message>
        <source>Use this language, such as &quot;de&quot;, instead of the desktop&apos;s.</source>
        <translation>Verwendet diese Sprache, zum Beispiel „de“, statt jener des Desktops.</translation>
    </message>
    <message>
        <source>Show these options and exit.</source>
        <translation>Zeigt diese Optionen an.</translation>
    </message>
    <message>
        <source>Show the version and exit.</source>
        <translation>Zeigt die Version an.</translation>
    </message>
    <message>
        <source>Unexpected argument &apos;%1&apos;.</source>
        <translation>Unerwartetes Argument „%1“.</translation>
    </message>
</context>
<context>
    <name>LogFile</name>
    <message>
        <source>Cannot write to %1: %2</source>
        <translation>In %1 kann nicht geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>Mainwindow</name>
    <message>
        <source>Logo</source>
        <extracomment>Only read aloud</extracomment>
        <translation>Logo</translation>
    </message>
    <message>
        <source>Screen Updates</source>
        <extracomment>The titles of the five tabs, which share some 850 pixels. Screen, Screen2 and E-Ink are types of displays</extracomment>
        <translation>Screen-Updates</translation>
    </message>
    <message>
        <source>Screen2 Updates</source>
        <translation>Screen2-Updates</translation>
    </message>
    <message>
        <source>E-Ink Updates</source>
        <translation>E-Ink-Updates</translation>
    </message>
    <message>
        <source>N6 Setup and Update</source>
        <translation>N6 einrichten und aktualisieren</translation>
    </message>
    <message>
        <source>N6 Configuration</source>
        <translation>N6-Konfiguration</translation>
    </message>
</context>
<context>
    <name>MonitorUpdate</name>
    <message>
        <source>&amp;Start Update</source>
        <extracomment>A button, 150 pixels wide</extracomment>
        <translation>Update &amp;starten</translation>
    </message>
    <message>
        <source>&amp;Abort Update</source>
        <extracomment>A button, 150 pixels wide</extracomment>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Select device for software update:</source>
        <extracomment>400 pixels wide, as the text for no devices, where %1 is a type of displays: screen, screen2 or eink</extracomment>
        <translation>Geräte für Software-Update auswählen:</translation>
    </message>
    <message>
        <source>No %1 devices available for update.</source>
        <translation>Keine %1-Geräte zum Aktualisieren.</translation>
    </message>
    <message>
        <source>Kelvora Instrument Update</source>
        <extracomment>A kind of files</extracomment>
        <translation>Update für Kelvora-Instrumente</translation>
    </message>
</context>
<context>
    <name>MonitorUpdateWidget</name>
    <message>
        <source>Upload progress</source>
        <extracomment>Only read aloud</extracomment>
        <translation>Fortschritt der Übertragung</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <extracomment>In 100 pixels, or two such lines: the file is on its way from this computer to the device</extracomment>
        <translation>Übertragung...</translation>
    </message>
    <message>
        <source>Updating...</source>
        <extracomment>The file was sent; the device may be installing it. In 100 pixels, or two such lines</extracomment>
        <translation>Aktualisierung...</translation>
    </message>
    <message>
        <source>Aborted.</source>
        <extracomment>The user has stopped the update of this display</extracomment>
        <translation>Abgebrochen.</translation>
    </message>
    <message>
        <source>%1 V
%2 Lux</source>
        <extracomment>Supply voltage and ambient light</extracomment>
        <translation>%1 V
%2 Lux</translation>
    </message>
    <message>
        <source>(LS)</source>
        <extracomment>A mark of the hardware, like (PO)</extracomment>
        <translation>(LS)</translation>
    </message>
    <message>
        <source>(PO)</source>
        <translation>(PO)</translation>
    </message>
    <message>
        <source>[Server]</source>
        <extracomment>Marks the display that holds the settings of the system</extracomment>
        <translation>[Server]</translation>
    </message>
    <message>
        <source>%1 %2  IP = %3  %4
APP %5  FW %6  OS %7</source>
        <extracomment>Serial number, (LS) or (PO), address, [Server] or nothing; versions of application, firmware and operating system. As narrow as it can be</extracomment>
        <translation>%1 %2  IP = %3  %4
APP %5  FW %6  OS %7</translation>
    </message>
</context>
<context>
    <name>N6Control</name>
    <message>
        <source>Kelvora</source>
        <translation>Kelvora</translation>
    </message>
    <message>
        <source>Your N6 firmware is outdated. Please optain an update from kelvora.example to ensure stable operation!</source>
        <translation>Die Firmware Ihres N6 ist veraltet. Bitte laden Sie ein Update von kelvora.example, um einen stabilen Betrieb sicherzustellen!</translation>
    </message>
    <message>
        <source>Serial Number</source>
        <translation>Seriennummer</translation>
    </message>
    <message>
        <source>Software Version</source>
        <translation>Softwareversion</translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation>IP-Adresse</translation>
    </message>
    <message>
        <source>no device found</source>
        <translation>kein Gerät gefunden</translation>
    </message>
    <message>
        <source>&amp;Open Webinterface</source>
        <extracomment>A button that shows the N6&apos;s own pages in the browser</extracomment>
        <translation>&amp;Weboberfläche öffnen</translation>
    </message>
    <message>
        <source>Port 1 Mode</source>
        <extracomment>The protocol that the N6 speaks on its serial port 1</extracomment>
        <translation>Modus von Port 1</translation>
    </message>
    <message>
        <source>Port 2 Mode</source>
        <extracomment>The protocol that the N6 speaks on its serial port 2</extracomment>
        <translation>Modus von Port 2</translation>
    </message>
    <message>
        <source>&amp;Update N6 Software</source>
        <translation>N6-Software &amp;aktualisieren</translation>
    </message>
    <message>
        <source>Upload progress</source>
        <extracomment>Only read aloud</extracomment>
        <translation>Fortschritt der Übertragung</translation>
    </message>
</context>
<context>
    <name>N6Device</name>
    <message>
        <source>Unknown</source>
        <extracomment>A model of the N6</extracomment>
        <translation>Unbekannt</translation>
    </message>
</context>
<context>
    <name>N6Widget</name>
    <message>
        <source>no device found</source>
        <translation>kein Gerät gefunden</translation>
    </message>
    <message>
        <source>%1   (%2)</source>
        <extracomment>Serial number and model of the N6</extracomment>
        <translation>%1   (%2)</translation>
    </message>
    <message>
        <source>%1   (FW %2)</source>
        <extracomment>Versions of the N6&apos;s software and firmware</extracomment>
        <translation>%1   (FW %2)</translation>
    </message>
    <message>
        <source>Kelvora N6 Update</source>
        <extracomment>A kind of files</extracomment>
        <translation>Update für den Kelvora N6</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <extracomment>The file is on its way from this computer to the N6</extracomment>
        <translation>Übertragung...</translation>
    </message>
    <message>
        <source>Updating...</source>
        <extracomment>The file was sent; the N6 may be installing it</extracomment>
        <translation>Aktualisierung...</translation>
    </message>
</context>
<context>
    <name>QCommandLineParser</name>
    <message>
        <source>Usage: %1</source>
        <extracomment>%1 is the program&apos;s name and &quot;[options]&quot;</extracomment>
        <translation>Aufruf: %1</translation>
    </message>
    <message>
        <source>[options]</source>
        <translation>[Optionen]</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>Optionen:</translation>
    </message>
    <message>
        <source>Unknown option &apos;%1&apos;.</source>
        <translation>Unbekannte Option „%1“.</translation>
    </message>
    <message>
        <source>Unknown options: %1.</source>
        <translation>Unbekannte Optionen: %1.</translation>
    </message>
    <message>
        <source>Missing value after &apos;%1&apos;.</source>
        <translation>Nach „%1“ fehlt ein Wert.</translation>
    </message>
    <message>
        <source>Unexpected value after &apos;%1&apos;.</source>
        <translation>Unerwarteter Wert nach „%1“.</translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>Look in:</source>
        <translation>Suchen in:</translation>
    </message>
    <message>
        <source>File &amp;name:</source>
        <translation>Datei&amp;name:</translation>
    </message>
    <message>
        <source>Files of type:</source>
        <translation>Dateityp:</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>&amp;Choose</source>
        <translation>&amp;Auswählen</translation>
    </message>
    <message>
        <source>Directory:</source>
        <translation>Ordner:</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>Zurückgehen</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vor</translation>
    </message>
    <message>
        <source>Go forward</source>
        <translation>Vorwärts gehen</translation>
    </message>
    <message>
        <source>Parent Directory</source>
        <translation>Übergeordneter Ordner</translation>
    </message>
    <message>
        <source>Go to the parent directory</source>
        <translation>Zum übergeordneten Ordner wechseln</translation>
    </message>
    <message>
        <source>Create New Folder</source>
        <translation>Neuen Ordner erstellen</translation>
    </message>
    <message>
        <source>Create a New Folder</source>
        <translation>Einen neuen Ordner erstellen</translation>
    </message>
    <message>
        <source>List View</source>
        <translation>Liste</translation>
    </message>
    <message>
        <source>Change to list view mode</source>
        <translation>Als Liste anzeigen</translation>
    </message>
    <message>
        <source>Detail View</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>Change to detail view mode</source>
        <translation>Mit Details anzeigen</translation>
    </message>
    <message>
        <source>Sidebar</source>
        <translation>Seitenleiste</translation>
    </message>
    <message>
        <source>List of places and bookmarks</source>
        <translation>Liste der Orte und Lesezeichen</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Mein Computer</translation>
    </message>
    <message>
        <source>Recent Places</source>
        <translation>Zuletzt besuchte Orte</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Show &amp;hidden files</source>
        <translation>&amp;Versteckte Dateien anzeigen</translation>
    </message>
    <message>
        <source>&amp;New Folder</source>
        <translation>&amp;Neuer Ordner</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <source>%1 File</source>
        <extracomment>In a list of kinds of files; %1 is an ending such as &quot;gz&quot;</extracomment>
        <translation>%1-Datei</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>File Folder</source>
        <translation>Dateiordner</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Drive</source>
        <translation>Laufwerk</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Verknüpfung</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 ist bereits vorhanden.
Möchten Sie die Datei ersetzen?</translation>
    </message>
    <message>
        <source>%1
File not found.
Please verify the correct file name was given.</source>
        <translation>%1
Datei nicht gefunden.
Bitte prüfen Sie, ob der Dateiname richtig ist.</translation>
    </message>
    <message>
        <source>%1
Directory not found.
Please verify the correct directory name was given.</source>
        <translation>%1
Ordner nicht gefunden.
Bitte prüfen Sie, ob der Ordnername richtig ist.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is write protected.
Do you want to delete it anyway?</source>
        <translation>„%1“ ist schreibgeschützt.
Möchten Sie trotzdem löschen?</translation>
    </message>
    <message>
        <source>Are you sure you want to delete &apos;%1&apos;?</source>
        <translation>Möchten Sie „%1“ wirklich löschen?</translation>
    </message>
    <message>
        <source>Could not delete directory.</source>
        <translation>Der Ordner konnte nicht gelöscht werden.</translation>
    </message>
</context>
<context>
    <name>QFileSystemModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Geändert am</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Mein Computer</translation>
    </message>
    <message>
        <source>Invalid filename</source>
        <translation>Ungültiger Dateiname</translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; cannot be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuation marks.</source>
        <translation>&lt;b&gt;Der Name „%1“ kann nicht verwendet werden.&lt;/b&gt;&lt;p&gt;Versuchen Sie einen anderen Namen mit weniger Zeichen oder ohne Satzzeichen.</translation>
    </message>
</context>
<context>
    <name>QFtp</name>
    <message>
        <source>Connecting to host failed:
%1</source>
        <translation>Verbindung zum Host fehlgeschlagen:
%1</translation>
    </message>
    <message>
        <source>Login failed:
%1</source>
        <translation>Anmeldung fehlgeschlagen:
%1</translation>
    </message>
    <message>
        <source>Listing directory failed:
%1</source>
        <translation>Auflisten des Verzeichnisses fehlgeschlagen:
%1</translation>
    </message>
    <message>
        <source>Changing directory failed:
%1</source>
        <translation>Wechsel des Verzeichnisses fehlgeschlagen:
%1</translation>
    </message>
    <message>
        <source>Downloading file failed:
%1</source>
        <translation>Herunterladen der Datei fehlgeschlagen:
%1</translation>
    </message>
    <message>
        <source>Uploading file failed:
%1</source>
        <translation>Hochladen der Datei fehlgeschlagen:
%1</translation>
    </message>
    <message>
        <source>Removing file failed:
%1</source>
        <translation>Löschen der Datei fehlgeschlagen:
%1</translation>
    </message>
    <message>
        <source>Creating directory failed:
%1</source>
        <translation>Erstellen des Verzeichnisses fehlgeschlagen:
%1</translation>
    </message>
    <message>
        <source>Removing directory failed:
%1</source>
        <translation>Löschen des Verzeichnisses fehlgeschlagen:
%1</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Unbekannter Fehler</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>The file to download into is gone</source>
        <translation>Die Zieldatei des Herunterladens ist nicht mehr vorhanden</translation>
    </message>
    <message>
        <source>There is no file to upload</source>
        <translation>Es gibt keine Datei zum Hochladen</translation>
    </message>
    <message>
        <source>Connection closed</source>
        <translation>Verbindung beendet</translation>
    </message>
</context>
<context>
    <name>QFtpDTP</name>
    <message>
        <source>The file to upload cannot be read</source>
        <translation>Die Datei zum Hochladen kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>The data connection ended before all of the file was sent</source>
        <translation>Die Datenverbindung endete, bevor die ganze Datei gesendet war</translation>
    </message>
    <message>
        <source>The data connection ended before all of the file had arrived</source>
        <translation>Die Datenverbindung endete, bevor die ganze Datei angekommen war</translation>
    </message>
    <message>
        <source>The file to download into is gone</source>
        <translation>Die Zieldatei des Herunterladens ist nicht mehr vorhanden</translation>
    </message>
</context>
<context>
    <name>QFtpPI</name>
    <message>
        <source>Connection refused for data connection</source>
        <translation>Datenverbindung verweigert</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Nicht verbunden</translation>
    </message>
    <message>
        <source>Connection refused to host %1</source>
        <translation>Verbindung zum Host %1 verweigert</translation>
    </message>
    <message>
        <source>Host %1 not found</source>
        <translation>Host %1 nicht gefunden</translation>
    </message>
    <message>
        <source>Connection timed out to host %1</source>
        <translation>Zeitüberschreitung bei der Verbindung zum Host %1</translation>
    </message>
    <message>
        <source>Connected to host %1</source>
        <translation>Verbunden mit Host %1</translation>
    </message>
    <message>
        <source>The data connection timed out</source>
        <translation>Zeitüberschreitung der Datenverbindung</translation>
    </message>
</context>
<context>
    <name>QGnomeTheme</name>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>QIODevice</name>
    <message>
        <source>No such file or directory</source>
        <translation>Datei oder Ordner nicht vorhanden</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>Keine Berechtigung</translation>
    </message>
    <message>
        <source>file to open is a directory</source>
        <translation>die zu öffnende Datei ist ein Ordner</translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation>Kein Speicherplatz mehr auf dem Datenträger</translation>
    </message>
    <message>
        <source>Too many open files</source>
        <translation>Zu viele geöffnete Dateien</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Unbekannter Fehler</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <extracomment>The buttons of boxes</extracomment>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Ja</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;Nein</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>QSaveFile</name>
    <message>
        <source>Filename refers to a directory</source>
        <translation>Der Dateiname bezeichnet einen Ordner</translation>
    </message>
    <message>
        <source>Existing file %1 is not writable</source>
        <translation>Die vorhandene Datei %1 ist schreibgeschützt</translation>
    </message>
</context>
<context>
    <name>QTabBar</name>
    <message>
        <source>Scroll Left</source>
        <translation>Nach links</translation>
    </message>
    <message>
        <source>Scroll Right</source>
        <translation>Nach rechts</translation>
    </message>
</context>
<context>
    <name>QWidgetTextControl</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy &amp;Link Location</source>
        <translation>&amp;Linkadresse kopieren</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>ServerControl</name>
    <message>
        <source>Kelvora</source>
        <translation>Kelvora</translation>
    </message>
    <message>
        <source>No server found.</source>
        <translation>Kein Server gefunden.</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;All settings of your Kelvora system, including sensor calibration and presets, are stored on the N6 instrument. We recommend you create regular backups.&lt;br/&gt;&lt;br/&gt;You can migrate to a different N6 by first creating a backup of your system and then restoring it once a new N6 is installed.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Alle Einstellungen Ihres Kelvora-Systems, auch Sensorkalibrierung und Voreinstellungen, sind auf dem N6-Instrument gespeichert. Wir empfehlen, sie regelmäßig zu sichern.&lt;br/&gt;&lt;br/&gt;Sie können auf einen anderen N6 umziehen, indem Sie zuerst die Einstellungen Ihres Systems sichern und sie nach dem Einbau des neuen N6 wiederherstellen.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&amp;Backup Settings</source>
        <translation>Einstellungen &amp;sichern</translation>
    </message>
    <message>
        <source>&amp;Restore Settings</source>
        <translation>Einstellungen &amp;wiederherstellen</translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <extracomment>A button that has all settings deleted</extracomment>
        <translation>Auf Werkseinstellungen zurücksetzen</translation>
    </message>
    <message>
        <source>System settings are stored on the server.</source>
        <extracomment>Stands beside the button Factory Reset. The server is the instrument that holds the settings</extracomment>
        <translation>Die Einstellungen des Systems sind auf dem Server gespeichert.</translation>
    </message>
</context>
<context>
    <name>ServerWidget</name>
    <message>
        <source>Kelvora Settings Backup (*.tar.gz)</source>
        <translation>Sicherung von Kelvora-Einstellungen (*.tar.gz)</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Speichern unter</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 ist bereits vorhanden.
Möchten Sie die Datei ersetzen?</translation>
    </message>
    <message>
        <source>Choose file to Restore</source>
        <translation>Datei zum Wiederherstellen auswählen</translation>
    </message>
    <message>
        <source>Current server:  </source>
        <extracomment>The serial number of the N6 follows at once: keep the blanks</extracomment>
        <translation>Aktueller Server:  </translation>
    </message>
    <message>
        <source>No server configured.</source>
        <translation>Kein Server konfiguriert.</translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <extracomment>The title of a box</extracomment>
        <translation>Auf Werkseinstellungen zurücksetzen</translation>
    </message>
    <message>
        <source>Warning: All settings will be deleted from the server.
Do you want to continue?</source>
        <extracomment>However the box is closed, all settings are then deleted: it has to be unmistakable</extracomment>
        <translation>Warnung: Alle Einstellungen auf dem Server werden gelöscht.
Möchten Sie fortfahren?</translation>
    </message>
    <message>
        <source>Backup download complete!</source>
        <extracomment>The title of a box, like all these with &quot;!&quot;</extracomment>
        <translation>Sicherung heruntergeladen!</translation>
    </message>
    <message>
        <source>Settings backup complete.</source>
        <translation>Die Einstellungen wurden gesichert.</translation>
    </message>
    <message>
        <source>Backup download failed!</source>
        <translation>Sicherung fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Kelvora server was not able to backup your settings.</source>
        <translation>Der Kelvora-Server konnte Ihre Einstellungen nicht sichern.</translation>
    </message>
    <message>
        <source>Can not access backup on server.
Try again when a server is available.</source>
        <translation>Auf die Sicherung auf dem Server kann nicht zugegriffen werden.
Versuchen Sie es erneut, wenn ein Server verfügbar ist.</translation>
    </message>
    <message>
        <source>Unable to create backup!</source>
        <translation>Sicherung kann nicht erstellt werden!</translation>
    </message>
    <message>
        <source>Backup upload complete!</source>
        <translation>Sicherung übertragen!</translation>
    </message>
    <message>
        <source>Settings upload complete.</source>
        <translation>Die Einstellungen wurden auf das System übertragen.</translation>
    </message>
    <message>
        <source>Settings upload failed!</source>
        <translation>Übertragung fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Can not upload to system.
Try again when server is available.</source>
        <translation>Die Einstellungen können nicht auf das System übertragen werden.
Versuchen Sie es erneut, wenn ein Server verfügbar ist.</translation>
    </message>
</context>
<context>
    <name>UpdateFile</name>
    <message>
        <source>Open Update File</source>
        <translation>Update-Datei öffnen</translation>
    </message>
    <message>
        <source>Firmware Update</source>
        <extracomment>The title of a box</extracomment>
        <translation>Firmware-Update</translation>
    </message>
    <message>
        <source>This is not a valid file.</source>
        <translation>Dies ist keine gültige Datei.</translation>
    </message>
</context>
<context>
    <name>connectionState</name>
    <message>
        <source>Not connected</source>
        <translation>Nicht verbunden</translation>
    </message>
    <message>
        <source>State: good</source>
        <extracomment>Only read aloud, like the next two: what the icon of the connection shows</extracomment>
        <translation>Zustand: gut</translation>
    </message>
    <message>
        <source>State: warning</source>
        <translation>Zustand: Warnung</translation>
    </message>
    <message>
        <source>State: error</source>
        <translation>Zustand: Fehler</translation>
    </message>
    <message>
        <source>Connection problem, check your network settings</source>
        <translation>Verbindungsproblem, bitte die Netzwerkeinstellungen prüfen</translation>
    </message>
    <message>
        <source>N6 connection ok, no screens connected</source>
        <translation>Verbindung zum N6 OK, keine Displays verbunden</translation>
    </message>
    <message>
        <source>Connection ok</source>
        <extracomment>One of the two texts that begin with a comma may follow. A server holds the settings of the system</extracomment>
        <translation>Verbindung OK</translation>
    </message>
    <message>
        <source>, but multiple servers configured</source>
        <translation>, aber mehrere Server konfiguriert</translation>
    </message>
    <message>
        <source>, but no N6 found</source>
        <translation>, aber kein N6 gefunden</translation>
    </message>
    <message>
        <source>Found Gen1 devices, contact support for suitable software</source>
        <extracomment>Gen1: the first generation of the instruments, which this program cannot serve</extracomment>
        <translation>Gen1-Geräte gefunden, passende Software erhalten Sie beim Support</translation>
    </message>
</context>
</TS>
