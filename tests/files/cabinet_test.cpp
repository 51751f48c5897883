#include <gtest/gtest.h>

#include <cerrno>
#include <map>
#include <string>
#include <vector>

#include "cabinet_maker.h"
#include "files/cabinet.h"
#include "test_support.h"

namespace {

// 2001-02-03 04:05:06 as a DOS date and time.
const USHORT StoredDate = ((2001 - 1980) << 9) | (2 << 5) | 3;
const USHORT StoredTime = (4 << 11) | (5 << 5) | (6 / 2);

std::string Pattern(size_t size, unsigned seed)
{
    // Noise, so that neither storing nor MSZIP shrinks it much.
    std::string text(size, '\0');
    unsigned value = seed * 2654435761u + 1;
    for (size_t i = 0; i < size; ++i) {
        value = value * 1103515245u + 12345u;
        text[i] = static_cast<char>(value >> 16);
    }
    return text;
}

CStoredFile Stored(const std::string &name, const std::string &content, USHORT attributes = 0x20)
{
    CStoredFile file = {name, content, StoredDate, StoredTime, attributes};
    return file;
}

std::vector<std::string> PopAll(CCabinetExtractor &extractor)
{
    std::vector<std::string> names;
    char out[260];
    while (extractor.PopExtractedName(out))
        names.push_back(out);
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
    int OnPartialFile(const char *name, const char *firstCabinet, const char *firstDisk) override
    {
        Partials.push_back(name);
        return 1;
    }
    int OnNextCabinet(const char *cabinet, const char *disk, std::string &path, int error) override
    {
        PromptCabinets.push_back(cabinet);
        PromptErrors.push_back(error);
        if (!Redirect.empty())
            path = Redirect;
        return PromptAnswer;
    }

    std::map<std::string, int> Copies;
    std::vector<std::string> Partials;
    std::vector<std::string> PromptCabinets;
    std::vector<int> PromptErrors;
    std::string Redirect;
    int PromptAnswer = 1;
};

// ------------------------------------------------------------------ paths

TEST(CabinetPath, SplitsAndComposes)
{
    struct Case {
        const char *path, *directory, *fileName, *drive, *splitDirectory, *extension;
    } cases[] = {
        {"C:\\dir\\sub\\file.cab", "C:\\dir\\sub", "file.cab", "C", "\\dir\\sub", "cab"},
        {"C:\\file.cab", "C:\\", "file.cab", "C", "\\", "cab"},
        {"C:file.tar.gz", "C:", "file.tar.gz", "C", "", "gz"},
        {"file", "", "file", "", "", ""},
        {"\\\\server\\share\\a.b", "\\\\server\\share", "a.b", "", "\\\\server\\share", "b"},
        {"C:\\dir.x\\noext", "C:\\dir.x", "noext", "C", "\\dir.x", ""},
    };
    for (const Case &c : cases) {
        CPathString path(c.path);
        std::string directory, fileName, drive, splitDirectory, extension;
        path.GetDirectory(directory);
        path.GetFileName(fileName);
        path.Split(&drive, &splitDirectory, NULL, &extension);
        EXPECT_EQ(c.directory, directory) << c.path;
        EXPECT_EQ(c.fileName, fileName) << c.path;
        EXPECT_EQ(c.drive, drive) << c.path;
        EXPECT_EQ(c.splitDirectory, splitDirectory) << c.path;
        EXPECT_EQ(c.extension, extension) << c.path;
    }

    CPathString path("C:\\dir\\file.cab");
    path.SetFileName("");
    EXPECT_STREQ("C:\\dir\\", path);
    path.SetFileName("next.cab");
    EXPECT_STREQ("C:\\dir\\next.cab", path);
    path.SetDirectory("D:\\other");
    EXPECT_STREQ("D:\\other\\next.cab", path);
    path.SetDirectory("E:\\");
    EXPECT_STREQ("E:\\next.cab", path);
    path.Compose("F", "\\x", "name", "ext");
    EXPECT_STREQ("F:\\x\\name.ext", path);
    path = static_cast<const char *>(NULL);
    EXPECT_STREQ("", path);

    path.SetToTempDirectory();
    char temp[MAX_PATH];
    GetTempPathA(MAX_PATH, temp);
    EXPECT_STREQ(temp, path);
    // A search for a directory's text with its trailing backslash finds nothing.
    EXPECT_EQ(0, path.Exists());
    const std::string file = ScratchDirectory() + "here.cab";
    WriteText(file, "x");
    path = file.c_str();
    EXPECT_EQ(1, path.Exists());
    path.SetFileName("not-here.cab");
    EXPECT_EQ(0, path.Exists());
    path.SetFileName("*.cab");
    EXPECT_EQ(1, path.Exists());
}

// ---------------------------------------------------- the C runtime layer

TEST(CabinetCallbacks, OpenTranslatesFlagsAndErrors)
{
    const std::string directory = ScratchDirectory();
    struct Case {
        const char *name;
        bool existing;  // the file holds "old-content" first
        int oflag, pmode;
        INT_PTR expectOk;
        int expectErrno;
        const char *contentAfter;  // after "new" is written, if writable
    } cases[] = {
        {"text mode refused", false, 0x4000 | 0x0100 | 0x0001, 0, 0, EINVAL, NULL},
        {"missing, read", false, 0, 0, 0, ENOENT, NULL},
        {"missing, truncate only", false, 0x0200 | 0x0001, 0, 0, ENOENT, NULL},
        {"exclusive create of existing", true, 0x0100 | 0x0400 | 0x0001, 0x180, 0, EEXIST, NULL},
        {"exclusive create of new", false, 0x0100 | 0x0400 | 0x0001, 0x180, 1, 0, "new"},
        {"create and truncate", true, 0x0100 | 0x0200 | 0x0001, 0x180, 1, 0, "new"},
        {"create alone keeps the tail", true, 0x0100 | 0x0001, 0x180, 1, 0, "new-content"},
        {"truncate existing", true, 0x0200 | 0x0002, 0x180, 1, 0, "new"},
        {"append", true, 0x0008 | 0x0001, 0x180, 1, 0, "old-contentnew"},
        {"read-only open", true, 0x0020, 0, 1, 0, NULL},
    };
    int n = 0;
    for (const Case &c : cases) {
        std::string path = directory + "f" + std::to_string(n++) + ".bin";
        if (c.existing)
            WriteText(path, "old-content");
        errno = 12345;
        INT_PTR handle = CabOpen(&path[0], c.oflag, c.pmode);
        if (!c.expectOk) {
            EXPECT_EQ(-1, handle) << c.name;
            EXPECT_EQ(c.expectErrno, errno) << c.name;
            continue;
        }
        ASSERT_NE(-1, handle) << c.name;
        EXPECT_EQ(0, errno) << c.name;
        if (c.contentAfter) {
            char text[] = "new";
            EXPECT_EQ(3u, CabWrite(handle, text, 3)) << c.name;
        }
        EXPECT_EQ(0, CabClose(handle)) << c.name;
        if (c.contentAfter) {
            EXPECT_EQ(c.contentAfter, ReadText(path)) << c.name;
        }
    }

    std::string missingDirectory = directory + "no-such-dir\\f.bin";
    EXPECT_EQ(-1, CabOpen(&missingDirectory[0], 0x0100 | 0x0001, 0x180));
    EXPECT_EQ(ENOENT, errno);

    // Short-lived and delete-on-close only with create.
    std::string temporary = directory + "temporary.bin";
    INT_PTR handle = CabOpen(&temporary[0], 0x0100 | 0x0040 | 0x1000 | 0x0001, 0x180);
    ASSERT_NE(-1, handle);
    EXPECT_TRUE(PathExists(temporary));
    CabClose(handle);
    EXPECT_FALSE(PathExists(temporary));
}

TEST(CabinetCallbacks, SharingComesFromTheMode)
{
    const std::string path = ScratchDirectory() + "shared.bin";
    WriteText(path, "abc");
    struct Case {
        int oflag, pmode;
        bool otherReadAllowed, otherWriteAllowed;
    } cases[] = {
        {0x0001, 0, false, false},
        {0x0001, 0x100, true, false},
        {0x0001, 0x80, false, true},
        {0x0001, 0x180, true, true},
        {0x0000, 0, true, false},  // a read-only open always shares reading
    };
    for (const Case &c : cases) {
        std::string name = path;
        INT_PTR handle = CabOpen(&name[0], c.oflag, c.pmode);
        ASSERT_NE(-1, handle);
        HANDLE reader = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, NULL,
                                    OPEN_EXISTING, 0, NULL);
        HANDLE writer = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, NULL,
                                    OPEN_EXISTING, 0, NULL);
        EXPECT_EQ(c.otherReadAllowed, reader != INVALID_HANDLE_VALUE) << c.oflag << "/" << c.pmode;
        EXPECT_EQ(c.otherWriteAllowed, writer != INVALID_HANDLE_VALUE) << c.oflag << "/" << c.pmode;
        if (reader != INVALID_HANDLE_VALUE)
            CloseHandle(reader);
        if (writer != INVALID_HANDLE_VALUE)
            CloseHandle(writer);
        CabClose(handle);
    }

    // A holder without write sharing makes a second open fail with EACCES.
    HANDLE holder = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
    ASSERT_NE(INVALID_HANDLE_VALUE, holder);
    std::string name = path;
    EXPECT_EQ(-1, CabOpen(&name[0], 0x0001, 0x180));
    EXPECT_EQ(EACCES, errno);
    CloseHandle(holder);
}

