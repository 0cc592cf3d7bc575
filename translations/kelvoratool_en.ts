<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>ArchiveFile</name>
    <message>
        <source>The file exists already</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>Write what the tool hears and does to FILE.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use this language, such as &quot;de&quot;, instead of the desktop&apos;s.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show these options and exit.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the version and exit.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unexpected argument &apos;%1&apos;.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LogFile</name>
    <message>
        <source>Cannot write to %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Mainwindow</name>
    <message>
        <source>Screen Updates</source>
        <extracomment>The titles of the five tabs, which share some 850 pixels. Screen, Screen2 and E-Ink are types of displays</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screen2 Updates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>E-Ink Updates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>N6 Setup and Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>N6 Configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Logo</source>
        <extracomment>Only read aloud</extracomment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MonitorUpdate</name>
    <message>
        <source>&amp;Start Update</source>
        <extracomment>A button, 150 pixels wide</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Abort Update</source>
        <extracomment>A button, 150 pixels wide</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select device for software update:</source>
        <extracomment>400 pixels wide, as the text for no devices, where %1 is a type of displays: screen, screen2 or eink</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No %1 devices available for update.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Kelvora Instrument Update</source>
        <extracomment>A kind of files</extracomment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MonitorUpdateWidget</name>
    <message>
        <source>Upload progress</source>
        <extracomment>Only read aloud</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Downloading...</source>
        <extracomment>In 100 pixels, or two such lines: the file is on its way from this computer to the device</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Updating...</source>
        <extracomment>The file was sent; the device may be installing it. In 100 pixels, or two such lines</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Aborted.</source>
        <extracomment>The user has stopped the update of this display</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 V
%2 Lux</source>
        <extracomment>Supply voltage and ambient light</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(LS)</source>
        <extracomment>A mark of the hardware, like (PO)</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(PO)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[Server]</source>
        <extracomment>Marks the display that holds the settings of the system</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 %2  IP = %3  %4
APP %5  FW %6  OS %7</source>
        <extracomment>Serial number, (LS) or (PO), address, [Server] or nothing; versions of application, firmware and operating system. As narrow as it can be</extracomment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>N6Control</name>
    <message>
        <source>Kelvora</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Your N6 firmware is outdated. Please optain an update from kelvora.example to ensure stable operation!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Serial Number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Software Version</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Open Webinterface</source>
        <extracomment>A button that shows the N6&apos;s own pages in the browser</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Port 1 Mode</source>
        <extracomment>The protocol that the N6 speaks on its serial port 1</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Port 2 Mode</source>
        <extracomment>The protocol that the N6 speaks on its serial port 2</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Update N6 Software</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Upload progress</source>
        <extracomment>Only read aloud</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no device found</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>N6Device</name>
    <message>
        <source>Unknown</source>
        <extracomment>A model of the N6</extracomment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>N6Widget</name>
    <message>
        <source>no device found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1   (%2)</source>
        <extracomment>Serial number and model of the N6</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1   (FW %2)</source>
        <extracomment>Versions of the N6&apos;s software and firmware</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Kelvora N6 Update</source>
        <extracomment>A kind of files</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Downloading...</source>
        <extracomment>The file is on its way from this computer to the N6</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Updating...</source>
        <extracomment>The file was sent; the N6 may be installing it</extracomment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QCommandLineParser</name>
    <message>
        <source>Usage: %1</source>
        <extracomment>%1 is the program&apos;s name and &quot;[options]&quot;</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[options]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Options:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown option &apos;%1&apos;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown options: %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Missing value after &apos;%1&apos;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unexpected value after &apos;%1&apos;.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>Look in:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File &amp;name:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files of type:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Choose</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Directory:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Go back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Forward</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Go forward</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Parent Directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Go to the parent directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create New Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Create a New Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>List View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Change to list view mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Detail View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Change to detail view mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sidebar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>List of places and bookmarks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recent Places</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show &amp;hidden files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;New Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 File</source>
        <extracomment>In a list of kinds of files; %1 is an ending such as &quot;gz&quot;</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drive</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1
File not found.
Please verify the correct file name was given.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1
Directory not found.
Please verify the correct directory name was given.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&apos;%1&apos; is write protected.
Do you want to delete it anyway?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Are you sure you want to delete &apos;%1&apos;?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Could not delete directory.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QFileSystemModel</name>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Kind</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Computer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid filename</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; cannot be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuation marks.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QFtp</name>
    <message>
        <source>Connecting to host failed:
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Login failed:
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Listing directory failed:
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Changing directory failed:
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Downloading file failed:
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uploading file failed:
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Removing file failed:
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Creating directory failed:
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Removing directory failed:
%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connection closed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file to download into is gone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no file to upload</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QFtpDTP</name>
    <message>
        <source>The file to upload cannot be read</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The data connection ended before all of the file was sent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The data connection ended before all of the file had arrived</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file to download into is gone</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QFtpPI</name>
    <message>
        <source>Not connected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Host %1 not found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connection refused to host %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connection timed out to host %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connected to host %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connection refused for data connection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The data connection timed out</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QGnomeTheme</name>
    <message>
        <source>&amp;OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QIODevice</name>
    <message>
        <source>No such file or directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>file to open is a directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Too many open files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select All</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <extracomment>The buttons of boxes</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QSaveFile</name>
    <message>
        <source>Filename refers to a directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Existing file %1 is not writable</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QTabBar</name>
    <message>
        <source>Scroll Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scroll Right</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QWidgetTextControl</name>
    <message>
        <source>&amp;Copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy &amp;Link Location</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select All</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ServerControl</name>
    <message>
        <source>Kelvora</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No server found.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;All settings of your Kelvora system, including sensor calibration and presets, are stored on the N6 instrument. We recommend you create regular backups.&lt;br/&gt;&lt;br/&gt;You can migrate to a different N6 by first creating a backup of your system and then restoring it once a new N6 is installed.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Backup Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Restore Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <extracomment>A button that has all settings deleted</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>System settings are stored on the server.</source>
        <extracomment>Stands beside the button Factory Reset. The server is the instrument that holds the settings</extracomment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ServerWidget</name>
    <message>
        <source>Kelvora Settings Backup (*.tar.gz)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save As</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose file to Restore</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No server configured.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Current server:  </source>
        <extracomment>The serial number of the N6 follows at once: keep the blanks</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <extracomment>The title of a box</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning: All settings will be deleted from the server.
Do you want to continue?</source>
        <extracomment>However the box is closed, all settings are then deleted: it has to be unmistakable</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Backup upload complete!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings upload complete.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings upload failed!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can not upload to system.
Try again when server is available.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to create backup!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Backup download complete!</source>
        <extracomment>The title of a box, like all these with &quot;!&quot;</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings backup complete.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Backup download failed!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Kelvora server was not able to backup your settings.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can not access backup on server.
Try again when a server is available.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>UpdateFile</name>
    <message>
        <source>Open Update File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Firmware Update</source>
        <extracomment>The title of a box</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This is not a valid file.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>connectionState</name>
    <message>
        <source>Not connected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connection problem, check your network settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>N6 connection ok, no screens connected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Connection ok</source>
        <extracomment>One of the two texts that begin with a comma may follow. A server holds the settings of the system</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>, but multiple servers configured</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>, but no N6 found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Found Gen1 devices, contact support for suitable software</source>
        <extracomment>Gen1: the first generation of the instruments, which this program cannot serve</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>State: good</source>
        <extracomment>Only read aloud, like the next two: what the icon of the connection shows</extracomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>State: warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>State: error</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
