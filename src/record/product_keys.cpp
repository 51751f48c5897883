#include "record/product_keys.h"

const char RecordRoot[] = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Uninstall Data";
const char BaselineRoot[] = "SOFTWARE\\Halvern\\Plenarc\\6.0\\Report Baseline";

const char RecordFiles[] = "files";
const char RecordUnregister[] = "unregister";
const char RecordServices[] = "services";
const char RecordRegistry[] = "registry";
const char RecordShortcuts[] = "Shortcuts";

const char BaselineFiles[] = "files";
const char BaselineServices[] = "services";
const char BaselinePrinters[] = "printers";

static const char MachineRootText[] = "HKLM\\";

std::string RecordKeyPath(const std::string &model)
{
    return std::string(RecordRoot) + "\\" + model;
}

std::string BaselineKeyPath(const std::string &model)
{
    return std::string(BaselineRoot) + "\\" + model;
}

std::string MachineKeyText(const std::string &path)
{
    return MachineRootText + path;
}
