// What the places on a command line stand for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "../TemporaryFolder.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/sets/Pattern.h"
#include "kvstation/sets/Sources.h"

namespace kvstation {
namespace {

using testing::ElementsAre;

TEST(Pattern, AStarStandsForAnyCharactersAndAQuestionMarkForOne) {
    for (const auto& [name, pattern] : {std::pair{"pc-17", "pc-17"},
                                        {"pc-17", "*"},
                                        {"pc-17", "pc*"},
                                        {"pc-17", "*17"},
                                        {"pc-17", "p*1*"},
                                        {"pc-17", "pc-1?"},
                                        {"", "*"},
                                        {"\xC3\xBC-1", "?-1"},
                                        {"aab", "*ab"},
                                        {"abcabd", "*abd"}})
        EXPECT_TRUE(matches(name, pattern)) << name << " " << pattern;
    for (const auto& [name, pattern] : {std::pair{"pc-17", "pc-1"},
                                        {"pc-17", "pc-17?"},
                                        {"pc-17", "PC*"},
                                        {"pc-17", "*-*-*7"},
                                        {"pc-17", ""},
                                        {"", "?"},
                                        {"\xC3\xBC-1", "?\?-1"}})
        EXPECT_FALSE(matches(name, pattern)) << name << " " << pattern;
}

class SourcesOf : public testing::Test {
  protected:
    void makeStation(const std::string& name) {
        std::filesystem::create_directories(folder / name);
        writeFile(folder / (name + "/station.json"), "{}");
    }
    void makeFile(const std::string& name) {
        std::filesystem::create_directories(std::filesystem::path(folder / name).parent_path());
        writeFile(folder / name, "x");
    }
    // "name<path", with the folder left out, or what is wrong.
    std::vector<std::string> found(const Places& places, SourceKind kind) const {
        std::vector<std::string> texts;
        for (const Source& source : sourcesOf(places, kind))
            texts.push_back(withoutFolder(source.wrong.empty() ? source.name + "<" + source.path : source.wrong));
        return texts;
    }
    std::string withoutFolder(std::string text) const {
        const std::string start = folder / "";
        for (std::size_t at = 0; (at = text.find(start)) != std::string::npos;)
            text.erase(at, start.size());
        return text;
    }
    std::vector<std::string> stations(const std::vector<std::string>& places) const {
        return found({.given = places, .list = {}}, SourceKind::Stations);
    }
    std::vector<std::string> records(const std::vector<std::string>& places) const {
        return found({.given = places, .list = {}}, SourceKind::Records);
    }

