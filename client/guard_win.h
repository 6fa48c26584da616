// The edge between the component and a host: every method that a host calls runs inside Guarded,
// which lets no exception out and tells the host what failed.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <utility>

#include "client/com_result.h"

namespace demovex {

// The source of errors that name none of their own.
inline constexpr std::wstring_view kErrorSource = L"DemoVexClient";

// Reports `failure` of a method of interface `iid` as the thread's error object. Returns its result
// code; does its best when memory is short.
HRESULT ReportFailure(const IID& iid, const ComFailure& failure) noexcept;

// The failure of a method that was given no place for its result: E_POINTER.
HRESULT ReportNullPointer(const IID& iid) noexcept;

// DescribeCurrentException and ReportFailure in one. Call it from a catch block only.
HRESULT ReportCurrentException(const IID& iid) noexcept;

// S_OK after `f` returned, else the result code of what it threw.
template <typename F>
HRESULT Guarded(const IID& iid, F&& f) noexcept {
    try {
        std::forward<F>(f)();
        return S_OK;
    } catch (...) {
        return ReportCurrentException(iid);
    }
}

// Raises the error that a failed call into the host stands for, with the host's own source and
// description where it gave them. `called` is the interface that was called.
void RaiseFailedCall(HRESULT result, IUnknown* callee, const IID& called);

}  // namespace demovex
