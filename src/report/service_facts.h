// What the service manager says of one service: its configuration and
// whether it runs.
#ifndef TOVREL_REPORT_SERVICE_FACTS_H
#define TOVREL_REPORT_SERVICE_FACTS_H

#include <string>

enum class ServiceRead { Read, NoManager, NotInstalled, CannotOpen, Unreadable };

struct ServiceFacts {
    ServiceRead Outcome = ServiceRead::Unreadable;
    unsigned long Error = 0;  // why it could not be opened
    std::string BinaryPath;
    unsigned long StartType = 0, Type = 0, RunState = 0;
};

ServiceFacts ReadServiceFacts(const std::string &name);
const char *StartTypeText(unsigned long startType);
const char *RunStateText(unsigned long state);

#endif
