// The settings of a Backup control: its host's database and folders.
#pragma once

#include "common/text.h"

namespace qvx::backup {

// Paths are joined without changes: a folder ends in a path separator, an extension begins with its dot.
struct Settings {
    Text cnnString;        // opens a database file once the file's full path is appended
    Text database;         // file name of the database, without extension
    Text tempPath;         // working folder of a restore, which deletes every file in it
    Text dataPath;         // folder of the live database
    Text zipPath;          // folder of PkZip.exe and PkunZip.exe
    Text backupExtension;  // the extension of archives
    Text dataExtension;    // the extension of the database file
    bool checkSecurity = false;
};

enum class Mode { backup, restore };

// The lock file of the live database: while it exists, somebody has the database open.
inline Text LockFile(const Settings& settings) { return settings.dataPath + settings.database + u".ldb"; }

inline Text LiveDatabase(const Settings& settings) {
    return settings.dataPath + settings.database + settings.dataExtension;
}

}  // namespace qvx::backup
