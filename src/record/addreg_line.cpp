#include "record/addreg_line.h"

#include <cstdlib>

#include "record/text_compare.h"

static const unsigned long TypeMask = 0xFFFF0001;
static const unsigned long FlagBinary = 0x00000001;
static const unsigned long FlagMultiString = 0x00010000;
static const unsigned long FlagDword = 0x00010001;
static const unsigned long FlagExpandString = 0x00020000;
static const int FieldsBeforeValue = 4;

AddRegLine ParseAddRegLine(const std::string &line)
{
    AddRegLine parsed;
    parsed.HasValue = false;
    std::string *fields[FieldsBeforeValue] = {&parsed.Root, &parsed.Subkey, &parsed.ValueName,
                                              &parsed.Flags};
    size_t start = 0;
    for (int i = 0; i < FieldsBeforeValue; ++i) {
        size_t comma = line.find(',', start);
        *fields[i] = line.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        if (comma == std::string::npos)
            return parsed;
        start = comma + 1;
    }
    parsed.Value = line.substr(start);
    parsed.HasValue = !parsed.Value.empty();
    return parsed;
}

AddRegRoot AddRegRootOf(const std::string &keyword)
{
    static const struct { const char *Keyword; AddRegRoot Root; } Roots[] = {
        {"HKCR", AddRegRoot::ClassesRoot}, {"HKCU", AddRegRoot::CurrentUser},
        {"HKLM", AddRegRoot::LocalMachine}, {"HKU", AddRegRoot::Users}};
    for (const auto &root : Roots)
        if (EqualNoCase(keyword, root.Keyword))
            return root.Root;
    return AddRegRoot::Unknown;
}

unsigned long ReadAddRegFlags(const std::string &flags)
{
    if (flags.compare(0, 2, "0x") == 0)
        return std::strtoul(flags.c_str(), NULL, 16);
    return static_cast<unsigned long>(std::atol(flags.c_str()));
}

unsigned long RegistryTypeOfFlags(unsigned long flags)
{
    switch (flags & TypeMask) {
    case 0: return RegTypeString;
    case FlagBinary: return RegTypeBinary;
    case FlagMultiString: return RegTypeMultiString;
    case FlagDword: return RegTypeDword;
    case FlagExpandString: return RegTypeExpandString;
    }
    return RegTypeNone;
}

const char *RegistryTypeName(unsigned long type)
{
    switch (type) {
    case RegTypeString: return "REG_SZ";
    case RegTypeExpandString: return "REG_EXPAND_SZ";
    case RegTypeBinary: return "REG_BINARY";
    case RegTypeDword: return "REG_DWORD";
    case RegTypeMultiString: return "REG_MULTI_SZ";
    }
    return "REG_NONE";
}
