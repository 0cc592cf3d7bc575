<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>ArchiveFile</name>
    <message>
        <source>The file exists already</source>
        <translation>El archivo ya existe</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>Write what the tool hears and does to FILE.</source>
        <translation>Escribe en FILE lo que el programa oye y hace.</translation>
    </message>
    <message>
        <source>Use this language, such as &quot;de&quot;, instead of the desktop&apos;s.</source>
        <translation>Usa este idioma, por ejemplo «de», en lugar del idioma del escritorio.</translation>
    </message>
    <message>
        <source>Show these options and exit.</source>
        <translation>Muestra estas opciones.</translation>
    </message>
    <message>
        <source>Show the version and exit.</source>
        <translation>Muestra la versión.</translation>
    </message>
    <message>
        <source>Unexpected argument &apos;%1&apos;.</source>
        <translation>Argumento inesperado «%1».</translation>
    </message>
</context>
<context>
    <name>LogFile</name>
    <message>
        <source>Cannot write to %1: %2</source>
        <translation>No se puede escribir en %1: %2</translation>
    </message>
</context>
<context>
    <name>Mainwindow</name>
    <message>
        <source>Logo</source>
        <extracomment>Only read aloud</extracomment>
        <translation>Logotipo</translation>
    </message>
    <message>
        <source>Screen Updates</source>
        <extracomment>The titles of the five tabs, which share some 850 pixels. Screen, Screen2 and E-Ink are types of displays</extracomment>
        <translation>Actualizar Screen</translation>
    </message>
    <message>
        <source>Screen2 Updates</source>
        <translation>Actualizar Screen2</translation>
    </message>
    <message>
        <source>E-Ink Updates</source>
        <translation>Actualizar E-Ink</translation>
    </message>
    <message>
        <source>N6 Setup and Update</source>
        <translation>Ajuste y actualización N6</translation>
    </message>
    <message>
        <source>N6 Configuration</source>
        <translation>Configuración N6</translation>
    </message>
</context>
<context>
    <name>MonitorUpdate</name>
    <message>
        <source>&amp;Start Update</source>
        <extracomment>A button, 150 pixels wide</extracomment>
        <translation>&amp;Actualizar</translation>
    </message>
    <message>
        <source>&amp;Abort Update</source>
        <extracomment>A button, 150 pixels wide</extracomment>
        <translation>I&amp;nterrumpir</translation>
    </message>
    <message>
        <source>Select device for software update:</source>
        <extracomment>400 pixels wide, as the text for no devices, where %1 is a type of displays: screen, screen2 or eink</extracomment>
        <translation>Seleccione los equipos para actualizar:</translation>
    </message>
    <message>
        <source>No %1 devices available for update.</source>
        <translation>No hay equipos %1 para actualizar.</translation>
    </message>
    <message>
        <source>Kelvora Instrument Update</source>
        <extracomment>A kind of files</extracomment>
        <translation>Actualización de instrumentos Kelvora</translation>
    </message>
</context>
<context>
    <name>MonitorUpdateWidget</name>
    <message>
        <source>Upload progress</source>
        <extracomment>Only read aloud</extracomment>
        <translation>Progreso de la transferencia</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <extracomment>In 100 pixels, or two such lines: the file is on its way from this computer to the device</extracomment>
        <translation>Transfiriendo...</translation>
    </message>
    <message>
        <source>Updating...</source>
        <extracomment>The file was sent; the device may be installing it. In 100 pixels, or two such lines</extracomment>
        <translation>Actualizando...</translation>
    </message>
    <message>
        <source>Aborted.</source>
        <extracomment>The user has stopped the update of this display</extracomment>
        <translation>Interrumpido.</translation>
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
        <translation>[Servidor]</translation>
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
        <translation>El firmware de su N6 está desactualizado. Obtenga una actualización en kelvora.example para garantizar un funcionamiento estable.</translation>
    </message>
    <message>
        <source>Serial Number</source>
        <translation>Número de serie</translation>
    </message>
    <message>
        <source>Software Version</source>
        <translation>Versión de software</translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation>Dirección IP</translation>
    </message>
    <message>
        <source>no device found</source>
        <translation>ningún equipo encontrado</translation>
    </message>
    <message>
        <source>&amp;Open Webinterface</source>
        <extracomment>A button that shows the N6&apos;s own pages in the browser</extracomment>
        <translation>Abrir la interfaz &amp;web</translation>
    </message>
    <message>
        <source>Port 1 Mode</source>
        <extracomment>The protocol that the N6 speaks on its serial port 1</extracomment>
        <translation>Modo del puerto 1</translation>
    </message>
    <message>
        <source>Port 2 Mode</source>
        <extracomment>The protocol that the N6 speaks on its serial port 2</extracomment>
        <translation>Modo del puerto 2</translation>
    </message>
    <message>
        <source>&amp;Update N6 Software</source>
        <translation>&amp;Actualizar el software del N6</translation>
    </message>
    <message>
        <source>Upload progress</source>
        <extracomment>Only read aloud</extracomment>
        <translation>Progreso de la transferencia</translation>
    </message>
