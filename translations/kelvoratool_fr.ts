<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>ArchiveFile</name>
    <message>
        <source>The file exists already</source>
        <translation>Le fichier existe déjà</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>Write what the tool hears and does to FILE.</source>
        <translation>Écrit dans FILE ce que le programme entend et fait.</translation>
    </message>
    <message>
        <source>Use this language, such as &quot;de&quot;, instead of the desktop&apos;s.</source>
        <translation>Utilise cette langue, par exemple «&#xa0;de&#xa0;», au lieu de celle du bureau.</translation>
    </message>
    <message>
        <source>Show these options and exit.</source>
        <translation>Affiche ces options.</translation>
    </message>
    <message>
        <source>Show the version and exit.</source>
        <translation>Affiche la version.</translation>
    </message>
    <message>
        <source>Unexpected argument &apos;%1&apos;.</source>
        <translation>Argument inattendu «&#xa0;%1&#xa0;».</translation>
    </message>
</context>
<context>
    <name>LogFile</name>
    <message>
        <source>Cannot write to %1: %2</source>
        <translation>Impossible d’écrire dans %1&#xa0;: %2</translation>
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
        <translation>Mise à jour Screen</translation>
    </message>
    <message>
        <source>Screen2 Updates</source>
        <translation>Mise à jour Screen2</translation>
    </message>
    <message>
        <source>E-Ink Updates</source>
        <translation>Mise à jour E-Ink</translation>
    </message>
    <message>
        <source>N6 Setup and Update</source>
        <translation>Réglage et mise à jour N6</translation>
    </message>
    <message>
        <source>N6 Configuration</source>
        <translation>Configuration N6</translation>
    </message>
</context>
<context>
    <name>MonitorUpdate</name>
    <message>
        <source>&amp;Start Update</source>
        <extracomment>A button, 150 pixels wide</extracomment>
        <translation>Mettre à &amp;jour</translation>
    </message>
    <message>
        <source>&amp;Abort Update</source>
        <extracomment>A button, 150 pixels wide</extracomment>
        <translation>&amp;Interrompre</translation>
    </message>
    <message>
        <source>Select device for software update:</source>
        <extracomment>400 pixels wide, as the text for no devices, where %1 is a type of displays: screen, screen2 or eink</extracomment>
        <translation>Choisissez les appareils à mettre à jour&#xa0;:</translation>
    </message>
    <message>
        <source>No %1 devices available for update.</source>
        <translation>Aucun appareil %1 à mettre à jour.</translation>
    </message>
    <message>
        <source>Kelvora Instrument Update</source>
        <extracomment>A kind of files</extracomment>
        <translation>Mise à jour d’instruments Kelvora</translation>
    </message>
</context>
<context>
    <name>MonitorUpdateWidget</name>
    <message>
        <source>Upload progress</source>
        <extracomment>Only read aloud</extracomment>
        <translation>Progression du transfert</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <extracomment>In 100 pixels, or two such lines: the file is on its way from this computer to the device</extracomment>
        <translation>Transfert...</translation>
    </message>
    <message>
        <source>Updating...</source>
        <extracomment>The file was sent; the device may be installing it. In 100 pixels, or two such lines</extracomment>
        <translation>Mise à jour...</translation>
    </message>
    <message>
        <source>Aborted.</source>
        <extracomment>The user has stopped the update of this display</extracomment>
        <translation>Interrompu.</translation>
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
        <translation>[Serveur]</translation>
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
        <translation>Le micrologiciel de votre N6 est obsolète. Veuillez vous procurer une mise à jour sur kelvora.example pour garantir un fonctionnement stable&#xa0;!</translation>
    </message>
    <message>
        <source>Serial Number</source>
        <translation>Numéro de série</translation>
    </message>
    <message>
        <source>Software Version</source>
        <translation>Version du logiciel</translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation>Adresse IP</translation>
    </message>
    <message>
        <source>no device found</source>
        <translation>aucun appareil trouvé</translation>
    </message>
    <message>
        <source>&amp;Open Webinterface</source>
        <extracomment>A button that shows the N6&apos;s own pages in the browser</extracomment>
        <translation>&amp;Ouvrir l’interface Web</translation>
    </message>
    <message>
        <source>Port 1 Mode</source>
        <extracomment>The protocol that the N6 speaks on its serial port 1</extracomment>
        <translation>Mode du port 1</translation>
    </message>
    <message>
        <source>Port 2 Mode</source>
        <extracomment>The protocol that the N6 speaks on its serial port 2</extracomment>
        <translation>Mode du port 2</translation>
    </message>
    <message>
        <source>&amp;Update N6 Software</source>
        <translation>&amp;Mettre à jour le logiciel du N6</translation>
    </message>
    <message>
        <source>Upload progress</source>
        <extracomment>Only read aloud</extracomment>
        <translation>Progression du transfert</translation>
    </message>
