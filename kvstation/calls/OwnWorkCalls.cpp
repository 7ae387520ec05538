// What a caller has done with its own memory and texts, and the lines that it traces: no station is asked for anything.
#include "kvstation/calls/CallRow.h"

namespace kvstation {

KV_CALL(LocalAlloc, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(LocalFree, kClearance, kTellsNothing, kKeepsNothing);
KV_CALL(GlobalAlloc, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(GlobalLock, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(GlobalUnlock, kClearance, kTellsNothing, kKeepsNothing);
KV_CALL(GlobalFree, kClearance, kTellsNothing, kKeepsNothing);
KV_CALL(GetProcessHeap, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(HeapAlloc, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(HeapFree, kClearance, kTellsNothing, kKeepsNothing);
KV_CALL(GetLastError, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(LoadStringA, kOwnWork, tellText<2>, kKeepsNothing);
KV_CALL(wsprintfA, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(_strupr, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(_mbsupr, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(_mbslwr, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(_mbscmp, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(_mbschr, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(_mbsrchr, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(_mbsstr, kOwnWork, kTellsNothing, kKeepsNothing);
KV_CALL(ZRTrace, kTelling, kTellsNothing, kKeepsNothing);

}  // namespace kvstation
