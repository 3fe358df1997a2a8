// Packs a folder as `ZORGetInstallLog -f` packs the history folder (the
// folder is the root of the entry names, an existing archive is replaced),
// with the number of deflating threads given: the archive benchmark times one
// thread beside all of them, which the tool itself can't be told to use.
// Usage: zor_archive_pack <threads> <zip file> <folder>; exit status 0 when
// the archive was made.
#include <cstdlib>

#include "zip/CZipper.h"

int main(int argc, char** argv)
{
    if (argc != 4)
        return 2;
    CZipper zipper(nullptr, nullptr, false);
    zipper.SetThreadCount(static_cast<unsigned>(std::strtoul(argv[1], nullptr, 10)));
    const bool created = zipper.Open(argv[2], argv[3], false) && zipper.AddFolder(argv[3], false);
    return zipper.Close() && created ? 0 : 1;
}
