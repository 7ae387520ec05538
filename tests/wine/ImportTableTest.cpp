// What an image imports, told from an image in memory: one as linkers write it, and one as old linkers did.
#include "redirect/ImportTable.h"

#include <gmock/gmock.h>

#include <cstring>

namespace {

using testing::ElementsAre;

// An image that is nothing but its tables, laid out as if it had been loaded: each slot holds a function's address.
struct Image {
    IMAGE_DOS_HEADER dos{};
    IMAGE_NT_HEADERS headers{};
    IMAGE_IMPORT_DESCRIPTOR descriptors[3]{};  // the last one ends the table
    IMAGE_THUNK_DATA names[2]{};
    IMAGE_THUNK_DATA oldSlots[2]{};
    IMAGE_THUNK_DATA slots[2]{};
    char library[16] = "KERNEL32.dll";
    char function[16] = "\0\0GetVersion";  // behind a hint of two bytes

    Image() {
        // With a linker's usual numbers, which must not be taken for a table of names.
        dos.e_magic = IMAGE_DOS_SIGNATURE;
        dos.e_cblp = 0x90;
        dos.e_cp = 3;
        dos.e_lfanew = static_cast<LONG>(offsetof(Image, headers));
        headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT] = {offsetof(Image, descriptors),
                                                                              sizeof descriptors};
        names[0].u1.AddressOfData = offsetof(Image, function);
        oldSlots[0].u1.Function = slots[0].u1.Function = reinterpret_cast<ULONG_PTR>(&GetVersion);
        descriptors[0].Name = descriptors[1].Name = offsetof(Image, library);
        descriptors[0].FirstThunk = offsetof(Image, oldSlots);
        descriptors[1].OriginalFirstThunk = offsetof(Image, names);
        descriptors[1].FirstThunk = offsetof(Image, slots);
    }
};

std::vector<std::string> TextsOf(Image& image) {
    std::vector<std::string> texts;
    for (const redirect::Import& import : redirect::importsOf(reinterpret_cast<HMODULE>(&image)))
        texts.push_back(import.text());
    return texts;
}

TEST(ImportTableTest, LeavesOutWhatOldLinkersNameInTheSlotsAloneAndGoesOnBehindIt) {
    Image image;
    EXPECT_THAT(TextsOf(image), ElementsAre("KERNEL32.dll!GetVersion"));
}

TEST(ImportTableTest, TellsEveryImportOfWhichThereIsATableOfNames) {
    Image image;
    image.descriptors[0].OriginalFirstThunk = offsetof(Image, names);
    EXPECT_THAT(TextsOf(image), ElementsAre("KERNEL32.dll!GetVersion", "KERNEL32.dll!GetVersion"));
}

}  // namespace
