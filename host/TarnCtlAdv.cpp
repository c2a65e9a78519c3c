#include "host/TarnCtlAdv.h"

#include "host/Backend.h"
#include "host/HostCtlException.h"

namespace HostCtl::Adv {

void AdvancedIntegerOption::SetValue(int64_t value)
{
    if (value < _min || value > _max)
        throw Lib::HostCtlException("Value " + std::to_string(value) + " out of range for option " + GetName());
    Tolm::Host::Use("SetValue")->SetIntegerOption(GetName(), value);
    _value = value;
}

void AdvancedStringOption::SetValue(const std::string& value)
{
    Tolm::Host::Use("SetValue")->SetStringOption(GetName(), value);
    _value = value;
}

}  // namespace HostCtl::Adv

namespace TarnCtl::Adv {

using Tolm::Host::Use;

std::unique_ptr<HostCtl::Adv::AdvancedOption> AdvancedOptionImpl::FindOption(const std::string& path)
{
    auto r = Use("FindOption")->FindOption(path);
    if (!r)
        return nullptr;
    if (r->type == "integer")
        return std::make_unique<HostCtl::Adv::AdvancedIntegerOption>(r->path, r->description, r->intValue, r->intDefault,
                                                                     r->intMin, r->intMax);
    return std::make_unique<HostCtl::Adv::AdvancedStringOption>(r->path, r->description, r->stringValue, r->stringDefault);
}

bool AdvancedOptionImpl::HasUserOption(const std::string& name)
{
    return Use("HasUserOption")->GetUserOption(name).has_value();
}

std::optional<std::string> AdvancedOptionImpl::GetUserOption(const std::string& name)
{
    return Use("GetUserOption")->GetUserOption(name);
}

void AdvancedOptionImpl::SetUserOption(const std::string& name, const std::string& value)
{
    Use("SetUserOption")->SetUserOption(name, value);
}

void AdvancedOptionImpl::RemoveUserOption(const std::string& name) { Use("RemoveUserOption")->RemoveUserOption(name); }

}  // namespace TarnCtl::Adv
