#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cabinet_maker.h"
#include "files/cabinet.h"
#include "test_support.h"

namespace {

// 2001-02-03 04:05:06 as a DOS date and time.
const USHORT StoredDate = ((2001 - 1980) << 9) | (2 << 5) | 3;
const USHORT StoredTime = (4 << 11) | (5 << 5) | (6 / 2);

// Noise, so that neither storing nor MSZIP shrinks it much.
std::string Pattern(size_t size, unsigned seed)
{
    std::string text(size, '\0');
    unsigned value = seed * 2654435761u + 1;
    for (size_t i = 0; i < size; ++i)
        text[i] = static_cast<char>((value = value * 1103515245u + 12345u) >> 16);
    return text;
}

CStoredFile Stored(const std::string &name, const std::string &content)
{
    return CStoredFile{name, content, StoredDate, StoredTime, 0x20};
}

std::vector<std::string> PopAll(CCabinetExtractor &extractor)
{
    std::vector<std::string> names;
    char out[260];
    while (extractor.PopExtractedName(out))
        names.push_back(out);
    return names;
}

// The names in a directory, without "." and "..".
std::vector<std::string> Entries(const std::string &directory)
{
    std::vector<std::string> names;
    WIN32_FIND_DATAA found;
    HANDLE find = FindFirstFileA((directory + "*").c_str(), &found);
    if (find == INVALID_HANDLE_VALUE)
        return names;
    do
        if (strcmp(found.cFileName, ".") && strcmp(found.cFileName, ".."))
            names.push_back(found.cFileName);
    while (FindNextFileA(find, &found));
    FindClose(find);
    return names;
}

// Notes what the walk asks of it; the prompt answers as told and can point
// the walk at another directory.
class CRecordingExtractor : public CCabinetExtractor {
public:
    int OnCopyFile(const char *name, long size, std::string &path, int &skip) override
    {
        ++Copies[name];
        return CCabinetExtractor::OnCopyFile(name, size, path, skip);
    }
    int OnPartialFile(const char *name, const char *, const char *) override
    {
        Partials.push_back(name);
        return 1;
    }
    int OnNextCabinet(const char *cabinet, const char *, std::string &path, int error) override
    {
        PromptCabinets.push_back(cabinet);
        PromptErrors.push_back(error);
        if (!Redirect.empty())
            path = Redirect;
        return PromptAnswer;
    }

