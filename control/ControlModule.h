#pragma once

#include <windows.h>

#include <string>

namespace Control {

// The version of the type library that the module carries, registers and loads.
constexpr WORD typeLibraryMajor = 1;
constexpr WORD typeLibraryMinor = 0;

// The module as COM sees it: its handle, and the objects and locks that keep it loaded.
class ControlModule {
public:
    static void SetInstance(HINSTANCE instance);
    static HINSTANCE Instance();
    // The full path of orbel.dll.
    static std::wstring Path();

    static void ObjectMade();
    static void ObjectGone();
    static void Lock(bool lock);
    static bool CanUnload();
};

}
