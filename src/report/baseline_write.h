// Writes a model's baseline anew: what an earlier one kept goes first, so
// that nothing of it outlives the new one.
#ifndef TOVREL_REPORT_BASELINE_WRITE_H
#define TOVREL_REPORT_BASELINE_WRITE_H

#include "report/baseline_store.h"

class CBaselineWriter {
public:
    // False, with the registry's code, when the old one cannot be removed
    // or the new keys cannot be made.
    bool Begin(const std::string &model, LONG &error);
    bool Add(const char *part, const std::string &name, const BaselineFields &fields, LONG &error);
    // Removes what was written so far.
    void Abandon(const std::string &model);

private:
    static const int PartCount = 3;  // files, services, printers
    CRegistryHandle Parts[PartCount];
};

#endif
