#include "host/Backend.h"

#include "host/HostCtlException.h"

#include <mutex>

namespace Tolm::Host {
namespace {

// The live-core thread uses the library beside the main thread, so the
// backend is guarded; the backends themselves keep no state in memory
// between calls.
std::mutex gMutex;
std::unique_ptr<Backend> gBackend;

std::vector<std::string_view>& Operations()
{
    thread_local std::vector<std::string_view> operations;
    return operations;
}

}  // namespace

Operation::Operation(std::string_view name)
{
    Operations().push_back(name);
}

Operation::~Operation()
{
    Operations().pop_back();
}

const std::vector<std::string_view>& Operation::Active()
{
    return Operations();
}

Backend& Current()
{
    std::lock_guard<std::mutex> lock(gMutex);
    if (!gBackend)
        throw HostCtl::Lib::HostCtlException("no host backend is in use");
    return *gBackend;
}

void SetBackend(std::unique_ptr<Backend> backend)
{
    std::lock_guard<std::mutex> lock(gMutex);
    gBackend = std::move(backend);
}

}  // namespace Tolm::Host
