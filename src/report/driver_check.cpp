#include "report/driver_check.h"
#include "report/model_value_check.h"

static ReportItem DriverItem(const std::string &model, const DriverRecord &driver)
{
    std::string where = "in \"" + driver.Environment + "\"";
    if (!driver.Listed)
        return MakeItem("driver", model, ItemState::Unchecked, "the spooler's drivers " + where + " cannot be listed");
    if (!driver.Found)
        return MakeItem("driver", model, ItemState::Drifted, "not " + where);
    return MakeItem("driver", model, ItemState::Held, where + ", version " + std::to_string(driver.Version));
}

void CheckDriverAndModelValues(const UninstallRecord &record, const DriverRecord &driver, ReportItems &items)
{
    items.push_back(DriverItem(record.Model, driver));
    for (int i = 0; i < ModelValueCount; ++i) {
        const NamedValue *value = FindModelValue(record, ModelValueNames[i]);
        if (!value)
            items.push_back(MakeItem("model", ModelValueNames[i], ItemState::Unchecked, "not in the record"));
        else
            items.push_back(CheckModelValue(*value, driver, record));
    }
}
