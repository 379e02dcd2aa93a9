#include "control/COrbelCtrl.h"

#include <new>

#include "control/ComText.h"
#include "control/ControlModule.h"
#include "control/FloatArrayArgument.h"
#include "orbel.h"

namespace Control {

namespace {

constexpr long spectrumElements = 36;
constexpr long triStimulusElements = 3;
constexpr long densitiesElements = 4;
// The extent of a new control: 2 by 1 cm in HIMETRIC.
constexpr LONG initialWidth = 2000;
constexpr LONG initialHeight = 1000;
const wchar_t drawnText[] = L"zv";
const int iconResource = 1;
const UINT typeNameResource = 1;

// From the registered type library, else from the one in this module.
HRESULT TypeInfoOf(REFGUID guid, ITypeInfo** info)
{
    ITypeLib* library = nullptr;
    HRESULT result = ::LoadRegTypeLib(LIBID_ORBELCTRLLib, typeLibraryMajor, typeLibraryMinor, LOCALE_NEUTRAL, &library);
    if (FAILED(result)) {
        result = ::LoadTypeLibEx(ControlModule::Path().c_str(), REGKIND_NONE, &library);
    }
    if (FAILED(result)) {
        return result;
    }
    result = library->GetTypeInfoOfGuid(guid, info);
    library->Release();
    return result;
}

void ReleaseIfSet(IUnknown* object)
{
    if (object != nullptr) {
        object->Release();
    }
}

// A method's result: the exported function's code unchanged.
HRESULT Answer(LONG* result, int32_t code)
{
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = code;
    return S_OK;
}

HRESULT AnswerText(BSTR* result, const char* text)
{
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = ComText::Wide(text);
    return *result != nullptr ? S_OK : E_OUTOFMEMORY;
}

}

COrbelCtrl* COrbelCtrl::Create()
{
    auto* control = new (std::nothrow) COrbelCtrl();
    if (control != nullptr && FAILED(control->LoadTypeInformation())) {
        control->Release();
        return nullptr;
    }
    return control;
}

COrbelCtrl::COrbelCtrl() : extent{initialWidth, initialHeight}
{
    ControlModule::ObjectMade();
}

COrbelCtrl::~COrbelCtrl()
{
    ReleaseIfSet(dispatchInfo);
    ReleaseIfSet(methodsInfo);
    ReleaseIfSet(classInfo);
    ReleaseIfSet(clientSite);
    ControlModule::ObjectGone();
}

HRESULT COrbelCtrl::LoadTypeInformation()
{
    HRESULT result = TypeInfoOf(DIID__DOrbelCtrl, &dispatchInfo);
    if (SUCCEEDED(result)) {
        result = TypeInfoOf(IID_IOrbelCtrlMethods, &methodsInfo);
    }
    if (SUCCEEDED(result)) {
        result = TypeInfoOf(CLSID_OrbelCtrl, &classInfo);
    }
    return result;
}

void* COrbelCtrl::InterfaceFor(REFIID iid)
{
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID__DOrbelCtrl) {
        return static_cast<IDispatch*>(this);
    }
    if (iid == IID_IOrbelCtrlMethods) {
        return static_cast<IOrbelCtrlMethods*>(this);
    }
    if (iid == IID_IProvideClassInfo) {
        return static_cast<IProvideClassInfo*>(this);
    }
    if (iid == IID_IOleObject) {
        return static_cast<IOleObject*>(this);
    }
    if (iid == IID_IOleControl) {
        return static_cast<IOleControl*>(this);
    }
    if (iid == IID_IViewObject || iid == IID_IViewObject2) {
        return static_cast<IViewObject2*>(this);
    }
    if (iid == IID_IPersist || iid == IID_IPersistStreamInit) {
        return static_cast<IPersistStreamInit*>(this);
    }
    return nullptr;
}

STDMETHODIMP COrbelCtrl::QueryInterface(REFIID iid, void** object)
{
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = InterfaceFor(iid);
    if (*object == nullptr) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) COrbelCtrl::AddRef()
{
    return static_cast<ULONG>(::InterlockedIncrement(&references));
}

STDMETHODIMP_(ULONG) COrbelCtrl::Release()
{
    const LONG left = ::InterlockedDecrement(&references);
    if (left == 0) {
        delete this;
    }
    return static_cast<ULONG>(left);
}

STDMETHODIMP COrbelCtrl::GetTypeInfoCount(UINT* count)
{
    if (count == nullptr) {
        return E_POINTER;
    }
    *count = 1;
    return S_OK;
}

