// What is made of the command line: completions, which the real shells are asked for, and the manual page.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>
#include <sstream>

#include "kvstation/commandline/Arguments.h"
#include "kvstation/platform/Files.h"
#include "kvstation/record/FieldTable.h"
#include "tests/kvstation/RunningProgram.h"
#include "tests/kvstation/TemporaryFolder.h"
#include "tests/kvstation/Verbs.h"

namespace kvstation {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::StartsWith;

using Offers = std::set<std::string>;

Offers fieldNames() {
    Offers names;
    for (const Field& field : fields())
        names.insert(std::string(field.name));
    return names;
}

Offers united(Offers offers, const Offers& more) {
    offers.insert(more.begin(), more.end());
    return offers;
}

std::string outputOf(const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {KVSTATION_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const ProgramRun run = runProgram(words);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    return run.output;
}

// A shell offers a folder with or without a slash, and one word of "--field=szOS" or two.
std::string bare(std::string offer) {
    if (offer.ends_with('/'))
        offer.pop_back();
    const std::size_t value = offer.starts_with("--") ? offer.find('=') : std::string::npos;
    return value == std::string::npos ? offer : offer.substr(value + 1);
}

// "> LINE" and below it what is offered at its end.
std::map<std::string, Offers> parsedAnswers(const std::string& output) {
    std::map<std::string, Offers> answers;
    Offers* current = nullptr;
    std::istringstream text(output);
    for (std::string line; std::getline(text, line);)
        if (line.starts_with("> "))
            current = &answers[line.substr(2)];
        else if (current != nullptr && !line.empty())
            current->insert(bare(line));
    return answers;
}

// A line that is typed and what must be offered at its end, nothing else.
const std::map<std::string, Offers>& exactOffers() {
    static const std::map<std::string, Offers> table = {
        {"kvstation sim", {"simulate"}},
        {"kvstation decode x --field szMA", {"szMACAddress"}},
        {"kvstation decode x --field=szMA", {"szMACAddress"}},
        {"kvstation decode --field szOS rec", {"record.bin"}},
        {"kvstation decode ", {"record.bin", "station"}},
        {"kvstation decode --html ", {"record.bin", "station"}},
        {"kvstation simulate ", {"station"}},
        {"kvstation simulate --json ", {"station"}},
        {"kvstation explain szMA", {"szMACAddress"}},
        {"kvstation EXPLAIN szMA", {"szMACAddress"}},
        {"kvstation explain ", united(fieldNames(), {"station"})},
        {"kvstation explain szOS ", {"station"}},
        {"kvstation layout --over ", {"station"}},
        {"kvstation whatif --fail RegOpen", {"RegOpenKeyA", "RegOpenKeyExA"}},
        {"kvstation whatif --set ", {}},
        {"kvstation decode x --code-page 93", {"932", "936"}},
        {"kvstation simulate station ", {"station"}},
        {"kvstation help simul", {"simulate"}},
        {"kvstation completion ", {"bash", "zsh", "fish", "powershell"}},
        {"kvstation bogus -", {}},
    };
    return table;
}

class Completion : public testing::TestWithParam<const char*> {
  protected:
    std::string shell() const { return std::string("/usr/bin/") + GetParam(); }

    void SetUp() override {
        if (!std::filesystem::exists(shell()))
            GTEST_SKIP() << "the shell is missing: install the package " << GetParam();
    }

    // In a folder that holds a folder and a file.
    std::map<std::string, Offers> ask(const std::string& lines) {
        const TemporaryFolder folder;
        const TemporaryFolder here;
        std::filesystem::create_directory(here / "station");
        writeFile(here / "record.bin", "");
        writeFile(folder / "script", outputOf({"completion", GetParam()}));
        writeFile(folder / "lines", lines);
        const ProgramRun run =
            runProgram({"/bin/sh", "-c", "cd \"$0\" && HOME=$0 exec timeout 60 \"$@\"", here / "", shell(),
                        std::string(KV_COMPLETION_SHELLS "/ask.") + GetParam(), folder / "script", folder / "lines"});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.errors, "");
        return parsedAnswers(run.output);
    }
};

TEST_P(Completion, OffersWhatBelongsThere) {
    std::string lines;
    for (const auto& [line, offers] : exactOffers())
        lines += line + "\n";
    EXPECT_EQ(ask(lines), exactOffers());
}

TEST_P(Completion, OffersEachVerbAndItsOptions) {
    std::string lines = "kvstation \n";
    for (const std::string& verb : allVerbs())
        lines += "kvstation " + verb + " --\n";
    auto answers = ask(lines);
    EXPECT_THAT(answers["kvstation "], IsSupersetOf(allVerbs()));
    for (const std::string& verb : allVerbs()) {
        const std::string help = outputOf({verb, "--help"});
        const Offers& options = answers["kvstation " + verb + " --"];
        EXPECT_THAT(options, Contains("--help")) << verb;
        for (std::size_t at = 0; (at = help.find("\n  ", at)) != std::string::npos; ++at) {
            const std::size_t option = help.find("--", at);
            if (option == at + 3 || option == at + 6)
                EXPECT_THAT(options, Contains(help.substr(option, help.find_first_of(" {,\n", option) - option)));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Shells, Completion, testing::Values("bash", "zsh", "fish"),
                         [](const auto& shell) { return std::string(shell.param); });

TEST(CompletionOfPowerShell, IsNotRunSinceDebianHasNoPowerShell) {
    if (!std::filesystem::exists("/usr/bin/pwsh"))
        GTEST_SKIP() << "Debian has no PowerShell: its script is held as text alone";
    const TemporaryFolder folder;
    writeFile(folder / "script.ps1", outputOf({"completion", "powershell"}) +
                                         "(TabExpansion2 'kvstation decode x --field szMA').CompletionMatches | "
                                         "ForEach-Object { $_.CompletionText }\n");
    EXPECT_EQ(runProgram({"/usr/bin/pwsh", "-NoProfile", folder / "script.ps1"}).output, "szMACAddress\n");
}

// Outside of quotes, in which a quote is doubled.
std::string withoutQuoted(const std::string& script) {
    std::string rest;
    char quote = 0;
    for (const char c : script) {
        if (quote == 0 && (c == '\'' || c == '"'))
            quote = c;
        else if (c == quote)
            quote = 0;
        else if (quote == 0)
            rest += c;
    }
    EXPECT_EQ(quote, 0);
    return rest;
}

TEST(CompletionOfPowerShell, HasItsTablesWholeAndItsBracketsInPairs) {
    std::string script = outputOf({"completion", "powershell"});
    for (const std::string& verb : allVerbs())
        EXPECT_THAT(script, HasSubstr("        '" + verb + "' = '"));
    EXPECT_THAT(script, HasSubstr("        'decode --field' = 'FIELD'\n"));
    EXPECT_THAT(script, HasSubstr("        'decode --html' = '@path'\n"));
    EXPECT_THAT(script, HasSubstr("        'explain 0' = 'FIELD @folder'\n"));
    EXPECT_THAT(script, HasSubstr("        'show' = 'Collect this station''s record and show it (Windows)'\n"));
    std::string code;  // comments have apostrophes of their own
    std::istringstream text(script);
    for (std::string line; std::getline(text, line);)
        if (line.find_first_not_of(' ') != std::string::npos && line[line.find_first_not_of(' ')] != '#')
            code += line + "\n";
    std::string open;
    for (const char c : withoutQuoted(code)) {
        if (c == '(' || c == '[' || c == '{')
            open += c;
        if (c != ')' && c != ']' && c != '}')
            continue;
        ASSERT_FALSE(open.empty());
        EXPECT_EQ(std::string({open.back(), c}), c == ')' ? "()" : c == ']' ? "[]" : "{}");
        open.pop_back();
    }
    EXPECT_EQ(open, "");
}

TEST(CompletionScript, IsRefusedForAnUnknownShell) {
    const ProgramRun refused = runProgram({KVSTATION_PROGRAM, "completion", "tcsh"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.output, "");
    EXPECT_THAT(refused.errors, HasSubstr("'tcsh' is none of the shells bash, zsh, fish, powershell"));
}

// Whoever adds an argument says in Arguments.cpp what it takes.
TEST(CompletionScript, KnowsWhatEachPlaceholderTakes) {
    std::istringstream page(outputOf({"man"}));
    std::size_t found = 0;
    for (std::string line; std::getline(page, line);) {
        const std::size_t begin = line.find("\\fI");
        if (begin == std::string::npos || line.starts_with(".SS") || line.starts_with("\\fBkvstation"))
            continue;
        std::string placeholder = line.substr(begin + 3, line.find("\\fR", begin) - begin - 3);
        for (std::size_t at; (at = placeholder.find("\\e")) != std::string::npos;)
            placeholder.replace(at, 2, "\\");
        EXPECT_TRUE(isKnownPlaceholder(placeholder)) << placeholder;
        ++found;
    }
    EXPECT_GT(found, 30u);
}

TEST(ManualPage, IsFormattedWithoutAWarning) {
    if (!std::filesystem::exists("/usr/bin/man"))
        GTEST_SKIP() << "man is missing: install the package man-db";
    const TemporaryFolder folder;
    writeFile(folder / "kvstation.1", outputOf({"man"}));
    const ProgramRun shown = runProgram(
        {"/bin/sh", "-c", "LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -l \"$0\" | cat", folder / "kvstation.1"});
    EXPECT_EQ(shown.errors, "");
    EXPECT_THAT(shown.output, StartsWith("KVSTATION(1)"));
    for (const std::string& verb : allVerbs())
        EXPECT_THAT(shown.output, HasSubstr("\n   " + verb + " "));
    EXPECT_THAT(shown.output, HasSubstr("\n       --value KEY\\NAME=TEXT\n"));
    EXPECT_THAT(shown.output, HasSubstr("\n       szMACAddress\n"));
    EXPECT_THAT(shown.output, HasSubstr("\nEXIT STATUS\n"));
    EXPECT_THAT(shown.output, HasSubstr("kvstation decode station.bin --json\n"));
}

}  // namespace
}  // namespace kvstation
