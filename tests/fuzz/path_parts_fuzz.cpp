// Path splitting and composing: parts that were not cut compose back to the
// path, every out-buffer holds exactly what it was sized for, and the two
// in-place repairs keep their promises; a target resolved inside a directory
// stays there; a block of NUL-ended strings splits into pieces that join back
// into it, however it ends.
#include <cstring>
#include <vector>

#include "files/path_parts.h"
#include "fuzz_input.h"
#include "inf/bounded_string.h"

namespace {

// Lead bytes of a double-byte code page such as 932.
int IsLeadByte(unsigned char c) { return c >= 0x81 && c <= 0xfe; }

struct CParts {
    std::vector<char> Drive = std::vector<char>(PathDriveSize, 'x');
    std::vector<char> Directory = std::vector<char>(PathPartSize, 'x');
    std::vector<char> Name = std::vector<char>(PathPartSize, 'x');
    std::vector<char> Extension = std::vector<char>(PathPartSize, 'x');

    void Split(const char *path, LeadBytePredicate lead)
    {
        SplitPath(path, Drive.data(), Directory.data(), Name.data(), Extension.data(), lead);
        for (const std::vector<char> *part : {&Drive, &Directory, &Name, &Extension})
            FUZZ_CHECK(std::memchr(part->data(), 0, part->size()));
    }
    size_t Length() const
    {
        return std::strlen(Drive.data()) + std::strlen(Directory.data()) + std::strlen(Name.data()) +
               std::strlen(Extension.data());
    }
    std::string Make(size_t size) const
    {
        std::vector<char> out(size, 'x');
        size_t n = MakePath(out.data(), size, Drive.data(), Directory.data(), Name.data(), Extension.data());
        FUZZ_CHECK(n < size && out[n] == 0 && std::strlen(out.data()) == n);
        return out.data();
    }
};

void CheckRepairs(const std::string &path)
{
    std::vector<char> text(path.begin(), path.end());
    text.insert(text.end(), {'\0', '\0'});  // room for the backslash
    ReplaceIllegalChars(text.data(), 0);
    FUZZ_CHECK(std::strlen(text.data()) == path.size());
    for (size_t i = 0; i < path.size(); ++i)
        FUZZ_CHECK(text[i] == path[i] || (text[i] == '_' && std::strchr("/*?\"<>|", path[i])));
    EnsureTrailingBackslash(text.data());
    size_t n = std::strlen(text.data());
    FUZZ_CHECK(n >= 1 && text[n - 1] == '\\' && n - path.size() <= 1);
    EnsureTrailingBackslash(text.data());
    FUZZ_CHECK(std::strlen(text.data()) == n);
}

// Whatever a cabinet member is called, a target either lies inside the work
// directory, in plain parts joined by backslashes and within its buffer, or
// is refused with empty text.
void CheckInside(const std::string &name, size_t size)
{
    const std::string directory = "C:\\work\\";
    std::vector<char> out(size, 'x');
    size_t n = ResolveInside(out.data(), size, directory.c_str(), (directory + name).c_str());
    FUZZ_CHECK(std::strlen(out.data()) == n && n < size);
    if (!n)
        return;
    std::string target(out.data());
    FUZZ_CHECK(target.compare(0, directory.size(), directory) == 0 && target.size() > directory.size());
    std::string rest = "\\" + target.substr(directory.size()) + "\\";
    FUZZ_CHECK(rest.find_first_of("/:") == std::string::npos);
    FUZZ_CHECK(rest.find("\\..\\") == std::string::npos && rest.find("\\.\\") == std::string::npos);
    FUZZ_CHECK(rest.find("\\\\") == std::string::npos);
}

// A single name is one part inside a directory, exactly as it is written.
void CheckSingleName(const std::string &name)
{
    const std::string directory = "C:\\work\\";
    char out[CBoundedString::Capacity];
    if (IsSingleName(name.c_str()) && directory.size() + name.size() < sizeof out)
        FUZZ_CHECK(ResolveInside(out, sizeof out, directory.c_str(), (directory + name).c_str()) &&
                   directory + name == out);
}

void CheckNulSplit(const std::string &block)
{
    std::string joined;
    for (const std::string &piece : SplitAtNuls(block.data(), block.size())) {
        FUZZ_CHECK(piece.find('\0') == std::string::npos);
        joined += piece + '\0';
    }
    FUZZ_CHECK(joined.compare(0, block.size(), block) == 0 && joined.size() - block.size() <= 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    CFuzzInput input(data, size);
    LeadBytePredicate lead = (input.Byte() & 1) ? IsLeadByte : nullptr;
    size_t outSize = input.Byte() % CBoundedString::Capacity + 1;
    std::string bytes = input.Bytes(), path = bytes.c_str();

    CParts parts;
    parts.Split(path.c_str(), lead);
    std::string whole = parts.Make(CBoundedString::Capacity);
    bool uncut = parts.Length() == path.size();
    if (uncut && path.size() < CBoundedString::Capacity)
        FUZZ_CHECK(whole == path);
    std::string small = parts.Make(outSize);
    FUZZ_CHECK(whole.compare(0, small.size(), small) == 0);

    // A composed path splits into the same parts again.
    CParts again;
    again.Split(whole.c_str(), lead);
    if (uncut && path.size() < CBoundedString::Capacity)
        FUZZ_CHECK(again.Make(CBoundedString::Capacity) == whole);
    CheckRepairs(path);
    CheckInside(path, outSize);
    CheckSingleName(path);
    CheckNulSplit(bytes);
    return 0;
}
