#include "host/Backend.h"

#include "host/sim/SimBackend.h"

#include <mutex>

namespace Tolm::Host {
namespace {

// The live-core thread uses the library beside the main thread, so the
// choice of backend is guarded; the backends themselves keep no state in
// memory between calls.
std::mutex gMutex;
std::unique_ptr<Backend> gBackend;

}  // namespace

Backend& Current()
{
    std::lock_guard<std::mutex> lock(gMutex);
    if (!gBackend)
        gBackend = std::make_unique<HostSim::SimBackend>(HostSim::StateFile::DefaultPath());
    return *gBackend;
}

Backend& Use(const std::string& op)
{
    Backend& backend = Current();
    backend.CheckFault(op);
    return backend;
}

void SetBackend(std::unique_ptr<Backend> backend)
{
    std::lock_guard<std::mutex> lock(gMutex);
    gBackend = std::move(backend);
}

void UseSimulatedState(const std::string& statePath)
{
    SetBackend(std::make_unique<HostSim::SimBackend>(statePath));
}

}  // namespace Tolm::Host
