<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl" sourcelanguage="en">
<context>
    <name>ArchiveFile</name>
    <message>
        <source>The file exists already</source>
        <translation>Het bestand bestaat al</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>Write what the tool hears and does to FILE.</source>
        <translation>Schrijft naar FILE wat het programma hoort en doet.</translation>
    </message>
    <message>
        <source>Use this language, such as &quot;de&quot;, instead of the desktop&apos;s.</source>
        <translation>Gebruikt deze taal, bijvoorbeeld &quot;de&quot;, in plaats van die van het bureaublad.</translation>
    </message>
    <message>
        <source>Show these options and exit.</source>
        <translation>Toont deze opties.</translation>
    </message>
    <message>
        <source>Show the version and exit.</source>
        <translation>Toont de versie.</translation>
    </message>
    <message>
        <source>Unexpected argument &apos;%1&apos;.</source>
        <translation>Onverwacht argument &quot;%1&quot;.</translation>
    </message>
</context>
<context>
    <name>LogFile</name>
    <message>
        <source>Cannot write to %1: %2</source>
        <translation>Kan niet schrijven naar %1: %2</translation>
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
        <translation>Screen-updates</translation>
    </message>
    <message>
        <source>Screen2 Updates</source>
        <translation>Screen2-updates</translation>
    </message>
    <message>
        <source>E-Ink Updates</source>
        <translation>E-Ink-updates</translation>
    </message>
    <message>
        <source>N6 Setup and Update</source>
        <translation>N6 instellen en bijwerken</translation>
    </message>
    <message>
        <source>N6 Configuration</source>
        <translation>N6-configuratie</translation>
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
        <translation>&amp;Afbreken</translation>
    </message>
    <message>
        <source>Select device for software update:</source>
        <extracomment>400 pixels wide, as the text for no devices, where %1 is a type of displays: screen, screen2 or eink</extracomment>
        <translation>Kies apparaten voor de software-update:</translation>
    </message>
    <message>
        <source>No %1 devices available for update.</source>
        <translation>Geen %1-apparaten om bij te werken.</translation>
    </message>
    <message>
        <source>Kelvora Instrument Update</source>
        <extracomment>A kind of files</extracomment>
        <translation>Update voor Kelvora-instrumenten</translation>
    </message>
</context>
<context>
    <name>MonitorUpdateWidget</name>
    <message>
        <source>Upload progress</source>
        <extracomment>Only read aloud</extracomment>
        <translation>Voortgang van de overdracht</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <extracomment>In 100 pixels, or two such lines: the file is on its way from this computer to the device</extracomment>
        <translation>Overdracht...</translation>
    </message>
    <message>
        <source>Updating...</source>
        <extracomment>The file was sent; the device may be installing it. In 100 pixels, or two such lines</extracomment>
        <translation>Bijwerken...</translation>
    </message>
    <message>
        <source>Aborted.</source>
        <extracomment>The user has stopped the update of this display</extracomment>
        <translation>Afgebroken.</translation>
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
        <translation>De firmware van uw N6 is verouderd. Haal een update van kelvora.example om een stabiele werking te garanderen!</translation>
    </message>
    <message>
        <source>Serial Number</source>
        <translation>Serienummer</translation>
    </message>
    <message>
        <source>Software Version</source>
        <translation>Softwareversie</translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation>IP-adres</translation>
    </message>
    <message>
        <source>no device found</source>
        <translation>geen apparaat gevonden</translation>
    </message>
    <message>
        <source>&amp;Open Webinterface</source>
        <extracomment>A button that shows the N6&apos;s own pages in the browser</extracomment>
        <translation>&amp;Webinterface openen</translation>
    </message>
    <message>
        <source>Port 1 Mode</source>
        <extracomment>The protocol that the N6 speaks on its serial port 1</extracomment>
        <translation>Modus poort 1</translation>
    </message>
    <message>
        <source>Port 2 Mode</source>
        <extracomment>The protocol that the N6 speaks on its serial port 2</extracomment>
        <translation>Modus poort 2</translation>
    </message>
    <message>
        <source>&amp;Update N6 Software</source>
        <translation>N6-software &amp;bijwerken</translation>
    </message>
    <message>
        <source>Upload progress</source>
        <extracomment>Only read aloud</extracomment>
        <translation>Voortgang van de overdracht</translation>
    </message>
