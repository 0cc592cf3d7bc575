<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
<context>
    <name>ArchiveFile</name>
    <message>
        <source>The file exists already</source>
        <translation>Il file esiste già</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>Write what the tool hears and does to FILE.</source>
        <translation>Scrive in FILE ciò che il programma riceve e fa.</translation>
    </message>
    <message>
        <source>Use this language, such as &quot;de&quot;, instead of the desktop&apos;s.</source>
        <translation>Usa questa lingua, ad esempio &quot;de&quot;, invece di quella del desktop.</translation>
    </message>
    <message>
        <source>Show these options and exit.</source>
        <translation>Mostra queste opzioni.</translation>
    </message>
    <message>
        <source>Show the version and exit.</source>
        <translation>Mostra la versione.</translation>
    </message>
    <message>
        <source>Unexpected argument &apos;%1&apos;.</source>
        <translation>Argomento imprevisto &quot;%1&quot;.</translation>
    </message>
</context>
<context>
    <name>LogFile</name>
    <message>
        <source>Cannot write to %1: %2</source>
        <translation>Impossibile scrivere in %1: %2</translation>
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
        <translation>Aggiorna Screen</translation>
    </message>
    <message>
        <source>Screen2 Updates</source>
        <translation>Aggiorna Screen2</translation>
    </message>
    <message>
        <source>E-Ink Updates</source>
        <translation>Aggiorna E-Ink</translation>
    </message>
    <message>
        <source>N6 Setup and Update</source>
        <translation>Imposta e aggiorna N6</translation>
    </message>
    <message>
        <source>N6 Configuration</source>
        <translation>Configurazione N6</translation>
    </message>
</context>
<context>
    <name>MonitorUpdate</name>
    <message>
        <source>&amp;Start Update</source>
        <extracomment>A button, 150 pixels wide</extracomment>
        <translation>A&amp;ggiorna</translation>
    </message>
    <message>
        <source>&amp;Abort Update</source>
        <extracomment>A button, 150 pixels wide</extracomment>
        <translation>&amp;Interrompi</translation>
    </message>
    <message>
        <source>Select device for software update:</source>
        <extracomment>400 pixels wide, as the text for no devices, where %1 is a type of displays: screen, screen2 or eink</extracomment>
        <translation>Selezionare i dispositivi da aggiornare:</translation>
    </message>
    <message>
        <source>No %1 devices available for update.</source>
        <translation>Nessun dispositivo %1 da aggiornare.</translation>
    </message>
    <message>
        <source>Kelvora Instrument Update</source>
        <extracomment>A kind of files</extracomment>
        <translation>Aggiornamento strumenti Kelvora</translation>
    </message>
</context>
<context>
    <name>MonitorUpdateWidget</name>
    <message>
        <source>Upload progress</source>
        <extracomment>Only read aloud</extracomment>
        <translation>Avanzamento del trasferimento</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <extracomment>In 100 pixels, or two such lines: the file is on its way from this computer to the device</extracomment>
        <translation>Trasferimento...</translation>
    </message>
    <message>
        <source>Updating...</source>
        <extracomment>The file was sent; the device may be installing it. In 100 pixels, or two such lines</extracomment>
        <translation>Installazione...</translation>
    </message>
    <message>
        <source>Aborted.</source>
        <extracomment>The user has stopped the update of this display</extracomment>
        <translation>Interrotto.</translation>
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
        <translation>Il firmware del N6 non è aggiornato. Procurarsi un aggiornamento da kelvora.example per garantire un funzionamento stabile!</translation>
    </message>
    <message>
        <source>Serial Number</source>
        <translation>Numero di serie</translation>
    </message>
    <message>
        <source>Software Version</source>
        <translation>Versione software</translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation>Indirizzo IP</translation>
    </message>
    <message>
        <source>no device found</source>
        <translation>nessun dispositivo trovato</translation>
    </message>
    <message>
        <source>&amp;Open Webinterface</source>
        <extracomment>A button that shows the N6&apos;s own pages in the browser</extracomment>
        <translation>Apri interfaccia &amp;web</translation>
    </message>
    <message>
        <source>Port 1 Mode</source>
        <extracomment>The protocol that the N6 speaks on its serial port 1</extracomment>
        <translation>Modalità porta 1</translation>
    </message>
    <message>
        <source>Port 2 Mode</source>
        <extracomment>The protocol that the N6 speaks on its serial port 2</extracomment>
        <translation>Modalità porta 2</translation>
    </message>
    <message>
        <source>&amp;Update N6 Software</source>
        <translation>&amp;Aggiorna software N6</translation>
    </message>
    <message>
        <source>Upload progress</source>
        <extracomment>Only read aloud</extracomment>
        <translation>Avanzamento del trasferimento</translation>
    </message>
