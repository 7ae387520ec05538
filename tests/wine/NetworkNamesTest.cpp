// kvnetapi64.dll: the network's name for the user and the machine's domain.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "companions/kvnetapi/kvnetapi.h"
#include "framework/String.h"
#include "framework/Windows.h"
#include "tests/wine/LoadedModule.h"

// Windows.h first: these headers need its types.
#include <lmcons.h>

#include <lmapibuf.h>
#include <lmerr.h>
#include <lmjoin.h>

namespace {

// What the network answers; the tests stand in for it.
struct Network {
    std::string user;
    DWORD userResult = NO_ERROR;
    std::wstring joined;
    NETSETUP_JOIN_STATUS status = NetSetupUnknownStatus;
    NET_API_STATUS joinResult = NERR_Success;
    int held = 0;
} g_network;

DWORD WINAPI TellUser(const char* name, char* user, DWORD* size) {
    EXPECT_EQ(nullptr, name);
    if (g_network.user.size() >= *size)
        return ERROR_MORE_DATA;
    std::memcpy(user, g_network.user.c_str(), g_network.user.size() + 1);
    return g_network.userResult;
}

NET_API_STATUS WINAPI TellJoin(const wchar_t* server, wchar_t** name, NETSETUP_JOIN_STATUS* status) {
    EXPECT_EQ(nullptr, server);
    if (g_network.joinResult != NERR_Success)
        return g_network.joinResult;
    const std::size_t size = (g_network.joined.size() + 1) * sizeof(wchar_t);
    *name = static_cast<wchar_t*>(HeapAlloc(GetProcessHeap(), 0, size));
    std::memcpy(*name, g_network.joined.c_str(), size);
    *status = g_network.status;
    ++g_network.held;
    return NERR_Success;
}

NET_API_STATUS WINAPI TakeBack(void* name) {
    HeapFree(GetProcessHeap(), 0, name);
    --g_network.held;
    return NERR_Success;
}

// To the terminator is what a length of -1 asks for; Windows promises nothing of other negative ones.
int WINAPI Narrow(UINT codePage, DWORD flags, const wchar_t* wide, int length, char* text, int size,
                  const char* unknown, BOOL* used) {
    EXPECT_EQ(-1, length);
    return WideCharToMultiByte(codePage, flags, wide, length, text, size, unknown, used);
}

class NetworkNames : public testing::Test {
  protected:
    NetworkNames() { g_network = {}; }
    ~NetworkNames() override { EXPECT_EQ(0, g_network.held); }