TEST(CabinetCallbacks, ReadWriteSeekReportLikeTheRuntime)
{
    std::string path = ScratchDirectory() + "rw.bin";
    INT_PTR handle = CabOpen(&path[0], 0x0100 | 0x0002, 0x180);
    ASSERT_NE(-1, handle);
    char text[] = "0123456789";
    EXPECT_EQ(10u, CabWrite(handle, text, 10));
    EXPECT_EQ(4, CabSeek(handle, 4, 0));
    EXPECT_EQ(6, CabSeek(handle, 2, 1));
    EXPECT_EQ(8, CabSeek(handle, -2, 2));
    char buffer[16] = {0};
    EXPECT_EQ(2u, CabRead(handle, buffer, sizeof buffer));
    EXPECT_STREQ("89", buffer);
    EXPECT_EQ(-1, CabSeek(handle, 0, 3));
    EXPECT_EQ(EINVAL, errno);
    // Before the start is error 131 here, not 87: it counts as a bad handle.
    EXPECT_EQ(-1, CabSeek(handle, -100, 0));
    EXPECT_EQ(EBADF, errno);
    EXPECT_EQ(0, CabClose(handle));

    INT_PTR reader = CabOpen(&path[0], 0, 0);
    ASSERT_NE(-1, reader);
    EXPECT_EQ(static_cast<UINT>(-1), CabWrite(reader, text, 1));
    EXPECT_EQ(EBADF, errno);
    CabClose(reader);
    INT_PTR writer = CabOpen(&path[0], 0x0001, 0);
    ASSERT_NE(-1, writer);
    EXPECT_EQ(static_cast<UINT>(-1), CabRead(writer, buffer, 1));
    EXPECT_EQ(EBADF, errno);
    CabClose(writer);
}