    std::map<std::string, int> Copies;
    std::vector<std::string> Partials, PromptCabinets;
    std::vector<int> PromptErrors;
    std::string Redirect;
    int PromptAnswer = 1;
};

TEST(CabinetCallbacks, OpenMapsFlagsSharingAndErrors)
{
    const std::string directory = ScratchDirectory();
    struct {
        bool existing;  // the file holds "old-content" first
        int oflag, expectErrno;
        const char *contentAfter;  // after "new" is written
    } cases[] = {
        {false, 0x4000 | 0x0100 | 0x0001, EINVAL, NULL},  // text mode
        {false, 0x0200 | 0x0001, ENOENT, NULL},
        {true, 0x0100 | 0x0400 | 0x0001, EEXIST, NULL},
        {false, 0x0100 | 0x0400 | 0x0001, 0, "new"},
        {true, 0x0100 | 0x0200 | 0x0001, 0, "new"},
        {true, 0x0100 | 0x0001, 0, "new-content"},
        {true, 0x0008 | 0x0001, 0, "old-contentnew"},
    };
    int n = 0;
    for (const auto &c : cases) {
        std::string path = directory + "f" + std::to_string(n++) + ".bin";
        if (c.existing)
            WriteText(path, "old-content");
        errno = 12345;
        INT_PTR handle = CabOpen(&path[0], c.oflag, 0x180);
        EXPECT_EQ(c.expectErrno, errno) << c.oflag;
        if (handle == -1)
            continue;
        char text[] = "new";
        EXPECT_EQ(3u, CabWrite(handle, text, 3));
        EXPECT_EQ(0, CabClose(handle));
        EXPECT_EQ(c.contentAfter, ReadText(path)) << c.oflag;
    }

    // Short-lived with create: gone once closed.
    std::string temporary = directory + "temporary.bin";
    INT_PTR handle = CabOpen(&temporary[0], 0x0100 | 0x0040 | 0x1000 | 0x0001, 0x180);
    ASSERT_NE(-1, handle);
    CabClose(handle);
    EXPECT_FALSE(PathExists(temporary));

    // pmode's read and write bits say what others may do; a read-only open always shares reading.
    std::string path = directory + "shared.bin";
    WriteText(path, "abc");
    struct {
        int oflag, pmode;
        bool otherRead, otherWrite;
    } sharing[] = {{0x0001, 0, false, false}, {0x0001, 0x100, true, false}, {0x0001, 0x80, false, true},
                   {0x0000, 0, true, false}};
    for (const auto &c : sharing) {
        handle = CabOpen(&path[0], c.oflag, c.pmode);
        ASSERT_NE(-1, handle);
        for (DWORD access : {DWORD(GENERIC_READ), DWORD(GENERIC_WRITE)}) {
            HANDLE other = CreateFileA(path.c_str(), access, 7, NULL, OPEN_EXISTING, 0, NULL);
            EXPECT_EQ(access == GENERIC_READ ? c.otherRead : c.otherWrite, other != INVALID_HANDLE_VALUE)
                << c.oflag << "/" << c.pmode << "/" << access;
            if (other != INVALID_HANDLE_VALUE)
                CloseHandle(other);
        }
        CabClose(handle);
    }
    HANDLE holder = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
    EXPECT_EQ(-1, CabOpen(&path[0], 0x0001, 0x180));
    EXPECT_EQ(EACCES, errno);
    CloseHandle(holder);
}

TEST(CabinetCallbacks, ReadWriteSeekReportLikeTheRuntime)
{
    std::string path = ScratchDirectory() + "rw.bin";
    INT_PTR handle = CabOpen(&path[0], 0x0100 | 0x0002, 0x180);
    char text[] = "0123456789", buffer[16] = {0};
    EXPECT_EQ(10u, CabWrite(handle, text, 10));
    EXPECT_EQ(4, CabSeek(handle, 4, 0));
    EXPECT_EQ(6, CabSeek(handle, 2, 1));
    EXPECT_EQ(8, CabSeek(handle, -2, 2));
    EXPECT_EQ(2u, CabRead(handle, buffer, sizeof buffer));
    EXPECT_STREQ("89", buffer);
    EXPECT_EQ(-1, CabSeek(handle, 0, 3));
    EXPECT_EQ(EINVAL, errno);
    // Before the start is error 131 here, not 87: it counts as a bad handle.
    EXPECT_EQ(-1, CabSeek(handle, -100, 0));
    EXPECT_EQ(EBADF, errno);
    CabClose(handle);
    handle = CabOpen(&path[0], 0, 0);
    EXPECT_EQ(static_cast<UINT>(-1), CabWrite(handle, text, 1));
    EXPECT_EQ(EBADF, errno);
    CabClose(handle);
}

TEST(CabinetExtract, SingleCabinetWithTimesAttributesAndNames)
{
    const std::string directory = ScratchDirectory(), target = directory + "target\\";
    CreateDirectoryA(target.c_str(), NULL);
    struct {
        const char *name;
        USHORT stored;
        DWORD expected;  // Wine reports every plain file as archived
    } entries[] = {
        {"plain.txt", 0x20, FILE_ATTRIBUTE_ARCHIVE},
        {"readonly.dll", 0x21 | 0x40, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE},
        {"utf-flag.bin", 0x01 | 0x80, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE},
        {"hidden.sys", 0x26, FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE},
    };
    std::vector<CCabinetEntry> files;
    for (const auto &e : entries) {
        WriteText(directory + e.name, std::string("content of ") + e.name);
        files.push_back(CCabinetEntry{directory + e.name, e.name, StoredDate, StoredTime, e.stored});
    }
    std::vector<std::string> members = MakeCabinetSet(CCabinetSetPlan{directory, "single", false, 0, 1}, files);
    ASSERT_EQ(1u, members.size());

    CCabinetExtractor extractor;
    CCabinetInfo info;
    EXPECT_EQ(1, extractor.IsCabinet(members[0].c_str(), &info));
    EXPECT_EQ(4, info.cFiles);
    extractor.SetDestination((directory + "target").c_str());
    EXPECT_EQ(1, extractor.Extract(members[0].c_str(), 1));
    EXPECT_EQ(1, extractor.LastCabinet);
    for (const auto &e : entries) {
        std::string path = target + e.name;
        EXPECT_EQ(std::string("content of ") + e.name, ReadText(path));
        EXPECT_EQ(e.expected, GetFileAttributesA(path.c_str())) << e.name;
        WIN32_FILE_ATTRIBUTE_DATA data;
        FILETIME local;
        WORD date = 0, time = 0;
        GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data);
        FileTimeToLocalFileTime(&data.ftLastWriteTime, &local);
        FileTimeToDosDateTime(&local, &date, &time);
        EXPECT_EQ(StoredDate, date) << e.name;
        EXPECT_EQ(StoredTime, time) << e.name;
    }
    EXPECT_EQ((std::vector<std::string>{"hidden.sys", "utf-flag.bin", "readonly.dll", "plain.txt"}), PopAll(extractor));
}

