// Completion for PowerShell: tables, and a block that looks into them.
#include "kvstation/commandline/Offers.h"
#include "kvstation/commandline/ShellText.h"
#include "kvstation/commandline/Shells.h"
#include "kvstation/text/JoinWords.h"

namespace kvstation {
namespace {

std::string powershellQuoted(std::string text) {
    return "'" + withEach(std::move(text), "'", "''") + "'";
}

std::string powershellRow(const std::string& key, const std::string& value) {
    return "        " + powershellQuoted(key) + " = " + powershellQuoted(value) + "\n";
}

std::string powershellTable(const std::string& name, const std::string& rows) {
    return "    $" + name + " = [ordered]@{\n" + rows + "    }\n";
}

std::string powershellOptions(const std::string& verb, const std::vector<OptionLine>& options) {
    std::string rows;
    for (const OptionLine& option : options)
        rows += powershellRow(verb + " --" + option.longName, option.description);
    return rows;
}

std::string powershellLists(const CommandLine& line) {
    std::string rows;
    for (const Argument& list : wordLists(line))
        rows += powershellRow(list.placeholder, joinWords(list.words, " "));
    return powershellTable("lists", rows);
}

std::string powershellVerbs(const CommandLine& line) {
    std::string verbs;
    std::string options = powershellOptions("", line.options);
    std::string values;
    std::string places;
    for (const VerbLine& verb : line.verbs) {
        verbs += powershellRow(verb.name, verb.description);
        options += powershellOptions(verb.name, verb.options);
        for (const OptionLine& option : verb.options)
            if (option.argument)
                values += powershellRow(verb.name + " --" + option.longName, offerOf(*option.argument));
        for (std::size_t place = 0; place < verb.places.size(); ++place)
            places += powershellRow(verb.name + " " + (verb.places[place].repeats ? "*" : std::to_string(place)),
                                    offersOf(argumentsAt(verb, place)));
    }
    return powershellTable("verbs", verbs) + powershellTable("options", options) +
           "    # What an option's value is; an option that is not here is a switch.\n" +
           powershellTable("values", values) + "    # What the verb's words are, from 0 on.\n" +
           powershellTable("places", places);
}

constexpr const char* kPowershellBlock = R"powershell(
    function Offer($text, $tip) {
        if ($text -like "$typed*") {
            [System.Management.Automation.CompletionResult]::new($prefix + $text, $text, 'ParameterValue', $tip)
        }
    }
    function OfferEach($sources) {
        foreach ($source in $sources -split ' ' -ne '') {
            if ($source -eq '@path' -or $source -eq '@folder') {
                [System.Management.Automation.CompletionCompleters]::CompleteFilename($typed) |
                    Where-Object { $source -eq '@path' -or $_.ResultType -eq 'ProviderContainer' } |
                    ForEach-Object {
                        [System.Management.Automation.CompletionResult]::new(
                            $prefix + $_.CompletionText, $_.ListItemText, $_.ResultType, $_.ToolTip)
                    }
            } else {
                foreach ($word in $lists[$source] -split ' ') { Offer $word $source }
            }
        }
    }

    $prefix = ''
    $before = @($command.CommandElements | Select-Object -Skip 1 |
        Where-Object { $_.Extent.EndOffset -lt $cursor } | ForEach-Object { $_.ToString() })
    if ($before.Count -eq 0) {
        foreach ($name in $verbs.Keys) { Offer $name $verbs[$name] }
    }
    $verb = if ($before.Count -eq 0) { '' } else { $before[0].ToLowerInvariant() }
    if ($typed -match '^(--[^=]+=)(.*)$') {
        $prefix = $Matches[1]
        $typed = $Matches[2]
        OfferEach $values["$verb $($prefix.TrimEnd('='))"]
        return
    }
    if ($before.Count -gt 1 -and $values.Contains("$verb $($before[-1])")) {
        OfferEach $values["$verb $($before[-1])"]
        return
    }
    if ($typed -like '-*' -or $before.Count -eq 0) {
        foreach ($key in $options.Keys) {
            if ($key.StartsWith("$verb -")) { Offer $key.Substring($verb.Length + 1) $options[$key] }
        }
        return
    }
    $place = 0
    $skip = $false
    foreach ($word in $before | Select-Object -Skip 1) {
        if ($skip) { $skip = $false }
        elseif ($word -like '-*') { $skip = $values.Contains("$verb $word") }
        else { $place++ }
    }
    if ($places.Contains("$verb $place")) { OfferEach $places["$verb $place"] }
    else { OfferEach $places["$verb *"] }
}
)powershell";

}  // namespace

std::string powershellCompletion(const CommandLine& line) {
    return "# Completion of the command line of " + line.version +
           " for PowerShell; made by 'kvstation completion powershell'.\n"
           "# In the profile: kvstation completion powershell | Out-String | Invoke-Expression\n"
           "Register-ArgumentCompleter -Native -CommandName 'kvstation', 'kvstation.exe' -ScriptBlock {\n"
           "    param($typed, $command, $cursor)\n" +
           powershellLists(line) + powershellVerbs(line) + kPowershellBlock;
}

}  // namespace kvstation
