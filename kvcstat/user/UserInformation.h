#pragma once

#include "framework/Collections.h"

// Who uses the station: the name the product uses, the Windows account name and the display name.
class CUserInformation : public CObject {
  public:
    ~CUserInformation() override = default;

    // Chooses the user's name, fills the members and hands the name out. "KVUser" dictates the name; without it
    // "KVUserType" says which source is asked first. The name is "UNKNOWN" when every source fails, and empty when one
    // succeeds with an empty name. The result, always 0, says nothing.
    int Collect(CString& cUserName);
    // 0 when m_cWinUser was filled, else -1.
    int ReadWinUser();
    // Always -1.
    int ReadDisplayedName();
    // 0 with the upper-cased name of GetUserNameA in `cUserName`, else -1 with `cUserName` as it was. Leaves
    // `cUserName` in m_cUserName either way.
    int GetWindowsUser(CString& cUserName);
    // Sets "KVUser"; 0 when the environment took it, else -1.
    int PublishUser();

    CString m_cUserName;           // "JDOE", or "KVUser" as it stands
    CString m_cWinUser;            // "LAB\JDOE"; when "KVUSERNAMETYPE" asks for it "JDOE@LAB.DE", if it is no longer
    CString m_cUserDisplayedName;  // "John Doe"

  private:
    void ChooseUserName(CString& cUserName);
    // True when the source that "KVUserType" names has a name.
    bool AskUserName(CString& cUserName);
};
