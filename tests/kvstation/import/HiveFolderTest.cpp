// Where the hive files are found.
#include "kvstation/import/HiveFolder.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "tests/kvstation/TemporaryFolder.h"

namespace kvstation {
namespace {

class Hives : public testing::Test {
  protected:
    void add(const std::string& name) {
        std::filesystem::create_directories(std::filesystem::path(disk / name).parent_path());
        writeFile(disk / name, "");
    }
    HiveFolder find(const std::string& user = "") { return findHives(root, user); }
    std::string failure(const std::string& user = "") {
        try {
            find(user);
        } catch (const Failure& error) {
            return error.what();
        }
        return "none";
    }
    static std::string lastNames(const std::string& path) {
        const std::filesystem::path whole(path);
        return (whole.parent_path().filename() / whole.filename()).string();
    }

    TemporaryFolder disk;
    const std::string root = (disk / "").substr(0, (disk / "").size() - 1);
};

TEST_F(Hives, LieInTheFolderItselfInAnyLetterCase) {
    add("system");
    add("Software");
    add("DEFAULT");
    add("ntuser.dat");
    add("SYSTEM.LOG");
    const HiveFolder found = find();
    EXPECT_THAT(found.system, testing::EndsWith("/system"));
    EXPECT_THAT(found.software, testing::EndsWith("/Software"));
    EXPECT_THAT(found.defaultUser, testing::EndsWith("/DEFAULT"));
    EXPECT_THAT(found.user, testing::EndsWith("/ntuser.dat"));
}

TEST_F(Hives, OtherThanSystemMayBeMissing) {
    add("SYSTEM");
    const HiveFolder found = find();
    EXPECT_EQ(found.software + found.defaultUser + found.user, "");
}

TEST_F(Hives, LieWhereWindowsKeepsThemOnADisk) {
    add("WINDOWS/system32/Config/SYSTEM");
    add("WINDOWS/system32/Config/SOFTWARE");
    add("Users/Anna/NTUSER.DAT");
    add("Users/Default/NTUSER.DAT");
    add("Users/Public/desktop.ini");
    const HiveFolder found = find();
    EXPECT_EQ(lastNames(found.system), "Config/SYSTEM");
    EXPECT_EQ(lastNames(found.software), "Config/SOFTWARE");
    EXPECT_EQ(lastNames(found.user), "Anna/NTUSER.DAT");
}

TEST_F(Hives, LieInWinntOnAnOldDisk) {
    add("WINNT/System32/config/system");
    add("WINNT/Profiles/Administrator/NTUSER.DAT");
    add("Documents and Settings/readme.txt");
    const HiveFolder found = find();
    EXPECT_EQ(lastNames(found.system), "config/system");
    EXPECT_EQ(lastNames(found.user), "Administrator/NTUSER.DAT");
}

TEST_F(Hives, ProfileIsChosenByItsNameInAnyLetterCase) {
    add("Windows/System32/config/SYSTEM");
    add("Documents and Settings/J\xC3\xBCrgen/NTUSER.DAT");
    add("Documents and Settings/bob/NTUSER.DAT");
    add("Documents and Settings/LocalService/NTUSER.DAT");
    EXPECT_EQ(lastNames(find("j\xC3\x9CRGEN").user), "J\xC3\xBCrgen/NTUSER.DAT");
    EXPECT_EQ(lastNames(find("localservice").user), "LocalService/NTUSER.DAT");
    EXPECT_EQ(failure(), root + " holds several profiles; choose one with --user NAME: J\xC3\xBCrgen, bob");
    EXPECT_EQ(failure("eve"), root + " holds no profile of eve; there are J\xC3\xBCrgen, LocalService, bob");
}

TEST_F(Hives, ProfilesUnderTwoNamesOfOneFolderAreOne) {
    add("Windows/System32/config/SYSTEM");
    add("Users/anna/NTUSER.DAT");
    std::filesystem::create_directory_symlink("Users", disk / "Documents and Settings");
    EXPECT_EQ(lastNames(find().user), "anna/NTUSER.DAT");
}

TEST_F(Hives, FolderWithoutSystemIsRefused) {
    add("SOFTWARE");
    EXPECT_EQ(failure(),
              root + " holds no SYSTEM hive, neither itself nor in Windows/System32/config, and no SYSTEM.DAT");
    std::filesystem::create_directory(disk / "system");
    EXPECT_THAT(failure(), testing::HasSubstr("holds no SYSTEM hive"));
}

TEST_F(Hives, FolderThatIsNoneIsRefused) {
    try {
        findHives(disk / "nothing", "");
        FAIL();
    } catch (const Failure& error) {
        EXPECT_EQ(error.what(), (disk / "nothing") +
                                    " is neither a folder nor a file; name the folder with the hive "
                                    "files, the root of a Windows disk, or a SYSTEM hive");
    }
}

TEST_F(Hives, TwoInstallationsOrTwoNamesAreNoClearChoice) {
    add("Windows/System32/config/SYSTEM");
    add("WINNT/System32/config/SYSTEM");
    EXPECT_THAT(failure(), testing::HasSubstr("holds several installations; name the folder of one: "));
    add("SYSTEM");
    add("system");
    EXPECT_EQ(failure(), root + " holds both SYSTEM and system; leave one of them there");
}

TEST_F(Hives, AreFoundFromEachFolderOnTheWayToThem) {
    add("Windows/System32/config/SYSTEM");
    add("Windows/System32/config/RegBack/SYSTEM");
    add("Users/Anna/NTUSER.DAT");
    for (const char* place : {"", "/", "/Windows", "/Windows/", "/Windows/System32", "/Windows/System32/config"}) {
        const HiveFolder found = findHives(root + place, "");
        EXPECT_EQ(lastNames(found.system), "config/SYSTEM") << place;
        EXPECT_EQ(lastNames(found.user), "Anna/NTUSER.DAT") << place;
    }
    const HiveFolder copies = findHives(root + "/Windows/System32/config/RegBack", "");
    EXPECT_EQ(lastNames(copies.system), "RegBack/SYSTEM");
    EXPECT_EQ(lastNames(copies.user), "Anna/NTUSER.DAT");
}

TEST_F(Hives, FileIsASystemByItself) {
    add("SYSTEM");
    add("SOFTWARE");
    const HiveFolder found = findHives(root + "/SYSTEM", "");
    EXPECT_EQ(found.system, root + "/SYSTEM");
    EXPECT_EQ(found.software + found.user, "");
}

TEST_F(Hives, CopiesThatWindowsKeepsAreOfferedByName) {
    add("Windows/System32/config/RegBack/SYSTEM");
    EXPECT_EQ(failure(), root + " holds no SYSTEM hive, but Windows' own copy of it: name " + root +
                             "/Windows/System32/config/RegBack to take that");
}

TEST_F(Hives, NobodyIsTakenOnRequest) {
    add("Windows/System32/config/SYSTEM");
    add("Users/Anna/NTUSER.DAT");
    add("Users/Bert/NTUSER.DAT");
    EXPECT_EQ(find("none").user, "");
    EXPECT_TRUE(find("none").isUserLeftOut);
    EXPECT_FALSE(find("Anna").isUserLeftOut);
}

TEST_F(Hives, FileTypesOfTheUserLieInTheProfile) {
    add("Windows/System32/config/SYSTEM");
    add("Users/Anna/NTUSER.DAT");
    add("Users/Anna/AppData/Local/Microsoft/Windows/UsrClass.dat");
    EXPECT_EQ(lastNames(find().userClasses), "Windows/UsrClass.dat");
    add("Documents and Settings/Bert/NTUSER.DAT");
    add("Documents and Settings/Bert/Local Settings/Application Data/Microsoft/Windows/USRCLASS.DAT");
    EXPECT_EQ(lastNames(find("bert").userClasses), "Windows/USRCLASS.DAT");
}

TEST_F(Hives, OlderInstallationIsOfferedByName) {
    add("Windows/System32/config/SYSTEM");
    add("Windows.old/Windows/System32/config/SYSTEM");
    const HiveFolder found = find();
    EXPECT_EQ(found.system, root + "/Windows/System32/config/SYSTEM");
    EXPECT_THAT(found.remarks, testing::ElementsAre(root + " holds an older installation too; name " + root +
                                                    "/Windows.old/Windows/System32/config to take that"));
    std::filesystem::remove_all(root + "/Windows");
    EXPECT_EQ(find().system, root + "/Windows.old/Windows/System32/config/SYSTEM");
}

TEST_F(Hives, AFileByItselfHoldsNoProfile) {
    add("SYSTEM");
    const std::string file = disk / "SYSTEM";
    EXPECT_EQ(findHives(file, "").system, file);
    EXPECT_EQ(findHives(file, kNoUser).system, file);
    try {
        findHives(file, "Bob");
        FAIL();
    } catch (const Failure& error) {
        EXPECT_EQ(error.what(), file + " is one file and holds no profile of Bob");
    }
}

TEST_F(Hives, OfWindows9xLieInItsOwnFolder) {
    add("WIN98/system.dat");
    add("WIN98/user.dat");
    add("WIN98/classes.dat");
    const HiveFolder found = find();
    EXPECT_EQ(lastNames(found.system), "WIN98/system.dat");
    EXPECT_EQ(lastNames(found.defaultUser), "WIN98/user.dat");
    EXPECT_EQ(lastNames(found.user), "WIN98/user.dat");
    EXPECT_EQ(lastNames(found.classes), "WIN98/classes.dat");
    add("WIN98/Profiles/petra/USER.DAT");
    EXPECT_EQ(failure(), root + " holds several profiles; choose one with --user NAME: petra, .DEFAULT");
    EXPECT_EQ(lastNames(find("petra").user), "petra/USER.DAT");
    add("WINNT/system32/config/system");
    EXPECT_EQ(failure(), root + " holds several installations; name the folder of one: " + root + "/WIN98, " + root +
                             "/WINNT/system32/config");
}

TEST_F(Hives, OfBothKindsInOneFolderAreNoClearChoice) {
    add("SYSTEM");
    add("SYSTEM.DAT");
    EXPECT_EQ(failure(), root + " holds both SYSTEM and SYSTEM.DAT; leave one of them there");
}

}  // namespace
}  // namespace kvstation
