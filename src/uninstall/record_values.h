// The values of a model's record, deleted one by one as their items are
// taken back, so that what a run leaves on record is what is still there.
#ifndef TOVREL_UNINSTALL_RECORD_VALUES_H
#define TOVREL_UNINSTALL_RECORD_VALUES_H

#include <map>
#include <string>

#include "support/handles.h"

class CRecordValues {
public:
    explicit CRecordValues(const std::string &model) : Model(model) {}
    // True when the value is gone from the part, also when it was not
    // there; otherwise failure says why.
    bool Forget(const char *part, const std::string &name, std::string &failure);

private:
    std::string Model;
    std::map<std::string, CRegistryHandle> Parts;  // kept open for the run
};

#endif
