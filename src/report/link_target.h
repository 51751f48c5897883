// What a shell link file points at and where it starts, read through the
// shell's link object.
#ifndef TOVREL_REPORT_LINK_TARGET_H
#define TOVREL_REPORT_LINK_TARGET_H

#include <string>

struct LinkFacts {
    std::string Target, WorkingDirectory;
};

// False when the link cannot be loaded; failure then says why.
bool ReadLink(const std::string &linkPath, LinkFacts &link, std::string &failure);

#endif
