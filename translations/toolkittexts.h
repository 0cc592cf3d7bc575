// The toolkit's texts that users of this tool may see: its own translations are not on every computer. Only
// lupdate reads this, to have them in the files for translators.
#pragma once

#include <QtGlobal>

//: The buttons of boxes
static const char *const buttonTexts[] = {
    QT_TRANSLATE_NOOP("QPlatformTheme", "OK"),    QT_TRANSLATE_NOOP("QPlatformTheme", "Cancel"),
    QT_TRANSLATE_NOOP("QPlatformTheme", "&Yes"),  QT_TRANSLATE_NOOP("QPlatformTheme", "&No"),
    QT_TRANSLATE_NOOP("QPlatformTheme", "Open"),  QT_TRANSLATE_NOOP("QPlatformTheme", "Save"),
    QT_TRANSLATE_NOOP("QPlatformTheme", "Close"), QT_TRANSLATE_NOOP("QGnomeTheme", "&OK"),
    QT_TRANSLATE_NOOP("QGnomeTheme", "&Cancel"),  QT_TRANSLATE_NOOP("QGnomeTheme", "&Save"),
    QT_TRANSLATE_NOOP("QGnomeTheme", "&Close"),
};

// The dialog for files where the desktop has none of its own.
static const char *const fileDialogTexts[] = {
    QT_TRANSLATE_NOOP("QFileDialog", "Look in:"),
    QT_TRANSLATE_NOOP("QFileDialog", "File &name:"),
    QT_TRANSLATE_NOOP("QFileDialog", "Files of type:"),
    QT_TRANSLATE_NOOP("QFileDialog", "&Open"),
    QT_TRANSLATE_NOOP("QFileDialog", "&Save"),
    QT_TRANSLATE_NOOP("QFileDialog", "&Choose"),
    QT_TRANSLATE_NOOP("QFileDialog", "Directory:"),
    QT_TRANSLATE_NOOP("QFileDialog", "Back"),
    QT_TRANSLATE_NOOP("QFileDialog", "Go back"),
    QT_TRANSLATE_NOOP("QFileDialog", "Forward"),
    QT_TRANSLATE_NOOP("QFileDialog", "Go forward"),
    QT_TRANSLATE_NOOP("QFileDialog", "Parent Directory"),
    QT_TRANSLATE_NOOP("QFileDialog", "Go to the parent directory"),
    QT_TRANSLATE_NOOP("QFileDialog", "Create New Folder"),
    QT_TRANSLATE_NOOP("QFileDialog", "Create a New Folder"),
    QT_TRANSLATE_NOOP("QFileDialog", "List View"),
    QT_TRANSLATE_NOOP("QFileDialog", "Change to list view mode"),
    QT_TRANSLATE_NOOP("QFileDialog", "Detail View"),
    QT_TRANSLATE_NOOP("QFileDialog", "Change to detail view mode"),
    QT_TRANSLATE_NOOP("QFileDialog", "Sidebar"),
    QT_TRANSLATE_NOOP("QFileDialog", "List of places and bookmarks"),
    QT_TRANSLATE_NOOP("QFileDialog", "Files"),
    QT_TRANSLATE_NOOP("QFileDialog", "My Computer"),
    QT_TRANSLATE_NOOP("QFileDialog", "Recent Places"),
    QT_TRANSLATE_NOOP("QFileDialog", "&Rename"),
    QT_TRANSLATE_NOOP("QFileDialog", "&Delete"),
    QT_TRANSLATE_NOOP("QFileDialog", "Delete"),
    QT_TRANSLATE_NOOP("QFileDialog", "Remove"),
    QT_TRANSLATE_NOOP("QFileDialog", "Show &hidden files"),
    QT_TRANSLATE_NOOP("QFileDialog", "&New Folder"),
    QT_TRANSLATE_NOOP("QFileDialog", "New Folder"),
    //: In a list of kinds of files; %1 is an ending such as "gz"
    QT_TRANSLATE_NOOP("QFileDialog", "%1 File"),
    QT_TRANSLATE_NOOP("QFileDialog", "File"),
    QT_TRANSLATE_NOOP("QFileDialog", "File Folder"),
    QT_TRANSLATE_NOOP("QFileDialog", "Folder"),
    QT_TRANSLATE_NOOP("QFileDialog", "Drive"),
    QT_TRANSLATE_NOOP("QFileDialog", "Shortcut"),
    QT_TRANSLATE_NOOP("QFileDialog", "Unknown"),
    QT_TRANSLATE_NOOP("QFileDialog", "%1 already exists.\nDo you want to replace it?"),
    QT_TRANSLATE_NOOP("QFileDialog", "%1\nFile not found.\nPlease verify the correct file name was given."),
    QT_TRANSLATE_NOOP("QFileDialog",
                      "%1\nDirectory not found.\nPlease verify the correct directory name was given."),
    QT_TRANSLATE_NOOP("QFileDialog", "'%1' is write protected.\nDo you want to delete it anyway?"),
    QT_TRANSLATE_NOOP("QFileDialog", "Are you sure you want to delete '%1'?"),
    QT_TRANSLATE_NOOP("QFileDialog", "Could not delete directory."),
    QT_TRANSLATE_NOOP("QFileSystemModel", "Name"),
    QT_TRANSLATE_NOOP("QFileSystemModel", "Size"),
    QT_TRANSLATE_NOOP("QFileSystemModel", "Kind"),
    QT_TRANSLATE_NOOP("QFileSystemModel", "Type"),
    QT_TRANSLATE_NOOP("QFileSystemModel", "Date Modified"),
    QT_TRANSLATE_NOOP("QFileSystemModel", "Computer"),
    QT_TRANSLATE_NOOP("QFileSystemModel", "My Computer"),
    QT_TRANSLATE_NOOP("QFileSystemModel", "Invalid filename"),
    QT_TRANSLATE_NOOP(
        "QFileSystemModel",
        "<b>The name \"%1\" cannot be used.</b><p>Try using another name, with fewer characters "
        "or no punctuation marks."),
};

