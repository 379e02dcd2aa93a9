// A COM host of the ActiveX control under Wine, after regsvr32: it creates the control by its
// ProgID and calls every method late-bound through IDispatch::Invoke, with real SAFEARRAYs passed
// by reference, draws it into a memory DC and keeps it in a stream. With --unregistered it checks
// that regsvr32 /u left no key behind.
#include <windows.h>

#include <ocidl.h>
#include <ole2.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "SimControl.h"
#include "orbel.h"

namespace {

const wchar_t progId[] = L"Halvorn.OrbelCtrl.1";
const wchar_t classKey[] = L"CLSID\\{78177547-E68B-4694-9087-8C440C5D4761}";
const wchar_t typeLibraryKey[] = L"TypeLib\\{C783E2C8-BC52-472D-944C-55B7B95C6BF1}";
const wchar_t dispatchInterfaceKey[] = L"Interface\\{8A453832-6387-495B-825D-701AAF6BE676}";
constexpr LONG invalidArgument = OB_InvalidArgument;
constexpr VARTYPE floatArrayByReference = VT_BYREF | VT_ARRAY | VT_R4;
constexpr COLORREF iconBlue = RGB(0, 90, 160);
constexpr COLORREF white = RGB(255, 255, 255);
int failures = 0;

void Check(bool passed, const std::string& what)
{
    if (!passed) {
        ++failures;
        std::fprintf(stderr, "FAILED %s\n", what.c_str());
    }
}

bool KeyExists(const wchar_t* key)
{
    HKEY opened = nullptr;
    if (::RegOpenKeyExW(HKEY_CLASSES_ROOT, key, 0, KEY_READ, &opened) != ERROR_SUCCESS) {
        return false;
    }
    ::RegCloseKey(opened);
    return true;
}

std::wstring Value(const std::wstring& key, const wchar_t* name)
{
    wchar_t text[MAX_PATH] = L"";
    DWORD size = sizeof text;
    ::RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
    return text;
}

// A SAFEARRAY of the element type and dimensions given, destroyed with the object.
class Array {
public:
    Array(VARTYPE type, std::vector<ULONG> dimensions)
    {
        std::vector<SAFEARRAYBOUND> bounds;
        for (ULONG count : dimensions) {
            bounds.push_back({count, 0});
        }
        array = ::SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data());
    }
    ~Array() { ::SafeArrayDestroy(array); }
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;

    float* Floats() const { return static_cast<float*>(array->pvData); }

    VARIANT ByReference(VARTYPE elementType)
    {
        VARIANT argument;
        ::VariantInit(&argument);
        V_VT(&argument) = VT_BYREF | VT_ARRAY | elementType;
        V_ARRAYREF(&argument) = &array;
        return argument;
    }

    VARIANT ByValue()
    {
        VARIANT argument;
        ::VariantInit(&argument);
        V_VT(&argument) = VT_ARRAY | VT_R4;
        V_ARRAY(&argument) = array;
        return argument;
    }

private:
    SAFEARRAY* array;
};

VARIANT Long(LONG value)
{
    VARIANT argument;
    ::VariantInit(&argument);
    V_VT(&argument) = VT_I4;
    V_I4(&argument) = value;
    return argument;
}

VARIANT Text(const wchar_t* value)
{
    VARIANT argument;
    ::VariantInit(&argument);
    V_VT(&argument) = VT_BSTR;
    V_BSTR(&argument) = ::SysAllocString(value);
    return argument;
}

class Control {
public:
    explicit Control(IDispatch* dispatch) : dispatch(dispatch) { }

    // The arguments in the order of the method's parameters.
    VARIANT Call(DISPID id, std::vector<VARIANT> arguments)
    {
        std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
        DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
        VARIANT result;
        ::VariantInit(&result);
        EXCEPINFO exception{};
        UINT argumentError = 0;
        const HRESULT status = dispatch->Invoke(
            id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &result, &exception, &argumentError);
        Check(status == S_OK, "Invoke of dispatch id " + std::to_string(id));
        return result;
    }

