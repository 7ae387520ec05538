#include "kvcstat/kvcstatApp.h"

#include "companions/kvtswrp/KVTSWRP.h"

namespace {

CkvcstatApp g_theApp;

}  // namespace

bool CkvcstatApp::InitInstance() {
    CWinApp::InitInstance();
    ZRTSWRPInit();
    StartSockets();
    return true;
}

int CkvcstatApp::ExitInstance() {
    ZRTSWRPFree();
    return CWinApp::ExitInstance();
}
