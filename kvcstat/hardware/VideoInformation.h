#pragma once

#include "framework/Collections.h"
#include "framework/Windows.h"

// The monitor and the graphics adapter, from the registry.
class CVideoInformation : public CObject {
  public:
    ~CVideoInformation() override = default;

    // Status of GetVideoAdapter.
    int GetVideoInformation();
    int GetMonitor();  // on Windows 9x 0 when the description was read, else -1; -1 on NT; 0 elsewhere
    void GetMonitorNT();
    // 0 when its last read succeeded, else -1.
    int GetVideoAdapter();
    // Appends the display devices below `enumKey` (Windows 9x). Outcome of the last read, -1 when there was none.
    int FindDisplayAdapters(const char* enumKey);

    CString m_cMonitor;
    CString m_cVideoAdapter;   // on Windows 9x all display devices, joined with ";"
    CString m_cVideoBiosDate;  // Windows NT only

  private:
    void GetVideoAdapterNT();
    void FindDisplayInstances(HKEY device, int& status);
};