</context>
<context>
    <name>N6Device</name>
    <message>
        <source>Unknown</source>
        <extracomment>A model of the N6</extracomment>
        <translation>Sconosciuto</translation>
    </message>
</context>
<context>
    <name>N6Widget</name>
    <message>
        <source>no device found</source>
        <translation>nessun dispositivo trovato</translation>
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
        <translation>Aggiornamento Kelvora N6</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <extracomment>The file is on its way from this computer to the N6</extracomment>
        <translation>Trasferimento...</translation>
    </message>
    <message>
        <source>Updating...</source>
        <extracomment>The file was sent; the N6 may be installing it</extracomment>
        <translation>Installazione...</translation>
    </message>
</context>
<context>
    <name>QCommandLineParser</name>
    <message>
        <source>Usage: %1</source>
        <extracomment>%1 is the program&apos;s name and &quot;[options]&quot;</extracomment>
        <translation>Uso: %1</translation>
    </message>
    <message>
        <source>[options]</source>
        <translation>[opzioni]</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>Opzioni:</translation>
    </message>
    <message>
        <source>Unknown option &apos;%1&apos;.</source>
        <translation>Opzione sconosciuta &quot;%1&quot;.</translation>
    </message>
    <message>
        <source>Unknown options: %1.</source>
        <translation>Opzioni sconosciute: %1.</translation>
    </message>
    <message>
        <source>Missing value after &apos;%1&apos;.</source>
        <translation>Valore mancante dopo &quot;%1&quot;.</translation>
    </message>
    <message>
        <source>Unexpected value after &apos;%1&apos;.</source>
        <translation>Valore imprevisto dopo &quot;%1&quot;.</translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>Look in:</source>
        <translation>Cerca in:</translation>
    </message>
    <message>
        <source>File &amp;name:</source>
        <translation>&amp;Nome file:</translation>
    </message>
    <message>
        <source>Files of type:</source>
        <translation>Tipo di file:</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>&amp;Apri</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Salva</translation>
    </message>
    <message>
        <source>&amp;Choose</source>
        <translation>&amp;Scegli</translation>
    </message>
    <message>
        <source>Directory:</source>
        <translation>Cartella:</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>Vai indietro</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Avanti</translation>
    </message>
    <message>
        <source>Go forward</source>
        <translation>Vai avanti</translation>
    </message>
    <message>
        <source>Parent Directory</source>
        <translation>Cartella superiore</translation>
    </message>
    <message>
        <source>Go to the parent directory</source>
        <translation>Vai alla cartella superiore</translation>
    </message>
    <message>
        <source>Create New Folder</source>
        <translation>Crea nuova cartella</translation>
    </message>
    <message>
        <source>Create a New Folder</source>
        <translation>Crea una nuova cartella</translation>
    </message>
    <message>
        <source>List View</source>
        <translation>Elenco</translation>
    </message>
    <message>
        <source>Change to list view mode</source>
        <translation>Mostra come elenco</translation>
    </message>
    <message>
        <source>Detail View</source>
        <translation>Dettagli</translation>
    </message>
    <message>
        <source>Change to detail view mode</source>
        <translation>Mostra i dettagli</translation>
    </message>
    <message>
        <source>Sidebar</source>
        <translation>Barra laterale</translation>
    </message>
    <message>
        <source>List of places and bookmarks</source>
        <translation>Elenco di posizioni e segnalibri</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>File</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>Recent Places</source>
        <translation>Posizioni recenti</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>&amp;Rinomina</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Elimina</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Elimina</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Rimuovi</translation>
    </message>
    <message>
        <source>Show &amp;hidden files</source>
        <translation>Mostra &amp;file nascosti</translation>
    </message>
    <message>
        <source>&amp;New Folder</source>
        <translation>&amp;Nuova cartella</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Nuova cartella</translation>
    </message>
    <message>
        <source>%1 File</source>
        <extracomment>In a list of kinds of files; %1 is an ending such as &quot;gz&quot;</extracomment>
        <translation>File %1</translation>
    </message>
    <message>
        <source>File</source>
        <translation>File</translation>
    </message>
    <message>
        <source>File Folder</source>
        <translation>Cartella di file</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Cartella</translation>
    </message>
    <message>
        <source>Drive</source>
        <translation>Unità</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Collegamento</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Sconosciuto</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 esiste già.