</context>
<context>
    <name>N6Device</name>
    <message>
        <source>Unknown</source>
        <extracomment>A model of the N6</extracomment>
        <translation>Desconocido</translation>
    </message>
</context>
<context>
    <name>N6Widget</name>
    <message>
        <source>no device found</source>
        <translation>ningún equipo encontrado</translation>
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
        <translation>Actualización del Kelvora N6</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <extracomment>The file is on its way from this computer to the N6</extracomment>
        <translation>Transfiriendo...</translation>
    </message>
    <message>
        <source>Updating...</source>
        <extracomment>The file was sent; the N6 may be installing it</extracomment>
        <translation>Actualizando...</translation>
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
        <translation>[opciones]</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>Opciones:</translation>
    </message>
    <message>
        <source>Unknown option &apos;%1&apos;.</source>
        <translation>Opción desconocida «%1».</translation>
    </message>
    <message>
        <source>Unknown options: %1.</source>
        <translation>Opciones desconocidas: %1.</translation>
    </message>
    <message>
        <source>Missing value after &apos;%1&apos;.</source>
        <translation>Falta un valor después de «%1».</translation>
    </message>
    <message>
        <source>Unexpected value after &apos;%1&apos;.</source>
        <translation>Valor inesperado después de «%1».</translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>Look in:</source>
        <translation>Buscar en:</translation>
    </message>
    <message>
        <source>File &amp;name:</source>
        <translation>&amp;Nombre:</translation>
    </message>
    <message>
        <source>Files of type:</source>
        <translation>Tipo de archivo:</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>&amp;Abrir</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Guardar</translation>
    </message>
    <message>
        <source>&amp;Choose</source>
        <translation>&amp;Elegir</translation>
    </message>
    <message>
        <source>Directory:</source>
        <translation>Carpeta:</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Atrás</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>Ir atrás</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Adelante</translation>
    </message>
    <message>
        <source>Go forward</source>
        <translation>Ir adelante</translation>
    </message>
    <message>
        <source>Parent Directory</source>
        <translation>Carpeta superior</translation>
    </message>
    <message>
        <source>Go to the parent directory</source>
        <translation>Ir a la carpeta superior</translation>
    </message>
    <message>
        <source>Create New Folder</source>
        <translation>Crear carpeta nueva</translation>
    </message>
    <message>
        <source>Create a New Folder</source>
        <translation>Crear una carpeta nueva</translation>
    </message>
    <message>
        <source>List View</source>
        <translation>Lista</translation>
    </message>
    <message>
        <source>Change to list view mode</source>
        <translation>Mostrar como lista</translation>
    </message>
    <message>
        <source>Detail View</source>
        <translation>Detalles</translation>
    </message>
    <message>
        <source>Change to detail view mode</source>
        <translation>Mostrar los detalles</translation>
    </message>
    <message>
        <source>Sidebar</source>
        <translation>Barra lateral</translation>
    </message>
    <message>
        <source>List of places and bookmarks</source>
        <translation>Lista de lugares y marcadores</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Archivos</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Mi equipo</translation>
    </message>
    <message>
        <source>Recent Places</source>
        <translation>Lugares recientes</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>Cambiar &amp;nombre</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Eliminar</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Eliminar</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Quitar</translation>
    </message>
    <message>
        <source>Show &amp;hidden files</source>
        <translation>Mostrar archivos &amp;ocultos</translation>
    </message>
    <message>
        <source>&amp;New Folder</source>
        <translation>Nueva &amp;carpeta</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Carpeta nueva</translation>
    </message>
    <message>
        <source>%1 File</source>
        <extracomment>In a list of kinds of files; %1 is an ending such as &quot;gz&quot;</extracomment>
        <translation>Archivo %1</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Archivo</translation>
    </message>
    <message>
        <source>File Folder</source>
        <translation>Carpeta de archivos</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Carpeta</translation>
    </message>
    <message>
        <source>Drive</source>
        <translation>Unidad</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Acceso directo</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Desconocido</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 ya existe.
