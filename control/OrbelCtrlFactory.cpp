#include "control/OrbelCtrlFactory.h"

#include "control/COrbelCtrl.h"
#include "control/ControlModule.h"

namespace Control {

namespace {

// The counts of the module's only factory don't matter: it is never deleted.
constexpr ULONG staticReferences = 1;

}

OrbelCtrlFactory& OrbelCtrlFactory::Instance()
{
    static OrbelCtrlFactory factory;
    return factory;
}

STDMETHODIMP OrbelCtrlFactory::QueryInterface(REFIID iid, void** object)
{
    if (object == nullptr) {
        return E_POINTER;
    }
    if (iid != IID_IUnknown && iid != IID_IClassFactory) {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IClassFactory*>(this);
    return S_OK;
}

STDMETHODIMP_(ULONG) OrbelCtrlFactory::AddRef()
{
    return staticReferences;
}

STDMETHODIMP_(ULONG) OrbelCtrlFactory::Release()
{
    return staticReferences;
}

STDMETHODIMP OrbelCtrlFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object)
{
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (outer != nullptr) {
        return CLASS_E_NOAGGREGATION;
    }
    COrbelCtrl* control = COrbelCtrl::Create();
    if (control == nullptr) {
        return E_OUTOFMEMORY;
    }
    const HRESULT result = control->QueryInterface(iid, object);
    control->Release();
    return result;
}

STDMETHODIMP OrbelCtrlFactory::LockServer(BOOL lock)
{
    ControlModule::Lock(lock != FALSE);
    return S_OK;
}

}
