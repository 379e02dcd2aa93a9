#pragma once

#include <windows.h>

#include <ocidl.h>
#include <ole2.h>

#include "OrbelCtrl_h.h"

namespace Control {

// The ActiveX control: each method of _DOrbelCtrl calls the exported function of its name and
// hands back the result; the arrays a host passes are checked first (FloatArrayArgument). It has
// no properties and fires no events. Besides dispatch it offers what a container needs to site,
// draw and keep it: IOleObject, IOleControl, IViewObject2 and IPersistStreamInit.
class COrbelCtrl final : public IDispatch,
                         public IOrbelCtrlMethods,
                         public IProvideClassInfo,
                         public IOleObject,
                         public IOleControl,
                         public IViewObject2,
                         public IPersistStreamInit {
public:
    // OLEMISC_ACTIVATEWHENVISIBLE | SETCLIENTSITEFIRST | INSIDEOUT | CANTLINKINSIDE | RECOMPOSEONRESIZE.
    static constexpr DWORD miscStatus = 131473;
    // Major 1, minor 0, as the persisted data carries it.
    static constexpr DWORD persistedVersion = 0x00010000;

    // A new control with one reference, or null when its type information can't be read.
    static COrbelCtrl* Create();

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
        EXCEPINFO* exception, UINT* argumentError) override;

    STDMETHODIMP GetDeviceInfo(BSTR axKey, BSTR* result) override;
    STDMETHODIMP IsConnected(LONG* result) override;
    STDMETHODIMP KeyPressed(LONG* result) override;
    STDMETHODIMP Calibrate(LONG* result) override;
    STDMETHODIMP TriggerMeasurement(LONG* result) override;
    STDMETHODIMP SetOption(BSTR axKey, BSTR axValue, LONG* result) override;
    STDMETHODIMP GetOption(BSTR axKey, BSTR* result) override;
    STDMETHODIMP SetSubstrate(VARIANT* xySubstrateSpectrum, LONG* result) override;
    STDMETHODIMP GetTriStimulus(VARIANT* yxTriStimulus, LONG axIndex, LONG* result) override;
    STDMETHODIMP GetDensity(FLOAT* axDensity, LONG axIndex, LONG* result) override;
    STDMETHODIMP GetDensities(VARIANT* yxDensities, LONG* pxAutoDensityIndex, LONG axIndex, LONG* result) override;
    STDMETHODIMP GetSpectrum(VARIANT* yxSpectrum, LONG axIndex, LONG* result) override;

    STDMETHODIMP GetClassInfo(ITypeInfo** info) override;

    STDMETHODIMP SetClientSite(IOleClientSite* site) override;
    STDMETHODIMP GetClientSite(IOleClientSite** site) override;
    STDMETHODIMP SetHostNames(LPCOLESTR application, LPCOLESTR object) override;
    STDMETHODIMP Close(DWORD saveOption) override;
    STDMETHODIMP SetMoniker(DWORD which, IMoniker* moniker) override;
    STDMETHODIMP GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) override;
    STDMETHODIMP InitFromData(IDataObject* data, BOOL creation, DWORD reserved) override;
    STDMETHODIMP GetClipboardData(DWORD reserved, IDataObject** data) override;
    STDMETHODIMP DoVerb(
        LONG verb, LPMSG message, IOleClientSite* site, LONG index, HWND parent, LPCRECT position) override;
    STDMETHODIMP EnumVerbs(IEnumOLEVERB** verbs) override;
    STDMETHODIMP Update() override;
    STDMETHODIMP IsUpToDate() override;
    STDMETHODIMP GetUserClassID(CLSID* clsid) override;
    STDMETHODIMP GetUserType(DWORD form, LPOLESTR* name) override;
    STDMETHODIMP SetExtent(DWORD aspect, SIZEL* size) override;
    STDMETHODIMP GetExtent(DWORD aspect, SIZEL* size) override;
    STDMETHODIMP Advise(IAdviseSink* sink, DWORD* connection) override;
    STDMETHODIMP Unadvise(DWORD connection) override;
    STDMETHODIMP EnumAdvise(IEnumSTATDATA** advises) override;
    STDMETHODIMP GetMiscStatus(DWORD aspect, DWORD* status) override;
    STDMETHODIMP SetColorScheme(LOGPALETTE* palette) override;

    STDMETHODIMP GetControlInfo(CONTROLINFO* info) override;
    STDMETHODIMP OnMnemonic(MSG* message) override;
    STDMETHODIMP OnAmbientPropertyChange(DISPID id) override;
    STDMETHODIMP FreezeEvents(BOOL freeze) override;

    STDMETHODIMP Draw(DWORD aspect, LONG index, void* aspectData, DVTARGETDEVICE* target, HDC targetContext,
        HDC context, LPCRECTL bounds, LPCRECTL metafileBounds, BOOL(STDMETHODCALLTYPE* proceed)(ULONG_PTR),
        ULONG_PTR proceedArgument) override;
    STDMETHODIMP GetColorSet(DWORD aspect, LONG index, void* aspectData, DVTARGETDEVICE* target, HDC targetContext,
        LOGPALETTE** colors) override;
    STDMETHODIMP Freeze(DWORD aspect, LONG index, void* aspectData, DWORD* freeze) override;
    STDMETHODIMP Unfreeze(DWORD freeze) override;
    STDMETHODIMP SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
    STDMETHODIMP GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;
    STDMETHODIMP GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* target, LPSIZEL size) override;

    STDMETHODIMP GetClassID(CLSID* clsid) override;
    STDMETHODIMP IsDirty() override;
    STDMETHODIMP Load(LPSTREAM stream) override;
    STDMETHODIMP Save(LPSTREAM stream, BOOL clearDirty) override;
    STDMETHODIMP GetSizeMax(ULARGE_INTEGER* size) override;
    STDMETHODIMP InitNew() override;

private:
    COrbelCtrl();
    ~COrbelCtrl();
    COrbelCtrl(const COrbelCtrl&) = delete;
    COrbelCtrl& operator=(const COrbelCtrl&) = delete;

    HRESULT LoadTypeInformation();
    void* InterfaceFor(REFIID iid);

    LONG references = 1;
    ITypeInfo* dispatchInfo = nullptr;
    ITypeInfo* methodsInfo = nullptr;
    ITypeInfo* classInfo = nullptr;
    IOleClientSite* clientSite = nullptr;
    SIZEL extent;
};

}
