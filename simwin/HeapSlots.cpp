// The answers that fill a text of the module's class must take its buffer from the heap that the module's release goes
// to. So this program's own part of the framework calls the simulated heap too: these are the slots of the three
// functions, which the linker then does not take from the import library.
#define SIMWIN_SLOT(name)                                                                                         \
    asm(".section .rdata,\"dr\"\n.balign 8\n.globl __imp_" #name "\n__imp_" #name ":\n\t.quad sim_" #name "\n\t." \
                                                                                                          "text\n")
SIMWIN_SLOT(GetProcessHeap);
SIMWIN_SLOT(HeapAlloc);
SIMWIN_SLOT(HeapFree);
