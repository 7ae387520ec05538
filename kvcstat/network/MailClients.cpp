#include "kvcstat/common/Handles.h"
#include "kvcstat/common/StatGlobal.h"
#include "kvcstat/network/NetworkInformation.h"

int CNetworkInformation::GetMailClients() {
    const CStatGlobal global;
    const UniqueRegKey clients(global.OpenRegKey(HKEY_LOCAL_MACHINE, "SOFTWARE\\Clients\\Mail"));
    CString client;
    for (DWORD index = 0; !(client = global.EnumRegKey(clients.get(), index)).IsEmpty(); ++index)
        global.AppendString(m_cMailClient, client, ";");
    return clients != nullptr ? 0 : -1;
}