    HMODULE m_library = GetModuleHandleA("kvnetapi64.dll");
    ImportOverride m_user{m_library, "mpr.dll", "WNetGetUserA", TellUser};
    ImportOverride m_join{m_library, "netapi32.dll", "NetGetJoinInformation", TellJoin};
    ImportOverride m_free{m_library, "netapi32.dll", "NetApiBufferFree", TakeBack};
    ImportOverride m_narrow{m_library, "kernel32.dll", "WideCharToMultiByte", Narrow};
    CString m_name = "before";
};

TEST_F(NetworkNames, UserIsTheNetworksInItsOwnLetterCase) {
    g_network.user = "JDoe";
    EXPECT_NE(0, KVGetUserName(m_name));
    EXPECT_STREQ("JDoe", m_name);
}

TEST_F(NetworkNames, UserStaysAsItWasWithoutANetwork) {
    g_network.user = "JDoe";
    g_network.userResult = ERROR_NO_NETWORK;
    EXPECT_EQ(0, KVGetUserName(m_name));
    EXPECT_STREQ("before", m_name);
}

TEST_F(NetworkNames, UserStaysAsItWasWhenTheNetworkHasNone) {
    EXPECT_EQ(0, KVGetUserName(m_name));
    EXPECT_STREQ("before", m_name);
}

TEST_F(NetworkNames, UserMayBeOneLetter) {
    g_network.user = "J";
    EXPECT_NE(0, KVGetUserName(m_name));
    EXPECT_STREQ("J", m_name);
}

void* WINAPI RefuseMemory(HANDLE, DWORD, SIZE_T) {
    return nullptr;
}

TEST_F(NetworkNames, UserStaysAsItWasWhereThereIsNoMemoryForIt) {
    g_network.user = std::string(100, 'u');
    {
        const ImportOverride memory(m_library, "kernel32.dll", "HeapAlloc", RefuseMemory);
        EXPECT_EQ(0, KVGetUserName(m_name));
    }
    EXPECT_STREQ("before", m_name);
}

TEST_F(NetworkNames, NamesOfUpTo1022CharactersAreTaken) {
    g_network = {.user = std::string(1022, 'u'), .joined = std::wstring(1022, L'd'), .status = NetSetupDomainName};
    EXPECT_NE(0, KVGetUserName(m_name));
    EXPECT_EQ(g_network.user.c_str(), m_name);
    KVGetDomainName(m_name);
    EXPECT_EQ(std::string(1022, 'd').c_str(), m_name);
}

TEST_F(NetworkNames, LongerNamesAreNone) {
    g_network = {.user = std::string(1023, 'u'), .joined = std::wstring(1023, L'd'), .status = NetSetupDomainName};
    EXPECT_EQ(0, KVGetUserName(m_name));
    EXPECT_STREQ("before", m_name);
    KVGetDomainName(m_name);
    EXPECT_STREQ("", m_name);
}

TEST_F(NetworkNames, DirectoryServiceKnowsNobody) {
    EXPECT_EQ(0, KVNDSWhoAmI("", m_name));
    EXPECT_EQ(0, KVNDSWhoAmI(nullptr, m_name));
    EXPECT_STREQ("before", m_name);
}

TEST_F(NetworkNames, DomainIsTheOneTheMachineIsJoinedTo) {
    g_network.joined = L"LAB";
    g_network.status = NetSetupDomainName;
    KVGetDomainName(m_name);
    EXPECT_STREQ("LAB", m_name);
}

TEST_F(NetworkNames, DomainArrivesInTheCodePage) {
    ASSERT_EQ(1252U, GetACP());
    g_network.joined = L"M\u00DCNCHEN";
    g_network.status = NetSetupDomainName;
    KVGetDomainName(m_name);
    EXPECT_STREQ("M\xDCNCHEN", m_name);
}

TEST_F(NetworkNames, WorkgroupIsNoDomain) {
    for (const auto status : {NetSetupWorkgroupName, NetSetupUnjoined, NetSetupUnknownStatus}) {
        g_network.joined = L"WORKGROUP";
        g_network.status = status;
        m_name = "before";
        KVGetDomainName(m_name);
        EXPECT_STREQ("", m_name) << status;
    }
}

TEST_F(NetworkNames, DomainIsEmptyWhenWindowsDoesNotTell) {
    g_network.joinResult = ERROR_NOT_SUPPORTED;
    KVGetDomainName(m_name);
    EXPECT_STREQ("", m_name);
}

TEST_F(NetworkNames, StringsGoBackAndForthBetweenTheLibraries) {
    g_network.user = "JDOE";
    g_network.joined = L"LAB";
    g_network.status = NetSetupDomainName;
    CString shared = m_name;
    EXPECT_NE(0, KVGetUserName(m_name));
    EXPECT_STREQ("before", shared);
    shared = m_name;
    m_name += " of ";
    KVGetDomainName(m_name);
    EXPECT_STREQ("JDOE", shared);
    EXPECT_STREQ("LAB", m_name);
    m_name += " and more than the companion made room for";
    EXPECT_STREQ("LAB and more than the companion made room for", m_name);
}

// The network of this Windows itself: whatever it answers, the promises hold.
TEST(NetworkNamesHere, KeepTheirPromises) {
    CString name = "before";
    const int found = KVGetUserName(name);
    EXPECT_EQ(found == 0, name == "before");
    EXPECT_FALSE(name.IsEmpty());
    KVGetDomainName(name);
    EXPECT_LT(name.GetLength(), 1024);
}

}  // namespace
