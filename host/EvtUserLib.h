#pragma once
// The host's event facility. Records are one line each, e.g.
// "@&!*@*@(evt.user.tolm.shutdown.host)Shutting down host".

// 0 when the facility is ready; non-zero error code otherwise.
int EvtUserLib_Init();
// printf-style record; returns 0 on success.
int EvtUserLib_AddEvt(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
void EvtUserLib_Close();