STDMETHODIMP COrbelCtrl::GetTypeInfo(UINT index, LCID, ITypeInfo** info)
{
    if (info == nullptr) {
        return E_POINTER;
    }
    *info = nullptr;
    if (index != 0) {
        return DISP_E_BADINDEX;
    }
    dispatchInfo->AddRef();
    *info = dispatchInfo;
    return S_OK;
}

STDMETHODIMP COrbelCtrl::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID, DISPID* ids)
{
    if (iid != IID_NULL) {
        return DISP_E_UNKNOWNINTERFACE;
    }
    return ::DispGetIDsOfNames(dispatchInfo, names, count, ids);
}

STDMETHODIMP COrbelCtrl::Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
    EXCEPINFO* exception, UINT* argumentError)
{
    if (iid != IID_NULL) {
        return DISP_E_UNKNOWNINTERFACE;
    }
    return ::DispInvoke(
        static_cast<IOrbelCtrlMethods*>(this), methodsInfo, id, flags, parameters, result, exception, argumentError);
}

STDMETHODIMP COrbelCtrl::GetDeviceInfo(BSTR axKey, BSTR* result)
{
    return AnswerText(result, OB_GetDeviceInfo(ComText::Narrow(axKey).c_str()));
}

STDMETHODIMP COrbelCtrl::IsConnected(LONG* result)
{
    return Answer(result, OB_IsConnected());
}

STDMETHODIMP COrbelCtrl::KeyPressed(LONG* result)
{
    return Answer(result, OB_KeyPressed());
}

STDMETHODIMP COrbelCtrl::Calibrate(LONG* result)
{
    return Answer(result, OB_Calibrate());
}

STDMETHODIMP COrbelCtrl::TriggerMeasurement(LONG* result)
{
    return Answer(result, OB_TriggerMeasurement());
}

STDMETHODIMP COrbelCtrl::SetOption(BSTR axKey, BSTR axValue, LONG* result)
{
    return Answer(result, OB_SetOption(ComText::Narrow(axKey).c_str(), ComText::Narrow(axValue).c_str()));
}

STDMETHODIMP COrbelCtrl::GetOption(BSTR axKey, BSTR* result)
{
    return AnswerText(result, OB_GetOption(ComText::Narrow(axKey).c_str()));
}

STDMETHODIMP COrbelCtrl::SetSubstrate(VARIANT* xySubstrateSpectrum, LONG* result)
{
    float* spectrum = FloatArrayArgument::Elements(xySubstrateSpectrum, spectrumElements);
    return Answer(result, spectrum != nullptr ? OB_SetSubstrate(spectrum) : OB_InvalidArgument);
}

STDMETHODIMP COrbelCtrl::GetTriStimulus(VARIANT* yxTriStimulus, LONG axIndex, LONG* result)
{
    float* values = FloatArrayArgument::Elements(yxTriStimulus, triStimulusElements);
    return Answer(result, values != nullptr ? OB_GetTriStimulus(values, axIndex) : OB_InvalidArgument);
}

STDMETHODIMP COrbelCtrl::GetDensity(FLOAT* axDensity, LONG axIndex, LONG* result)
{
    return Answer(result, OB_GetDensity(axDensity, axIndex));
}

STDMETHODIMP COrbelCtrl::GetDensities(VARIANT* yxDensities, LONG* pxAutoDensityIndex, LONG axIndex, LONG* result)
{
    float* densities = FloatArrayArgument::Elements(yxDensities, densitiesElements);
    return Answer(result,
        densities != nullptr ? OB_GetDensities(densities, reinterpret_cast<int32_t*>(pxAutoDensityIndex), axIndex)
                             : OB_InvalidArgument);
}

STDMETHODIMP COrbelCtrl::GetSpectrum(VARIANT* yxSpectrum, LONG axIndex, LONG* result)
{
    float* spectrum = FloatArrayArgument::Elements(yxSpectrum, spectrumElements);
    return Answer(result, spectrum != nullptr ? OB_GetSpectrum(spectrum, axIndex) : OB_InvalidArgument);
}

STDMETHODIMP COrbelCtrl::GetClassInfo(ITypeInfo** info)
{
    if (info == nullptr) {
        return E_POINTER;
    }
    classInfo->AddRef();
    *info = classInfo;
    return S_OK;
}