</context>
<context>
    <name>N6Device</name>
    <message>
        <source>Unknown</source>
        <extracomment>A model of the N6</extracomment>
        <translation>Onbekend</translation>
    </message>
</context>
<context>
    <name>N6Widget</name>
    <message>
        <source>no device found</source>
        <translation>geen apparaat gevonden</translation>
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
        <translation>Update voor de Kelvora N6</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <extracomment>The file is on its way from this computer to the N6</extracomment>
        <translation>Overdracht...</translation>
    </message>
    <message>
        <source>Updating...</source>
        <extracomment>The file was sent; the N6 may be installing it</extracomment>
        <translation>Bijwerken...</translation>
    </message>
</context>
<context>
    <name>QCommandLineParser</name>
    <message>
        <source>Usage: %1</source>
        <extracomment>%1 is the program&apos;s name and &quot;[options]&quot;</extracomment>
        <translation>Gebruik: %1</translation>
    </message>
    <message>
        <source>[options]</source>
        <translation>[opties]</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>Opties:</translation>
    </message>
    <message>
        <source>Unknown option &apos;%1&apos;.</source>
        <translation>Onbekende optie &quot;%1&quot;.</translation>
    </message>
    <message>
        <source>Unknown options: %1.</source>
        <translation>Onbekende opties: %1.</translation>
    </message>
    <message>
        <source>Missing value after &apos;%1&apos;.</source>
        <translation>Waarde ontbreekt na &quot;%1&quot;.</translation>
    </message>
    <message>
        <source>Unexpected value after &apos;%1&apos;.</source>
        <translation>Onverwachte waarde na &quot;%1&quot;.</translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>Look in:</source>
        <translation>Zoeken in:</translation>
    </message>
    <message>
        <source>File &amp;name:</source>
        <translation>Bestands&amp;naam:</translation>
    </message>
    <message>
        <source>Files of type:</source>
        <translation>Bestandstype:</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>&amp;Openen</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Opslaan</translation>
    </message>
    <message>
        <source>&amp;Choose</source>
        <translation>&amp;Kiezen</translation>
    </message>
    <message>
        <source>Directory:</source>
        <translation>Map:</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Terug</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>Ga terug</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Vooruit</translation>
    </message>
    <message>
        <source>Go forward</source>
        <translation>Ga vooruit</translation>
    </message>
    <message>
        <source>Parent Directory</source>
        <translation>Bovenliggende map</translation>
    </message>
    <message>
        <source>Go to the parent directory</source>
        <translation>Ga naar de bovenliggende map</translation>
    </message>
    <message>
        <source>Create New Folder</source>
        <translation>Nieuwe map maken</translation>
    </message>
    <message>
        <source>Create a New Folder</source>
        <translation>Een nieuwe map maken</translation>
    </message>
    <message>
        <source>List View</source>
        <translation>Lijst</translation>
    </message>
    <message>
        <source>Change to list view mode</source>
        <translation>Als lijst weergeven</translation>
    </message>
    <message>
        <source>Detail View</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>Change to detail view mode</source>
        <translation>Met details weergeven</translation>
    </message>
    <message>
        <source>Sidebar</source>
        <translation>Zijbalk</translation>
    </message>
    <message>
        <source>List of places and bookmarks</source>
        <translation>Lijst met locaties en bladwijzers</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Bestanden</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Mijn computer</translation>
    </message>
    <message>
        <source>Recent Places</source>
        <translation>Recente locaties</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>&amp;Hernoemen</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>Verwij&amp;deren</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Verwijderen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Verwijderen</translation>
    </message>
    <message>
        <source>Show &amp;hidden files</source>
        <translation>&amp;Verborgen bestanden tonen</translation>
    </message>
    <message>
        <source>&amp;New Folder</source>
        <translation>&amp;Nieuwe map</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Nieuwe map</translation>
    </message>
    <message>
        <source>%1 File</source>
        <extracomment>In a list of kinds of files; %1 is an ending such as &quot;gz&quot;</extracomment>
        <translation>%1-bestand</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Bestand</translation>
    </message>
    <message>
        <source>File Folder</source>
        <translation>Bestandsmap</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Map</translation>
    </message>
    <message>
        <source>Drive</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Snelkoppeling</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Onbekend</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 bestaat al.
