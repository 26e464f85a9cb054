#pragma once
// The errors of the animation services, which the compiler's headers lack.

#include "system/Windows.h"

namespace lumenor::services {

inline constexpr HRESULT shutdownCalled = static_cast<HRESULT>(0x802A0002U);
inline constexpr HRESULT objectSealed = static_cast<HRESULT>(0x802A0004U);
inline constexpr HRESULT differentOwner = static_cast<HRESULT>(0x802A0009U);
inline constexpr HRESULT wrongThread = static_cast<HRESULT>(0x802A000CU);
inline constexpr HRESULT storyboardNotPlaying = static_cast<HRESULT>(0x802A0102U);
inline constexpr HRESULT transitionAlreadyUsed = static_cast<HRESULT>(0x802A0106U);
inline constexpr HRESULT timeBeforeLastUpdate = static_cast<HRESULT>(0x802A0109U);
inline constexpr HRESULT timerClientAlreadyConnected = static_cast<HRESULT>(0x802A010AU);

} // namespace lumenor::services
