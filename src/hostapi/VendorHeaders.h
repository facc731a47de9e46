#pragma once

// The vendor's headers, and nothing else. They are not at hand where this is developed, so the list below cannot be
// tried: it holds the file names as they are generally known. Change it here; no other file names one of them. The
// names of the suite tables, whose generations are counted apart from the suites' versions, are in SuiteKeys.h.

#define PF_DEEP_COLOR_AWARE 1  // makes PF_PixelPtr opaque, as it is in our own records

#include "AE_Effect.h"
#include "AE_EffectCB.h"
#include "AE_EffectCBSuites.h"
#include "AE_EffectSuites.h"
#include "AE_EffectSuitesHelper.h"
#include "AE_EffectUI.h"
#include "AE_GeneralPlug.h"
#include "DrawbotSuite.h"
#include "PrSDKAESupport.h"
#include "PrSDKSequenceInfoSuite.h"
#include "SPBasic.h"
