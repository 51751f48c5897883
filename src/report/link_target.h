// What a shell link file points at, read through the shell's link object.
#ifndef TOVREL_REPORT_LINK_TARGET_H
#define TOVREL_REPORT_LINK_TARGET_H

#include <string>

// False when the link cannot be loaded; target then says why.
bool ReadLinkTarget(const std::string &linkPath, std::string &target);

#endif
