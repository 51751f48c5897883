#include "report/baseline_fields.h"

static const char FieldSize[] = "size";
static const char FieldSha256[] = "sha256";
static const char FieldVersion[] = "version";
static const char FieldBinary[] = "binary";
static const char FieldStartType[] = "start";
static const char FieldServiceType[] = "type";
static const char FieldPort[] = "port";
static const char FieldDriver[] = "driver";
static const size_t DigestDigits = 64;
static const unsigned long long LargestNumberField = 0xFFFFFFFFull;

BaselineFields FileFields(const FileFacts &file)
{
    BaselineFields fields;
    fields[FieldSize] = std::to_string(file.Size);
    fields[FieldSha256] = file.Sha256;
    fields[FieldVersion] = file.Version;
    return fields;
}

BaselineFields ServiceFields(const ServiceFacts &service)
{
    BaselineFields fields;
    fields[FieldBinary] = service.BinaryPath;
    fields[FieldStartType] = std::to_string(service.StartType);
    fields[FieldServiceType] = std::to_string(service.Type);
    return fields;
}

BaselineFields PrinterFields(const PrinterFacts &printer)
{
    BaselineFields fields;
    fields[FieldPort] = printer.Port;
    fields[FieldDriver] = printer.Driver;
    return fields;
}

Verdict BaselineVerdict(EntryState entry, bool readable, const std::string &changes)
{
    if (entry == EntryState::Absent)
        return {ItemState::Unchecked, "; not in the baseline"};
    if (!readable)
        return {ItemState::Unchecked, "; its baseline entry is unreadable"};
    if (!changes.empty())
        return {ItemState::Drifted, "; since the baseline: " + changes};
    return {ItemState::Held, ", as at the baseline"};
}

// A digest is 64 hex digits, or empty when the bytes could not be read.
bool FileOfFields(const BaselineFields &fields, FileFacts &file)
{
    file.Present = true;
    if (!ReadFieldNumber(fields, FieldSize, file.Size) || !ReadFieldText(fields, FieldSha256, file.Sha256)
        || !ReadFieldText(fields, FieldVersion, file.Version))
        return false;
    return file.Sha256.empty()
           || (file.Sha256.size() == DigestDigits
               && file.Sha256.find_first_not_of("0123456789abcdef") == std::string::npos);
}

bool ServiceOfFields(const BaselineFields &fields, ServiceFacts &service)
{
    unsigned long long startType = 0, type = 0;
    if (!ReadFieldText(fields, FieldBinary, service.BinaryPath) || !ReadFieldNumber(fields, FieldStartType, startType)
        || !ReadFieldNumber(fields, FieldServiceType, type) || startType > LargestNumberField
        || type > LargestNumberField)
        return false;
    service.StartType = static_cast<unsigned long>(startType);
    service.Type = static_cast<unsigned long>(type);
    service.Outcome = ServiceRead::Read;
    return true;
}

bool PrinterOfFields(const BaselineFields &fields, PrinterFacts &printer)
{
    return ReadFieldText(fields, FieldPort, printer.Port) && ReadFieldText(fields, FieldDriver, printer.Driver);
}
