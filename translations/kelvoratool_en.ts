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
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MonitorUpdate</name>
    <message>
        <source>&amp;Start Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Abort Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select device for software update:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No %1 devices available for update.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Kelvora Instrument Update</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MonitorUpdateWidget</name>
    <message>
        <source>Upload progress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Downloading...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Updating...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Aborted.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 V
%2 Lux</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(LS)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(PO)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[Server]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 %2  IP = %3  %4
APP %5  FW %6  OS %7</source>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Port 1 Mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Port 2 Mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Update N6 Software</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Upload progress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no device found</source>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1   (FW %2)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Kelvora N6 Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Downloading...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Updating...</source>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>System settings are stored on the server.</source>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning: All settings will be deleted from the server.
Do you want to continue?</source>
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
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>State: good</source>
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