Wilt u het vervangen?</translation>
    </message>
    <message>
        <source>%1
File not found.
Please verify the correct file name was given.</source>
        <translation>%1
Bestand niet gevonden.
Controleer of de bestandsnaam juist is.</translation>
    </message>
    <message>
        <source>%1
Directory not found.
Please verify the correct directory name was given.</source>
        <translation>%1
Map niet gevonden.
Controleer of de mapnaam juist is.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is write protected.
Do you want to delete it anyway?</source>
        <translation>&quot;%1&quot; is beveiligd tegen schrijven.
Wilt u het toch verwijderen?</translation>
    </message>
    <message>
        <source>Are you sure you want to delete &apos;%1&apos;?</source>
        <translation>Weet u zeker dat u &quot;%1&quot; wilt verwijderen?</translation>
    </message>
    <message>
        <source>Could not delete directory.</source>
        <translation>De map kon niet worden verwijderd.</translation>
    </message>
</context>
<context>
    <name>QFileSystemModel</name>
    <message>
        <source>Name</source>
        <translation>Naam</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Grootte</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Soort</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Gewijzigd op</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Mijn computer</translation>
    </message>
    <message>
        <source>Invalid filename</source>
        <translation>Ongeldige bestandsnaam</translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; cannot be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuation marks.</source>
        <translation>&lt;b&gt;De naam &quot;%1&quot; kan niet worden gebruikt.&lt;/b&gt;&lt;p&gt;Probeer een andere naam, met minder tekens of zonder leestekens.</translation>
    </message>
</context>
<context>
    <name>QFtp</name>
    <message>
        <source>Connecting to host failed:
%1</source>
        <translation>Verbinden met host mislukt:
%1</translation>
    </message>
    <message>
        <source>Login failed:
%1</source>
        <translation>Aanmelden mislukt:
%1</translation>
    </message>
    <message>
        <source>Listing directory failed:
%1</source>
        <translation>Map tonen mislukt:
%1</translation>
    </message>
    <message>
        <source>Changing directory failed:
%1</source>
        <translation>Van map wisselen mislukt:
%1</translation>
    </message>
    <message>
        <source>Downloading file failed:
%1</source>
        <translation>Bestand downloaden mislukt:
%1</translation>
    </message>
    <message>
        <source>Uploading file failed:
%1</source>
        <translation>Bestand uploaden mislukt:
%1</translation>
    </message>
    <message>
        <source>Removing file failed:
%1</source>
        <translation>Bestand verwijderen mislukt:
%1</translation>
    </message>
    <message>
        <source>Creating directory failed:
%1</source>
        <translation>Map maken mislukt:
%1</translation>
    </message>
    <message>
        <source>Removing directory failed:
%1</source>
        <translation>Map verwijderen mislukt:
%1</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Onbekende fout</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Afgebroken</translation>
    </message>
    <message>
        <source>The file to download into is gone</source>
        <translation>Het doelbestand van de download bestaat niet meer</translation>
    </message>
    <message>
        <source>There is no file to upload</source>
        <translation>Er is geen bestand om te uploaden</translation>
    </message>
    <message>
        <source>Connection closed</source>
        <translation>Verbinding verbroken</translation>
    </message>
</context>
<context>
    <name>QFtpDTP</name>
    <message>
        <source>The file to upload cannot be read</source>
        <translation>Het te uploaden bestand kan niet worden gelezen</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Afgebroken</translation>
    </message>
    <message>
        <source>The data connection ended before all of the file was sent</source>
        <translation>De dataverbinding eindigde voordat het hele bestand was verzonden</translation>
    </message>
    <message>
        <source>The data connection ended before all of the file had arrived</source>
        <translation>De dataverbinding eindigde voordat het hele bestand was aangekomen</translation>
    </message>
    <message>
        <source>The file to download into is gone</source>
        <translation>Het doelbestand van de download bestaat niet meer</translation>
    </message>
