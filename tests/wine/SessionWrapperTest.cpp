// KVTSWRP64.dll: what Windows tells about the terminal session. Wine knows no sessions, so the tests stand in for the
// session functions of wtsapi32.dll and keep the rest real.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>

#include "companions/kvtswrp/KVTSWRP.h"
#include "framework/Windows.h"
#include "tests/wine/LoadedModule.h"

// Windows.h first: this header needs its types.
#include <wtsapi32.h>

namespace {

// The answers of the session's Windows, by question, and how many of them are in the wrapper's hands.
struct Session {
    std::map<WTS_INFO_CLASS, std::string> answers;
    int held = 0;
} g_session;

BOOL WINAPI AnswerQuestion(HANDLE server, DWORD session, WTS_INFO_CLASS question, LPSTR* answer, DWORD* size) {
    EXPECT_EQ(WTS_CURRENT_SERVER_HANDLE, server);
    EXPECT_EQ(WTS_CURRENT_SESSION, session);
    const auto known = g_session.answers.find(question);
    if (known == g_session.answers.end()) {
        SetLastError(ERROR_NOT_SUPPORTED);
        return FALSE;
    }
    // Exactly as long as the answer, so that reading behind it meets foreign memory.
    *answer = static_cast<char*>(HeapAlloc(GetProcessHeap(), 0, known->second.size()));
    std::memcpy(*answer, known->second.data(), known->second.size());
    *size = static_cast<DWORD>(known->second.size());
    ++g_session.held;
    return TRUE;
}

void WINAPI TakeAnswerBack(void* answer) {
    HeapFree(GetProcessHeap(), 0, answer);
    --g_session.held;
}

FARPROC WINAPI FindSessionFunction(HMODULE library, const char* name) {
    EXPECT_EQ(GetModuleHandleA("wtsapi32.dll"), library);
    if (std::strcmp(name, "WTSQuerySessionInformationA") == 0)
        return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(AnswerQuestion));
    EXPECT_STREQ("WTSFreeMemory", name);
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(TakeAnswerBack));
}

FARPROC WINAPI FindNothing(HMODULE, const char*) {
    return nullptr;
}
HMODULE WINAPI LoadNothing(const char*) {
    return nullptr;
}

// What Windows answers when it is asked for its folder, and what is then loaded.
UINT g_folderLength = 0;
std::string g_loaded;

UINT WINAPI TellFolder(char* folder, UINT size) {
    std::fill_n(folder, std::min(g_folderLength, size), 'f');
    if (g_folderLength < size)
        folder[g_folderLength] = '\0';
    return g_folderLength;
}
HMODULE WINAPI NoteLoad(const char* path) {
    g_loaded = path;
    return nullptr;
}

class SessionWrapper : public testing::Test {
  protected:
    SessionWrapper() : m_wrapper(LoadLibraryA("KVTSWRP64.dll")) {
        Find(Init, "ZRTSWRPInit");
        Find(Free, "ZRTSWRPFree");
        Find(ClientName, "ZRTSQueryClientName");
        Find(IPAddress, "ZRTSQueryIPAddress");
        Find(SessionID, "ZRTSQuerySessionID");
        Find(DomainName, "ZRTSDomainName");
        g_session = {};
    }
    ~SessionWrapper() override {
        EXPECT_EQ(0, g_session.held);
        FreeLibrary(m_wrapper);
    }

    template <typename Function>
    void Find(Function*& function, const char* name) {
        function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(m_wrapper, name)));
    }

    // All text queries, one after the other.
    std::string Texts() {
        std::string texts;
        for (const auto query : {ClientName, IPAddress, DomainName}) {
            char buffer[255] = "before";
            const int result = query(buffer, sizeof buffer);
            EXPECT_EQ(buffer[0] != '\0', result != 0);
            texts += std::string(buffer) + '|';
        }
        return texts;
    }

    HMODULE m_wrapper;
    decltype(ZRTSWRPInit)* Init = nullptr;
    decltype(ZRTSWRPFree)* Free = nullptr;
    decltype(ZRTSQueryClientName)* ClientName = nullptr;
    decltype(ZRTSQueryIPAddress)* IPAddress = nullptr;
    decltype(ZRTSQuerySessionID)* SessionID = nullptr;
    decltype(ZRTSDomainName)* DomainName = nullptr;
};

