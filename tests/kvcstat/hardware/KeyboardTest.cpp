// The keyboard and the OEM code page.
#include "tests/kvcstat/hardware/HardwareTest.h"

namespace {

using kvtest::Hardware;
using kvtest::LongText;
using kvtest::Str;

constexpr char kEnum[] = "SYSTEM\\CurrentControlSet\\Enum\\";
constexpr char kTreeRoot[] = "SYSTEM\\CurrentControlSet\\Enum\\HTREE\\ROOT\\0";
constexpr char kOldRoot[] = "Enum\\Root\\";

class KeyboardTest : public kvtest::HardwareTest {
  protected:
    void DescribeComponents(const std::vector<std::string>& components) {
        station.registry.set(MachinePath(kTreeRoot), simwin::multiTextValue("AttachedComponents", components));
    }
    // The raw bytes of the list, as a value of the type.
    void DescribeComponentBytes(simwin::RegistryType type, const std::string& bytes) {
        station.registry.set(MachinePath(kTreeRoot), {"AttachedComponents", static_cast<std::uint32_t>(type), bytes});
    }
    void DescribeComponent(const std::string& path, const std::string& deviceClass, const std::string& description) {
        SetText(kEnum + path, "Class", deviceClass);
        SetText(kEnum + path, "DeviceDesc", description);
    }
    void DescribeRootDevice(const std::string& path, const std::string& deviceClass, const std::string& description) {
        SetText(kOldRoot + path, "Class", deviceClass);
        SetText(kOldRoot + path, "DeviceDesc", description);
    }
    std::string Keyboard() {
        Start();
        Hardware hardware;
        EXPECT_EQ(hardware->GetKeyboard(), 0);
        return Str(hardware->m_cKeyboard);
    }
};

TEST_F(KeyboardTest, TypeNamesTheKeyboardThatTheRegistryDoesNotTell) {
    const struct {
        int type;
        const char* name;
    } rows[] = {
        {1, "IBM PC/XT or compatible keyboard (83 keys) "},
        {2, "Olivetti \"ICO\" keyboard (102 keys) "},
        {3, "IBM PC/AT (84 keys) or similar keyboard"},
        {4, "Extended IBM keyboard (101 or 102 keys) "},
        {5, "Nokia 1050 and similar keyboards"},
        {6, "Nokia 9140 or similar keyboard"},
        {7, "Japanese keyboard"},
        {0, ""},
        {8, ""},
        {81, ""},
        {-1, ""},
    };
    for (const std::uint32_t platformId : {1u, 2u, 3u}) {
        DescribePlatform(platformId);
        for (const auto& row : rows) {
            station.keyboard = simwin::Keyboard{row.type, 0};
            EXPECT_EQ(Keyboard(), row.name) << row.type;
        }
    }
}

TEST_F(KeyboardTest, CodePageTypeAndSubTypeAreReadOnEveryPlatform) {
    station.codePages.oem = 850;
    station.keyboard = simwin::Keyboard{7, 2};
    for (const std::uint32_t platformId : {0u, 1u, 2u}) {
        DescribePlatform(platformId);
        Start();
        Hardware hardware;
        hardware->GetKeyboard();
        EXPECT_EQ(hardware->m_nOEMCodePage, 850u);
        EXPECT_EQ(hardware->m_nKeyboardType, 7);
        EXPECT_EQ(hardware->m_nKeyboardSubType, 2);
    }
}

TEST_F(KeyboardTest, WindowsNTFindsTheFirstKeyboardAmongTheAttachedComponents) {
    DescribeWindowsNT();
    DescribeComponents({"Root\\*PNP0F03\\0", "Root\\*PNP0303\\1", "Root\\*PNP0303\\2"});
    DescribeComponent("Root\\*PNP0F03\\0", "Mouse", "PS/2 mouse");
    DescribeComponent("Root\\*PNP0303\\1", "KeyBoard", "PC/AT Enhanced Keyboard (101/102-Key)");
    DescribeComponent("Root\\*PNP0303\\2", "Keyboard", "second");
    EXPECT_EQ(Keyboard(), "PC/AT Enhanced Keyboard (101/102-Key)");
}

TEST_F(KeyboardTest, ListWithoutItsLastEmptyItemIsReadToItsEnd) {
    DescribeWindowsNT();
    DescribeComponent("A", "Mouse", "a mouse");
    DescribeComponent("B", "Keyboard", "a keyboard");
    using namespace std::string_literals;
    for (const std::string& bytes : {"A\0B"s, "A\0B\0"s, "A\0B\0\0"s, "A\0B\0\0C\0\0"s}) {
        for (const auto type :
             {simwin::RegistryType::MultiText, simwin::RegistryType::Binary, simwin::RegistryType::Text}) {
            DescribeComponentBytes(type, bytes);
            EXPECT_EQ(Keyboard(), "a keyboard") << bytes.size();
        }
    }
}

TEST_F(KeyboardTest, EmptyItemEndsTheList) {
    DescribeWindowsNT();
    DescribeComponent("B", "Keyboard", "a keyboard");
    using namespace std::string_literals;
    for (const std::string& bytes : {""s, "\0"s, "\0B\0\0"s, "A\0\0B\0\0"s}) {
        DescribeComponentBytes(simwin::RegistryType::MultiText, bytes);
        EXPECT_EQ(Keyboard(), "") << bytes.size();
    }
}

TEST_F(KeyboardTest, ListOfAnotherTypeIsNone) {
    DescribeWindowsNT();
    DescribeComponent("B", "Keyboard", "a keyboard");
    station.keyboard = simwin::Keyboard{4, 0};
    DescribeComponentBytes(simwin::RegistryType::ExpandText, "B");
    EXPECT_EQ(Keyboard(), "Extended IBM keyboard (101 or 102 keys) ");
}

TEST_F(KeyboardTest, KeyboardWithoutADescriptionEndsTheSearchAndIsNamedByItsType) {
    station.keyboard = simwin::Keyboard{4, 0};
    DescribeWindowsNT();
    DescribeComponents({"A", "B"});
    SetText(std::string(kEnum) + "A", "Class", "Keyboard");
    DescribeComponent("B", "Keyboard", "second");
    EXPECT_EQ(Keyboard(), "Extended IBM keyboard (101 or 102 keys) ");

    DescribeWindows98();
    SetText(std::string(kOldRoot) + "A\\0000", "Class", "Keyboard");
    DescribeRootDevice("B\\0000", "Keyboard", "second");
    EXPECT_EQ(Keyboard(), "Extended IBM keyboard (101 or 102 keys) ");
}

TEST_F(KeyboardTest, ComponentsThatDoNotOpenOrHaveNoClassArePassedOver) {
    DescribeWindowsNT();
    DescribeComponents({"missing", "denied", "classless", "\\odd", "last"});
    DescribeComponent("denied", "Keyboard", "denied");
    DenyKey(std::string(kEnum) + "denied");
    SetText(std::string(kEnum) + "classless", "DeviceDesc", "classless");
    DescribeComponent("last", "Keyboard", "last");
    EXPECT_EQ(Keyboard(), "last");
}

TEST_F(KeyboardTest, ClassIsComparedWhole) {
    DescribeWindowsNT();
    DescribeComponents({"A", "B", "C"});
    DescribeComponent("A", "Keyboards", "a");
    DescribeComponent("B", " Keyboard", "b");
    DescribeComponent("C", "KEYBOARD", "c");
    EXPECT_EQ(Keyboard(), "c");
}

TEST_F(KeyboardTest, Windows9xFindsTheFirstKeyboardAmongTheFirstInstancesOfTheRootDevices) {
    DescribeWindows98();
    DescribeRootDevice("*PNP0C01\\0000", "System", "System board");
    DescribeRootDevice("*PNP0303\\0001", "Keyboard", "a second instance");
    DescribeRootDevice("*PNP030B\\0000", "KEYBOARD", "Standard 101/102-Key or Microsoft Natural Keyboard");
    DescribeRootDevice("*PNP0304\\0000", "Keyboard", "a later one");
    EXPECT_EQ(Keyboard(), "Standard 101/102-Key or Microsoft Natural Keyboard");
}

TEST_F(KeyboardTest, Windows9xDoesNotLookAmongTheComponentsOfNTThatAreThereToo) {
    DescribeWindows98();
    DescribeComponents({"A"});
    DescribeComponent("A", "Keyboard", "of Windows NT");
    EXPECT_EQ(Keyboard(), "");
    DescribeRootDevice("A\\0000", "Keyboard", "of Windows 9x");
    EXPECT_EQ(Keyboard(), "of Windows 9x");
}

TEST_F(KeyboardTest, TypeWithoutANameAsksTheStringTableForNone) {
    station.keyboard = simwin::Keyboard{8, 0};
    Start();
    machine->keepLog(true);
    Hardware hardware;
    hardware->GetKeyboard();
    EXPECT_EQ(CountCalls("LoadStringA"), 0u);
}

TEST_F(KeyboardTest, KeysThatDoNotOpenOnWindows9xArePassedOver) {
    DescribeWindows98();
    DescribeRootDevice("A\\0000", "Keyboard", "denied");
    DenyKey(std::string(kOldRoot) + "A\\0000");
    CreateKey(std::string(kOldRoot) + "B");
    DescribeRootDevice("C\\0000", "Keyboard", "last");
    EXPECT_EQ(Keyboard(), "last");

    station.deniedKeys = {MachinePath("Enum\\Root")};
    station.keyboard = simwin::Keyboard{3, 0};
    EXPECT_EQ(Keyboard(), "IBM PC/AT (84 keys) or similar keyboard");
}

TEST_F(KeyboardTest, OtherPlatformsDoNotLookIntoTheRegistry) {
    DescribePlatform(3);
    DescribeComponents({"A"});
    DescribeComponent("A", "Keyboard", "of Windows NT");
    DescribeRootDevice("A\\0000", "Keyboard", "of Windows 9x");
    EXPECT_EQ(Keyboard(), "");
}

TEST_F(KeyboardTest, SecondStepOnOneObjectKeepsTheFirstDescription) {
    DescribeWindowsNT();
    station.keyboard = simwin::Keyboard{4, 0};
    Start();
    Hardware hardware;
    hardware->m_cKeyboard = "the first";
    hardware->GetKeyboard();
    EXPECT_STREQ(hardware->m_cKeyboard, "the first");
}

TEST_F(KeyboardTest, TextsOf64KilobytesAreTakenAsTheyAre) {
    DescribeWindowsNT();
    const std::string component = "Root\\" + std::string(200, 'k');
    DescribeComponents({LongText(), component});
    DescribeComponent(component, "Keyboard", LongText());
    EXPECT_EQ(Keyboard(), LongText());

    DescribeComponent(component, LongText(), "its class is no keyboard");
    EXPECT_EQ(Keyboard(), "");

    DescribeWindows98();
    DescribeRootDevice("A\\0000", LongText(), "a");
    DescribeRootDevice("B\\0000", "Keyboard", LongText());
    EXPECT_EQ(Keyboard(), LongText());
}

}  // namespace
