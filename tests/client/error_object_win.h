// What a test asks of COM objects from outside.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

#include "platform/com_ptr_win.h"

namespace demovex {

// What the last failed call said: reads and clears the thread's error object.
struct ErrorObject {
    ErrorObject() {
        ComPtr<IErrorInfo> info;
        if (GetErrorInfo(0, info.Out()) != S_OK) return;
        present = true;
        Bstr text;
        if (SUCCEEDED(info->GetSource(text.Out()))) source = TextOf(text.Get());
        if (SUCCEEDED(info->GetDescription(text.Out()))) description = TextOf(text.Get());
    }
    bool present = false;
    std::wstring source, description;
};

// The references that `object` has just now.
template <typename T>
ULONG References(T* object) {
    object->AddRef();
    return object->Release();
}

}  // namespace demovex
