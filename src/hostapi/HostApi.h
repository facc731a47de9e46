#pragma once

// The effect API as its hosts speak it: the only header of this folder that other folders include. With
// QUILLON_VENDOR_HEADERS defined the vendor's own headers take the place of the records here; the names are the same.
// A field, an entry or a constant of the API has its meaning from the API; the comments here give only shapes, and what
// is uncertain.

#ifdef QUILLON_VENDOR_HEADERS
#include "hostapi/VendorHeaders.h"
#else
#include "hostapi/AegpEffectSuites.h"
#include "hostapi/AegpProjectSuites.h"
#include "hostapi/AegpRenderSuites.h"
#include "hostapi/BasicSuite.h"
#include "hostapi/CustomUI.h"
#include "hostapi/DrawbotSuites.h"
#include "hostapi/EffectFlags.h"
#include "hostapi/EffectSuites.h"
#include "hostapi/ErrorCodes.h"
#include "hostapi/Events.h"
#include "hostapi/InData.h"
#include "hostapi/InteractCallbacks.h"
#include "hostapi/OutData.h"
#include "hostapi/ParamDef.h"
#include "hostapi/PixelFormats.h"
#include "hostapi/PremiereSuites.h"
#include "hostapi/Selectors.h"
#include "hostapi/SmartRender.h"
#include "hostapi/UtilCallbacks.h"
#include "hostapi/VersionWord.h"
#include "hostapi/World.h"
#endif

#include "hostapi/HostIds.h"
#include "hostapi/SuiteKeys.h"
