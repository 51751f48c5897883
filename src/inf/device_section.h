// The walk from a manufacturer and model to the driver's install and data
// sections. The reading itself is CPrinterInf::ReadDeviceSection.
#ifndef TOVREL_INF_DEVICE_SECTION_H
#define TOVREL_INF_DEVICE_SECTION_H

// Suffix of the install section variant for a COsVersion family: ".NTx86",
// ".Win", or empty.
const char *InstallSectionSuffix(int family);

#endif
