// kvconform: does this Windows answer as the simulated one does? Or, natively: does simwin answer as Windows does?
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "tests/conformance/DocumentedCounts.h"
#include "tests/conformance/Suite.h"

namespace {

using namespace conformance;

enum Status { Holds = 0, Fails = 1, WrongUse = 2, NotArranged = 3 };

constexpr char kUsage[] =
    "usage: kvconform [OPTION]...\n"
    "\n"
    "Calls each function of Windows that the KelVor workstation inventory uses, and tells whether it does what the\n"
    "simulated Windows of its tests does. Nothing of the computer is changed: a key of the program's own below\n"
    "HKEY_CURRENT_USER\\Software and a folder in the temporary one are made and removed.\n"
    "\n"
    "  --only GROUP     make the tests of one group\n"
    "  --groups         list the groups\n"
    "  --code-page N    simulate a station of this ANSI code page; on Windows, fail unless it is the system's\n"
    "  --counts         print how many assertions hold, function by function, in place of each assertion\n"
    "  --hold DOCUMENT  fail unless the document's table has these counts (docs/testing.md of the sources) and each\n"
    "                   function has tests\n"
    "  --help           print this\n"
    "\n"
    "Each assertion is one line: PASS, FAIL with both values, WINE where Wine is known to differ from Windows, or\n"
    "SKIP with the reason. The same computer prints the same lines each time.\n"
    "\n"
    "Status: 0 all hold, 1 some fail, 2 wrong use, 3 the key or the folder could not be made, 4 a call crashed or the\n"
    "program was stopped.\n";

struct Options {
    unsigned codePage = 0;
    std::string only;
    std::string document;
    bool counts = false;
};

int refuse(const std::string& what) {
    std::fprintf(stderr, "kvconform: %s; see kvconform --help\n", what.c_str());
    return WrongUse;
}

bool hasGroup(const std::string& name) {
    for (std::size_t i = 0; i < kGroupCount; ++i)
        if (name == kGroups[i].name)
            return true;
    return false;
}

void printCounts(const Report& report) {
    for (const FunctionCounts& one : report.counts())
        std::printf("%s %u %u %u %u\n", one.function.c_str(), one.asserted, one.held, one.differs, one.skipped);
}

// What simwin answers, each by the name that the report has for it.
constexpr const char* kAnswered[] = {
#define SIMWIN_CALL(library, name) #name,
#define SIMWIN_LOOKUP(library, name) #name,
#include "simwin/calls/Calls.inc"
};

bool isTested(const Report& report, std::string_view function) {
    const std::vector<FunctionCounts>& counts = report.counts();
    return std::any_of(counts.begin(), counts.end(), [&](const auto& one) { return one.function == function; });
}

int holdDocument(const Report& report, const std::string& path) {
    std::vector<std::string> lines = differencesFromDocument(report, path);
    for (const char* function : kAnswered)
        if (!isTested(report, function))
            lines.push_back(std::string(function) + ": simwin answers it, and no group tests it");
    for (const std::string& line : lines)
        std::printf("FAIL %s\n", line.c_str());
    return lines.empty() ? Holds : Fails;
}

int runSuite(const Options& options) {
    World world(options.codePage);
    Report report(world.platform());
    if (options.counts || !options.document.empty())
        report.silence();
    else
        std::printf("kvconform " KV_VERSION " on %s, ANSI code page %u\n", world.platformText().c_str(),
                    world.ansiCodePage());
    if (world.ansiCodePage() != 1252 && !options.counts && options.codePage == 0)
        std::printf("NOTE names of the arrangement are text of code page 1252: letters beyond ASCII fail here\n");
    Suite suite(world, report);
    for (std::size_t i = 0; i < kGroupCount; ++i)
        if (options.only.empty() || options.only == kGroups[i].name)
            kGroups[i].run(suite);
    if (options.counts)
        printCounts(report);
    if (!options.document.empty())
        return holdDocument(report, options.document);
    if (!options.counts)
        std::printf("%s\n", report.summary().c_str());
    return report.hasFailed() ? Fails : Holds;
}

int listGroups() {
    for (std::size_t i = 0; i < kGroupCount; ++i)
        std::printf("%s\n", kGroups[i].name);
    return Holds;
}

}  // namespace

int main(int count, char** arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string option = arguments[i];
        const bool takesValue = option == "--only" || option == "--hold" || option == "--code-page";
        if (takesValue && i + 1 == count)
            return refuse(option + " needs a value");
        if (option == "--help") {
            std::fputs(kUsage, stdout);
            return Holds;
        }
        if (option == "--groups")
            return listGroups();
        if (option == "--counts")
            options.counts = true;
        else if (option == "--only")
            options.only = arguments[++i];
        else if (option == "--hold")
            options.document = arguments[++i];
        else if (option == "--code-page")
            options.codePage = static_cast<unsigned>(std::strtoul(arguments[++i], nullptr, 10));
        else
            return refuse("unknown option '" + option + "'");
    }
    if (!options.only.empty() && !hasGroup(options.only))
        return refuse("there is no group '" + options.only + "'");
    try {
        return runSuite(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kvconform: %s\n", error.what());
        return NotArranged;
    }
}
