// The services that a model's INF asks for, from its ".Services" section.
#ifndef TOVREL_REGISTRATION_SERVICE_SECTIONS_H
#define TOVREL_REGISTRATION_SERVICE_SECTIONS_H

// Appended to the install section's name to name the services section.
extern const char ServicesSectionSuffix[];
// The one kind of line of that section that counts.
extern const char AddServiceKey[];

#endif
