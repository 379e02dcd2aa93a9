#pragma once

#include <windows.h>

#include <unknwn.h>

namespace Control {

// Makes the controls. One object for the module, which lives as long as the module.
class OrbelCtrlFactory final : public IClassFactory {
public:
    static OrbelCtrlFactory& Instance();

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    STDMETHODIMP LockServer(BOOL lock) override;
};

}
