// What other models and the spooler's other drivers and printers still
// use, gathered once before anything is taken back: an item that one of
// them claims stays, and is named as shared.
#ifndef TOVREL_UNINSTALL_SHARED_CLAIMS_H
#define TOVREL_UNINSTALL_SHARED_CLAIMS_H

#include <windows.h>
#include <winspool.h>

#include <map>
#include <string>

#include "record/addreg_line.h"
#include "record/uninstall_record.h"

enum class ClaimKind { File, Service, RegistryValue, Link, Library, Monitor, Processor };
enum class Claim { Free, Claimed, Unknown };

class CSharedClaims {
public:
    void Gather(const std::string &model);
    // by: who claims it, or for Unknown why nobody can tell.
    Claim Of(ClaimKind kind, const std::string &key, std::string &by) const;

private:
    void Add(ClaimKind kind, const std::string &key, const std::string &by);
    void GatherRecord(const UninstallRecord &record);
    void GatherDriver(const DRIVER_INFO_3A &driver, const char *environment, std::map<std::string, std::string> &monitors);
    void GatherDrivers(const std::string &model);
    void GatherMonitorFiles(const std::map<std::string, std::string> &monitors);
    void GatherPrinters(const std::string &model);

    std::map<std::string, std::string> Claims;  // kind and key, without case, to who claims it
    std::string Unknowable;                     // why what others use cannot be told
};

// The value that a registry line writes, as a key of its claims: root,
// subkey and value name.
std::string RegistryValueKey(const AddRegLine &line);
// A library of the record's "unregister" part, as a key of its claims.
std::string LibraryKey(const NamedValue &library);

#endif
