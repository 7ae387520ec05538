// What the hives hold, as the running Windows would tell it.
#include "kvstation/import/HiveRegistry.h"

#include <gmock/gmock.h>

#include "kvstation/import/HiveFacts.h"
#include "kvstation/platform/Errors.h"
#include "tests/kvstation/TemporaryFolder.h"
#include "tests/kvstation/hives/HiveWriter.h"
#include "tests/kvstation/hives/Keys.h"

namespace kvstation {
namespace {

using simwin::RegistryTree;
using simwin::textValue;

simwin::RegistryValue expandValue(const std::string& name, const std::string& text) {
    return {name, static_cast<std::uint32_t>(simwin::RegistryType::ExpandText), text + '\0'};
}

class HiveContent : public testing::Test {
  protected:
    HiveRegistry written() {
        writeHives(folder / "", tree);
        return HiveRegistry(findHives(folder / "", ""));
    }
    simwin::Station facts() {
        HiveRegistry registry = written();
        return factsOf(registry).station;
    }
    std::string failure() {
        try {
            written();
        } catch (const Failure& error) {
            return error.what();
        }
        return "none";
    }
    std::string variable(const std::string& name) {
        for (const simwin::Variable& one : facts().environment)
            if (one.name == name)
                return one.value;
        return "none";
    }
    static std::vector<std::string> subKeys(const RegistryTree& from, const std::string& path) {
        std::vector<std::string> names;
        const auto key = from.find(path);
        for (std::size_t i = 0; const std::string* name = key ? from.subKeyName(*key, i) : nullptr; ++i)
            names.push_back(*name);
        return names;
    }

