#include <string_view>

#include "hostapi/HostApi.h"

// The keys name the suites as the API's own constants do. Under the vendor's headers the constants count generations
// that are not known here, and nothing is compared.

#ifndef QUILLON_VENDOR_HEADERS

#define CHECK_KEY(key, suite, suite_version)                              \
    static_assert(std::string_view(quillon::suites::key.name) == suite && \
                  quillon::suites::key.version == (suite_version))

CHECK_KEY(kHandle, kPFHandleSuite, kPFHandleSuiteVersion1);
CHECK_KEY(kParamUtils, kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3);
CHECK_KEY(kEffectUI, kPFEffectUISuite, kPFEffectUISuiteVersion1);
CHECK_KEY(kColorParam, kPFColorParamSuite, kPFColorParamSuiteVersion1);
CHECK_KEY(kPixelData, kPFPixelDataSuite, kPFPixelDataSuiteVersion1);
CHECK_KEY(kWorld, kPFWorldSuite, kPFWorldSuiteVersion2);
CHECK_KEY(kEffectCustomUI, kPFEffectCustomUISuite, kPFEffectCustomUISuiteVersion1);
CHECK_KEY(kHelper, kPFHelperSuite2, kPFHelperSuite2Version2);
CHECK_KEY(kPixelFormat, kPFPixelFormatSuite, kPFPixelFormatSuiteVersion1);
CHECK_KEY(kPremiereUtility, kPFUtilitySuite, kPFUtilitySuiteVersion3);
CHECK_KEY(kSequenceInfo, kPrSDKSequenceInfoSuite, kPrSDKSequenceInfoSuiteVersion2);
CHECK_KEY(kAegpInterface, kAEGPPFInterfaceSuite, kAEGPPFInterfaceSuiteVersion1);
CHECK_KEY(kAegpLayer, kAEGPLayerSuite, kAEGPLayerSuiteVersion5);
CHECK_KEY(kAegpComp, kAEGPCompSuite, kAEGPCompSuiteVersion4);
CHECK_KEY(kAegpItem, kAEGPItemSuite, kAEGPItemSuiteVersion6);
CHECK_KEY(kAegpUtility, kAEGPUtilitySuite, kAEGPUtilitySuiteVersion3);
CHECK_KEY(kAegpEffect, kAEGPEffectSuite, kAEGPEffectSuiteVersion3);
CHECK_KEY(kAegpLayerRenderOptions, kAEGPLayerRenderOptionsSuite, kAEGPLayerRenderOptionsSuiteVersion1);
CHECK_KEY(kAegpRender, kAEGPRenderSuite, kAEGPRenderSuiteVersion4);
CHECK_KEY(kAegpWorld, kAEGPWorldSuite, kAEGPWorldSuiteVersion3);
CHECK_KEY(kDrawbotDraw, kDRAWBOT_DrawSuite, kDRAWBOT_DrawSuite_Version1);
CHECK_KEY(kDrawbotSupplier, kDRAWBOT_SupplierSuite, kDRAWBOT_SupplierSuite_Version1);
CHECK_KEY(kDrawbotSurface, kDRAWBOT_SurfaceSuite, kDRAWBOT_SurfaceSuite_Version2);
CHECK_KEY(kDrawbotPath, kDRAWBOT_PathSuite, kDRAWBOT_PathSuite_Version1);

#endif
