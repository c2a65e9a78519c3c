#pragma once
// Everything the layers above use from exec: the command runner, the
// orla-cmd wrappers, audit events, the session login name and shared names.
#include "exec/Constants.h"
#include "exec/Events.h"
#include "exec/OrlaCmd.h"
#include "exec/RunCommand.h"
#include "exec/Session.h"
#include "exec/TextUtil.h"
