#include "control/ControlRegistration.h"

#include <oleauto.h>

#include <string>

#include "OrbelCtrl_h.h"
#include "control/COrbelCtrl.h"
#include "control/ControlModule.h"

namespace Control {

namespace {

const wchar_t progId[] = L"Halvorn.OrbelCtrl.1";
const wchar_t typeName[] = L"OrbelCtrl Control";
constexpr LCID typeLibraryLocale = 1033;

struct Entry {
    std::wstring key;
    const wchar_t* name;
    std::wstring value;
};

std::wstring GuidText(REFGUID guid)
{
    wchar_t text[40];
    ::StringFromGUID2(guid, text, 40);
    return text;
}

std::wstring ClassKey()
{
    return L"CLSID\\" + GuidText(CLSID_OrbelCtrl);
}

bool SetValue(const Entry& entry)
{
    HKEY key = nullptr;
    if (::RegCreateKeyExW(HKEY_CLASSES_ROOT, entry.key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr) !=
        ERROR_SUCCESS) {
        return false;
    }
    const auto size = static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t));
    const LONG result =
        ::RegSetValueExW(key, entry.name, 0, REG_SZ, reinterpret_cast<const BYTE*>(entry.value.c_str()), size);
    ::RegCloseKey(key);
    return result == ERROR_SUCCESS;
}

// The key with everything below it; a key that isn't there counts as removed.
bool DeleteTree(const std::wstring& key)
{
    const LONG result = ::RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
    return result == ERROR_SUCCESS || result == ERROR_FILE_NOT_FOUND;
}

}

HRESULT ControlRegistration::Register()
{
    if (!RegisterTypeLibrary()) {
        return typeLibraryFailed;
    }
    return RegisterControlClass() ? S_OK : classFailed;
}

HRESULT ControlRegistration::Unregister()
{
    if (!UnregisterTypeLibrary()) {
        return typeLibraryFailed;
    }
    return UnregisterControlClass() ? S_OK : classFailed;
}

// Registering the library also enters its interfaces under Interface\{iid}.
bool ControlRegistration::RegisterTypeLibrary()
{
    ITypeLib* library = nullptr;
    if (FAILED(::LoadTypeLibEx(ControlModule::Path().c_str(), REGKIND_REGISTER, &library))) {
        return false;
    }
    library->Release();
    return true;
}

bool ControlRegistration::UnregisterTypeLibrary()
{
    return SUCCEEDED(
        ::UnRegisterTypeLib(LIBID_ORBELCTRLLib, typeLibraryMajor, typeLibraryMinor, typeLibraryLocale, SYS_WIN64));
}

bool ControlRegistration::RegisterControlClass()
{
    const std::wstring classKey = ClassKey();
    const std::wstring path = ControlModule::Path();
    const Entry entries[] = {
        {progId, nullptr, typeName},
        {std::wstring(progId) + L"\\CLSID", nullptr, GuidText(CLSID_OrbelCtrl)},
        {classKey, nullptr, typeName},
        {classKey + L"\\ProgID", nullptr, progId},
        {classKey + L"\\InprocServer32", nullptr, path},
        {classKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
        {classKey + L"\\Control", nullptr, L""},
        {classKey + L"\\ToolboxBitmap32", nullptr, path + L", 1"},
        {classKey + L"\\MiscStatus", nullptr, L"0"},
        {classKey + L"\\MiscStatus\\1", nullptr, std::to_wstring(COrbelCtrl::miscStatus)},
        {classKey + L"\\TypeLib", nullptr, GuidText(LIBID_ORBELCTRLLib)},
        {classKey + L"\\Version", nullptr, L"1.0"},
    };
    for (const Entry& entry : entries) {
        if (!SetValue(entry)) {
            return false;
        }
    }
    return true;
}

bool ControlRegistration::UnregisterControlClass()
{
    const bool progIdGone = DeleteTree(progId);
    const bool classGone = DeleteTree(ClassKey());
    return progIdGone && classGone;
}

}