// ------------------------------------------------------------- extraction

TEST(CabinetExtract, SingleCabinetWithTimesAttributesAndNames)
{
    const std::string directory = ScratchDirectory();
    const std::string source = directory + "source\\";
    const std::string target = directory + "target\\";
    CreateDirectoryA(source.c_str(), NULL);
    CreateDirectoryA(target.c_str(), NULL);
    struct Entry {
        const char *name;
        USHORT stored;
        DWORD expected;
    } entries[] = {
        {"plain.txt", 0x20, FILE_ATTRIBUTE_ARCHIVE},
        {"readonly.dll", 0x21 | 0x40, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE},
        // Wine reports every plain file as archived.
        {"utf-flag.bin", 0x01 | 0x80, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE},
    };
    std::vector<CCabinetEntry> files;
    for (const Entry &e : entries) {
        WriteText(source + e.name, std::string("content of ") + e.name);
        CCabinetEntry entry = {source + e.name, e.name, StoredDate, StoredTime, e.stored};
        files.push_back(entry);
    }
    CCabinetSetPlan plan = {directory, "single", false, 0, 1};
    std::vector<std::string> members = MakeCabinetSet(plan, files);
    ASSERT_EQ(1u, members.size());

    CCabinetExtractor extractor;
    ASSERT_EQ(1, extractor.Initialised);
    CCabinetInfo info;
    EXPECT_EQ(1, extractor.IsCabinet(members[0].c_str(), &info));
    EXPECT_EQ(3, info.cFiles);
    extractor.SetDestination((directory + "target").c_str());
    EXPECT_STREQ(target.c_str(), extractor.Destination);
    EXPECT_EQ(1, extractor.Extract(members[0].c_str(), 1));
    EXPECT_EQ(1, extractor.LastCabinet);
    EXPECT_EQ(0, extractor.OpenedIn);
    EXPECT_EQ(0, extractor.ClosedIn);
    EXPECT_EQ(0, extractor.Erf.erfOper);

    for (const Entry &e : entries) {
        std::string path = target + e.name;
        EXPECT_EQ(std::string("content of ") + e.name, ReadText(path));
        EXPECT_EQ(e.expected, GetFileAttributesA(path.c_str())) << e.name;
        HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
        ASSERT_NE(INVALID_HANDLE_VALUE, file) << e.name;
        FILETIME created, written, local;
        GetFileTime(file, &created, NULL, &written);
        CloseHandle(file);
        WORD date = 0, time = 0;
        FileTimeToLocalFileTime(&written, &local);
        FileTimeToDosDateTime(&local, &date, &time);
        EXPECT_EQ(StoredDate, date) << e.name;
        EXPECT_EQ(StoredTime, time) << e.name;
        EXPECT_EQ(0, CompareFileTime(&created, &written)) << e.name;
        SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    std::vector<std::string> expected = {"utf-flag.bin", "readonly.dll", "plain.txt"};
    EXPECT_EQ(expected, PopAll(extractor));
    char untouched[260] = "keep";
    EXPECT_EQ(0, extractor.PopExtractedName(untouched));
    EXPECT_STREQ("keep", untouched);
}

TEST(CabinetExtract, RefusesWhatIsNoCabinet)
{
    const std::string directory = ScratchDirectory();
    WriteText(directory + "text.cab", "This is not a cabinet at all, only text.");
    CCabinetExtractor extractor;
    extractor.SetDestination(directory.c_str());
    const std::string paths[] = {directory + "text.cab", directory + "missing.cab", directory};
    for (const std::string &path : paths) {
        EXPECT_EQ(0, extractor.IsCabinet(path.c_str(), NULL)) << path;
        EXPECT_EQ(0, extractor.Extract(path.c_str(), 1)) << path;
    }
    EXPECT_TRUE(extractor.ExtractedNames.empty());
}

TEST(CabinetExtract, CabinetWithoutFiles)
{
    const std::string directory = ScratchDirectory();
    ASSERT_TRUE(WriteStoredCabinet(directory + "empty.cab", {}));
    CCabinetExtractor extractor;
    extractor.SetDestination(directory.c_str());
    EXPECT_EQ(1, extractor.Extract((directory + "empty.cab").c_str(), 1));
    EXPECT_EQ(-1, extractor.OpenedIn);
    EXPECT_EQ(-1, extractor.ClosedIn);
    EXPECT_EQ(1, extractor.LastCabinet);
    EXPECT_TRUE(extractor.ExtractedNames.empty());
}

TEST(CabinetExtract, RelativeDirectoryInStoredNameIsNotCreated)
{
    const std::string directory = ScratchDirectory();
    const std::string target = directory + "target\\";
    CreateDirectoryA(target.c_str(), NULL);
    ASSERT_TRUE(WriteStoredCabinet(directory + "sub.cab", {Stored("sub\\inner.txt", "inner")}));
    CCabinetExtractor extractor;
    extractor.SetDestination(target.c_str());
    EXPECT_EQ(0, extractor.Extract((directory + "sub.cab").c_str(), 1));
    EXPECT_FALSE(PathExists(target + "sub"));
    EXPECT_TRUE(extractor.ExtractedNames.empty());
    // Wine's decoder takes the -1 for the target as the caller's abort.
    EXPECT_EQ(11, extractor.Erf.erfOper);

    // Once the directory is there, the name is taken as it stands.
    CreateDirectoryA((target + "sub").c_str(), NULL);
    EXPECT_EQ(1, extractor.Extract((directory + "sub.cab").c_str(), 1));
    EXPECT_EQ("inner", ReadText(target + "sub\\inner.txt"));
}

TEST(CabinetExtract, ExistingReadOnlyTargetIsWrittenFromItsStart)
{
    const std::string directory = ScratchDirectory();
    ASSERT_TRUE(WriteStoredCabinet(directory + "over.cab", {Stored("over.txt", "NEW")}));
    const std::string target = directory + "over.txt";
    WriteText(target, "old and longer");
    SetFileAttributesA(target.c_str(), FILE_ATTRIBUTE_READONLY);
    CCabinetExtractor extractor;
    extractor.SetDestination(directory.c_str());
    EXPECT_EQ(1, extractor.Extract((directory + "over.cab").c_str(), 1));
    EXPECT_EQ("NEW and longer", ReadText(target));
    EXPECT_EQ(static_cast<DWORD>(FILE_ATTRIBUTE_ARCHIVE), GetFileAttributesA(target.c_str()));
}

TEST(CabinetExtract, DefaultDestinationIsTheTempDirectory)
{
    CCabinetExtractor extractor;
    char temp[MAX_PATH];
    GetTempPathA(MAX_PATH, temp);
    EXPECT_STREQ(temp, extractor.Destination);
}

// --------------------------------------------------------- cabinet sets

// Three hand-written members, each with whole files: a1 a2 | b1 | c1.
class CabinetSet : public ::testing::Test {
protected:
    void Write(bool diskNames)
    {
        Directory = ScratchDirectory();
        Target = Directory + "target\\";
        CreateDirectoryA(Target.c_str(), NULL);
        const char *disks[] = {"disk0", "disk1", "disk2"};
        auto disk = [&](int i) { return diskNames ? std::string(disks[i]) : std::string(); };
        CStoredSetPlace first = {0, "", "", "set1.cab", disk(1)};
        CStoredSetPlace second = {1, "set0.cab", disk(0), "set2.cab", disk(2)};
        CStoredSetPlace third = {2, "set1.cab", disk(1), "", ""};
        ASSERT_TRUE(WriteStoredCabinet(Directory + "set0.cab", {Stored("a1", "A1"), Stored("a2", "A2")}, first));
        ASSERT_TRUE(WriteStoredCabinet(Directory + "set1.cab", {Stored("b1", "B1")}, second));
        ASSERT_TRUE(WriteStoredCabinet(Directory + "set2.cab", {Stored("c1", "C1")}, third));
    }
    std::string Directory, Target;
};

TEST_F(CabinetSet, WalksEveryMemberOnce)
{
    Write(true);
    CRecordingExtractor extractor;
    extractor.SetDestination(Target.c_str());
    EXPECT_EQ(1, extractor.Extract((Directory + "set0.cab").c_str(), 1));
    std::map<std::string, int> once = {{"a1", 1}, {"a2", 1}, {"b1", 1}, {"c1", 1}};
    EXPECT_EQ(once, extractor.Copies);
    EXPECT_TRUE(extractor.PromptErrors.empty());
    EXPECT_EQ(2, extractor.ReachedIndex);
    EXPECT_EQ("C1", ReadText(Target + "c1"));
    std::vector<std::string> expected = {"c1", "b1", "a2", "a1"};
    EXPECT_EQ(expected, PopAll(extractor));
}

TEST_F(CabinetSet, OnePassWithoutFollowingTheSet)
{
    Write(true);
    CRecordingExtractor extractor;
    extractor.SetDestination(Target.c_str());
    EXPECT_EQ(1, extractor.Extract((Directory + "set0.cab").c_str(), 0));
    std::map<std::string, int> first = {{"a1", 1}, {"a2", 1}};
    EXPECT_EQ(first, extractor.Copies);
    EXPECT_EQ(0, extractor.LastCabinet);
}

TEST_F(CabinetSet, WithoutDiskNamesTheFirstMemberIsTheLast)
{
    Write(false);
    CRecordingExtractor extractor;
    extractor.SetDestination(Target.c_str());
    EXPECT_EQ(1, extractor.Extract((Directory + "set0.cab").c_str(), 1));
    std::map<std::string, int> first = {{"a1", 1}, {"a2", 1}};
    EXPECT_EQ(first, extractor.Copies);
    EXPECT_EQ(1, extractor.LastCabinet);
    EXPECT_FALSE(PathExists(Target + "b1"));
}

TEST_F(CabinetSet, MissingMemberEndsAfterBoundedPrompts)
{
    Write(true);
    ASSERT_TRUE(DeleteFileA((Directory + "set1.cab").c_str()));
    // The base prompt always says go on: the walk must still end.
    CCabinetExtractor extractor;
    extractor.SetDestination(Target.c_str());
    EXPECT_EQ(0, extractor.Extract((Directory + "set0.cab").c_str(), 1));
    EXPECT_EQ(11, extractor.Erf.erfOper);
    EXPECT_EQ(TRUE, extractor.Erf.fError);
    std::vector<std::string> expected = {"a2", "a1"};
    EXPECT_EQ(expected, PopAll(extractor));

    CRecordingExtractor recording;
    recording.SetDestination(Target.c_str());
    EXPECT_EQ(0, recording.Extract((Directory + "set0.cab").c_str(), 1));
    ASSERT_FALSE(recording.PromptErrors.empty());
    EXPECT_LE(recording.PromptErrors.size(), static_cast<size_t>(CCabinet::MaxMemberPrompts));
    for (size_t i = 0; i < recording.PromptErrors.size(); ++i) {
        EXPECT_EQ(1, recording.PromptErrors[i]);
        EXPECT_EQ("set1.cab", recording.PromptCabinets[i]);
    }
}

TEST_F(CabinetSet, PromptThatGivesUpEndsAtOnce)
{
    Write(true);
    ASSERT_TRUE(DeleteFileA((Directory + "set1.cab").c_str()));
    CRecordingExtractor extractor;
    extractor.PromptAnswer = 0;
    extractor.SetDestination(Target.c_str());
    EXPECT_EQ(0, extractor.Extract((Directory + "set0.cab").c_str(), 1));
    EXPECT_EQ(1u, extractor.PromptErrors.size());
    EXPECT_EQ(11, extractor.Erf.erfOper);
}

TEST_F(CabinetSet, PromptCanPointToAnotherDirectory)
{
    Write(true);
    const std::string elsewhere = Directory + "elsewhere\\";
    CreateDirectoryA(elsewhere.c_str(), NULL);
    ASSERT_TRUE(MoveFileA((Directory + "set1.cab").c_str(), (elsewhere + "set1.cab").c_str()));
    ASSERT_TRUE(MoveFileA((Directory + "set2.cab").c_str(), (elsewhere + "set2.cab").c_str()));
    CRecordingExtractor extractor;
    extractor.Redirect = elsewhere;
    extractor.SetDestination(Target.c_str());
    EXPECT_EQ(1, extractor.Extract((Directory + "set0.cab").c_str(), 1));
    EXPECT_EQ(std::vector<int>{1}, extractor.PromptErrors);
    EXPECT_EQ(1, extractor.Copies["c1"]);
    EXPECT_EQ("B1", ReadText(Target + "b1"));
}

TEST_F(CabinetSet, MemberWithTheWrongIndexOrNoCabinet)
{
    struct Case {
        const char *name;
        bool wrongIndex;
        int error;
    } cases[] = {{"wrong index", true, 10}, {"not a cabinet", false, 2}};
    for (const Case &c : cases) {
        Write(true);
        if (c.wrongIndex)
            ASSERT_TRUE(CopyFileA((Directory + "set2.cab").c_str(), (Directory + "set1.cab").c_str(), FALSE));
        else
            WriteText(Directory + "set1.cab", "garbage, not a cabinet");
        CRecordingExtractor extractor;
        extractor.PromptAnswer = 0;
        extractor.SetDestination(Target.c_str());
        EXPECT_EQ(0, extractor.Extract((Directory + "set0.cab").c_str(), 1)) << c.name;
        EXPECT_EQ(std::vector<int>{c.error}, extractor.PromptErrors) << c.name;
        EXPECT_EQ(11, extractor.Erf.erfOper) << c.name;
        EXPECT_EQ(0, extractor.Copies.count("c1")) << c.name;
    }
}

// ------------------------------------------ a file running across members

class CabinetSpan : public ::testing::Test {
protected:
    // small | big (runs over at least one member end) | tail
    void Make(bool diskNames)
    {
        Directory = ScratchDirectory();
        Target = Directory + "target\\";
        CreateDirectoryA(Target.c_str(), NULL);
        const std::string source = Directory + "source\\";
        CreateDirectoryA(source.c_str(), NULL);
        Contents = {{"small.bin", Pattern(10000, 1)}, {"big.bin", Pattern(100000, 2)}, {"tail.bin", Pattern(5000, 3)}};
        std::vector<CCabinetEntry> entries;
        for (const auto &file : Contents) {
            WriteBytes(source + file.first, file.second.data(), file.second.size());
            CCabinetEntry entry = {source + file.first, file.first, StoredDate, StoredTime, 0x20};
            entries.push_back(entry);
        }
        // Stored files of the order given, in members of 60 KB.
        CCabinetSetPlan plan = {Directory, "span", diskNames, 60000, 0};
        Members = MakeCabinetSet(plan, entries);
        ASSERT_GE(Members.size(), 2u);
    }
    std::string Directory, Target;
    std::vector<std::pair<std::string, std::string>> Contents;
    std::vector<std::string> Members;
};

TEST_F(CabinetSpan, FileRunningIntoTheNextMemberIsFinishedAndTheRestFollows)
{
    Make(true);
    CRecordingExtractor extractor;
    extractor.SetDestination(Target.c_str());
    EXPECT_EQ(1, extractor.Extract(Members[0].c_str(), 1));
    for (const auto &file : Contents) {
        EXPECT_EQ(1, extractor.Copies[file.first]) << file.first;
        EXPECT_TRUE(ReadText(Target + file.first) == file.second) << file.first;
    }
    EXPECT_EQ(std::vector<std::string>{"big.bin"}, extractor.Partials);
    // The decoder announces each member it follows a file into, with no error.
    EXPECT_EQ(std::vector<int>(Members.size() - 1, 0), extractor.PromptErrors);
    EXPECT_EQ(static_cast<int>(Members.size()) - 1, extractor.ReachedIndex);
    std::vector<std::string> expected = {"tail.bin", "big.bin", "small.bin"};
    EXPECT_EQ(expected, PopAll(extractor));
}

TEST_F(CabinetSpan, OnePassStillFinishesTheRunningFile)
{
    Make(true);
    CRecordingExtractor extractor;
    extractor.SetDestination(Target.c_str());
    EXPECT_EQ(1, extractor.Extract(Members[0].c_str(), 0));
    EXPECT_TRUE(ReadText(Target + "big.bin") == Contents[1].second);
    EXPECT_NE(extractor.OpenedIn, extractor.ClosedIn);
    EXPECT_EQ(0, extractor.OpenedIn);
    EXPECT_FALSE(PathExists(Target + "tail.bin"));
}

TEST_F(CabinetSpan, WithoutDiskNamesTheRestIsLeft)
{
    Make(false);
    CRecordingExtractor extractor;
    extractor.SetDestination(Target.c_str());
    EXPECT_EQ(1, extractor.Extract(Members[0].c_str(), 1));
    EXPECT_TRUE(ReadText(Target + "big.bin") == Contents[1].second);
    EXPECT_EQ(extractor.OpenedIn, extractor.ClosedIn);
    EXPECT_FALSE(PathExists(Target + "tail.bin"));
}

TEST_F(CabinetSpan, MissingNextMemberForARunningFileEndsTheCopy)
{
    Make(true);
    for (size_t i = 1; i < Members.size(); ++i)
        ASSERT_TRUE(DeleteFileA(Members[i].c_str()));
    CRecordingExtractor extractor;
    extractor.SetDestination(Target.c_str());
    EXPECT_EQ(0, extractor.Extract(Members[0].c_str(), 1));
    EXPECT_EQ(11, extractor.Erf.erfOper);
    ASSERT_FALSE(extractor.PromptErrors.empty());
    EXPECT_LE(extractor.PromptErrors.size(), static_cast<size_t>(CCabinet::MaxMemberPrompts));
    // Announced first, then asked for again as not found, until the bound.
    EXPECT_EQ(0, extractor.PromptErrors[0]);
    for (size_t i = 1; i < extractor.PromptErrors.size(); ++i)
        EXPECT_EQ(1, extractor.PromptErrors[i]);
    EXPECT_EQ("span1.cab", extractor.PromptCabinets.back());
    EXPECT_TRUE(ReadText(Target + "small.bin") == Contents[0].second);
}

}  // namespace
