#include "frame/IdleTimeoutOption.h"

#include <memory>

#include "exec/Constants.h"
#include "host/HostCtlException.h"
#include "host/TarnCtlAdv.h"

namespace Tolm {
namespace {

// Runs `use` on the option when it is an integer option. Failures are not
// reported: the console goes on with the default.
template <class Use>
void WithTimeoutOption(Use&& use)
{
    try {
        TarnCtl::Adv::AdvancedOptionImpl options;
        std::unique_ptr<HostCtl::Adv::AdvancedOption> option = options.FindOption(TOLM_TIMEOUT_VAR);
        if (auto* integer = dynamic_cast<HostCtl::Adv::AdvancedIntegerOption*>(option.get())) use(*integer);
    } catch (const HostCtl::Lib::HostCtlException&) {
    }
}

}  // namespace

int GetTolmTimeout()
{
    int seconds = DEFAULT_TOLM_TIMEOUT;
    WithTimeoutOption(
        [&](HostCtl::Adv::AdvancedIntegerOption& option) { seconds = static_cast<int>(option.GetValue()); });
    return seconds;
}

void SetTolmTimeout(int seconds)
{
    WithTimeoutOption([&](HostCtl::Adv::AdvancedIntegerOption& option) { option.SetValue(seconds); });
}

}  // namespace Tolm
