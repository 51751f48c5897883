// The registry lines of an installation record, read apart into what they
// ask of the registry. No <windows.h> here.
#ifndef TOVREL_RECORD_ADDREG_LINE_H
#define TOVREL_RECORD_ADDREG_LINE_H

#include <string>

// Registry type numbers, as the registry API numbers them.
const unsigned long RegTypeNone = 0;
const unsigned long RegTypeString = 1;
const unsigned long RegTypeExpandString = 2;
const unsigned long RegTypeBinary = 3;
const unsigned long RegTypeDword = 4;
const unsigned long RegTypeMultiString = 7;

// The flag that makes the value a bare file name, written as the full path
// under which the file was recorded.
const unsigned long AddRegFileReferenceFlag = 0x1000;

enum class AddRegRoot { Unknown, ClassesRoot, CurrentUser, LocalMachine, Users };

struct AddRegLine {
    std::string Root, Subkey, ValueName, Flags, Value;
    bool HasValue;  // a fifth field that is not empty: the install wrote a value
};

// Cuts at the first four commas; the fifth field keeps any further commas.
// Nothing is trimmed.
AddRegLine ParseAddRegLine(const std::string &line);
AddRegRoot AddRegRootOf(const std::string &keyword);
// As the install reads them: after a lower-case "0x" the C runtime's
// strtoul in base 16, which stops at the largest number rather than wrap;
// anything else through atol.
unsigned long ReadAddRegFlags(const std::string &flags);
// RegTypeNone for the combinations that have no type: the install writes
// those as REG_NONE.
unsigned long RegistryTypeOfFlags(unsigned long flags);
const char *RegistryTypeName(unsigned long type);

#endif
