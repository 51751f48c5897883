// Values of a discovery candidate, read the way the platform's profile calls
// give them.
#ifndef TOVREL_INF_PROFILE_VALUES_H
#define TOVREL_INF_PROFILE_VALUES_H

#include "inf/candidate_inf.h"

// What the profile calls take for a blank round a line or a name: tab to
// CR, ^Z and space.
inline bool IsProfileBlank(char c) { return (c >= '\t' && c <= '\r') || c == 0x1a || c == ' '; }

// As GetPrivateProfileStringA gives a value into 260 bytes: the section and
// key found with the blanks round their names ignored; one pair of like
// quotes, double or single, round the value taken off. The number of
// characters in out, 0 for a missing key or an empty value, KeyCut for a
// line whose text was cut, which gives nothing.
int ReadProfileValue(CCandidateInf &candidate, const char *section, const char *key, char *out);

// ExpandToken as it has always resolved a candidate's %token% through the
// profile calls, from the candidate alone; a text that was cut gives KeyCut.
int ExpandProfileToken(CCandidateInf &candidate, const char *text, char *out, unsigned long locale);

#endif
