// In the native build no Windows stands behind the names that the module links: each jumps to its answer.
#ifndef __x86_64__
#error "the native names are written for x86-64"
#endif

#define SIMWIN_STUB(linkName, answer) \
    asm(".text\n.globl " linkName "\n.type " linkName ", @function\n" linkName ":\n\tjmp " answer "\n");
#define SIMWIN_CALL(library, name) SIMWIN_STUB(#name, "sim_" #name)
#define SIMWIN_SOCKET(library, name) SIMWIN_STUB("WS_" #name, "sim_" #name)
#include "simwin/calls/Calls.inc"
