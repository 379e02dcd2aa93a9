#pragma once

#include <windows.h>

namespace Control {

// The entries of the control in the registry: first its type library, then its class with the
// ProgID "Halvorn.OrbelCtrl.1". Removal takes them away in the same order.
class ControlRegistration {
public:
    // SELFREG_E_TYPELIB and SELFREG_E_CLASS: the failures that the registering tools know.
    static constexpr HRESULT typeLibraryFailed = static_cast<HRESULT>(0x80040200L);
    static constexpr HRESULT classFailed = static_cast<HRESULT>(0x80040201L);

    static HRESULT Register();
    static HRESULT Unregister();

private:
    static bool RegisterTypeLibrary();
    static bool UnregisterTypeLibrary();
    static bool RegisterControlClass();
    static bool UnregisterControlClass();
};

}
