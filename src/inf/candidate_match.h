// Whether a candidate INF offers a model, and under which manufacturer: the
// discovery's test.
#ifndef TOVREL_INF_CANDIDATE_MATCH_H
#define TOVREL_INF_CANDIDATE_MATCH_H

#include "inf/candidate_inf.h"

// The class as the discovery reads it: "ClassGUID" decides when it has a
// value, "Class" only without one; quotes round either are no part of it.
bool NamesPrinterClass(CCandidateInf &candidate);

// The read of a candidate may end with its first [Version] section when
// that does not name the printer class.
extern const CProfileStop StopUnlessPrinter;

// 1 if the candidate is a printer INF and a models section that one of its
// [Manufacturer] lines names lists model, by the expanded names, in file
// order; manufacturer then holds that line's expanded name. It is written
// for every line looked at, so a search that fails leaves one there.
int MatchCandidate(CCandidateInf &candidate, const CBoundedString &model, CBoundedString &manufacturer,
                   unsigned long locale);

#endif
