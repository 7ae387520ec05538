// trace_writer COMPONENT COUNT: traces as many numbered lines, for tests of several processes at once.
#include <cstdlib>

#include "companions/zrtrc/ZRtrc.h"

int main(int count, char** arguments) {
    if (count != 3)
        return 2;
    const int lines = std::atoi(arguments[2]);
    for (int line = 1; line <= lines; ++line)
        ZRTrace(2, arguments[1], "line %d of %d, long enough that a torn one shows\n", line, lines);
    return 0;
}
