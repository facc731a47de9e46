#pragma once

#include <cstdint>

#ifdef QUILLON_VENDOR_HEADERS
#include "hostapi/VendorHeaders.h"
#else
#include "hostapi/AegpEffectSuites.h"
#include "hostapi/AegpProjectSuites.h"
#include "hostapi/AegpRenderSuites.h"
#include "hostapi/DrawbotSuites.h"
#include "hostapi/EffectSuites.h"
#include "hostapi/PremiereSuites.h"
#endif

namespace quillon {

// A suite by name and version, as SPBasicSuite wants them, with the type of the table that it gives.
template <class SuiteTable>
struct SuiteKey {
    using Table = SuiteTable;
    const char* name;
    std::int32_t version;
};

// Every suite in use, under the vendor's headers as well. Names and versions are the hosts' and certain, and so are
// given here and not taken from any header. The number at the end of a table's name is its generation, which counts
// differently: where it is wrong under the vendor's headers, this list is the one place to change.
namespace suites {

inline constexpr SuiteKey<PF_HandleSuite1> kHandle{"PF Handle Suite", 2};
inline constexpr SuiteKey<PF_ParamUtilsSuite3> kParamUtils{"PF Param Utils Suite", 3};  // 2 and 1 serve as well
inline constexpr SuiteKey<PF_EffectUISuite1> kEffectUI{"PF Effect UI Suite", 1};
inline constexpr SuiteKey<PF_ColorParamSuite1> kColorParam{"PF ColorParamSuite", 1};
inline constexpr SuiteKey<PF_PixelDataSuite1> kPixelData{"PF Pixel Data Suite", 1};
inline constexpr SuiteKey<PF_WorldSuite2> kWorld{"PF World Suite", 2};
inline constexpr SuiteKey<PF_EffectCustomUISuite1> kEffectCustomUI{"PF Effect Custom UI Suite", 1};
inline constexpr SuiteKey<PF_HelperSuite2> kHelper{"AE Plugin Helper Suite2", 2};

inline constexpr SuiteKey<PF_PixelFormatSuite1> kPixelFormat{"PF Pixel Format Suite", 1};
inline constexpr SuiteKey<PF_UtilitySuite> kPremiereUtility{"PF Utility Suite", 3};
inline constexpr SuiteKey<PrSDKSequenceInfoSuite> kSequenceInfo{"MediaCore Sequence Info Suite", 2};

inline constexpr SuiteKey<AEGP_PFInterfaceSuite1> kAegpInterface{"AEGP PF Interface Suite", 1};
inline constexpr SuiteKey<AEGP_LayerSuite5> kAegpLayer{"AEGP Layer Suite", 11};
inline constexpr SuiteKey<AEGP_CompSuite4> kAegpComp{"AEGP Comp Suite", 9};
inline constexpr SuiteKey<AEGP_ItemSuite6> kAegpItem{"AEGP Item Suite", 10};
inline constexpr SuiteKey<AEGP_UtilitySuite3> kAegpUtility{"AEGP Utility Suite", 7};
inline constexpr SuiteKey<AEGP_EffectSuite3> kAegpEffect{"AEGP Effect Suite", 3};
inline constexpr SuiteKey<AEGP_LayerRenderOptionsSuite1> kAegpLayerRenderOptions{"AEGP Layer Render Options Suite", 1};
inline constexpr SuiteKey<AEGP_RenderSuite4> kAegpRender{"AEGP Render Suite", 5};
inline constexpr SuiteKey<AEGP_WorldSuite3> kAegpWorld{"AEGP World Suite", 3};

inline constexpr SuiteKey<DRAWBOT_DrawbotSuite1> kDrawbotDraw{"DRAWBOT Draw Suite", 1};
inline constexpr SuiteKey<DRAWBOT_SupplierSuite1> kDrawbotSupplier{"DRAWBOT Supplier Suite", 1};
inline constexpr SuiteKey<DRAWBOT_SurfaceSuite2> kDrawbotSurface{"DRAWBOT Surface Suite", 2};
inline constexpr SuiteKey<DRAWBOT_PathSuite1> kDrawbotPath{"DRAWBOT Path Suite", 1};

}  // namespace suites
}  // namespace quillon