Si desidera sostituirlo?</translation>
    </message>
    <message>
        <source>%1
File not found.
Please verify the correct file name was given.</source>
        <translation>%1
File non trovato.
Verificare il nome del file.</translation>
    </message>
    <message>
        <source>%1
Directory not found.
Please verify the correct directory name was given.</source>
        <translation>%1
Cartella non trovata.
Verificare il nome della cartella.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is write protected.
Do you want to delete it anyway?</source>
        <translation>&quot;%1&quot; è protetto da scrittura.
Eliminarlo comunque?</translation>
    </message>
    <message>
        <source>Are you sure you want to delete &apos;%1&apos;?</source>
        <translation>Eliminare davvero &quot;%1&quot;?</translation>
    </message>
    <message>
        <source>Could not delete directory.</source>
        <translation>Impossibile eliminare la cartella.</translation>
    </message>
</context>
<context>
    <name>QFileSystemModel</name>
    <message>
        <source>Name</source>
        <translation>Nome</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Dimensione</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Genere</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Tipo</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Data modifica</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>Invalid filename</source>
        <translation>Nome file non valido</translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; cannot be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuation marks.</source>
        <translation>&lt;b&gt;Impossibile usare il nome &quot;%1&quot;.&lt;/b&gt;&lt;p&gt;Provare un altro nome, con meno caratteri o senza segni di punteggiatura.</translation>
    </message>
</context>
<context>
    <name>QFtp</name>
    <message>
        <source>Connecting to host failed:
%1</source>
        <translation>Connessione all’host non riuscita:
%1</translation>
    </message>
    <message>
        <source>Login failed:
%1</source>
        <translation>Accesso non riuscito:
%1</translation>
    </message>
    <message>
        <source>Listing directory failed:
%1</source>
        <translation>Lettura della cartella non riuscita:
%1</translation>
    </message>
    <message>
        <source>Changing directory failed:
%1</source>
        <translation>Cambio di cartella non riuscito:
%1</translation>
    </message>
    <message>
        <source>Downloading file failed:
%1</source>
        <translation>Download del file non riuscito:
%1</translation>
    </message>
    <message>
        <source>Uploading file failed:
%1</source>
        <translation>Invio del file non riuscito:
%1</translation>
    </message>
    <message>
        <source>Removing file failed:
%1</source>
        <translation>Eliminazione del file non riuscita:
%1</translation>
    </message>
    <message>
        <source>Creating directory failed:
%1</source>
        <translation>Creazione della cartella non riuscita:
%1</translation>
    </message>
    <message>
        <source>Removing directory failed:
%1</source>
        <translation>Eliminazione della cartella non riuscita:
%1</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Errore sconosciuto</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Interrotto</translation>
    </message>
    <message>
        <source>The file to download into is gone</source>
        <translation>Il file di destinazione del download non esiste più</translation>
    </message>
    <message>
        <source>There is no file to upload</source>
        <translation>Non c’è alcun file da inviare</translation>
    </message>
    <message>
        <source>Connection closed</source>
        <translation>Connessione chiusa</translation>
    </message>
</context>
<context>
    <name>QFtpDTP</name>
    <message>
        <source>The file to upload cannot be read</source>
        <translation>Impossibile leggere il file da inviare</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Interrotto</translation>
    </message>
    <message>
        <source>The data connection ended before all of the file was sent</source>
        <translation>La connessione dati è terminata prima dell’invio completo del file</translation>
    </message>
    <message>
        <source>The data connection ended before all of the file had arrived</source>
        <translation>La connessione dati è terminata prima della ricezione completa del file</translation>
    </message>
    <message>
        <source>The file to download into is gone</source>
        <translation>Il file di destinazione del download non esiste più</translation>
    </message>
