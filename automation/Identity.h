// How hosts, error information and the registry identify the module's classes.
#pragma once

#include <windows.h>

#include <oleidl.h>

#include "com/Firewall.h"
#include "kvBandscope.h"

namespace kv::automation {

/// Version-independent ProgIDs.
inline constexpr wchar_t kControlProgId[] = L"kvBandscope.kvBandscope";
inline constexpr wchar_t kFreqSlotProgId[] = L"kvBandscope.FreqSlot";
inline constexpr wchar_t kViewProgId[] = L"kvBandscope.View";

inline constexpr wchar_t kControlTitle[] = L"kvBandscope Control";

/// What containers may expect of the control: both IOleObject and the registry tell them.
inline constexpr DWORD kMiscStatus = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT |
                                     OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_SETCLIENTSITEFIRST;

/// The origin of errors in the methods of a FreqSlot.
inline constexpr com::ErrorOrigin kFreqSlotErrors{IID__FreqSlot, kFreqSlotProgId};

/// The origin of errors in the methods of a View.
inline constexpr com::ErrorOrigin kViewErrors{IID__BandscopeView, kViewProgId};

/// The origin of errors in the control's methods of interface `iid`.
[[nodiscard]] constexpr com::ErrorOrigin controlErrors(REFIID iid) noexcept {
    return {iid, kControlProgId};
}

}  // namespace kv::automation