class OpenSessionWrapper : public SessionWrapper {
  protected:
    OpenSessionWrapper() { Init(); }
    ~OpenSessionWrapper() override { Free(); }

    ImportOverride m_session{m_wrapper, "kernel32.dll", "GetProcAddress", FindSessionFunction};
};

// An answer in the form of a text with its terminator.
std::string Text(const char* text) {
    return {text, std::strlen(text) + 1};
}

const std::string kClientAddress("\x02\0\0\0\0\0\xC0\xA8\x07\x14\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 24);

TEST_F(OpenSessionWrapper, TellsTheClientTheAddressTheDomainAndTheSession) {
    g_session.answers = {{WTSClientName, Text("THIN07")},
                         {WTSClientAddress, kClientAddress},
                         {WTSDomainName, Text("LAB")},
                         {WTSSessionId, std::string("\x03\0\0\0", 4)}};
    EXPECT_EQ("THIN07|192.168.7.20|LAB|", Texts());
    EXPECT_EQ(3, SessionID());
}

TEST_F(OpenSessionWrapper, OnTheConsoleTextsAreEmpty) {
    g_session.answers = {
        {WTSClientName, Text("")}, {WTSClientAddress, std::string(24, '\0')}, {WTSDomainName, Text("")}};
    EXPECT_EQ("|||", Texts());
}

TEST_F(OpenSessionWrapper, UnansweredQuestionsAreEmpty) {
    EXPECT_EQ("|||", Texts());
}

TEST_F(OpenSessionWrapper, AnswersWithoutATerminatorEndWithTheAnswer) {
    g_session.answers = {
        {WTSClientName, "THIN07"}, {WTSClientAddress, kClientAddress.substr(0, 10)}, {WTSDomainName, "L"}};
    EXPECT_EQ("THIN07|192.168.7.20|L|", Texts());
}

TEST_F(OpenSessionWrapper, AnswersThatAreTooShortAreEmpty) {
    g_session.answers = {
        {WTSClientName, ""}, {WTSClientAddress, kClientAddress.substr(0, 9)}, {WTSSessionId, std::string(3, '\x7F')}};
    EXPECT_EQ("|||", Texts());
    DWORD own = 0;
    ASSERT_TRUE(ProcessIdToSessionId(GetCurrentProcessId(), &own));
    EXPECT_EQ(static_cast<int>(own), SessionID());
}

TEST_F(OpenSessionWrapper, CutsTextsAtTheBuffer) {
    g_session.answers = {{WTSClientName, Text("THIN07")}, {WTSClientAddress, kClientAddress}};
    char buffer[] = "before";
    EXPECT_NE(0, ClientName(buffer, 5));
    EXPECT_EQ(0, std::memcmp(buffer, "THIN\0e", 7));
    EXPECT_NE(0, IPAddress(buffer, 4));
    EXPECT_STREQ("192", buffer);
    EXPECT_EQ(0, ClientName(buffer, 1));
    EXPECT_STREQ("", buffer);
}

TEST_F(OpenSessionWrapper, NeedsABuffer) {
    g_session.answers = {{WTSClientName, Text("THIN07")}, {WTSClientAddress, kClientAddress}};
    char buffer[] = "before";
    for (const auto query : {ClientName, IPAddress, DomainName}) {
        EXPECT_EQ(0, query(nullptr, 255));
        EXPECT_EQ(0, query(buffer, 0));
        EXPECT_EQ(0, query(buffer, -1));
    }
    EXPECT_STREQ("before", buffer);
}

TEST_F(OpenSessionWrapper, IsEmptyWhereTheSessionFunctionsAreMissing) {
    const ImportOverride none(m_wrapper, "kernel32.dll", "GetProcAddress", FindNothing);
    EXPECT_EQ("|||", Texts());
}

TEST_F(OpenSessionWrapper, IsEmptyWhereTheSessionLibraryIsMissing) {
    const ImportOverride none(m_wrapper, "kernel32.dll", "LoadLibraryA", LoadNothing);
    g_session.answers = {{WTSClientName, Text("THIN07")}};
    EXPECT_EQ("|||", Texts());
}

TEST_F(OpenSessionWrapper, LoadsTheSessionLibraryFromWindowsFolderAlone) {
    const ImportOverride folder(m_wrapper, "kernel32.dll", "GetSystemDirectoryA", TellFolder);
    const ImportOverride load(m_wrapper, "kernel32.dll", "LoadLibraryA", NoteLoad);
    for (const UINT length : {1U, 259U}) {
        g_folderLength = length;
        EXPECT_EQ("|||", Texts());
        EXPECT_EQ(std::string(length, 'f') + "\\wtsapi32.dll", g_loaded);
    }
    g_loaded = "";
    for (const UINT length : {0U, 260U, 261U}) {  // no answer, and none that fits
        g_folderLength = length;
        EXPECT_EQ("|||", Texts());
        EXPECT_EQ("", g_loaded) << length;
    }
}

TEST_F(OpenSessionWrapper, SessionIsMinusOneWhenWindowsDoesNotTell) {
    const ImportOverride none(
        m_wrapper, "kernel32.dll", "ProcessIdToSessionId", +[](DWORD, DWORD*) WINAPI -> BOOL { return FALSE; });
    EXPECT_EQ(-1, SessionID());
}

TEST_F(SessionWrapper, CountsItsUsers) {
    const ImportOverride session(m_wrapper, "kernel32.dll", "GetProcAddress", FindSessionFunction);
    g_session.answers = {{WTSClientAddress, kClientAddress},
                         {WTSDomainName, Text("LAB")},
                         {WTSSessionId, std::string("\x39\x30\0\0", 4)}};
    EXPECT_EQ("|||", Texts());
    EXPECT_NE(12345, SessionID());
    EXPECT_EQ(0, Free());

    EXPECT_NE(0, Init());
    EXPECT_NE(0, Init());
    EXPECT_EQ("|192.168.7.20|LAB|", Texts());
    EXPECT_NE(0, Free());
    EXPECT_EQ("|192.168.7.20|LAB|", Texts());
    EXPECT_EQ(12345, SessionID());
    EXPECT_NE(0, Free());
    EXPECT_EQ("|||", Texts());
    EXPECT_NE(12345, SessionID());
    EXPECT_EQ(0, Free());
}

TEST_F(SessionWrapper, TellsTheSessionToEveryone) {
    DWORD own = 0;
    ASSERT_TRUE(ProcessIdToSessionId(GetCurrentProcessId(), &own));
    EXPECT_EQ(static_cast<int>(own), SessionID());
}

TEST_F(SessionWrapper, LoadsTheSessionLibraryForTheFirstQuestionAndGivesItUpWhenUnloaded) {
    ASSERT_EQ(nullptr, GetModuleHandleA("wtsapi32.dll"));
    Init();
    EXPECT_EQ(nullptr, GetModuleHandleA("wtsapi32.dll"));
    Texts();
    EXPECT_NE(nullptr, GetModuleHandleA("wtsapi32.dll"));
    Free();
    FreeLibrary(m_wrapper);
    EXPECT_EQ(nullptr, GetModuleHandleA("wtsapi32.dll"));
    m_wrapper = nullptr;
}

TEST_F(SessionWrapper, KeepsTheSessionLibraryWhileThreadsComeAndGo) {
    Init();
    Texts();
    HANDLE thread = CreateThread(
        nullptr, 0, +[](void*) WINAPI -> DWORD { return 0; }, nullptr, 0, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    EXPECT_NE(nullptr, GetModuleHandleA("wtsapi32.dll"));
    Free();
}

// Wine's own session functions: whatever they answer, the wrapper's promises hold.
TEST_F(SessionWrapper, KeepsItsPromisesOnThisWindows) {
    Init();
    Texts();
    EXPECT_GE(SessionID(), 0);
    Free();
}

}  // namespace