</context>
<context>
    <name>N6Device</name>
    <message>
        <source>Unknown</source>
        <extracomment>A model of the N6</extracomment>
        <translation>Inconnu</translation>
    </message>
</context>
<context>
    <name>N6Widget</name>
    <message>
        <source>no device found</source>
        <translation>aucun appareil trouvé</translation>
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
        <translation>Mise à jour du Kelvora N6</translation>
    </message>
    <message>
        <source>Downloading...</source>
        <extracomment>The file is on its way from this computer to the N6</extracomment>
        <translation>Transfert...</translation>
    </message>
    <message>
        <source>Updating...</source>
        <extracomment>The file was sent; the N6 may be installing it</extracomment>
        <translation>Mise à jour...</translation>
    </message>
</context>
<context>
    <name>QCommandLineParser</name>
    <message>
        <source>Usage: %1</source>
        <extracomment>%1 is the program&apos;s name and &quot;[options]&quot;</extracomment>
        <translation>Utilisation&#xa0;: %1</translation>
    </message>
    <message>
        <source>[options]</source>
        <translation>[options]</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>Options&#xa0;:</translation>
    </message>
    <message>
        <source>Unknown option &apos;%1&apos;.</source>
        <translation>Option inconnue «&#xa0;%1&#xa0;».</translation>
    </message>
    <message>
        <source>Unknown options: %1.</source>
        <translation>Options inconnues&#xa0;: %1.</translation>
    </message>
    <message>
        <source>Missing value after &apos;%1&apos;.</source>
        <translation>Valeur manquante après «&#xa0;%1&#xa0;».</translation>
    </message>
    <message>
        <source>Unexpected value after &apos;%1&apos;.</source>
        <translation>Valeur inattendue après «&#xa0;%1&#xa0;».</translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>Look in:</source>
        <translation>Rechercher dans&#xa0;:</translation>
    </message>
    <message>
        <source>File &amp;name:</source>
        <translation>&amp;Nom du fichier&#xa0;:</translation>
    </message>
    <message>
        <source>Files of type:</source>
        <translation>Type de fichiers&#xa0;:</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>&amp;Ouvrir</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Enregistrer</translation>
    </message>
    <message>
        <source>&amp;Choose</source>
        <translation>&amp;Choisir</translation>
    </message>
    <message>
        <source>Directory:</source>
        <translation>Dossier&#xa0;:</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Précédent</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>Revenir en arrière</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Suivant</translation>
    </message>
    <message>
        <source>Go forward</source>
        <translation>Aller en avant</translation>
    </message>
    <message>
        <source>Parent Directory</source>
        <translation>Dossier parent</translation>
    </message>
    <message>
        <source>Go to the parent directory</source>
        <translation>Aller au dossier parent</translation>
    </message>
    <message>
        <source>Create New Folder</source>
        <translation>Créer un dossier</translation>
    </message>
    <message>
        <source>Create a New Folder</source>
        <translation>Créer un nouveau dossier</translation>
    </message>
    <message>
        <source>List View</source>
        <translation>Liste</translation>
    </message>
    <message>
        <source>Change to list view mode</source>
        <translation>Afficher sous forme de liste</translation>
    </message>
    <message>
        <source>Detail View</source>
        <translation>Détails</translation>
    </message>
    <message>
        <source>Change to detail view mode</source>
        <translation>Afficher les détails</translation>
    </message>
    <message>
        <source>Sidebar</source>
        <translation>Barre latérale</translation>
    </message>
    <message>
        <source>List of places and bookmarks</source>
        <translation>Liste des emplacements et des favoris</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Fichiers</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Mon ordinateur</translation>
    </message>
    <message>
        <source>Recent Places</source>
        <translation>Emplacements récents</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>&amp;Renommer</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Supprimer</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Retirer</translation>
    </message>
    <message>
        <source>Show &amp;hidden files</source>
        <translation>Afficher les fichiers &amp;cachés</translation>
    </message>
    <message>
        <source>&amp;New Folder</source>
        <translation>&amp;Nouveau dossier</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Nouveau dossier</translation>
    </message>
    <message>
        <source>%1 File</source>
        <extracomment>In a list of kinds of files; %1 is an ending such as &quot;gz&quot;</extracomment>
        <translation>Fichier %1</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>File Folder</source>
        <translation>Dossier de fichiers</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Dossier</translation>
    </message>
    <message>
        <source>Drive</source>
        <translation>Lecteur</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Raccourci</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 existe déjà.
