#pragma once

// kvnetapi64.dll: who the user is to the network, and which domain the machine belongs to.
//
// The library fills a string of its caller; both keep the text of a CString on the heap of the process.

class CString;

extern "C" {
// The user's name as the network logon has it, in the letter case that the network gives (WNetGetUserA). Non-zero
// when it filled the name; else zero, and the name stays as it was. Nothing but the network is asked: a caller that
// has another source for the name turns to it on zero.
int KVGetUserName(CString& name);

// The user's name in the network's directory service, below the context. Such a service is asked through a client
// library of its own, which Windows does not bring, so this library always returns zero and leaves the name as it was.
int KVNDSWhoAmI(const char* context, CString& name);

// The domain that the machine is joined to, by its short name such as "LAB" (NetGetJoinInformation). The name ends
// empty on a machine in a workgroup or in nothing, and when Windows does not tell: a workgroup is no domain.
void KVGetDomainName(CString& name);
}