TEST(CabinetExtract, EmptyBrokenAndOverwrittenCabinets)
{
    const std::string directory = ScratchDirectory();
    CCabinetExtractor extractor;
    char temp[MAX_PATH];
    GetTempPathA(MAX_PATH, temp);
    EXPECT_EQ(temp, extractor.Destination);
    extractor.SetDestination(directory.c_str());

    WriteText(directory + "text.cab", "This is not a cabinet at all, only text.");
    for (const std::string &path : {directory + "text.cab", directory + "missing.cab", directory}) {
        EXPECT_EQ(0, extractor.IsCabinet(path.c_str(), NULL)) << path;
        EXPECT_EQ(0, extractor.Extract(path.c_str(), 1)) << path;
    }

    ASSERT_TRUE(WriteStoredCabinet(directory + "empty.cab", {}));
    EXPECT_EQ(1, extractor.Extract((directory + "empty.cab").c_str(), 1));
    EXPECT_EQ(-1, extractor.OpenedIn);
    EXPECT_EQ(1, extractor.LastCabinet);
    EXPECT_TRUE(extractor.ExtractedNames.empty());

    // A read-only target is written over from its start, and loses the flag.
    ASSERT_TRUE(WriteStoredCabinet(directory + "over.cab", {Stored("over.txt", "NEW")}));
    WriteText(directory + "over.txt", "old and longer");
    SetFileAttributesA((directory + "over.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(1, extractor.Extract((directory + "over.cab").c_str(), 1));
    EXPECT_EQ("NEW and longer", ReadText(directory + "over.txt"));
    EXPECT_EQ(DWORD(FILE_ATTRIBUTE_ARCHIVE), GetFileAttributesA((directory + "over.txt").c_str()));
}

TEST(CabinetExtract, RelativeDirectoryInStoredNameIsNotCreated)
{
    const std::string directory = ScratchDirectory();
    ASSERT_TRUE(WriteStoredCabinet(directory + "sub.cab", {Stored("sub\\inner.txt", "inner")}));
    CCabinetExtractor extractor;
    extractor.SetDestination((directory + "target\\").c_str());
    CreateDirectoryA((directory + "target").c_str(), NULL);
    EXPECT_EQ(0, extractor.Extract((directory + "sub.cab").c_str(), 1));
    EXPECT_FALSE(PathExists(directory + "target\\sub"));
    // Wine's decoder takes the -1 for the target as the caller's abort.
    EXPECT_EQ(11, extractor.Erf.erfOper);

    CreateDirectoryA((directory + "target\\sub").c_str(), NULL);
    EXPECT_EQ(1, extractor.Extract((directory + "sub.cab").c_str(), 1));
    EXPECT_EQ("inner", ReadText(directory + "target\\sub\\inner.txt"));
}

TEST(CabinetExtract, EveryTargetStaysInsideTheDestination)
{
    const std::string base = ScratchDirectory(), work = base + "work\\", victim = base + "victim.txt";
    const std::string names[] = {"..\\victim.txt", "../victim.txt", "sub\\..\\..\\victim.txt", "sub/../../victim.txt",
                                 "sub\\../..\\victim.txt", victim, victim.substr(0, 2) + "victim.txt", victim.substr(2),
                                 "\\\\localhost\\share\\victim.txt", "\\\\?\\" + victim, "\\\\.\\" + victim, "NUL",
                                 "sub\\..\\con.txt", "Lpt1 .dat", std::string(MAX_PATH - work.size(), 'n') + ".txt"};
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
    ASSERT_TRUE(WriteStoredCabinet(base + "inside.cab", {Stored("sub\\..\\.\\ok.txt", "fine")}));
    CCabinetExtractor extractor;
    extractor.SetDestination(work.c_str());
    EXPECT_EQ(1, extractor.Extract((base + "inside.cab").c_str(), 1));
    EXPECT_EQ("fine", ReadText(work + "ok.txt"));
}

// Used as the copy stage uses it: extracted into a fresh work directory, the
// names it gives deleted, the directory removed.
TEST(CabinetExtract, ACorruptCabinetLeavesNothingBehind)
{
    const std::string base = ScratchDirectory(), work = base + "work\\";
    const std::string good = StoredCabinetBytes({Stored("one.txt", Pattern(3000, 4))});
    const size_t dataBlock = good.size() - 3000 - 8;  // the one data block's header
    auto cut = [&](size_t at) { return good.substr(0, at); };
    auto put = [&](size_t at, char value) {  // at 36 the folder's data offset, at 42 its compression
        std::string bytes = good;
        bytes[at] = value;
        return bytes;
    };
    const std::pair<const char *, std::string> cases[] = {
        {"cut in the data", cut(good.size() - 100)},
        {"cut before the data block", cut(dataBlock)},
        {"cut in the data block's header", cut(dataBlock + 4)},
        {"data offset", put(37, 0x7f)},
        {"compression", put(42, 7)},
        {"300 characters of name", StoredCabinetBytes({Stored(std::string(300, 'n'), "x")})},
    };
    for (const auto &c : cases) {
        WriteBytes(base + "corrupt.cab", c.second.data(), c.second.size());
        CreateDirectoryA(work.c_str(), NULL);
        {
            CCabinetExtractor extractor;
            extractor.SetDestination(work.c_str());
            EXPECT_EQ(0, extractor.Extract((base + "corrupt.cab").c_str(), 1)) << c.first;
            EXPECT_TRUE(extractor.ExtractedNames.empty()) << c.first << ": nothing whole to install";
            char name[MAX_PATH];
            while (extractor.PopExtractedName(name))
                DeleteFileA((work + name).c_str());
        }
        RemoveDirectoryA(work.c_str());
        EXPECT_FALSE(PathExists(work)) << c.first;
        DeleteTree(work);
    }
}

// A set in a fresh scratch directory, extracted into its "target" by a fresh
// recording extractor: each case of a test starts from nothing.
class CabinetWalk : public ::testing::Test {
protected:
    void Prepare()
    {
        Directory = ScratchDirectory();
        Target = Directory + "target\\";
        CreateDirectoryA(Target.c_str(), NULL);
        Extractor.reset(new CRecordingExtractor);
        Extractor->SetDestination(Target.c_str());
    }
    std::string Directory, Target;
    std::unique_ptr<CRecordingExtractor> Extractor;
};

// Three hand-written members, each with whole files: a1 a2 | b1 | c1.
class CabinetSet : public CabinetWalk {
protected:
    void Write(bool diskNames)
    {
        Prepare();
        auto disk = [&](int i) { return diskNames ? "disk" + std::to_string(i) : std::string(); };
        ASSERT_TRUE(WriteStoredCabinet(Directory + "set0.cab", {Stored("a1", "A1"), Stored("a2", "A2")},
                                       CStoredSetPlace{0, "", "", "set1.cab", disk(1)}));
        ASSERT_TRUE(WriteStoredCabinet(Directory + "set1.cab", {Stored("b1", "B1")},
                                       CStoredSetPlace{1, "set0.cab", disk(0), "set2.cab", disk(2)}));
        ASSERT_TRUE(WriteStoredCabinet(Directory + "set2.cab", {Stored("c1", "C1")},
                                       CStoredSetPlace{2, "set1.cab", disk(1), "", ""}));
    }
    int Extract(int followSet) { return Extractor->Extract((Directory + "set0.cab").c_str(), followSet); }
};

TEST_F(CabinetSet, TheWalkFollowsOnlyDiskNamedSetsWhenAsked)
{
    struct {
        bool diskNames;
        int followSet, lastCabinet;
        std::vector<std::string> popped;
    } cases[] = {
        {true, 1, 1, {"c1", "b1", "a2", "a1"}},
        {true, 0, 0, {"a2", "a1"}},
        {false, 1, 1, {"a2", "a1"}},  // without a next disk name the first member is the last
    };
    for (const auto &c : cases) {
        Write(c.diskNames);
        EXPECT_EQ(1, Extract(c.followSet));
        EXPECT_EQ(c.lastCabinet, Extractor->LastCabinet);
        EXPECT_TRUE(Extractor->PromptErrors.empty());
        for (const auto &copy : Extractor->Copies)
            EXPECT_EQ(1, copy.second) << copy.first;
        EXPECT_EQ(c.popped, PopAll(*Extractor)) << c.diskNames << c.followSet;
    }
    EXPECT_EQ("A2", ReadText(Target + "a2"));
}

TEST_F(CabinetSet, AMissingOrWrongMemberEndsTheWalk)
{
    // A prompt that always says go on: bounded, then state 11.
    Write(true);
    ASSERT_TRUE(DeleteFileA((Directory + "set1.cab").c_str()));
    EXPECT_EQ(0, Extract(1));
    EXPECT_EQ(11, Extractor->Erf.erfOper);
    ASSERT_FALSE(Extractor->PromptErrors.empty());
    EXPECT_LE(Extractor->PromptErrors.size(), size_t(CCabinet::MaxMemberPrompts));
    EXPECT_EQ(std::vector<int>(Extractor->PromptErrors.size(), 1), Extractor->PromptErrors);
    EXPECT_EQ("set1.cab", Extractor->PromptCabinets.back());
    EXPECT_EQ((std::vector<std::string>{"a2", "a1"}), PopAll(*Extractor));

    // A prompt that gives up ends at once, with the decoder's reason.
    struct {
        int mutation, error;  // 0 missing, 1 the wrong index, 2 no cabinet
    } cases[] = {{0, 1}, {1, 10}, {2, 2}};
    for (const auto &c : cases) {
        Write(true);
        if (c.mutation == 0)
            DeleteFileA((Directory + "set1.cab").c_str());
        else if (c.mutation == 1)
            CopyFileA((Directory + "set2.cab").c_str(), (Directory + "set1.cab").c_str(), FALSE);
        else
            WriteText(Directory + "set1.cab", "garbage, not a cabinet");
        Extractor->PromptAnswer = 0;
        EXPECT_EQ(0, Extract(1));
        EXPECT_EQ(std::vector<int>{c.error}, Extractor->PromptErrors) << c.mutation;
        EXPECT_EQ(11, Extractor->Erf.erfOper);
        EXPECT_EQ(0u, Extractor->Copies.count("c1"));
    }

    // The prompt may point the walk at another directory.
    Write(true);
    CreateDirectoryA((Directory + "else").c_str(), NULL);
    MoveFileA((Directory + "set1.cab").c_str(), (Directory + "else\\set1.cab").c_str());
    MoveFileA((Directory + "set2.cab").c_str(), (Directory + "else\\set2.cab").c_str());
    Extractor->Redirect = Directory + "else\\";
    EXPECT_EQ(1, Extract(1));
    EXPECT_EQ(std::vector<int>{1}, Extractor->PromptErrors);
    EXPECT_EQ("C1", ReadText(Target + "c1"));
}

// small | big (over a member's end) | tail, made by FCI in members of 60 KB.
class CabinetSpan : public CabinetWalk {
protected:
    void Make(bool diskNames)
    {
        Prepare();
        Contents = {{"small.bin", Pattern(10000, 1)}, {"big.bin", Pattern(100000, 2)}, {"tail.bin", Pattern(5000, 3)}};
        std::vector<CCabinetEntry> entries;
        for (const auto &file : Contents) {
            WriteBytes(Directory + file.first, file.second.data(), file.second.size());
            entries.push_back(CCabinetEntry{Directory + file.first, file.first, StoredDate, StoredTime, 0x20});
        }
        Members = MakeCabinetSet(CCabinetSetPlan{Directory, "span", diskNames, 60000, 0}, entries);
        ASSERT_GE(Members.size(), 2u);
    }
    std::vector<std::pair<std::string, std::string>> Contents;
    std::vector<std::string> Members;
};

TEST_F(CabinetSpan, TheRunningFileIsAlwaysFinished)
{
    struct {
        bool diskNames;
        int followSet;
        bool tail, closedWhereOpened;
    } cases[] = {{true, 0, false, false}, {false, 1, false, true}, {true, 1, true, false}};
    for (const auto &c : cases) {
        Make(c.diskNames);
        EXPECT_EQ(1, Extractor->Extract(Members[0].c_str(), c.followSet));
        EXPECT_TRUE(ReadText(Target + "big.bin") == Contents[1].second) << c.diskNames << c.followSet;
        EXPECT_EQ(c.tail, PathExists(Target + "tail.bin")) << c.diskNames << c.followSet;
        // The decoder announces each member it follows a file into, with no error.
        EXPECT_EQ(0, std::count(Extractor->PromptErrors.begin(), Extractor->PromptErrors.end(), 1));
        if (!c.tail) {
            EXPECT_EQ(c.closedWhereOpened, Extractor->OpenedIn == Extractor->ClosedIn) << c.diskNames;
        }
    }
    EXPECT_TRUE(ReadText(Target + "tail.bin") == Contents[2].second);
    EXPECT_EQ(std::vector<std::string>{"big.bin"}, Extractor->Partials);
    EXPECT_EQ(static_cast<int>(Members.size()) - 1, Extractor->ReachedIndex);
    EXPECT_EQ((std::vector<std::string>{"tail.bin", "big.bin", "small.bin"}), PopAll(*Extractor));
}

TEST_F(CabinetSpan, MissingNextMemberForARunningFileEndsTheCopy)
{
    Make(true);
    for (size_t i = 1; i < Members.size(); ++i)
        ASSERT_TRUE(DeleteFileA(Members[i].c_str()));
    EXPECT_EQ(0, Extractor->Extract(Members[0].c_str(), 1));
    EXPECT_EQ(11, Extractor->Erf.erfOper);
    // Announced first, then asked for again as not found, until the bound.
    ASSERT_FALSE(Extractor->PromptErrors.empty());
    EXPECT_LE(Extractor->PromptErrors.size(), size_t(CCabinet::MaxMemberPrompts));
    EXPECT_EQ(0, Extractor->PromptErrors[0]);
    EXPECT_EQ(0, std::count(Extractor->PromptErrors.begin() + 1, Extractor->PromptErrors.end(), 0));
    EXPECT_EQ("span1.cab", Extractor->PromptCabinets.back());
    EXPECT_TRUE(ReadText(Target + "small.bin") == Contents[0].second);
    // The decoder reports the cut-off file closed all the same; it is not kept.
    EXPECT_EQ((std::vector<std::string>{"small.bin"}), PopAll(*Extractor));
    EXPECT_FALSE(PathExists(Target + "big.bin"));
}

}  // namespace
