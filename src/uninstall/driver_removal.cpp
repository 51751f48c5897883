#include "record/text_compare.h"
#include "uninstall/spooler_copies.h"
#include "uninstall/spooler_environments.h"
#include "uninstall/spooler_removal.h"
#include "uninstall/windows_error.h"

static const char Kind[] = "driver";

// How many records of the model's name the environment lists: one a version.
static bool CountDrivers(const char *environment, const std::string &model, int &count, DWORD &error)
{
    SpoolerList<DRIVER_INFO_3A> drivers;
    count = 0;
    if (!ListEnvironmentDrivers(environment, drivers, error))
        return false;
    for (const DRIVER_INFO_3A &driver : drivers)
        count += EqualNoCase(SpoolerText(driver.pName), model) ? 1 : 0;
    return true;
}

// The spooler's own deletion of the files it took for the driver, where it
// offers one; a spooler that refuses it deletes the driver alone.
static bool DeleteDriver(const char *environment, const std::string &model, std::string &failure)
{
    char *name = const_cast<char *>(model.c_str());
    if (DeletePrinterDriverExA(NULL, const_cast<char *>(environment), name, DPD_DELETE_UNUSED_FILES, 0))
        return true;
    if (DeletePrinterDriverA(NULL, const_cast<char *>(environment), name))
        return true;
    failure = LastErrorText();
    return false;
}

// A deletion takes one version at a time: it is repeated while the
// spooler still lists one, and said removed once it lists none.
static UninstallItem RemoveDriver(const char *environment, const std::string &model, int versions)
{
    std::string subject = model + " in \"" + environment + "\"", failure;
    int left = versions;
    DWORD error = 0;
    for (int attempt = 0; attempt < versions && left > 0; ++attempt)
        if (!DeleteDriver(environment, model, failure) || !CountDrivers(environment, model, left, error))
            break;
    if (!CountDrivers(environment, model, left, error))
        return MakeItem(Kind, subject, Outcome::Failed, "the spooler's drivers cannot be listed again, " + ErrorText(error));
    if (left > 0)
        return MakeItem(Kind, subject, Outcome::Failed, failure.empty() ? "still listed after its deletion" : failure);
    return MakeItem(Kind, subject, Outcome::Removed, "");
}

// The spooler's copies of the driver's files go first, while the driver
// still says where they are: a run stopped after the driver went could
// find them no more.
static void RemoveEnvironmentDriver(CUninstallRun &run, const char *environment)
{
    const std::string &model = run.Record().Model;
    std::string subject = model + " in \"" + environment + "\"";
    SpoolerList<DRIVER_INFO_3A> drivers;
    DWORD error = 0;
    if (!ListEnvironmentDrivers(environment, drivers, error)) {
        run.Tell(MakeItem(Kind, subject, Outcome::Failed, "the spooler's drivers cannot be listed, " + ErrorText(error)));
        return;
    }
    int versions = 0;
    for (const DRIVER_INFO_3A &driver : drivers)
        versions += EqualNoCase(SpoolerText(driver.pName), model) ? 1 : 0;
    if (versions == 0)
        return;
    // A printer that could not go still uses the driver and its files.
    std::vector<std::string> printers;
    if (!run.WhatIf() && (!PrintersOnDriver(model, printers) || !printers.empty())) {
        run.Tell(MakeItem(Kind, subject, Outcome::Failed,
                          printers.empty() ? "the spooler's printers cannot be listed, " + LastErrorText()
                                           : "kept: printer \"" + printers[0] + "\" still uses it"));
        return;
    }
    RemoveUnrecordedFiles(run, SpoolerCopies(run.Record(), environment, drivers));
    run.Tell(run.WhatIf() ? MakeItem(Kind, subject, Outcome::Planned, "") : RemoveDriver(environment, model, versions));
}

void RemoveDrivers(CUninstallRun &run)
{
    for (int i = 0; i < SpoolerEnvironmentCount; ++i)
        RemoveEnvironmentDriver(run, SpoolerEnvironments[i]);
}