Voulez-vous le remplacer&#xa0;?</translation>
    </message>
    <message>
        <source>%1
File not found.
Please verify the correct file name was given.</source>
        <translation>%1
Fichier introuvable.
Veuillez vérifier le nom du fichier.</translation>
    </message>
    <message>
        <source>%1
Directory not found.
Please verify the correct directory name was given.</source>
        <translation>%1
Dossier introuvable.
Veuillez vérifier le nom du dossier.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is write protected.
Do you want to delete it anyway?</source>
        <translation>«&#xa0;%1&#xa0;» est protégé en écriture.
Voulez-vous quand même le supprimer&#xa0;?</translation>
    </message>
    <message>
        <source>Are you sure you want to delete &apos;%1&apos;?</source>
        <translation>Voulez-vous vraiment supprimer «&#xa0;%1&#xa0;»&#xa0;?</translation>
    </message>
    <message>
        <source>Could not delete directory.</source>
        <translation>Le dossier n’a pas pu être supprimé.</translation>
    </message>
</context>
<context>
    <name>QFileSystemModel</name>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Genre</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Modifié le</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Ordinateur</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Mon ordinateur</translation>
    </message>
    <message>
        <source>Invalid filename</source>
        <translation>Nom de fichier non valide</translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; cannot be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuation marks.</source>
        <translation>&lt;b&gt;Le nom «&#xa0;%1&#xa0;» ne peut pas être utilisé.&lt;/b&gt;&lt;p&gt;Essayez un autre nom, avec moins de caractères ou sans signes de ponctuation.</translation>
    </message>
</context>
<context>
    <name>QFtp</name>
    <message>
        <source>Connecting to host failed:
%1</source>
        <translation>Échec de la connexion à l’hôte&#xa0;:
%1</translation>
    </message>
    <message>
        <source>Login failed:
%1</source>
        <translation>Échec de l’identification&#xa0;:
%1</translation>
    </message>
    <message>
        <source>Listing directory failed:
%1</source>
        <translation>Échec de la lecture du dossier&#xa0;:
%1</translation>
    </message>
    <message>
        <source>Changing directory failed:
%1</source>
        <translation>Échec du changement de dossier&#xa0;:
%1</translation>
    </message>
    <message>
        <source>Downloading file failed:
%1</source>
        <translation>Échec du téléchargement du fichier&#xa0;:
%1</translation>
    </message>
    <message>
        <source>Uploading file failed:
%1</source>
        <translation>Échec de l’envoi du fichier&#xa0;:
%1</translation>
    </message>
    <message>
        <source>Removing file failed:
%1</source>
        <translation>Échec de la suppression du fichier&#xa0;:
%1</translation>
    </message>
    <message>
        <source>Creating directory failed:
%1</source>
        <translation>Échec de la création du dossier&#xa0;:
%1</translation>
    </message>
    <message>
        <source>Removing directory failed:
%1</source>
        <translation>Échec de la suppression du dossier&#xa0;:
%1</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Erreur inconnue</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Interrompu</translation>
    </message>
    <message>
        <source>The file to download into is gone</source>
        <translation>Le fichier de destination du téléchargement n’existe plus</translation>
    </message>
    <message>
        <source>There is no file to upload</source>
        <translation>Il n’y a aucun fichier à envoyer</translation>
    </message>
    <message>
        <source>Connection closed</source>
        <translation>Connexion fermée</translation>
    </message>
</context>
<context>
    <name>QFtpDTP</name>
    <message>
        <source>The file to upload cannot be read</source>
        <translation>Le fichier à envoyer ne peut pas être lu</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Interrompu</translation>
    </message>
    <message>
        <source>The data connection ended before all of the file was sent</source>
        <translation>La connexion de données s’est terminée avant l’envoi complet du fichier</translation>
    </message>
    <message>
        <source>The data connection ended before all of the file had arrived</source>
        <translation>La connexion de données s’est terminée avant la réception complète du fichier</translation>
    </message>
    <message>
        <source>The file to download into is gone</source>
        <translation>Le fichier de destination du téléchargement n’existe plus</translation>
    </message>