    LONG Code(DISPID id, std::vector<VARIANT> arguments = {})
    {
        const VARIANT result = Call(id, std::move(arguments));
        return V_VT(&result) == VT_I4 ? V_I4(&result) : -1;
    }

    std::wstring Answer(DISPID id, const wchar_t* key)
    {
        VARIANT argument = Text(key);
        VARIANT result = Call(id, {argument});
        const std::wstring text = V_VT(&result) == VT_BSTR ? V_BSTR(&result) : L"(no text)";
        ::VariantClear(&result);
        ::VariantClear(&argument);
        return text;
    }

    IDispatch* dispatch;
};

enum Method : DISPID {
    GetDeviceInfo = 1,
    IsConnected,
    KeyPressed,
    Calibrate,
    TriggerMeasurement,
    SetOption,
    GetOption,
    SetSubstrate,
    GetTriStimulus,
    GetDensity,
    GetDensities,
    GetSpectrum
};

void CheckNames(IDispatch* dispatch)
{
    const wchar_t* names[] = {L"GetDeviceInfo", L"IsConnected", L"KeyPressed", L"Calibrate", L"TriggerMeasurement",
        L"SetOption", L"GetOption", L"SetSubstrate", L"GetTriStimulus", L"GetDensity", L"GetDensities", L"GetSpectrum"};
    for (DISPID expected = 1; expected <= 12; ++expected) {
        LPOLESTR name = const_cast<LPOLESTR>(names[expected - 1]);
        DISPID id = 0;
        dispatch->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
        Check(id == expected, "dispatch id of method " + std::to_string(expected));
    }
}

void CheckRegistry()
{
    const std::wstring inproc = std::wstring(classKey) + L"\\InprocServer32";
    Check(Value(inproc, L"ThreadingModel") == L"Apartment", "threading model Apartment");
    Check(Value(std::wstring(classKey) + L"\\MiscStatus\\1", nullptr) == L"131473", "misc status 131473");
    Check(Value(std::wstring(classKey) + L"\\Version", nullptr) == L"1.0", "type library version 1.0");
    Check(Value(progId, nullptr) == L"OrbelCtrl Control", "type name of the ProgID");
    Check(KeyExists(typeLibraryKey) && KeyExists(dispatchInterfaceKey), "type library registered");
}

void CheckTextsAndCodes(Control& control)
{
    Check(control.Code(IsConnected) == OB_IsConnected(), "IsConnected answers as OB_IsConnected");
    char version[64];
    std::snprintf(version, sizeof version, "%s", OB_GetDeviceInfo("Version"));
    Check(control.Answer(GetDeviceInfo, L"Version") == std::wstring(version, version + std::strlen(version)),
        "GetDeviceInfo(\"Version\")");
    VARIANT key = Text(L"MeasurementMode");
    VARIANT value = Text(L"SingleReflectance");
    Check(control.Code(SetOption, {key, value}) == OB_NoError, "SetOption");
    ::VariantClear(&key);
    ::VariantClear(&value);
    Check(control.Answer(GetOption, L"MeasurementMode") == L"SingleReflectance", "GetOption");
    Check(control.Answer(GetOption, L"NoSuchKey") == L"Undefined", "GetOption of an unknown key");
    Check(control.Code(KeyPressed) == OB_KeyNotPressed, "KeyPressed");
}

void CheckMeasurement(Control& control)
{
    Check(Sim("place tile") == 0, "orbel-sim place tile");
    Check(control.Code(Calibrate) == OB_NoError, "Calibrate");
    Check(Sim("place sample:grey50") == 0, "orbel-sim place sample:grey50");
    Check(control.Code(TriggerMeasurement) == OB_NoError, "TriggerMeasurement");
    Array spectrum(VT_R4, {36});
    Check(control.Code(GetSpectrum, {spectrum.ByReference(VT_R4), Long(0)}) == OB_NoError, "GetSpectrum");
    Check(std::fabs(spectrum.Floats()[20] - 0.5f) < 0.03f, "reflectance of grey50 written into the host's array");
    Array tristimulus(VT_R4, {3});
    Check(control.Code(GetTriStimulus, {tristimulus.ByReference(VT_R4), Long(0)}) == OB_NoError, "GetTriStimulus");
    Check(std::fabs(tristimulus.Floats()[0] - 76.07f) < 1.5f, "L* of grey50");
}

