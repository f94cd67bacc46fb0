#pragma once

// Everything a plug-in sees of the pendant host.
#include "hostfunctions.h"
#include "interfacemanager.h"
#include "physicalbutton.h"
#include "pluginbase.h"
#include "pluginregister.h"
#include "qflog.h"
#include "rlcontentbase.h"
#include "rlmanager.h"
#include "throwloglevel.h"