</context>
<context>
    <name>QFtpPI</name>
    <message>
        <source>Connection refused for data connection</source>
        <translation>Connessione dati rifiutata</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Interrotto</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Non connesso</translation>
    </message>
    <message>
        <source>Connection refused to host %1</source>
        <translation>Connessione all’host %1 rifiutata</translation>
    </message>
    <message>
        <source>Host %1 not found</source>
        <translation>Host %1 non trovato</translation>
    </message>
    <message>
        <source>Connection timed out to host %1</source>
        <translation>Tempo scaduto per la connessione all’host %1</translation>
    </message>
    <message>
        <source>Connected to host %1</source>
        <translation>Connesso all’host %1</translation>
    </message>
    <message>
        <source>The data connection timed out</source>
        <translation>Tempo scaduto per la connessione dati</translation>
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
        <translation>&amp;Annulla</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Salva</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Chiudi</translation>
    </message>
</context>
<context>
    <name>QIODevice</name>
    <message>
        <source>No such file or directory</source>
        <translation>File o cartella inesistente</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>Permesso negato</translation>
    </message>
    <message>
        <source>file to open is a directory</source>
        <translation>il file da aprire è una cartella</translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation>Spazio esaurito sul dispositivo</translation>
    </message>
    <message>
        <source>Too many open files</source>
        <translation>Troppi file aperti</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Errore sconosciuto</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annulla</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Ripeti</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Taglia</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copia</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Incolla</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Elimina</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Seleziona tutto</translation>
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
        <translation>Annulla</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Sì</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;No</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Apri</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Salva</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Chiudi</translation>
    </message>
</context>
<context>
    <name>QSaveFile</name>
    <message>
        <source>Filename refers to a directory</source>
        <translation>Il nome file indica una cartella</translation>
    </message>
    <message>
        <source>Existing file %1 is not writable</source>
        <translation>Il file esistente %1 non è scrivibile</translation>
    </message>
</context>
<context>
    <name>QTabBar</name>
    <message>
        <source>Scroll Left</source>
        <translation>Scorri a sinistra</translation>
    </message>
    <message>
        <source>Scroll Right</source>
        <translation>Scorri a destra</translation>
    </message>
</context>
<context>
    <name>QWidgetTextControl</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copia</translation>
    </message>
    <message>
        <source>Copy &amp;Link Location</source>
        <translation>Copia indirizzo del &amp;link</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Seleziona tutto</translation>
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
        <translation>Nessun server trovato.</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;All settings of your Kelvora system, including sensor calibration and presets, are stored on the N6 instrument. We recommend you create regular backups.&lt;br/&gt;&lt;br/&gt;You can migrate to a different N6 by first creating a backup of your system and then restoring it once a new N6 is installed.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Tutte le impostazioni del sistema Kelvora, comprese la calibrazione dei sensori e le preimpostazioni, sono memorizzate sullo strumento N6. Si consiglia di eseguire backup regolari.&lt;br/&gt;&lt;br/&gt;È possibile passare a un altro N6 eseguendo prima un backup del sistema e ripristinandolo una volta installato il nuovo N6.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&amp;Backup Settings</source>
        <translation>&amp;Esegui backup impostazioni</translation>
    </message>
    <message>
        <source>&amp;Restore Settings</source>
        <translation>&amp;Ripristina da backup</translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <extracomment>A button that has all settings deleted</extracomment>
        <translation>Reset di fabbrica</translation>
    </message>
    <message>
        <source>System settings are stored on the server.</source>
        <extracomment>Stands beside the button Factory Reset. The server is the instrument that holds the settings</extracomment>
        <translation>Le impostazioni del sistema sono memorizzate sul server.</translation>
    </message>
</context>
<context>
    <name>ServerWidget</name>
    <message>
        <source>Kelvora Settings Backup (*.tar.gz)</source>
        <translation>Backup impostazioni Kelvora (*.tar.gz)</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Salva con nome</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 esiste già.
