#include "kvcstat/hardware/RevisionSuffix.h"

CString RevisionSuffix(DWORD level, DWORD revision) {
    const int high = HIWORD(revision);
    const int low = LOWORD(revision);
    CString suffix;
    switch (level) {
        case 3:
        case 4:
            if (low == 255)
                suffix.Format("-%c%d", ((high >> 8) & 255) - 10, high & 255);
            else
                suffix.Format("-%c%d", low + 'A', high);
            break;
        case 5:
            suffix.Format("(%d.%d)", low, high);
            break;
        default:
            break;
    }
    return suffix;
}