STDMETHODIMP COrbelCtrl::SetClientSite(IOleClientSite* site)
{
    if (site != nullptr) {
        site->AddRef();
    }
    ReleaseIfSet(clientSite);
    clientSite = site;
    return S_OK;
}

STDMETHODIMP COrbelCtrl::GetClientSite(IOleClientSite** site)
{
    if (site == nullptr) {
        return E_POINTER;
    }
    if (clientSite != nullptr) {
        clientSite->AddRef();
    }
    *site = clientSite;
    return S_OK;
}

STDMETHODIMP COrbelCtrl::SetHostNames(LPCOLESTR, LPCOLESTR)
{
    return S_OK;
}

STDMETHODIMP COrbelCtrl::Close(DWORD)
{
    return S_OK;
}

STDMETHODIMP COrbelCtrl::SetMoniker(DWORD, IMoniker*)
{
    return E_NOTIMPL;
}

STDMETHODIMP COrbelCtrl::GetMoniker(DWORD, DWORD, IMoniker** moniker)
{
    if (moniker != nullptr) {
        *moniker = nullptr;
    }
    return E_NOTIMPL;
}

STDMETHODIMP COrbelCtrl::InitFromData(IDataObject*, BOOL, DWORD)
{
    return E_NOTIMPL;
}

STDMETHODIMP COrbelCtrl::GetClipboardData(DWORD, IDataObject** data)
{
    if (data != nullptr) {
        *data = nullptr;
    }
    return E_NOTIMPL;
}

// The control has no window and no property page of its own: every verb is taken and does nothing.
STDMETHODIMP COrbelCtrl::DoVerb(LONG, LPMSG, IOleClientSite*, LONG, HWND, LPCRECT)
{
    return S_OK;
}

// The verbs are those of the registry.
STDMETHODIMP COrbelCtrl::EnumVerbs(IEnumOLEVERB** verbs)
{
    if (verbs != nullptr) {
        *verbs = nullptr;
    }
    return OLE_S_USEREG;
}

STDMETHODIMP COrbelCtrl::Update()
{
    return S_OK;
}

STDMETHODIMP COrbelCtrl::IsUpToDate()
{
    return S_OK;
}

STDMETHODIMP COrbelCtrl::GetUserClassID(CLSID* clsid)
{
    return GetClassID(clsid);
}

STDMETHODIMP COrbelCtrl::GetUserType(DWORD, LPOLESTR* name)
{
    if (name == nullptr) {
        return E_POINTER;
    }
    const wchar_t* text = nullptr;
    const int length = ::LoadStringW(ControlModule::Instance(), typeNameResource, reinterpret_cast<LPWSTR>(&text), 0);
    *name = static_cast<LPOLESTR>(::CoTaskMemAlloc((length + 1) * sizeof(wchar_t)));
    if (*name == nullptr) {
        return E_OUTOFMEMORY;
    }
    ::lstrcpynW(*name, text != nullptr ? text : L"", length + 1);
    return S_OK;
}

STDMETHODIMP COrbelCtrl::SetExtent(DWORD aspect, SIZEL* size)
{
    if (aspect != DVASPECT_CONTENT || size == nullptr) {
        return E_INVALIDARG;
    }
    extent = *size;
    return S_OK;
}

STDMETHODIMP COrbelCtrl::GetExtent(DWORD aspect, SIZEL* size)
{
    if (aspect != DVASPECT_CONTENT || size == nullptr) {
        return E_INVALIDARG;
    }
    *size = extent;
    return S_OK;
}

STDMETHODIMP COrbelCtrl::Advise(IAdviseSink*, DWORD* connection)
{
    if (connection != nullptr) {
        *connection = 0;
    }
    return OLE_E_ADVISENOTSUPPORTED;
}

STDMETHODIMP COrbelCtrl::Unadvise(DWORD)
{
    return OLE_E_NOCONNECTION;
}

STDMETHODIMP COrbelCtrl::EnumAdvise(IEnumSTATDATA** advises)
{
    if (advises != nullptr) {
        *advises = nullptr;
    }
    return OLE_E_ADVISENOTSUPPORTED;
}

STDMETHODIMP COrbelCtrl::GetMiscStatus(DWORD, DWORD* status)
{
    if (status == nullptr) {
        return E_POINTER;
    }
    *status = miscStatus;
    return S_OK;
}

STDMETHODIMP COrbelCtrl::SetColorScheme(LOGPALETTE*)
{
    return E_NOTIMPL;
}