Si desidera sostituirlo?</translation>
    </message>
    <message>
        <source>Choose file to Restore</source>
        <translation>Scegliere il file da ripristinare</translation>
    </message>
    <message>
        <source>Current server:  </source>
        <extracomment>The serial number of the N6 follows at once: keep the blanks</extracomment>
        <translation>Server attuale:  </translation>
    </message>
    <message>
        <source>No server configured.</source>
        <translation>Nessun server configurato.</translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <extracomment>The title of a box</extracomment>
        <translation>Reset di fabbrica</translation>
    </message>
    <message>
        <source>Warning: All settings will be deleted from the server.
Do you want to continue?</source>
        <extracomment>However the box is closed, all settings are then deleted: it has to be unmistakable</extracomment>
        <translation>Attenzione: tutte le impostazioni verranno cancellate dal server.
Si desidera continuare?</translation>
    </message>
    <message>
        <source>Backup download complete!</source>
        <extracomment>The title of a box, like all these with &quot;!&quot;</extracomment>
        <translation>Backup scaricato!</translation>
    </message>
    <message>
        <source>Settings backup complete.</source>
        <translation>Backup delle impostazioni completato.</translation>
    </message>
    <message>
        <source>Backup download failed!</source>
        <translation>Backup non riuscito!</translation>
    </message>
    <message>
        <source>Kelvora server was not able to backup your settings.</source>
        <translation>Il server Kelvora non ha potuto eseguire il backup delle impostazioni.</translation>
    </message>
    <message>
        <source>Can not access backup on server.
Try again when a server is available.</source>
        <translation>Impossibile accedere al backup sul server.
Riprovare quando è disponibile un server.</translation>
    </message>
    <message>
        <source>Unable to create backup!</source>
        <translation>Impossibile creare il backup!</translation>
    </message>
    <message>
        <source>Backup upload complete!</source>
        <translation>Backup trasferito!</translation>
    </message>
    <message>
        <source>Settings upload complete.</source>
        <translation>Le impostazioni sono state trasferite al sistema.</translation>
    </message>
    <message>
        <source>Settings upload failed!</source>
        <translation>Trasferimento non riuscito!</translation>
    </message>
    <message>
        <source>Can not upload to system.
Try again when server is available.</source>
        <translation>Impossibile trasferire le impostazioni al sistema.
Riprovare quando è disponibile un server.</translation>
    </message>
</context>
<context>
    <name>UpdateFile</name>
    <message>
        <source>Open Update File</source>
        <translation>Apri file di aggiornamento</translation>
    </message>
    <message>
        <source>Firmware Update</source>
        <extracomment>The title of a box</extracomment>
        <translation>Aggiornamento</translation>
    </message>
    <message>
        <source>This is not a valid file.</source>
        <translation>Questo non è un file valido.</translation>
    </message>
</context>
<context>
    <name>connectionState</name>
    <message>
        <source>Not connected</source>
        <translation>Non connesso</translation>
    </message>
    <message>
        <source>State: good</source>
        <extracomment>Only read aloud, like the next two: what the icon of the connection shows</extracomment>
        <translation>Stato: buono</translation>
    </message>
    <message>
        <source>State: warning</source>
        <translation>Stato: avviso</translation>
    </message>
    <message>
        <source>State: error</source>
        <translation>Stato: errore</translation>
    </message>
    <message>
        <source>Connection problem, check your network settings</source>
        <translation>Problema di connessione, verificare le impostazioni di rete</translation>
    </message>
    <message>
        <source>N6 connection ok, no screens connected</source>
        <translation>Connessione con N6 OK, nessun display connesso</translation>
    </message>
    <message>
        <source>Connection ok</source>
        <extracomment>One of the two texts that begin with a comma may follow. A server holds the settings of the system</extracomment>
        <translation>Connessione OK</translation>
    </message>
    <message>
        <source>, but multiple servers configured</source>
        <translation>, ma più server configurati</translation>
    </message>
    <message>
        <source>, but no N6 found</source>
        <translation>, ma nessun N6 trovato</translation>
    </message>
    <message>
        <source>Found Gen1 devices, contact support for suitable software</source>
        <extracomment>Gen1: the first generation of the instruments, which this program cannot serve</extracomment>
        <translation>Trovati dispositivi Gen1, contattare l’assistenza per il software adatto</translation>
    </message>
</context>
</TS>
