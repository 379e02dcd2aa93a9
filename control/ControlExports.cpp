// The module's entry points for COM: the control's class, its registration and the module's end.
#include <windows.h>

#include <ole2.h>

#include "OrbelCtrl_h.h"
#include "control/ControlModule.h"
#include "control/ControlRegistration.h"
#include "control/OrbelCtrlFactory.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH) {
        Control::ControlModule::SetInstance(instance);
        ::DisableThreadLibraryCalls(instance);
    }
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object)
{
    if (object == nullptr) {
        return E_POINTER;
    }
    if (clsid != CLSID_OrbelCtrl) {
        *object = nullptr;
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    return Control::OrbelCtrlFactory::Instance().QueryInterface(iid, object);
}

STDAPI DllCanUnloadNow()
{
    return Control::ControlModule::CanUnload() ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer()
{
    return Control::ControlRegistration::Register();
}

STDAPI DllUnregisterServer()
{
    return Control::ControlRegistration::Unregister();
}