</context>
<context>
    <name>QFtpPI</name>
    <message>
        <source>Connection refused for data connection</source>
        <translation>Dataverbinding geweigerd</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Afgebroken</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Niet verbonden</translation>
    </message>
    <message>
        <source>Connection refused to host %1</source>
        <translation>Verbinding met host %1 geweigerd</translation>
    </message>
    <message>
        <source>Host %1 not found</source>
        <translation>Host %1 niet gevonden</translation>
    </message>
    <message>
        <source>Connection timed out to host %1</source>
        <translation>Time-out bij verbinding met host %1</translation>
    </message>
    <message>
        <source>Connected to host %1</source>
        <translation>Verbonden met host %1</translation>
    </message>
    <message>
        <source>The data connection timed out</source>
        <translation>Time-out van de dataverbinding</translation>
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
        <translation>&amp;Annuleren</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Opslaan</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Sluiten</translation>
    </message>
</context>
<context>
    <name>QIODevice</name>
    <message>
        <source>No such file or directory</source>
        <translation>Bestand of map bestaat niet</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>Geen toestemming</translation>
    </message>
    <message>
        <source>file to open is a directory</source>
        <translation>het te openen bestand is een map</translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation>Geen ruimte meer op het apparaat</translation>
    </message>
    <message>
        <source>Too many open files</source>
        <translation>Te veel geopende bestanden</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Onbekende fout</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Ongedaan maken</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>O&amp;pnieuw</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>K&amp;nippen</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopiëren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>P&amp;lakken</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Verwijderen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles selecteren</translation>
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
        <translation>Annuleren</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Ja</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;Nee</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Openen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Opslaan</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Sluiten</translation>
    </message>
</context>
<context>
    <name>QSaveFile</name>
    <message>
        <source>Filename refers to a directory</source>
        <translation>De bestandsnaam verwijst naar een map</translation>
    </message>
    <message>
        <source>Existing file %1 is not writable</source>
        <translation>Naar het bestaande bestand %1 kan niet worden geschreven</translation>
    </message>
</context>
<context>
    <name>QTabBar</name>
    <message>
        <source>Scroll Left</source>
        <translation>Naar links</translation>
    </message>
    <message>
        <source>Scroll Right</source>
        <translation>Naar rechts</translation>
    </message>
</context>
<context>
    <name>QWidgetTextControl</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopiëren</translation>
    </message>
    <message>
        <source>Copy &amp;Link Location</source>
        <translation>&amp;Linkadres kopiëren</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles selecteren</translation>
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
        <translation>Geen server gevonden.</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;All settings of your Kelvora system, including sensor calibration and presets, are stored on the N6 instrument. We recommend you create regular backups.&lt;br/&gt;&lt;br/&gt;You can migrate to a different N6 by first creating a backup of your system and then restoring it once a new N6 is installed.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Alle instellingen van uw Kelvora-systeem, waaronder sensorkalibratie en voorinstellingen, zijn opgeslagen op het N6-instrument. Wij raden u aan regelmatig een back-up te maken.&lt;br/&gt;&lt;br/&gt;U kunt overstappen op een andere N6 door eerst een back-up van uw systeem te maken en deze terug te zetten zodra de nieuwe N6 is geïnstalleerd.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&amp;Backup Settings</source>
        <translation>Back-up &amp;maken</translation>
    </message>
    <message>
        <source>&amp;Restore Settings</source>
        <translation>Back-up &amp;terugzetten</translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <extracomment>A button that has all settings deleted</extracomment>
        <translation>Fabrieksreset</translation>
    </message>
    <message>
        <source>System settings are stored on the server.</source>
        <extracomment>Stands beside the button Factory Reset. The server is the instrument that holds the settings</extracomment>
        <translation>De systeeminstellingen zijn opgeslagen op de server.</translation>
    </message>
</context>
<context>
    <name>ServerWidget</name>
    <message>
        <source>Kelvora Settings Backup (*.tar.gz)</source>
        <translation>Back-up van Kelvora-instellingen (*.tar.gz)</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Opslaan als</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 bestaat al.