</context>
<context>
    <name>QFtpPI</name>
    <message>
        <source>Connection refused for data connection</source>
        <translation>Connexion de données refusée</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Interrompu</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Non connecté</translation>
    </message>
    <message>
        <source>Connection refused to host %1</source>
        <translation>Connexion à l’hôte %1 refusée</translation>
    </message>
    <message>
        <source>Host %1 not found</source>
        <translation>Hôte %1 introuvable</translation>
    </message>
    <message>
        <source>Connection timed out to host %1</source>
        <translation>Délai de connexion à l’hôte %1 dépassé</translation>
    </message>
    <message>
        <source>Connected to host %1</source>
        <translation>Connecté à l’hôte %1</translation>
    </message>
    <message>
        <source>The data connection timed out</source>
        <translation>Délai de la connexion de données dépassé</translation>
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
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Enregistrer</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Fermer</translation>
    </message>
</context>
<context>
    <name>QIODevice</name>
    <message>
        <source>No such file or directory</source>
        <translation>Fichier ou dossier inexistant</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>Autorisation refusée</translation>
    </message>
    <message>
        <source>file to open is a directory</source>
        <translation>le fichier à ouvrir est un dossier</translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation>Plus d’espace disponible sur le support</translation>
    </message>
    <message>
        <source>Too many open files</source>
        <translation>Trop de fichiers ouverts</translation>
    </message>
    <message>
        <source>Unknown error</source>
        <translation>Erreur inconnue</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rétablir</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Co&amp;uper</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>C&amp;oller</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Tout sélectionner</translation>
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
        <translation>Annuler</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Oui</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;Non</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>QSaveFile</name>
    <message>
        <source>Filename refers to a directory</source>
        <translation>Le nom de fichier désigne un dossier</translation>
    </message>
    <message>
        <source>Existing file %1 is not writable</source>
        <translation>Le fichier existant %1 est protégé en écriture</translation>
    </message>
</context>
<context>
    <name>QTabBar</name>
    <message>
        <source>Scroll Left</source>
        <translation>Vers la gauche</translation>
    </message>
    <message>
        <source>Scroll Right</source>
        <translation>Vers la droite</translation>
    </message>
</context>
<context>
    <name>QWidgetTextControl</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>Copy &amp;Link Location</source>
        <translation>Copier l’adresse du &amp;lien</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Tout sélectionner</translation>
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
        <translation>Aucun serveur trouvé.</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;All settings of your Kelvora system, including sensor calibration and presets, are stored on the N6 instrument. We recommend you create regular backups.&lt;br/&gt;&lt;br/&gt;You can migrate to a different N6 by first creating a backup of your system and then restoring it once a new N6 is installed.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;Tous les paramètres de votre système Kelvora, y compris l’étalonnage des capteurs et les préréglages, sont enregistrés sur l’instrument N6. Nous vous recommandons d’effectuer des sauvegardes régulières.&lt;br/&gt;&lt;br/&gt;Pour passer à un autre N6, effectuez d’abord une sauvegarde de votre système, puis restaurez-la une fois le nouveau N6 installé.&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>&amp;Backup Settings</source>
        <translation>&amp;Sauvegarder les paramètres</translation>
    </message>
    <message>
        <source>&amp;Restore Settings</source>
        <translation>&amp;Restaurer les paramètres</translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <extracomment>A button that has all settings deleted</extracomment>
        <translation>Réinitialisation d’usine</translation>
    </message>
    <message>
        <source>System settings are stored on the server.</source>
        <extracomment>Stands beside the button Factory Reset. The server is the instrument that holds the settings</extracomment>
        <translation>Les paramètres du système sont enregistrés sur le serveur.</translation>
    </message>
</context>
<context>
    <name>ServerWidget</name>
    <message>
        <source>Kelvora Settings Backup (*.tar.gz)</source>
        <translation>Sauvegarde de paramètres Kelvora (*.tar.gz)</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Enregistrer sous</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 existe déjà.
