// The shape of the baseline's entries: what is kept of a file, a service
// and a printer, and how it is read back.
#ifndef TOVREL_REPORT_BASELINE_FIELDS_H
#define TOVREL_REPORT_BASELINE_FIELDS_H

#include "report/baseline_store.h"
#include "report/file_facts.h"
#include "report/printer_facts.h"
#include "report/report_item.h"
#include "report/service_facts.h"

BaselineFields FileFields(const FileFacts &file);
BaselineFields ServiceFields(const ServiceFacts &service);
BaselineFields PrinterFields(const PrinterFacts &printer);
// What an entry of the baseline says of an item: not there, unreadable, or
// read, and then changed since or as it was; changes in words, empty when
// nothing changed.
Verdict BaselineVerdict(EntryState entry, bool readable, const std::string &changes);
// False when an entry lacks a field or holds one that does not read.
bool FileOfFields(const BaselineFields &fields, FileFacts &file);
bool ServiceOfFields(const BaselineFields &fields, ServiceFacts &service);
bool PrinterOfFields(const BaselineFields &fields, PrinterFacts &printer);

#endif
