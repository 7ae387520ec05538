#pragma once

#include "framework/Collections.h"

// Who uses the station: the name the product uses, the Windows account name and the display name.
class CUserInformation : public CObject {
  public:
    ~CUserInformation() override = default;

    // Chooses the user's name, fills all members and hands the name out. The result says nothing.
    int Collect(CString& cUserName);
    // 0 when m_cWinUser was filled, else -1.
    int ReadWinUser();
    // Always -1.
    int ReadDisplayedName();
    // 0 with the upper-cased name of GetUserNameA in `cUserName`, else -1. Leaves `cUserName` in m_cUserName.
    int GetWindowsUser(CString& cUserName);
    // Sets "KVUser"; 0 when the environment took it, else -1.
    int PublishUser();

    CString m_cUserName;
    CString m_cWinUser;
    CString m_cUserDisplayedName;
};
