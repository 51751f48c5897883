#include "report/addreg_line.h"

#include "report/text_compare.h"

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

static bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

static unsigned long ReadDigits(const std::string &text, size_t at, unsigned base)
{
    unsigned long value = 0;
    for (; at < text.size(); ++at) {
        char c = text[at];
        unsigned digit;
        if (c >= '0' && c <= '9')
            digit = c - '0';
        else if (base == 16 && c >= 'a' && c <= 'f')
            digit = c - 'a' + 10;
        else if (base == 16 && c >= 'A' && c <= 'F')
            digit = c - 'A' + 10;
        else
            break;
        value = value * base + digit;
    }
    return value;
}

unsigned long ReadAddRegFlags(const std::string &flags)
{
    if (flags.compare(0, 2, "0x") == 0)
        return ReadDigits(flags, 2, 16);
    size_t at = 0;
    while (at < flags.size() && IsBlank(flags[at]))
        ++at;
    bool negative = at < flags.size() && flags[at] == '-';
    if (at < flags.size() && (flags[at] == '-' || flags[at] == '+'))
        ++at;
    unsigned long value = ReadDigits(flags, at, 10);
    return negative ? 0UL - value : value;
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
