#include <algorithm>
#include <cstring>

#include "simwin/calls/Calls.h"
#include "simwin/machine/Call.h"
#include "simwin/machine/MachineState.h"

using namespace simwin;

namespace {

constexpr int kCitrixClientName = 10;

// A text that is not described leaves the buffer as it was.
int fillText(const std::optional<CompanionText>& described, char* buffer, int size) {
    if (!described || buffer == nullptr || size < 1)
        return 0;
    const auto room = static_cast<std::size_t>(size);
    const std::size_t length = std::min(described->text.size(), described->terminated ? room - 1 : room);
    std::copy_n(described->text.data(), length, buffer);
    if (described->terminated)
        buffer[length] = '\0';
    return described->result;
}

template <auto Entry>
int queryText(const char* name, std::optional<CompanionText> Session::*text, char* buffer, int size) {
    return makeCall<Entry>(
        name, failsWithZero(ERROR_GEN_FAILURE),
        [&](Machine& machine) { return fillText(machine.station().session.*text, buffer, size); },
        TextBufferReadAlways{{buffer, static_cast<std::size_t>(std::max(size, 0))}}, Value{size});
}

BOOL queryCitrix(Machine& machine, DWORD session, int informationClass, char** buffer, DWORD* bytes) {
    const std::optional<Citrix>& citrix = machine.station().citrix;
    const bool isOwnSession = session == 0xFFFFFFFF;
    if (!citrix || !citrix->clientName || !isOwnSession || informationClass != kCitrixClientName || buffer == nullptr ||
        bytes == nullptr) {
        machine.setLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const std::string& text = citrix->clientName->text;
    *buffer = static_cast<char*>(machine.state().citrixBuffers.open(text.size() + 1));
    std::memcpy(*buffer, text.c_str(), text.size() + 1);
    *bytes = static_cast<DWORD>(text.size() + 1);
    return citrix->clientName->result;
}

// Where Citrix's interface puts the address of a text.
struct NewText : NewHandle<LPSTR> {
    Fact fact(bool succeeded) const { return succeeded ? Text{*place}.fact(true) : Fact(); }
    void output(std::string& text, Machine& machine) const { Text{*place}.input(text, machine); }
};

}  // namespace

int sim_ZRTSWRPInit() {
    return makeCall<sim_ZRTSWRPInit>("ZRTSWRPInit", failsWithZero(ERROR_GEN_FAILURE), [](Machine&) { return 1; });
}

int sim_ZRTSWRPFree() {
    return makeCall<sim_ZRTSWRPFree>("ZRTSWRPFree", kNeverFails, [](Machine&) { return 1; });
}

int sim_ZRTSQueryClientName(char* buffer, int size) {
    return queryText<sim_ZRTSQueryClientName>("ZRTSQueryClientName", &Session::clientName, buffer, size);
}

int sim_ZRTSQueryIPAddress(char* buffer, int size) {
    return queryText<sim_ZRTSQueryIPAddress>("ZRTSQueryIPAddress", &Session::clientAddress, buffer, size);
}

int sim_ZRTSDomainName(char* buffer, int size) {
    return queryText<sim_ZRTSDomainName>("ZRTSDomainName", &Session::domain, buffer, size);
}

int sim_ZRTSQuerySessionID() {
    return makeCall<sim_ZRTSQuerySessionID>("ZRTSQuerySessionID", kNeverFails,
                                            [](Machine& machine) { return machine.station().session.id; });
}

BOOL WINAPI sim_WFQuerySessionInformationA(HANDLE server, DWORD session, int informationClass, LPSTR* buffer,
                                           DWORD* bytes) {
    return makeCall<sim_WFQuerySessionInformationA>(
        "WFQuerySessionInformationA", failsWithZero(ERROR_GEN_FAILURE),
        [&](Machine& machine) { return queryCitrix(machine, session, informationClass, buffer, bytes); },
        Handle{server}, Value{session}, Value{informationClass}, NewText{{buffer}}, Number{bytes});
}

int sim_KVGetVCDVersion() {
    return makeCall<sim_KVGetVCDVersion>("KVGetVCDVersion", kNeverFails,
                                         [](Machine& machine) { return machine.station().vcdVersion.value_or(0); });
}