void CheckDensities(Control& control)
{
    Array paper(VT_R4, {36});
    for (int i = 0; i < 36; ++i) {
        paper.Floats()[i] = 0.9f;
    }
    Check(control.Code(SetSubstrate, {paper.ByReference(VT_R4)}) == OB_NoError, "SetSubstrate");
    float density = 0.0f;
    VARIANT densityArgument;
    ::VariantInit(&densityArgument);
    V_VT(&densityArgument) = VT_BYREF | VT_R4;
    V_R4REF(&densityArgument) = &density;
    Check(control.Code(GetDensity, {densityArgument, Long(0)}) == OB_NoError, "GetDensity");
    Check(std::fabs(density - 0.255f) < 0.05f, "density of grey50 on paper 0.9");
    Array densities(VT_R4, {4});
    LONG automatic = -1;
    VARIANT automaticArgument;
    ::VariantInit(&automaticArgument);
    V_VT(&automaticArgument) = VT_BYREF | VT_I4;
    V_I4REF(&automaticArgument) = &automatic;
    Check(control.Code(GetDensities, {densities.ByReference(VT_R4), automaticArgument, Long(0)}) == OB_NoError,
        "GetDensities");
    Check(automatic >= 0 && automatic <= 4, "automatic filter of GetDensities");
}

// Every wrong array gives 10 without a call: the samples and the last error stay as they were.
void CheckRefusedArrays(Control& control)
{
    struct Case {
        const char* what;
        DISPID method;
        VARTYPE elementType;
        std::vector<ULONG> dimensions;
        bool byReference;
    };
    const Case cases[] = {
        {"35 floats", GetSpectrum, VT_R4, {35}, true},
        {"37 floats", GetSpectrum, VT_R4, {37}, true},
        {"6 by 6 floats", GetSpectrum, VT_R4, {6, 6}, true},
        {"36 doubles", GetSpectrum, VT_R8, {36}, true},
        {"36 floats by value", GetSpectrum, VT_R4, {36}, false},
        {"35 floats of substrate", SetSubstrate, VT_R4, {35}, true},
        {"4 floats of tristimulus", GetTriStimulus, VT_R4, {4}, true},
        {"3 floats of densities", GetDensities, VT_R4, {3}, true},
    };
    const int32_t samples = OB_GetNumberOfAvailableSamples();
    const std::string lastError = OB_GetDeviceInfo("LastError");
    for (const Case& refused : cases) {
        Array array(refused.elementType, refused.dimensions);
        VARIANT argument = refused.byReference ? array.ByReference(refused.elementType) : array.ByValue();
        LONG automatic = 0;
        VARIANT automaticArgument;
        ::VariantInit(&automaticArgument);
        V_VT(&automaticArgument) = VT_BYREF | VT_I4;
        V_I4REF(&automaticArgument) = &automatic;
        std::vector<VARIANT> arguments{argument};
        if (refused.method == GetDensities) {
            arguments.push_back(automaticArgument);
        }
        if (refused.method != SetSubstrate) {
            arguments.push_back(Long(0));
        }
        Check(control.Code(refused.method, arguments) == invalidArgument, std::string(refused.what) + " give 10");
        Check(OB_GetNumberOfAvailableSamples() == samples && lastError == OB_GetDeviceInfo("LastError"),
            std::string(refused.what) + " leave the device alone");
    }
}

// Whether any pixel of the rectangle differs from white.
bool Inked(HDC context, int left, int top, int right, int bottom)
{
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            if (::GetPixel(context, x, y) != white) {
                return true;
            }
        }
    }
    return false;
}