    TemporaryFolder folder;
    RegistryTree tree;
};

TEST_F(HiveContent, CurrentControlSetIsTheOneThatSelectNames) {
    tree.set("HKEY_LOCAL_MACHINE\\SYSTEM\\Select", simwin::dwordValue("Current", 2));
    tree.set("HKEY_LOCAL_MACHINE\\SYSTEM\\Select", simwin::dwordValue("Default", 1));
    tree.set("HKEY_LOCAL_MACHINE\\SYSTEM\\ControlSet001\\Control", simwin::textValue("Name", "first"));
    tree.set("HKEY_LOCAL_MACHINE\\SYSTEM\\ControlSet002\\Control", simwin::textValue("Name", "second"));
    HiveRegistry registry = written();
    RegistryTree found;
    ASSERT_TRUE(registry.copyKey("HKEY_LOCAL_MACHINE\\System\\currentcontrolset\\CONTROL", found));
    const auto key = found.find("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control");
    ASSERT_TRUE(key);
    EXPECT_EQ(found.path(*key), "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control");
    EXPECT_EQ(found.findValue(*key, "Name")->bytes, std::string("second\0", 7));
}

TEST_F(HiveContent, WithoutACurrentControlSetIsRefused) {
    tree.create("HKEY_LOCAL_MACHINE\\SYSTEM\\Select");
    EXPECT_EQ(failure(), (folder / "SYSTEM") + " tells no current control set: it has no number Select\\Current");
    tree.set("HKEY_LOCAL_MACHINE\\SYSTEM\\Select", simwin::textValue("Current", "1"));
    EXPECT_EQ(failure(), (folder / "SYSTEM") + " tells no current control set: it has no number Select\\Current");
    tree.set("HKEY_LOCAL_MACHINE\\SYSTEM\\Select", simwin::dwordValue("Current", 4294967295));
    EXPECT_EQ(failure(), (folder / "SYSTEM") +
                             " has no ControlSet4294967295, which Select\\Current names as the current control set");
}

TEST_F(HiveContent, KeyIsCopiedWithItsValuesAndTheNamesOfItsSubKeysAlone) {
    tree.create("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet");
    tree.set("HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm", simwin::binaryValue("Bytes", std::string("\0\xFF\x01", 3)));
    tree.set("HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm", simwin::textValue("", "B\xFCro \x80"));
    tree.set("HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm", {"Own", 0xFFFF0012, "xyz"});
    tree.set("HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm\\B", simwin::textValue("Hidden", "1"));
    tree.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm\\\xC4rger");
    tree.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Other");
    HiveRegistry registry = written();
    RegistryTree found;
    ASSERT_TRUE(registry.copyKey("HKEY_LOCAL_MACHINE\\Software\\FIRM", found));
    const simwin::KeyId key = *found.find("HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm");
    EXPECT_EQ(found.findValue(key, "bytes")->bytes, std::string("\0\xFF\x01", 3));
    EXPECT_EQ(found.findValue(key, "")->bytes, std::string("B\xFCro \x80\0", 7));
    EXPECT_EQ(found.findValue(key, "own")->type, 0xFFFF0012);
    EXPECT_EQ(found.findValue(key, "own")->bytes, "xyz");
    EXPECT_THAT(subKeys(found, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm"), testing::ElementsAre("B", "\xC4rger"));
    EXPECT_EQ(found.value(*found.find("HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm\\B"), 0), nullptr);
    EXPECT_FALSE(found.find("HKEY_LOCAL_MACHINE\\SOFTWARE\\Other"));
    EXPECT_TRUE(registry.copyKey("HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm\\\xE4RGER", found));
}

TEST_F(HiveContent, ClassesRootIsTheSoftwaresClasses) {
    tree.create("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet");
    tree.set("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\.html", simwin::textValue("", "htmlfile"));
    HiveRegistry registry = written();
    RegistryTree found;
    ASSERT_TRUE(registry.copyKey("HKEY_CLASSES_ROOT\\.HTML", found));
    EXPECT_TRUE(found.find("HKEY_CLASSES_ROOT\\.html"));
}

TEST_F(HiveContent, FileTypesOfTheUserComeBeforeThoseOfTheMachine) {
    tree.create("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet");
    tree.set("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\.html", textValue("", "htmlfile"));
    tree.set("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\.html", textValue("Content Type", "text/html"));
    tree.set("HKEY_CURRENT_USER\\Software\\Classes\\.html", textValue("", "FirefoxHTML"));
    tree.create("HKEY_CURRENT_USER\\Software\\Classes\\FirefoxHTML\\shell");
    HiveRegistry registry = written();
    RegistryTree found;
    ASSERT_TRUE(registry.copyKey("HKEY_CLASSES_ROOT\\.html", found));
    const simwin::KeyId key = *found.find("HKEY_CLASSES_ROOT\\.html");
    EXPECT_EQ(found.findValue(key, "")->bytes, std::string("FirefoxHTML\0", 12));
    EXPECT_EQ(found.findValue(key, "Content Type")->bytes, std::string("text/html\0", 10));
    EXPECT_TRUE(registry.copyKey("HKEY_CLASSES_ROOT\\FirefoxHTML\\shell", found));
    EXPECT_TRUE(found.find("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\FirefoxHTML\\shell"));
}

TEST_F(HiveContent, CurrentConfigurationIsTheProfileThatTheMachineNames) {
    tree.set(kControl + "IDConfigDB", simwin::dwordValue("CurrentConfig", 2));
    tree.set("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Hardware Profiles\\0002\\System",
             textValue("Name", "docked"));
    HiveRegistry registry = written();
    RegistryTree found;
    ASSERT_TRUE(registry.copyKey("HKEY_CURRENT_CONFIG\\System", found));
    EXPECT_NE(found.findValue(*found.find("HKEY_CURRENT_CONFIG\\System"), "Name"), nullptr);
}

TEST_F(HiveContent, AnotherHiveInTheSystemsPlaceIsRefusedByName) {
    tree.create("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet");
    tree.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft");
    tree.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes");
    writeHives(folder / "", tree);
    std::filesystem::copy_file(folder / "SOFTWARE", folder / "SYSTEM",
                               std::filesystem::copy_options::overwrite_existing);
    try {
        HiveRegistry registry(findHives(folder / "", ""));
        FAIL();
    } catch (const Failure& error) {
        EXPECT_THAT(error.what(), testing::EndsWith("SYSTEM is no SYSTEM hive: its keys are those of SOFTWARE"));
    }
}

TEST_F(HiveContent, UsersKeysAreTheirHives) {
    tree.create("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet");
    tree.create("HKEY_USERS\\.DEFAULT\\Console");
    tree.create("HKEY_CURRENT_USER\\Printers");
    HiveRegistry registry = written();
    RegistryTree found;
    EXPECT_TRUE(registry.copyKey("HKEY_USERS\\.default\\console", found));
    EXPECT_TRUE(registry.copyKey("HKEY_CURRENT_USER\\printers", found));
    EXPECT_FALSE(registry.copyKey("HKEY_CURRENT_USER\\console", found));
}

TEST_F(HiveContent, WhatNoHiveHoldsIsNotThere) {
    tree.create("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet");
    tree.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm");
    HiveRegistry registry = written();
    RegistryTree found;
    for (const char* path : {"HKEY_LOCAL_MACHINE\\HARDWARE", "HKEY_LOCAL_MACHINE\\SOFTWAREX", "HKEY_LOCAL_MACHINE", "",
                             "HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm\\x", "HKEY_LOCAL_MACHINE\\SOFTWARE\\\\Firm",
                             "HKEY_LOCAL_MACHINE\\SOFTWARE\\CurrentControlSet"})
        EXPECT_FALSE(registry.copyKey(path, found)) << path;
    EXPECT_EQ(found.size(), RegistryTree().size());
}

TEST_F(HiveContent, TextIsWhatANarrowCallAnswers) {
    tree.create("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet");
    tree.create("HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm");
    writeHives(folder / "", tree);
    // A letter, half of a surrogate pair, a letter outside of the code page, half a character.
    setWideText(folder / "SOFTWARE", "Firm", "Text", std::string("a\0\x3D\xD8\x16\x04z", 7));
    HiveRegistry registry(findHives(folder / "", ""));
    RegistryTree found;
    ASSERT_TRUE(registry.copyKey("HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm", found));
    EXPECT_EQ(found.findValue(*found.find("HKEY_LOCAL_MACHINE\\SOFTWARE\\Firm"), "Text")->bytes, "a??");
}

TEST_F(HiveContent, NamesThatNoPathCanHoldAreLeftOut) {
    tree.create("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet");
    for (const char* name : {"Aaaa", "Bbbb", "Cccc", "Dddd", "Good", "\x80xyz"})
        tree.create(std::string("HKEY_LOCAL_MACHINE\\SOFTWARE\\") + name);
    tree.set("HKEY_LOCAL_MACHINE\\SOFTWARE", simwin::textValue("Eeee", "1"));
    tree.set("HKEY_LOCAL_MACHINE\\SOFTWARE", simwin::textValue("Good", "1"));
    writeHives(folder / "", tree);
    replaceInFile(folder / "SOFTWARE", "Aaaa", "A\\aa");
    replaceInFile(folder / "SOFTWARE", "Bbbb", "B\nbb");
    replaceInFile(folder / "SOFTWARE", "Cccc", std::string("C\0cc", 4));
    replaceInFile(folder / "SOFTWARE", "Dddd", std::string("\0ddd", 4));
    replaceInFile(folder / "SOFTWARE", "Eeee", std::string("E\0ee", 4));
    replaceInFile(folder / "SOFTWARE", std::string("\xAC\x20x\0", 4), std::string("\x3D\xD8x\0", 4));
    HiveRegistry registry(findHives(folder / "", ""));
    RegistryTree found;
    ASSERT_TRUE(registry.copyKey("HKEY_LOCAL_MACHINE\\SOFTWARE", found));
    EXPECT_THAT(subKeys(found, "HKEY_LOCAL_MACHINE\\SOFTWARE"), testing::ElementsAre("Good"));
    const simwin::KeyId key = *found.find("HKEY_LOCAL_MACHINE\\SOFTWARE");
    EXPECT_EQ(found.value(key, 0)->name, "Good");
    EXPECT_EQ(found.value(key, 1), nullptr);
}

TEST_F(HiveContent, VersionIsTheTextOfOldAndTheNumbersOfNewSystems) {
    tree.set(kControl + "ProductOptions", simwin::multiTextValue("ProductSuite", {"Terminal Server"}));
    tree.set(kVersion, simwin::textValue("CurrentVersion", "5.0"));
    tree.set(kVersion, simwin::textValue("CurrentBuildNumber", "2195"));
    tree.set(kVersion, simwin::textValue("CSDVersion", "Service Pack 4"));
    simwin::WindowsVersion version = facts().version.value();
    EXPECT_EQ(version.platformId, 2U);
    EXPECT_EQ(version.major, 5U);
    EXPECT_EQ(version.minor, 0U);
    EXPECT_EQ(version.build, 2195U);
    EXPECT_EQ(version.servicePack, "Service Pack 4");
    EXPECT_TRUE(version.terminalServices);

    tree.set(kVersion, simwin::textValue("CurrentVersion", "6.3"));
    tree.set(kVersion, simwin::textValue("CurrentBuildNumber", "22631"));
    tree.set(kVersion, simwin::dwordValue("CurrentMajorVersionNumber", 10));
    tree.set(kVersion, simwin::dwordValue("CurrentMinorVersionNumber", 0));
    version = facts().version.value();
    EXPECT_EQ(version.major, 10U);
    EXPECT_EQ(version.minor, 0U);
    EXPECT_EQ(version.build, 22631U);
}

TEST_F(HiveContent, TerminalSuiteIsThereAlwaysSinceWindowsXP) {
    tree.create("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet");
    tree.set(kVersion, simwin::textValue("CurrentVersion", "5.0"));
    tree.set(kVersion, simwin::textValue("CurrentBuildNumber", "2195"));
    EXPECT_FALSE(facts().version->terminalServices);
    tree.set(kVersion, simwin::textValue("CurrentVersion", "5.1"));
    EXPECT_TRUE(facts().version->terminalServices);
}

TEST_F(HiveContent, VersionThatIsNoneIsNotDescribed) {
    tree.create("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet");
    EXPECT_FALSE(facts().version);
    tree.set(kVersion, simwin::textValue("CurrentBuildNumber", "7601"));
    for (const char* text : {"", "6", "6.", ".1", "6.1.2", "x.y", " 6.1", "99999999999.1"}) {
        tree.set(kVersion, simwin::textValue("CurrentVersion", text));
        EXPECT_FALSE(facts().version) << text;
    }
    tree.set(kVersion, simwin::textValue("CurrentVersion", "6.1"));
    EXPECT_TRUE(facts().version);
    tree.set(kVersion, simwin::textValue("CurrentBuildNumber", "7601x"));
    EXPECT_FALSE(facts().version);
    tree.set(kVersion, simwin::dwordValue("CurrentBuildNumber", 7601));
    EXPECT_FALSE(facts().version);
}

TEST_F(HiveContent, NamesAreThoseThatWindowsTakesAtItsStart) {
    tree.set(kControl + "ComputerName\\ComputerName", simwin::textValue("ComputerName", "PC-WERK-0123456"));
    tree.set("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Services\\Tcpip\\Parameters",
             simwin::textValue("Hostname", "pc-werk"));
    EXPECT_EQ(facts().computerName, "PC-WERK-0123456");
    EXPECT_EQ(facts().network.hostName, "pc-werk");
    tree.set(kControl + "ComputerName\\ComputerName", simwin::textValue("ComputerName", "PC-WERK-01234567"));
    EXPECT_FALSE(facts().computerName);
}

struct ProcessorCase {
    const char* architecture;
    const char* level;
    std::uint16_t number;
    std::uint32_t type;
};

class HiveProcessors : public HiveContent, public testing::WithParamInterface<ProcessorCase> {};

TEST_P(HiveProcessors, AreThoseOfTheMachinesVariables) {
    tree.set(kEnvironment, simwin::textValue("PROCESSOR_ARCHITECTURE", GetParam().architecture));
    tree.set(kEnvironment, simwin::textValue("NUMBER_OF_PROCESSORS", "12"));
    tree.set(kEnvironment, simwin::textValue("PROCESSOR_LEVEL", GetParam().level));
    tree.set(kEnvironment, simwin::textValue("PROCESSOR_REVISION", "3a09"));
    const simwin::Processors processors = facts().processors.value();
    EXPECT_EQ(processors.architecture, GetParam().number);
    EXPECT_EQ(processors.count, 12U);
    EXPECT_EQ(processors.type, GetParam().type);
    EXPECT_EQ(processors.level, std::stoi(GetParam().level));
    EXPECT_EQ(processors.revision, 0x3A09);
    EXPECT_TRUE(processors.currentMhz.empty());
}

INSTANTIATE_TEST_SUITE_P(Of, HiveProcessors,
                         testing::Values(ProcessorCase{"x86", "3", 0, 386}, ProcessorCase{"x86", "4", 0, 486},
                                         ProcessorCase{"x86", "5", 0, 586}, ProcessorCase{"x86", "15", 0, 586},
                                         ProcessorCase{"AMD64", "6", 9, 8664},
                                         ProcessorCase{"ALPHA", "21164", 2, 21064}, ProcessorCase{"MIPS", "4", 1, 4000},
                                         ProcessorCase{"PPC", "9", 3, 604}, ProcessorCase{"PPC", "6", 3, 603},
                                         ProcessorCase{"IA64", "31", 6, 2200}, ProcessorCase{"ARM64", "2050", 12, 0}));

TEST_F(HiveContent, ProcessorsThatAreNotToldWholeAreNotDescribed) {
    tree.set(kEnvironment, simwin::textValue("PROCESSOR_ARCHITECTURE", "AMD64"));
    tree.set(kEnvironment, simwin::textValue("NUMBER_OF_PROCESSORS", "4"));
    tree.set(kEnvironment, simwin::textValue("PROCESSOR_LEVEL", "6"));
    EXPECT_FALSE(facts().processors);
    tree.set(kEnvironment, simwin::textValue("PROCESSOR_REVISION", "3a090"));
    EXPECT_FALSE(facts().processors);
    tree.set(kEnvironment, simwin::textValue("PROCESSOR_REVISION", "3a09"));
    EXPECT_TRUE(facts().processors);
    tree.set(kEnvironment, simwin::textValue("PROCESSOR_ARCHITECTURE", "VAX"));
    EXPECT_FALSE(facts().processors);
}

TEST_F(HiveContent, UsersVariablesReplaceTheMachines) {
    tree.set(kEnvironment, simwin::textValue("KVStationType", "1"));
    tree.set(kEnvironment, simwin::textValue("KVIP", "10.0.0.1"));
    tree.set("HKEY_CURRENT_USER\\Environment", simwin::textValue("kvip", "10.0.0.2"));
    EXPECT_EQ(variable("KVStationType"), "1");
    EXPECT_EQ(variable("KVIP"), "10.0.0.2");
    EXPECT_EQ(variable("kvip"), "none");
}

TEST_F(HiveContent, VariablesAreMadeOfOthersThatAreKnown) {
    tree.set(kVersion, simwin::textValue("SystemRoot", "C:\\Windows"));
    tree.set(kEnvironment, expandValue("windir", "%systemroot%"));
    tree.set(kEnvironment, expandValue("KVUser", "%USERNAME%"));
    tree.set(kEnvironment, expandValue("Site", "%SystemDrive%\\%Name% 100%"));
    tree.set(kEnvironment, simwin::textValue("Name", "%plain%"));
    EXPECT_EQ(variable("SystemRoot"), "C:\\Windows");
    EXPECT_EQ(variable("SystemDrive"), "C:");
    EXPECT_EQ(variable("windir"), "C:\\Windows");
    EXPECT_EQ(variable("KVUser"), "none");
    tree.set(kEnvironment, textValue("USERNAME", "SYSTEM"));
    EXPECT_EQ(variable("USERNAME"), "none");
    EXPECT_EQ(variable("KVUser"), "none");
    EXPECT_EQ(variable("Site"), "C:\\%plain% 100%");
}

}  // namespace
}  // namespace kvstation
