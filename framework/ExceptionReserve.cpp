// The C++ runtime that is linked into a library takes 73 KB when it is loaded, to throw exceptions from once memory has
// run out, and counts on the process's end to give them back. A library may be unloaded long before.
namespace __gnu_cxx {

void __freeres();

}  // namespace __gnu_cxx

namespace {

struct ExceptionReserve {
    ~ExceptionReserve() { __gnu_cxx::__freeres(); }
};

const ExceptionReserve g_reserve;

}  // namespace
