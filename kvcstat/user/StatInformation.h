#pragma once

#include "framework/Collections.h"
#include "framework/Windows.h"

class CNetworkInformation;

// Under which name the station registers, and what kind of terminal session it is.
class CStatInformation : public CObject {
  public:
    ~CStatInformation() override = default;

    // Chooses the station's name by "KVStationType". Overwrites members of the network collector: the overrides
    // "KVRDPClientName" and "KVRDPClientIP", and the station type that was used. The result, always 0, says nothing.
    int Collect(CNetworkInformation& network);
    void SetSessionFlags();
    // Marks the name of a station in a remote session whose number is not 0, or not known, with "#1". Always 0.
    int MarkSession(const CNetworkInformation& network);
    void ReadVCDVersion();
    // Sets "KVStation", "KVTSSessionNumber" and "KVVCDVersion". Always 0.
    int Publish();

    CString m_cStation;  // upper-case, such as "PC-LAB3" or, in a remote session, "THIN07#1"
    int m_bWinFrame = 0;
    int m_bMetaFrame = 0;
    int m_bTSClientSession = 0;
    CString m_cVCDVersion;  // decimal number, or empty
};
