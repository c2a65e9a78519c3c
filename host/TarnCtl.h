#pragma once
// The whole host library: model types, implementation classes, sysinfo,
// TarnCtl_Exec, the event facility and the library's exception.
#include "host/EvtUserLib.h"
#include "host/HostCtlException.h"
#include "host/HostCtlNetwork.h"
#include "host/Sysinfo.h"
#include "host/TarnCtlAdv.h"
#include "host/TarnCtlHardware.h"
#include "host/TarnCtlNetwork.h"
#include "host/TarnCtlSystem.h"
#include "host/TarnCtlUtil.h"
#include "host/TarnNic.h"