    const TemporaryFolder folder;
};

TEST_F(SourcesOf, AStationIsNamedAfterItsFolder) {
    makeStation("all/pc.1.bin");
    EXPECT_THAT(stations({folder / "all/pc.1.bin"}), ElementsAre("pc.1.bin<all/pc.1.bin"));
    EXPECT_THAT(stations({folder / "all/pc.1.bin/"}), ElementsAre("pc.1.bin<all/pc.1.bin/"));
}

TEST_F(SourcesOf, AFolderGivesTheStationsInItAndInItsFoldersSorted) {
    makeStation("all/pc2");
    makeStation("all/pc1");
    makeStation("all/branch/pc1");
    makeStation("all/pc1/within");  // a station's folder is not looked through
    makeStation("all/.hidden");
    makeFile("all/notes.txt");
    EXPECT_THAT(stations({folder / "all"}), ElementsAre("branch/pc1<all/branch/pc1", "pc1<all/pc1", "pc2<all/pc2"));
}

TEST_F(SourcesOf, AFolderGivesTheRecordsInItAndInItsFoldersWithoutTheirEnding) {
    makeFile("all/b.bin");
    makeFile("all/a.json");
    makeFile("all/c.d");
    makeFile("all/branch/b.bin");
    makeFile("all/.hidden");
    makeStation("all/pc1");
    EXPECT_THAT(records({folder / "all"}),
                ElementsAre("a<all/a.json", "b<all/b.bin", "branch/b<all/branch/b.bin", "c.d<all/c.d"));
}

TEST_F(SourcesOf, ALinkToAStationIsOneAndOneToAFolderIsNotFollowed) {
    makeStation("elsewhere/pc9");
    std::filesystem::create_directories(folder / "all");
    std::filesystem::create_directory_symlink(folder / "elsewhere/pc9", folder / "all/pc1");
    std::filesystem::create_directory_symlink(folder / "all", folder / "all/round");
    EXPECT_THAT(stations({folder / "all"}), ElementsAre("pc1<all/pc1"));
}

TEST_F(SourcesOf, APatternGivesWhatMatchesIt) {
    makeStation("all/pc2");
    makeStation("all/pc1");
    makeStation("all/laptop");
    makeStation("more/pc3");
    EXPECT_THAT(stations({folder / "a*/pc?"}), ElementsAre("pc1<all/pc1", "pc2<all/pc2"));
    EXPECT_THAT(stations({folder / "m*"}), ElementsAre("pc3<more/pc3"));
    EXPECT_THAT(stations({folder / "x*"}), ElementsAre("x* matches no file and no folder"));
}

TEST_F(SourcesOf, WhatHoldsNothingSaysSo) {
    std::filesystem::create_directory(folder / "empty");
    makeStation("pc1");
    EXPECT_THAT(stations({folder / "empty"}),
                ElementsAre("empty holds no station, which is a folder with registry.reg and station.json"));
    EXPECT_THAT(records({folder / "empty"}), ElementsAre("empty holds no file"));
    EXPECT_THAT(records({folder / "pc1"}),
                ElementsAre("pc1 is a described station; 'kvstation simulate' makes its record"));
}

TEST_F(SourcesOf, AListHasAPlaceInEachLine) {
    makeStation("all/pc1");
    makeStation("all/pc2");
    makeStation("pc3");
    writeFile(folder / "list",
              "\xEF\xBB\xBF" + (folder / "pc3") + "\r\n\n" + (folder / "all") + "\n" + (folder / "no"));
    EXPECT_THAT(found({.given = {folder / "all/pc2"}, .list = folder / "list"}, SourceKind::Stations),
                ElementsAre("all/pc2<all/pc2", "pc3<pc3", "pc1<all/pc1", "all/pc2<all/pc2", "no<no"));
    EXPECT_THROW(found({.given = {}, .list = folder / "missing"}, SourceKind::Stations), Failure);
}

TEST_F(SourcesOf, StandardInputIsEitherListOrRecord) {
    EXPECT_THROW(found({.given = {"-"}, .list = "-"}, SourceKind::Records), WrongUse);
    EXPECT_THROW(records({"-", "-"}), WrongUse);
    EXPECT_THAT(records({"-"}), ElementsAre("-<-"));
}

TEST_F(SourcesOf, AListMayBeInUtf16AndHoldsNoZeroBytes) {
    makeStation("pc1");
    std::string wide = "\xFF\xFE";
    for (const char c : (folder / "pc1") + "\r\n")
        wide += {c, '\0'};
    writeFile(folder / "list", wide);
    EXPECT_THAT(found({.given = {}, .list = folder / "list"}, SourceKind::Stations), ElementsAre("pc1<pc1"));
    writeFile(folder / "list", std::string("a\0b\n", 4));
    EXPECT_THROW(found({.given = {}, .list = folder / "list"}, SourceKind::Stations), Failure);
}

TEST_F(SourcesOf, ThoseOfOneNameAreToldApartByTheirPaths) {
    makeStation("a/pc1");
    makeStation("b/pc1");
    makeStation("b/pc2");
    EXPECT_THAT(stations({folder / "a", folder / "b"}), ElementsAre("a/pc1<a/pc1", "b/pc1<b/pc1", "pc2<b/pc2"));
}

TEST_F(SourcesOf, OneThatIsNamedTwiceIsRefused) {
    makeStation("pc1");
    std::vector<Source> sources =
        sourcesOf({.given = {folder / "pc1", folder / "pc1"}, .list = {}}, SourceKind::Stations);
    refuseDoubles(sources);
    ASSERT_EQ(sources.size(), 2u);
    EXPECT_EQ(sources[0].wrong, "");
    EXPECT_EQ(withoutFolder(sources[1].wrong), "pc1 is named twice");
}

}  // namespace
}  // namespace kvstation
