#include "framework/Collections.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

class Item : public CObject {};

TEST(CObList, WalksFromHeadToTailAcrossItsBlocks) {
    std::vector<std::unique_ptr<Item>> items(25);
    CObList list;
    EXPECT_EQ(list.GetHeadPosition(), nullptr);
    for (auto& item : items) {
        item = std::make_unique<Item>();
        list.AddTail(item.get());
    }
    EXPECT_EQ(list.GetCount(), 25);
    POSITION place = list.GetHeadPosition();
    for (const auto& item : items) {
        ASSERT_NE(place, nullptr);
        EXPECT_EQ(list.GetNext(place), item.get());
    }
    EXPECT_EQ(place, nullptr);
}

TEST(CObList, IsEmptyAndUsableAfterRemoveAll) {
    Item item;
    CObList list;
    list.AddTail(&item);
    list.RemoveAll();
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetHeadPosition(), nullptr);
    list.AddTail(&item);
    EXPECT_EQ(list.GetCount(), 1);
}

TEST(CStringList, FindsItemsByExactText) {
    CStringList list;
    list.AddTail("NetBT");
    list.AddTail("Tcpip");
    EXPECT_EQ(list.Find("NetBT"), list.GetHeadPosition());
    EXPECT_NE(list.Find("Tcpip"), nullptr);
    EXPECT_EQ(list.Find("tcpip"), nullptr);
    EXPECT_EQ(list.Find(""), nullptr);
}

TEST(CPtrList, KeepsAnyPointer) {
    int number = 0;
    CPtrList list;
    list.AddTail(&number);
    POSITION place = list.GetHeadPosition();
    EXPECT_EQ(list.GetNext(place), &number);
}

TEST(CMapStringToOb, LooksUpByExactKeyAndReplacesOnSetAt) {
    Item first;
    Item second;
    CMapStringToOb map;
    CObject* found = nullptr;
    EXPECT_FALSE(map.Lookup("disk", found));
    map.SetAt("disk", &first);
    map.SetAt("Disk", &second);
    ASSERT_TRUE(map.Lookup("disk", found));
    EXPECT_EQ(found, &first);
    map.SetAt("disk", &second);
    ASSERT_TRUE(map.Lookup("disk", found));
    EXPECT_EQ(found, &second);
    EXPECT_EQ(map.GetCount(), 2);
}

TEST(CMapStringToOb, TellsKeysOfTheSameHashApart) {
    Item first;
    Item second;
    CMapStringToOb map;
    map.SetAt("ab", &first);  // 97 * 33 + 98 = 98 * 33 + 65
    map.SetAt("bA", &second);
    CObject* found = nullptr;
    ASSERT_TRUE(map.Lookup("ab", found));
    EXPECT_EQ(found, &first);
    ASSERT_TRUE(map.Lookup("bA", found));
    EXPECT_EQ(found, &second);
}

TEST(CMapStringToOb, IteratesInTheOrderInWhichKeysWereFirstStored) {
    Item item;
    CMapStringToOb map;
    std::vector<std::string> keys;
    for (int i = 99; i >= 0; --i) {
        keys.push_back("device " + std::to_string(i));
        map.SetAt(keys.back().c_str(), &item);
    }
    map.SetAt(keys[50].c_str(), nullptr);
    POSITION place = map.GetStartPosition();
    for (const std::string& key : keys) {
        ASSERT_NE(place, nullptr);
        CString name;
        CObject* value = nullptr;
        map.GetNextAssoc(place, name, value);
        EXPECT_EQ(static_cast<const char*>(name), key);
    }
    EXPECT_EQ(place, nullptr);
}

TEST(CMapStringToOb, ForgetsEverythingOnRemoveAll) {
    Item item;
    CMapStringToOb map;
    map.SetAt("", &item);
    map.RemoveAll();
    CObject* found = nullptr;
    EXPECT_FALSE(map.Lookup("", found));
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_EQ(map.GetStartPosition(), nullptr);
}

}  // namespace