STDMETHODIMP COrbelCtrl::GetControlInfo(CONTROLINFO* info)
{
    if (info == nullptr) {
        return E_POINTER;
    }
    info->hAccel = nullptr;
    info->cAccel = 0;
    info->dwFlags = 0;
    return S_OK;
}

STDMETHODIMP COrbelCtrl::OnMnemonic(MSG*)
{
    return S_OK;
}

STDMETHODIMP COrbelCtrl::OnAmbientPropertyChange(DISPID)
{
    return S_OK;
}

STDMETHODIMP COrbelCtrl::FreezeEvents(BOOL)
{
    return S_OK;
}

// White ground, icon 1 at the top left, "zv" on one line at the bottom left.
STDMETHODIMP COrbelCtrl::Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC context, LPCRECTL bounds, LPCRECTL,
    BOOL(STDMETHODCALLTYPE*)(ULONG_PTR), ULONG_PTR)
{
    if (aspect != DVASPECT_CONTENT) {
        return DV_E_DVASPECT;
    }
    if (context == nullptr || bounds == nullptr) {
        return E_INVALIDARG;
    }
    RECT area{bounds->left, bounds->top, bounds->right, bounds->bottom};
    ::FillRect(context, &area, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
    ::DrawIcon(context, area.left, area.top, ::LoadIconW(ControlModule::Instance(), MAKEINTRESOURCEW(iconResource)));
    ::SetBkColor(context, RGB(255, 255, 255));
    ::DrawTextW(context, drawnText, -1, &area, DT_SINGLELINE | DT_BOTTOM | DT_LEFT);
    return S_OK;
}

STDMETHODIMP COrbelCtrl::GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** colors)
{
    if (colors != nullptr) {
        *colors = nullptr;
    }
    return S_FALSE;
}

STDMETHODIMP COrbelCtrl::Freeze(DWORD, LONG, void*, DWORD*)
{
    return E_NOTIMPL;
}

STDMETHODIMP COrbelCtrl::Unfreeze(DWORD)
{
    return E_NOTIMPL;
}

STDMETHODIMP COrbelCtrl::SetAdvise(DWORD, DWORD, IAdviseSink*)
{
    return OLE_E_ADVISENOTSUPPORTED;
}

STDMETHODIMP COrbelCtrl::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink)
{
    if (aspects != nullptr) {
        *aspects = 0;
    }
    if (flags != nullptr) {
        *flags = 0;
    }
    if (sink != nullptr) {
        *sink = nullptr;
    }
    return S_OK;
}

STDMETHODIMP COrbelCtrl::GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*, LPSIZEL size)
{
    return GetExtent(aspect, size);
}

STDMETHODIMP COrbelCtrl::GetClassID(CLSID* clsid)
{
    if (clsid == nullptr) {
        return E_POINTER;
    }
    *clsid = CLSID_OrbelCtrl;
    return S_OK;
}

STDMETHODIMP COrbelCtrl::IsDirty()
{
    return S_FALSE;
}

// Data of an older version is taken and converted; the control stores no property of its own.
STDMETHODIMP COrbelCtrl::Load(LPSTREAM stream)
{
    if (stream == nullptr) {
        return E_POINTER;
    }
    DWORD version = 0;
    SIZEL stored{};
    ULONG read = 0;
    if (FAILED(stream->Read(&version, sizeof version, &read)) || read != sizeof version ||
        FAILED(stream->Read(&stored, sizeof stored, &read)) || read != sizeof stored) {
        return E_FAIL;
    }
    extent = stored;
    return S_OK;
}

STDMETHODIMP COrbelCtrl::Save(LPSTREAM stream, BOOL)
{
    if (stream == nullptr) {
        return E_POINTER;
    }
    const DWORD version = persistedVersion;
    HRESULT result = stream->Write(&version, sizeof version, nullptr);
    if (SUCCEEDED(result)) {
        result = stream->Write(&extent, sizeof extent, nullptr);
    }
    return result;
}

STDMETHODIMP COrbelCtrl::GetSizeMax(ULARGE_INTEGER* size)
{
    if (size == nullptr) {
        return E_POINTER;
    }
    size->QuadPart = sizeof(DWORD) + sizeof(SIZEL);
    return S_OK;
}

// A reset goes to the defaults of a new control.
STDMETHODIMP COrbelCtrl::InitNew()
{
    extent = SIZEL{initialWidth, initialHeight};
    return S_OK;
}

}