Voulez-vous le remplacer&#xa0;?</translation>
    </message>
    <message>
        <source>Choose file to Restore</source>
        <translation>Choisir le fichier à restaurer</translation>
    </message>
    <message>
        <source>Current server:  </source>
        <extracomment>The serial number of the N6 follows at once: keep the blanks</extracomment>
        <translation>Serveur actuel&#xa0;:  </translation>
    </message>
    <message>
        <source>No server configured.</source>
        <translation>Aucun serveur configuré.</translation>
    </message>
    <message>
        <source>Factory Reset</source>
        <extracomment>The title of a box</extracomment>
        <translation>Réinitialisation d’usine</translation>
    </message>
    <message>
        <source>Warning: All settings will be deleted from the server.
Do you want to continue?</source>
        <extracomment>However the box is closed, all settings are then deleted: it has to be unmistakable</extracomment>
        <translation>Attention&#xa0;: tous les paramètres seront supprimés du serveur.
Voulez-vous continuer&#xa0;?</translation>
    </message>
    <message>
        <source>Backup download complete!</source>
        <extracomment>The title of a box, like all these with &quot;!&quot;</extracomment>
        <translation>Sauvegarde téléchargée&#xa0;!</translation>
    </message>
    <message>
        <source>Settings backup complete.</source>
        <translation>Les paramètres ont été sauvegardés.</translation>
    </message>
    <message>
        <source>Backup download failed!</source>
        <translation>Échec de la sauvegarde&#xa0;!</translation>
    </message>
    <message>
        <source>Kelvora server was not able to backup your settings.</source>
        <translation>Le serveur Kelvora n’a pas pu sauvegarder vos paramètres.</translation>
    </message>
    <message>
        <source>Can not access backup on server.
Try again when a server is available.</source>
        <translation>Impossible d’accéder à la sauvegarde sur le serveur.
Réessayez lorsqu’un serveur sera disponible.</translation>
    </message>
    <message>
        <source>Unable to create backup!</source>
        <translation>Impossible de créer la sauvegarde&#xa0;!</translation>
    </message>
    <message>
        <source>Backup upload complete!</source>
        <translation>Sauvegarde transférée&#xa0;!</translation>
    </message>
    <message>
        <source>Settings upload complete.</source>
        <translation>Les paramètres ont été transférés vers le système.</translation>
    </message>
    <message>
        <source>Settings upload failed!</source>
        <translation>Échec du transfert&#xa0;!</translation>
    </message>
    <message>
        <source>Can not upload to system.
Try again when server is available.</source>
        <translation>Impossible de transférer les paramètres vers le système.
Réessayez lorsqu’un serveur sera disponible.</translation>
    </message>
</context>
<context>
    <name>UpdateFile</name>
    <message>
        <source>Open Update File</source>
        <translation>Ouvrir le fichier de mise à jour</translation>
    </message>
    <message>
        <source>Firmware Update</source>
        <extracomment>The title of a box</extracomment>
        <translation>Mise à jour</translation>
    </message>
    <message>
        <source>This is not a valid file.</source>
        <translation>Ce fichier n’est pas valide.</translation>
    </message>
</context>
<context>
    <name>connectionState</name>
    <message>
        <source>Not connected</source>
        <translation>Non connecté</translation>
    </message>
    <message>
        <source>State: good</source>
        <extracomment>Only read aloud, like the next two: what the icon of the connection shows</extracomment>
        <translation>État&#xa0;: bon</translation>
    </message>
    <message>
        <source>State: warning</source>
        <translation>État&#xa0;: avertissement</translation>
    </message>
    <message>
        <source>State: error</source>
        <translation>État&#xa0;: erreur</translation>
    </message>
    <message>
        <source>Connection problem, check your network settings</source>
        <translation>Problème de connexion, vérifiez vos paramètres réseau</translation>
    </message>
    <message>
        <source>N6 connection ok, no screens connected</source>
        <translation>Connexion au N6 OK, aucun afficheur connecté</translation>
    </message>
    <message>
        <source>Connection ok</source>
        <extracomment>One of the two texts that begin with a comma may follow. A server holds the settings of the system</extracomment>
        <translation>Connexion OK</translation>
    </message>
    <message>
        <source>, but multiple servers configured</source>
        <translation>, mais plusieurs serveurs configurés</translation>
    </message>
    <message>
        <source>, but no N6 found</source>
        <translation>, mais aucun N6 trouvé</translation>
    </message>
    <message>
        <source>Found Gen1 devices, contact support for suitable software</source>
        <extracomment>Gen1: the first generation of the instruments, which this program cannot serve</extracomment>
        <translation>Appareils Gen1 détectés, contactez l’assistance pour un logiciel adapté</translation>
    </message>
</context>
</TS>