¿Desea reemplazarlo?</translation>
    </message>
    <message>
        <source>%1
File not found.
Please verify the correct file name was given.</source>
        <translation>%1
Archivo no encontrado.
Compruebe el nombre del archivo.</translation>
    </message>
    <message>
        <source>%1
Directory not found.
Please verify the correct directory name was given.</source>
        <translation>%1
Carpeta no encontrada.
Compruebe el nombre de la carpeta.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is write protected.
Do you want to delete it anyway?</source>
        <translation>«%1» está protegido contra escritura.
¿Desea eliminarlo de todos modos?</translation>
    </message>
    <message>
        <source>Are you sure you want to delete &apos;%1&apos;?</source>
        <translation>¿Seguro que desea eliminar «%1»?</translation>
    </message>
    <message>
        <source>Could not delete directory.</source>
        <translation>No se ha podido eliminar la carpeta.</translation>
    </message>
</context>
<context>
    <name>QFileSystemModel</name>
    <message>
        <source>Name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Tamaño</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Clase</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Tipo</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Modificado</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Equipo</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Mi equipo</translation>
    </message>
    <message>
        <source>Invalid filename</source>
        <translation>Nombre de archivo no válido</translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; cannot be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuation marks.</source>
        <translation>&lt;b&gt;No se puede usar el nombre «%1».&lt;/b&gt;&lt;p&gt;Pruebe con otro nombre, con menos caracteres o sin signos de puntuación.</translation>
    </message>
</context>
<context>
    <name>QFtp</name>
    <message>
        <source>Connecting to host failed:
%1</source>
        <translation>Error al conectar con el equipo:
%1</translation>
    </message>
    <message>
        <source>Login failed:
%1</source>
        <translation>Error al iniciar sesión:
%1</translation>
    </message>
    <message>
        <source>Listing directory failed:
%1</source>
        <translation>Error al leer la carpeta:
%1</translation>
    </message>
    <message>
        <source>Changing directory failed:
%1</source>
        <translation>Error al cambiar de carpeta:
%1</translation>
    </message>
    <message>
        <source>Downloading file failed:
%1</source>
        <translation>Error al descargar el archivo:
%1</translation>
    </message>
    <message>
        <source>Uploading file failed:
%1</source>
        <translation>Error al enviar el archivo:
%1</translation>
    </message>
    <message>
        <source>Removing file failed:
%1</source>
        <translation>Error al eliminar el archivo:
%1</translation>
    </message>
    <message>
        <source>Creating directory failed:
%1</source>
        <translation>Error al crear la carpeta:
%1</translation>
    </message>
    <message>
        <source>Removing directory failed:
%1</source>
        <translation>Error al eliminar la carpeta:
%1</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Error desconocido</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Interrumpido</translation>
    </message>
    <message>
        <source>The file to download into is gone</source>
        <translation>El archivo de destino de la descarga ya no existe</translation>
    </message>
    <message>
        <source>There is no file to upload</source>
        <translation>No hay ningún archivo que enviar</translation>
    </message>
    <message>
        <source>Connection closed</source>
        <translation>Conexión cerrada</translation>
    </message>
</context>
<context>
    <name>QFtpDTP</name>
    <message>
        <source>The file to upload cannot be read</source>
        <translation>No se puede leer el archivo que se va a enviar</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Interrumpido</translation>
    </message>
    <message>
        <source>The data connection ended before all of the file was sent</source>
        <translation>La conexión de datos terminó antes de enviarse todo el archivo</translation>
    </message>
    <message>
        <source>The data connection ended before all of the file had arrived</source>
        <translation>La conexión de datos terminó antes de recibirse todo el archivo</translation>
    </message>
    <message>
        <source>The file to download into is gone</source>
        <translation>El archivo de destino de la descarga ya no existe</translation>
    </message>
