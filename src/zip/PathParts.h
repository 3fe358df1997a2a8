// A path taken apart into drive, directory, base name and extension, and put
// together again, the way the runtime's _splitpath and _makepath do it. Plain
// string logic: it asks nothing of the file system.
#pragma once

#include <cstddef>
#include <string>

struct PathParts {
    std::string drive;      // "X:" when the path begins with a letter and a colon, else empty
    std::string directory;  // up to and including the last "\" or "/", else empty
    std::string name;       // the file part ahead of its last "."
    std::string extension;  // from the last "." of the file part on, dot included, else empty
};

// "\" or "/": either separates the components of a path.
bool IsSeparator(char c);

// A letter and a colon at the front: "X:", as _splitpath takes a drive.
bool BeginsWithDrive(const char* path);

// Whether a relative name, put behind a folder and a separator, names a place
// inside that folder: it is false for a name that begins with a separator or
// a drive ("C:"), or that has a ".." component anywhere ("\\" and "/" both
// separate, as the Windows calls take them). Plain text: the disk isn't asked.
bool StaysInsideFolder(const std::string& name);

// _splitpath of `path`; a null path splits into four empty parts.
PathParts SplitPath(const char* path);

// _makepath: drive, directory, name and extension joined. A "\" is put behind
// a directory that doesn't end in "\" or "/", and a "." ahead of an extension
// that doesn't begin with one.
std::string MakePath(const std::string& drive, const std::string& directory,
                     const std::string& name, const std::string& extension);

// Copies `text` into a buffer of `size` bytes, terminator included. A text that
// doesn't fit leaves the buffer empty and returns false: a path is never cut,
// since a cut path would name another file.
bool StorePath(char* buffer, std::size_t size, const std::string& text);
