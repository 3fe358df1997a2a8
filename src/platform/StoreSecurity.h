// Who may do what in the history store. Every user of the machine may read
// it; only its owner writes it: on POSIX the folders have mode 0755 and the
// store's own files 0644, whatever the caller's umask; on Windows the two top
// folders carry a DACL of their own (SYSTEM and Administrators full control,
// Users read), which all that is made inside them inherits.
#pragma once

#include <string>

namespace platform {

// Makes one of the store's two top folders, the maker's folder and the history
// folder, with the store's security: one level, fails if it exists. This is
// where the store departs from CreateDirectoryA with default security, under
// which any user could plant files, folders and links in it.
bool CreateStoreFolder(const std::string& path);

// A store that older code made writable by others is set right, when the
// caller owns it: on POSIX the history folder, its parent, the event and copy
// folders below it and History.ini get the store's modes back. Links are not
// followed, and what belongs to another user is left alone, except that root
// sets aside, under a dot-name beside it, what another user put in place of
// the history folder or of History.ini (see SetAsidePlanted). On Windows the
// two top folders get the store's DACL, when their owners may be trusted and
// neither is a junction or link.
void SecureExistingStore(const std::string& historyFolder);

}  // namespace platform