</context>
<context>
    <name>QFtpPI</name>
    <message>
        <source>Connection refused for data connection</source>
        <translation>Conexión de datos rechazada</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Interrumpido</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Sin conexión</translation>
    </message>
    <message>
        <source>Connection refused to host %1</source>
        <translation>Conexión con el equipo %1 rechazada</translation>
    </message>
    <message>
        <source>Host %1 not found</source>
        <translation>No se encontró el equipo %1</translation>
    </message>
    <message>
        <source>Connection timed out to host %1</source>
        <translation>Se agotó el tiempo de conexión con el equipo %1</translation>
    </message>
    <message>
        <source>Connected to host %1</source>
        <translation>Conectado con el equipo %1</translation>
    </message>
    <message>
        <source>The data connection timed out</source>
        <translation>Se agotó el tiempo de la conexión de datos</translation>
    </message>
</context>
<context>
    <name>QGnomeTheme</name>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;Aceptar</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Cancelar</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Guardar</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>C&amp;errar</translation>
    </message>
</context>
<context>
    <name>QIODevice</name>
    <message>
        <source>No such file or directory</source>
        <translation>No existe el archivo o la carpeta</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>Permiso denegado</translation>
    </message>
    <message>
        <source>file to open is a directory</source>
        <translation>el archivo que se va a abrir es una carpeta</translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation>No queda espacio en el dispositivo</translation>
    </message>
    <message>
        <source>Too many open files</source>
        <translation>Demasiados archivos abiertos</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Error desconocido</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Deshacer</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rehacer</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Cor&amp;tar</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copiar</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Pegar</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Eliminar</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Seleccionar todo</translation>
    </message>
</context>
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <extracomment>The buttons of boxes</extracomment>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Sí</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;No</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
</context>
<context>
    <name>QSaveFile</name>
    <message>
        <source>Filename refers to a directory</source>
        <translation>El nombre de archivo indica una carpeta</translation>
    </message>
    <message>
        <source>Existing file %1 is not writable</source>
        <translation>No se puede escribir en el archivo existente %1</translation>
    </message>
</context>
<context>
    <name>QTabBar</name>
    <message>
        <source>Scroll Left</source>
        <translation>Hacia la izquierda</translation>
    </message>
    <message>
        <source>Scroll Right</source>
        <translation>Hacia la derecha</translation>
    </message>
</context>
<context>
    <name>QWidgetTextControl</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copiar</translation>
    </message>
    <message>
        <source>Copy &amp;Link Location</source>
        <translation>Copiar dirección del en&amp;lace</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Seleccionar todo</translation>
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
        <translation>No se encontró ningún servidor.</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;All settings of your Kelvora system, including sensor calibration and presets, are stored on the N6 instrument. We recommend you create regular backups.&lt;br/&gt;&lt;br/&gt;You can migrate to a different N6 by first creating a backup of your system and then restoring it once a new N6 is installed.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Todos los ajustes de su sistema Kelvora, incluidas la calibración de los sensores y los valores predefinidos, se guardan en el instrumento N6. Le recomendamos hacer copias de seguridad con regularidad.&lt;br/&gt;&lt;br/&gt;Puede cambiar a otro N6 haciendo primero una copia de seguridad de su sistema y restaurándola una vez instalado el nuevo N6.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&amp;Backup Settings</source>
        <translation>&amp;Hacer copia de seguridad</translation>
    </message>
    <message>
        <source>&amp;Restore Settings</source>
        <translation>&amp;Restaurar copia de seguridad</translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <extracomment>A button that has all settings deleted</extracomment>
        <translation>Restablecer valores de fábrica</translation>
    </message>
    <message>
        <source>System settings are stored on the server.</source>
        <extracomment>Stands beside the button Factory Reset. The server is the instrument that holds the settings</extracomment>
        <translation>Los ajustes del sistema se guardan en el servidor.</translation>
    </message>
</context>
<context>
    <name>ServerWidget</name>
    <message>
        <source>Kelvora Settings Backup (*.tar.gz)</source>
        <translation>Copia de seguridad de Kelvora (*.tar.gz)</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Guardar como</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 ya existe.