Wilt u het vervangen?</translation>
    </message>
    <message>
        <source>Choose file to Restore</source>
        <translation>Bestand kiezen om terug te zetten</translation>
    </message>
    <message>
        <source>Current server:  </source>
        <extracomment>The serial number of the N6 follows at once: keep the blanks</extracomment>
        <translation>Huidige server:  </translation>
    </message>
    <message>
        <source>No server configured.</source>
        <translation>Geen server geconfigureerd.</translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <extracomment>The title of a box</extracomment>
        <translation>Fabrieksreset</translation>
    </message>
    <message>
        <source>Warning: All settings will be deleted from the server.
Do you want to continue?</source>
        <extracomment>However the box is closed, all settings are then deleted: it has to be unmistakable</extracomment>
        <translation>Waarschuwing: alle instellingen worden van de server gewist.
Wilt u doorgaan?</translation>
    </message>
    <message>
        <source>Backup download complete!</source>
        <extracomment>The title of a box, like all these with &quot;!&quot;</extracomment>
        <translation>Back-up gedownload!</translation>
    </message>
    <message>
        <source>Settings backup complete.</source>
        <translation>De back-up van de instellingen is voltooid.</translation>
    </message>
    <message>
        <source>Backup download failed!</source>
        <translation>Back-up mislukt!</translation>
    </message>
    <message>
        <source>Kelvora server was not able to backup your settings.</source>
        <translation>De Kelvora-server kon geen back-up van uw instellingen maken.</translation>
    </message>
    <message>
        <source>Can not access backup on server.
Try again when a server is available.</source>
        <translation>De back-up op de server is niet toegankelijk.
Probeer het opnieuw wanneer er een server beschikbaar is.</translation>
    </message>
    <message>
        <source>Unable to create backup!</source>
        <translation>Kan geen back-up maken!</translation>
    </message>
    <message>
        <source>Backup upload complete!</source>
        <translation>Back-up overgezet!</translation>
    </message>
    <message>
        <source>Settings upload complete.</source>
        <translation>De instellingen zijn naar het systeem overgezet.</translation>
    </message>
    <message>
        <source>Settings upload failed!</source>
        <translation>Overzetten mislukt!</translation>
    </message>
    <message>
        <source>Can not upload to system.
Try again when server is available.</source>
        <translation>De instellingen kunnen niet naar het systeem worden overgezet.
Probeer het opnieuw wanneer er een server beschikbaar is.</translation>
    </message>
</context>
<context>
    <name>UpdateFile</name>
    <message>
        <source>Open Update File</source>
        <translation>Updatebestand openen</translation>
    </message>
    <message>
        <source>Firmware Update</source>
        <extracomment>The title of a box</extracomment>
        <translation>Firmware-update</translation>
    </message>
    <message>
        <source>This is not a valid file.</source>
        <translation>Dit is geen geldig bestand.</translation>
    </message>
</context>
<context>
    <name>connectionState</name>
    <message>
        <source>Not connected</source>
        <translation>Niet verbonden</translation>
    </message>
    <message>
        <source>State: good</source>
        <extracomment>Only read aloud, like the next two: what the icon of the connection shows</extracomment>
        <translation>Status: goed</translation>
    </message>
    <message>
        <source>State: warning</source>
        <translation>Status: waarschuwing</translation>
    </message>
    <message>
        <source>State: error</source>
        <translation>Status: fout</translation>
    </message>
    <message>
        <source>Connection problem, check your network settings</source>
        <translation>Verbindingsprobleem, controleer uw netwerkinstellingen</translation>
    </message>
    <message>
        <source>N6 connection ok, no screens connected</source>
        <translation>Verbinding met N6 OK, geen displays verbonden</translation>
    </message>
    <message>
        <source>Connection ok</source>
        <extracomment>One of the two texts that begin with a comma may follow. A server holds the settings of the system</extracomment>
        <translation>Verbinding OK</translation>
    </message>
    <message>
        <source>, but multiple servers configured</source>
        <translation>, maar meerdere servers geconfigureerd</translation>
    </message>
    <message>
        <source>, but no N6 found</source>
        <translation>, maar geen N6 gevonden</translation>
    </message>
    <message>
        <source>Found Gen1 devices, contact support for suitable software</source>
        <extracomment>Gen1: the first generation of the instruments, which this program cannot serve</extracomment>
        <translation>Gen1-apparaten gevonden, neem contact op met support voor geschikte software</translation>
    </message>
</context>
</TS>
