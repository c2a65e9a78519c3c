#include "frame/IdleTimeoutOption.h"

#include <memory>

#include "exec/Constants.h"
#include "host/HostCtlException.h"
#include "host/TarnCtlAdv.h"

namespace Tolm {
namespace {

constexpr int kDefaultTolmTimeout = 600;

}  // namespace

int GetTolmTimeout()
{
    try {
        TarnCtl::Adv::AdvancedOptionImpl options;
        std::unique_ptr<HostCtl::Adv::AdvancedOption> option = options.FindOption(TOLM_TIMEOUT_VAR);
        if (auto* integer = dynamic_cast<HostCtl::Adv::AdvancedIntegerOption*>(option.get()))
            return static_cast<int>(integer->GetValue());
    } catch (const HostCtl::Lib::HostCtlException&) {
    }
    return kDefaultTolmTimeout;
}

void SetTolmTimeout(int seconds)
{
    try {
        TarnCtl::Adv::AdvancedOptionImpl options;
        std::unique_ptr<HostCtl::Adv::AdvancedOption> option = options.FindOption(TOLM_TIMEOUT_VAR);
        if (auto* integer = dynamic_cast<HostCtl::Adv::AdvancedIntegerOption*>(option.get()))
            integer->SetValue(seconds);
    } catch (const HostCtl::Lib::HostCtlException&) {
    }
}

}  // namespace Tolm