¿Desea reemplazarlo?</translation>
    </message>
    <message>
        <source>Choose file to Restore</source>
        <translation>Elegir el archivo que se va a restaurar</translation>
    </message>
    <message>
        <source>Current server:  </source>
        <extracomment>The serial number of the N6 follows at once: keep the blanks</extracomment>
        <translation>Servidor actual:  </translation>
    </message>
    <message>
        <source>No server configured.</source>
        <translation>No hay ningún servidor configurado.</translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <extracomment>The title of a box</extracomment>
        <translation>Restablecer valores de fábrica</translation>
    </message>
    <message>
        <source>Warning: All settings will be deleted from the server.
Do you want to continue?</source>
        <extracomment>However the box is closed, all settings are then deleted: it has to be unmistakable</extracomment>
        <translation>Advertencia: se borrarán todos los ajustes del servidor.
¿Desea continuar?</translation>
    </message>
    <message>
        <source>Backup download complete!</source>
        <extracomment>The title of a box, like all these with &quot;!&quot;</extracomment>
        <translation>¡Copia de seguridad descargada!</translation>
    </message>
    <message>
        <source>Settings backup complete.</source>
        <translation>La copia de seguridad de los ajustes se ha completado.</translation>
    </message>
    <message>
        <source>Backup download failed!</source>
        <translation>¡Error en la copia de seguridad!</translation>
    </message>
    <message>
        <source>Kelvora server was not able to backup your settings.</source>
        <translation>El servidor Kelvora no ha podido hacer la copia de seguridad de sus ajustes.</translation>
    </message>
    <message>
        <source>Can not access backup on server.
Try again when a server is available.</source>
        <translation>No se puede acceder a la copia de seguridad en el servidor.
Vuelva a intentarlo cuando haya un servidor disponible.</translation>
    </message>
    <message>
        <source>Unable to create backup!</source>
        <translation>¡No se puede crear la copia de seguridad!</translation>
    </message>
    <message>
        <source>Backup upload complete!</source>
        <translation>¡Copia de seguridad transferida!</translation>
    </message>
    <message>
        <source>Settings upload complete.</source>
        <translation>Los ajustes se han transferido al sistema.</translation>
    </message>
    <message>
        <source>Settings upload failed!</source>
        <translation>¡Error en la transferencia!</translation>
    </message>
    <message>
        <source>Can not upload to system.
Try again when server is available.</source>
        <translation>No se pueden transferir los ajustes al sistema.
Vuelva a intentarlo cuando haya un servidor disponible.</translation>
    </message>
</context>
<context>
    <name>UpdateFile</name>
    <message>
        <source>Open Update File</source>
        <translation>Abrir archivo de actualización</translation>
    </message>
    <message>
        <source>Firmware Update</source>
        <extracomment>The title of a box</extracomment>
        <translation>Actualización</translation>
    </message>
    <message>
        <source>This is not a valid file.</source>
        <translation>Este archivo no es válido.</translation>
    </message>
</context>
<context>
    <name>connectionState</name>
    <message>
        <source>Not connected</source>
        <translation>Sin conexión</translation>
    </message>
    <message>
        <source>State: good</source>
        <extracomment>Only read aloud, like the next two: what the icon of the connection shows</extracomment>
        <translation>Estado: correcto</translation>
    </message>
    <message>
        <source>State: warning</source>
        <translation>Estado: advertencia</translation>
    </message>
    <message>
        <source>State: error</source>
        <translation>Estado: error</translation>
    </message>
    <message>
        <source>Connection problem, check your network settings</source>
        <translation>Problema de conexión, compruebe la configuración de red</translation>
    </message>
    <message>
        <source>N6 connection ok, no screens connected</source>
        <translation>Conexión con el N6 correcta, ninguna pantalla conectada</translation>
    </message>
    <message>
        <source>Connection ok</source>
        <extracomment>One of the two texts that begin with a comma may follow. A server holds the settings of the system</extracomment>
        <translation>Conexión correcta</translation>
    </message>
    <message>
        <source>, but multiple servers configured</source>
        <translation>, pero hay varios servidores configurados</translation>
    </message>
    <message>
        <source>, but no N6 found</source>
        <translation>, pero no se encontró ningún N6</translation>
    </message>
    <message>
        <source>Found Gen1 devices, contact support for suitable software</source>
        <extracomment>Gen1: the first generation of the instruments, which this program cannot serve</extracomment>
        <translation>Se encontraron equipos Gen1, pida al soporte el software adecuado</translation>
    </message>
</context>
</TS>
