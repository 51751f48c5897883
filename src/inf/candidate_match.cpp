#include "inf/candidate_match.h"

#include "inf/printer_class.h"
#include "inf/profile_values.h"

const CProfileStop StopUnlessPrinter = {VersionSection, NamesPrinterClass};

namespace {

const char ManufacturerSection[] = "Manufacturer";

// What a walk of a section passes over: lines that begin with ";", which
// the profile calls never list, and lines whose text was cut, which name
// nothing.
bool IsListed(const CInfKey &line) { return !line.Cut && line.Name.Text[0] != ';'; }

// Whether the models section lists the model by its expanded name.
bool ListsModel(CCandidateInf &candidate, const CInfKeyList &models, const CBoundedString &model, unsigned long locale)
{
    for (const CInfKey &line : models) {
        if (!IsListed(line))
            continue;
        CBoundedString name(line.Name);
        StripOne(name, ' ');
        StripOne(name, '"');
        if (ExpandProfileToken(candidate, name, name, locale) != KeyCut && model.Equals(name))
            return true;
    }
    return false;
}

}  // namespace

bool NamesPrinterClass(CCandidateInf &candidate)
{
    CBoundedString value;
    int guid = ReadProfileValue(candidate, VersionSection, VersionClassGuidKey, value);
    if (guid == KeyCut)
        return false;
    if (guid > 0)
        return IsPrinterClassGuid(value);
    return ReadProfileValue(candidate, VersionSection, VersionClassKey, value) > 0 && IsPrinterClassName(value);
}

int MatchCandidate(CCandidateInf &candidate, const CBoundedString &model, CBoundedString &manufacturer,
                   unsigned long locale)
{
    if (!NamesPrinterClass(candidate))
        return 0;
    CInfSection makers = candidate.Section(ManufacturerSection);
    if (makers == candidate.Store.Sections.end())
        return 0;
    // Each line names a manufacturer and its models section; without one,
    // the section has the manufacturer's own name.
    for (const CInfKey &line : makers->second) {
        if (!IsListed(line))
            continue;
        CBoundedString name(line.Name);
        StripOne(name, '"');
        manufacturer = CBoundedString();
        if (ExpandProfileToken(candidate, name, manufacturer, locale) == KeyCut)
            continue;
        CInfSection models = candidate.Section(line.Value.IsEmpty() ? manufacturer : line.Value);
        if (models != candidate.Store.Sections.end() && ListsModel(candidate, models->second, model, locale))
            return 1;
    }
    return 0;
}
