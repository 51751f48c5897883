#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cabinet_maker.h"
#include "files/cabinet.h"
#include "test_support.h"

namespace {

// Noise, so that neither storing nor MSZIP shrinks it much.
std::string Pattern(size_t size, unsigned seed)
{
    std::string text(size, '\0');
    unsigned value = seed * 2654435761u + 1;
    for (char &c : text)
        c = static_cast<char>((value = value * 1103515245u + 12345u) >> 16);
    return text;
}

CStoredFile Stored(const std::string &name, const std::string &content)
{
    return CStoredFile{name, content, 0x2A43, 0x2000, 0x20};
}

std::vector<std::string> PopAll(CCabinetExtractor &extractor)
{
    std::vector<std::string> names;
    char out[260];
    while (extractor.PopExtractedName(out))
        names.push_back(out);
    return names;
}

std::vector<std::string> Entries(const std::string &directory)
{
    std::vector<std::string> names;
    WIN32_FIND_DATAA found;
    HANDLE find = FindFirstFileA((directory + "*").c_str(), &found);
    for (BOOL more = find != INVALID_HANDLE_VALUE; more; more = FindNextFileA(find, &found))
        if (found.cFileName[0] != '.')
            names.push_back(found.cFileName);
    if (find != INVALID_HANDLE_VALUE)
        FindClose(find);
    return names;
}

// A hostile member name is refused as a member whose directory does not
// exist: the decoder stops, what came before is kept, and nothing outside the
// work directory changes.
TEST(CabinetExtract, EveryTargetStaysInsideTheDestination)
{
    const std::string base = ScratchDirectory(), work = base + "work\\", victim = base + "victim.txt";
    const std::string names[] = {"..\\victim.txt", "../victim.txt", "sub\\..\\..\\victim.txt", "sub/../../victim.txt",
                                 "sub\\../..\\victim.txt", victim, victim.substr(0, 2) + "victim.txt", victim.substr(2),
                                 "\\\\localhost\\share\\victim.txt", "\\\\?\\" + victim, "\\\\.\\" + victim, "NUL",
                                 "sub\\..\\con.txt", "Lpt1 .dat", "nodir\\inner.txt",
                                 std::string(MAX_PATH - work.size(), 'n') + ".txt"};
    for (const std::string &name : names) {
        DeleteTree(work);
        CreateDirectoryA(work.c_str(), NULL);
        SetFileAttributesA(victim.c_str(), FILE_ATTRIBUTE_NORMAL);
        WriteText(victim, "the victim's own bytes");
        SetFileAttributesA(victim.c_str(), FILE_ATTRIBUTE_READONLY);
        ASSERT_TRUE(WriteStoredCabinet(base + "hostile.cab", {Stored("ok.txt", "fine"), Stored(name, "EVIL")}));
        CCabinetExtractor extractor;
        extractor.SetDestination(work.c_str());
        EXPECT_EQ(0, extractor.Extract((base + "hostile.cab").c_str(), 1)) << name;
        EXPECT_EQ(std::vector<std::string>{"ok.txt"}, PopAll(extractor)) << name;
        EXPECT_EQ(std::vector<std::string>{"ok.txt"}, Entries(work)) << name;
        EXPECT_EQ("the victim's own bytes", ReadText(victim)) << name;
        EXPECT_NE(0u, GetFileAttributesA(victim.c_str()) & FILE_ATTRIBUTE_READONLY) << name;
    }
    // A name inside is taken as it resolves; taken already by a file this
    // extraction did not make, it is refused too: nothing writes through it.
    ASSERT_TRUE(WriteStoredCabinet(base + "inside.cab", {Stored("sub\\..\\.\\ok.txt", "fine")}));
    for (bool taken : {false, true}) {
        DeleteTree(work);
        CreateDirectoryA(work.c_str(), NULL);
        if (taken)
            WriteText(work + "ok.txt", "someone else's");
        CCabinetExtractor extractor;
        extractor.SetDestination(work.c_str());
        EXPECT_EQ(taken ? 0 : 1, extractor.Extract((base + "inside.cab").c_str(), 1));
        EXPECT_EQ(taken ? "someone else's" : "fine", ReadText(work + "ok.txt"));
    }
}

// Used as the copy stage uses it: extracted into a fresh work directory, the
// names it gives deleted, the directory removed. What came out whole before
// the damage is given; nothing else is left.
TEST(CabinetExtract, ACorruptCabinetLeavesNothingBehind)
{
    const std::string base = ScratchDirectory(), work = base + "work\\";
    const std::string good = StoredCabinetBytes({Stored("one.txt", Pattern(3000, 4))});
    const size_t dataBlock = good.size() - 3000 - 8;  // the one data block's header
    auto put = [&](size_t at, char value) {  // at 36 the folder's data offset, at 42 its compression
        std::string bytes = good;
        bytes[at] = value;
        return bytes;
    };
    // Each of these took the process down inside the decoder, or hung it,
    // before the decoder got only blocks that hold.
    auto kept = [](const char *name) { return ReadText("Z:" TOVREL_CABINET_REGRESSIONS "/" + std::string(name)); };
    const struct {
        const char *Name;
        std::string Bytes;
        std::vector<std::string> Whole;
    } cases[] = {
        {"cut in the data", good.substr(0, good.size() - 100), {}},
        {"cut before the data block", good.substr(0, dataBlock), {}},
        {"cut in the data block's header", good.substr(0, dataBlock + 4), {}},
        {"data offset", put(37, 0x7f), {}},
        {"compression", put(42, 7), {}},
        {"300 characters of name", StoredCabinetBytes({Stored(std::string(300, 'n'), "x")}), {}},
        {"not a cabinet", "This is not a cabinet at all, only text.", {}},
        {"a bit flipped in the first block, no checksums", kept("first-block-bit-flip.cab"), {}},
        {"garbage in the first block, its checksum right", kept("first-block-garbage-valid-checksum.cab"), {}},
        {"the second block cut to 2 bytes", kept("second-block-data-cut-to-two.cab"), {"one.txt"}},
        {"the second block overruns the window, its checksum right",
         kept("second-block-overflow-valid-checksum.cab"), {"one.txt"}},
    };
    for (const auto &c : cases) {
        WriteText(base + "corrupt.cab", c.Bytes);
        CreateDirectoryA(work.c_str(), NULL);
        {
            CCabinetExtractor extractor;
            extractor.SetDestination(work.c_str());
            EXPECT_EQ(0, extractor.Extract((base + "corrupt.cab").c_str(), 1)) << c.Name;
            const std::vector<std::string> names = PopAll(extractor);
            EXPECT_EQ(c.Whole, names) << c.Name;
            for (const std::string &name : names)
                DeleteFileA((work + name).c_str());
        }
        RemoveDirectoryA(work.c_str());
        EXPECT_FALSE(PathExists(work)) << c.Name;
        DeleteTree(work);
    }
}

}  // namespace