void CheckDrawing(IDispatch* dispatch)
{
    constexpr int width = 120;
    constexpr int height = 60;
    IViewObject* view = nullptr;
    dispatch->QueryInterface(IID_IViewObject, reinterpret_cast<void**>(&view));
    Check(view != nullptr, "IViewObject");
    if (view == nullptr) {
        return;
    }
    HDC screen = ::GetDC(nullptr);
    HDC context = ::CreateCompatibleDC(screen);
    HBITMAP bitmap = ::CreateCompatibleBitmap(screen, width, height);
    HGDIOBJ former = ::SelectObject(context, bitmap);
    RECT all{0, 0, width, height};
    ::FillRect(context, &all, static_cast<HBRUSH>(::GetStockObject(BLACK_BRUSH)));
    const RECTL bounds{0, 0, width, height};
    Check(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, context, &bounds, nullptr, nullptr, 0) == S_OK,
        "Draw");
    Check(::GetPixel(context, 10, 10) == iconBlue && ::GetPixel(context, 31, 31) != white, "icon 1 at the top left");
    Check(!Inked(context, 40, 0, width, 30), "white ground beside the icon");
    Check(Inked(context, 0, 40, 30, height), "\"zv\" at the bottom left");
    Check(!Inked(context, 40, 40, width, height), "nothing at the bottom right");
    ::SelectObject(context, former);
    ::DeleteObject(bitmap);
    ::DeleteDC(context);
    ::ReleaseDC(nullptr, screen);
    view->Release();
}

void CheckPersistence(IDispatch* dispatch)
{
    IPersistStreamInit* persist = nullptr;
    IOleObject* object = nullptr;
    dispatch->QueryInterface(IID_IPersistStreamInit, reinterpret_cast<void**>(&persist));
    dispatch->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&object));
    Check(persist != nullptr && object != nullptr, "IPersistStreamInit and IOleObject");
    if (persist == nullptr || object == nullptr) {
        return;
    }
    DWORD status = 0;
    object->GetMiscStatus(DVASPECT_CONTENT, &status);
    Check(status == 131473, "misc status of the object");
    IStream* stream = nullptr;
    ::CreateStreamOnHGlobal(nullptr, TRUE, &stream);
    Check(persist->InitNew() == S_OK && persist->Save(stream, TRUE) == S_OK, "Save");
    const LARGE_INTEGER start{};
    stream->Seek(start, STREAM_SEEK_SET, nullptr);
    DWORD version = 0;
    stream->Read(&version, sizeof version, nullptr);
    Check(version == 0x00010000, "version 1.0 saved");
    stream->Seek(start, STREAM_SEEK_SET, nullptr);
    Check(persist->Load(stream) == S_OK, "Load");
    stream->Release();
    object->Release();
    persist->Release();
}

int CheckUnregistered()
{
    CLSID clsid;
    Check(FAILED(::CLSIDFromProgID(progId, &clsid)), "ProgID gone");
    for (const wchar_t* key : {progId, classKey, typeLibraryKey, dispatchInterfaceKey}) {
        Check(!KeyExists(key), "key removed");
    }
    return failures == 0 ? 0 : 1;
}

int CheckControl()
{
    CLSID clsid;
    IDispatch* dispatch = nullptr;
    Check(SUCCEEDED(::CLSIDFromProgID(progId, &clsid)), "ProgID registered");
    ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&dispatch));
    Check(dispatch != nullptr, "CoCreateInstance by ProgID");
    if (dispatch == nullptr) {
        return 1;
    }
    Control control(dispatch);
    CheckRegistry();
    CheckNames(dispatch);
    CheckTextsAndCodes(control);
    CheckMeasurement(control);
    CheckRefusedArrays(control);
    CheckDensities(control);
    CheckDrawing(dispatch);
    CheckPersistence(dispatch);
    dispatch->Release();
    return failures == 0 ? 0 : 1;
}

}

int main(int argumentCount, char** arguments)
{
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    int result = 2;
    if (argumentCount == 2 && std::strcmp(arguments[1], "--unregistered") == 0) {
        result = CheckUnregistered();
    } else if (SimStart(argumentCount, arguments)) {
        result = CheckControl();
    }
    ::CoUninitialize();
    std::printf(result == 0 ? "all checks passed\n" : "%d failures\n", failures);
    return result;
}
