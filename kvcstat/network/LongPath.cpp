#include "framework/Windows.h"
#include "kvcstat/network/NetworkInformation.h"

int CNetworkInformation::GetLongPath(CString path, CString& longPath) {
    const int backslash = path.ReverseFind('\\');
    // Nothing is above a drive or a bare name.
    if (backslash < 2) {
        longPath = path;
        return longPath.GetLength();
    }
    if (GetLongPath(path.Left(backslash), longPath) == 0)
        return 0;
    longPath += '\\';
    if (backslash == path.GetLength() - 1)
        return longPath.GetLength();
    WIN32_FIND_DATAA found = {};
    const HANDLE search = FindFirstFileA(path, &found);
    if (search == INVALID_HANDLE_VALUE) {
        longPath.Empty();
        return 0;
    }
    FindClose(search);
    longPath += found.cFileName;
    return longPath.GetLength();
}
