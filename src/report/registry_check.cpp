#include <windows.h>

#include "record/addreg_line.h"
#include "record/addreg_root_key.h"
#include "record/current_user.h"
#include "record/text_compare.h"
#include "report/registry_check.h"

static const char Kind[] = "registry";
static const size_t DwordSize = 4;
static const int NibbleBits = 4;
static const BYTE NibbleMask = 0xf;

static DWORD DwordOf(const std::vector<BYTE> &data)
{
    return data[0] | (data[1] << 8) | (data[2] << 16) | (static_cast<DWORD>(data[3]) << 24);
}

// The texts that the value may hold: the line's own, and under the file
// flag the full path of each recorded file of that name.
static std::vector<std::string> ExpectedTexts(const AddRegLine &line, unsigned long flags,
                                              const std::vector<NamedValue> &recordedFiles)
{
    std::vector<std::string> texts(1, line.Value);
    if (flags & AddRegFileReferenceFlag)
        for (const NamedValue &file : recordedFiles)
            if (EqualNoCase(FileNameOf(file.Name), line.Value))
                texts.push_back(file.Name);
    return texts;
}

// The install writes the characters of the text whatever the type; a
// number written by some other hand as four bytes means the same.
static bool DataMatches(unsigned long type, const std::vector<BYTE> &data, const std::string &text)
{
    std::string stored(data.begin(), data.end());
    bool isText = type == RegTypeString || type == RegTypeExpandString || type == RegTypeMultiString;
    while (isText && !stored.empty() && stored.back() == '\0')
        stored.pop_back();
    if (stored == text)
        return true;
    if (type != RegTypeDword || data.size() != DwordSize)
        return false;
    return DwordOf(data) == ReadAddRegFlags(text);
}

// Text types as text, a four-byte REG_DWORD as its number, anything else
// as its bytes in hexadecimal.
static std::string Shown(unsigned long type, const std::vector<BYTE> &data)
{
    std::string shown = std::string(RegistryTypeName(type)) + " ";
    if (type == RegTypeString || type == RegTypeExpandString || type == RegTypeMultiString)
        return shown + "\"" + TextOfBytes(data) + "\"";
    if (type == RegTypeDword && data.size() == DwordSize)
        return shown + std::to_string(DwordOf(data));
    static const char Digits[] = "0123456789abcdef";
    for (BYTE byte : data)
        shown += std::string(1, Digits[byte >> NibbleBits]) + Digits[byte & NibbleMask];
    return shown;
}

static ReportItem CompareValue(const std::string &subject, HKEY key, const AddRegLine &parsed,
                               unsigned long type, const std::vector<std::string> &expected)
{
    DWORD storedType = 0;
    std::vector<BYTE> data;
    if (!QueryValueBytes(key, parsed.ValueName, storedType, data))
        return MakeItem(Kind, subject, ItemState::Drifted, "value missing");
    if (storedType != type)
        return MakeItem(Kind, subject, ItemState::Drifted,
                        "holds " + Shown(storedType, data) + ", the line gives " + RegistryTypeName(type));
    for (const std::string &text : expected)
        if (DataMatches(type, data, text))
            return MakeItem(Kind, subject, ItemState::Held, Shown(storedType, data));
    return MakeItem(Kind, subject, ItemState::Drifted,
                    "holds " + Shown(storedType, data) + ", the line gives \"" + expected.back() + "\"");
}

ReportItem CheckRegistryLine(const std::string &line, const std::vector<NamedValue> &recordedFiles)
{
    AddRegLine parsed = ParseAddRegLine(line);
    if (!parsed.HasValue)
        return MakeItem(Kind, line, ItemState::Held, "no value given: the install writes nothing");
    AddRegRoot rootName = AddRegRootOf(parsed.Root);
    HKEY root = AddRegRootKey(rootName);
    if (root == NULL)
        return MakeItem(Kind, line, ItemState::Unchecked,
                        "root \"" + parsed.Root + "\" is none of HKCR, HKCU, HKLM, HKU");
    unsigned long flags = ReadAddRegFlags(parsed.Flags);
    CRegistryHandle key;
    ReportItem item = OpenKeyToRead(root, parsed.Subkey, key)
                          ? CompareValue(line, key.Get(), parsed, RegistryTypeOfFlags(flags),
                                         ExpectedTexts(parsed, flags, recordedFiles))
                          : MakeItem(Kind, line, ItemState::Drifted, "key missing");
    if (rootName == AddRegRoot::CurrentUser)
        item.Detail += InUserHive();
    return item;
}
