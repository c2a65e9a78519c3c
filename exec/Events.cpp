#include "exec/Events.h"

#include "host/Log.h"

namespace Tolm {

std::string EventRecord(const Event& event)
{
    return std::string("@&!*@*@(") + event.id + ")" + event.message;
}

int InitEventLibrary()
{
    Log::Write(LOG_INFO, "%s", "Initializing evtuser library");
    int code = EvtUserLib_Init();
    if (code != 0)
        Log::Write(LOG_ERR, "Unable to initialize evtuser library from Tolm. Error code: %d", code);
    return code;
}

}  // namespace Tolm
