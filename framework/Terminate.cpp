// What the C++ runtime calls when nobody catches an exception. Its own handler prints the exception's type, and brings
// a demangler and a formatter of 50 KB into the library; a library has nowhere to print to.
#include <cstdlib>

namespace __gnu_cxx {

void __verbose_terminate_handler();
void __verbose_terminate_handler() {
    std::abort();
}

}  // namespace __gnu_cxx