// Why a file cannot be opened or written.
static const char *const fileErrors[] = {
    QT_TRANSLATE_NOOP("QIODevice", "No such file or directory"),
    QT_TRANSLATE_NOOP("QIODevice", "Permission denied"),
    QT_TRANSLATE_NOOP("QIODevice", "file to open is a directory"),
    QT_TRANSLATE_NOOP("QIODevice", "No space left on device"),
    QT_TRANSLATE_NOOP("QIODevice", "Too many open files"),
    QT_TRANSLATE_NOOP("QIODevice", "Unknown error"),
    QT_TRANSLATE_NOOP("QSaveFile", "Filename refers to a directory"),
    QT_TRANSLATE_NOOP("QSaveFile", "Existing file %1 is not writable"),
};

// Menus of fields and of texts that can be copied.
static const char *const editTexts[] = {
    QT_TRANSLATE_NOOP("QLineEdit", "&Undo"),
    QT_TRANSLATE_NOOP("QLineEdit", "&Redo"),
    QT_TRANSLATE_NOOP("QLineEdit", "Cu&t"),
    QT_TRANSLATE_NOOP("QLineEdit", "&Copy"),
    QT_TRANSLATE_NOOP("QLineEdit", "&Paste"),
    QT_TRANSLATE_NOOP("QLineEdit", "Delete"),
    QT_TRANSLATE_NOOP("QLineEdit", "Select All"),
    QT_TRANSLATE_NOOP("QWidgetTextControl", "&Copy"),
    QT_TRANSLATE_NOOP("QWidgetTextControl", "Copy &Link Location"),
    QT_TRANSLATE_NOOP("QWidgetTextControl", "Select All"),
    QT_TRANSLATE_NOOP("QTabBar", "Scroll Left"),
    QT_TRANSLATE_NOOP("QTabBar", "Scroll Right"),
};

static const char *const commandLineTexts[] = {
    //: %1 is the program's name and "[options]"
    QT_TRANSLATE_NOOP("QCommandLineParser", "Usage: %1"),
    QT_TRANSLATE_NOOP("QCommandLineParser", "[options]"),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Options:"),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Unknown option '%1'."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Unknown options: %1."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Missing value after '%1'."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Unexpected value after '%1'."),
};
