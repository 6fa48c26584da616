#include "client/guard_win.h"

#include <oaidl.h>

#include "platform/com_ptr_win.h"

namespace demovex {

namespace {

// Fills and sets the error object; false when the system cannot make one.
bool SetError(const IID& iid, const wchar_t* source, const wchar_t* description) noexcept {
    ComPtr<ICreateErrorInfo> create;
    if (FAILED(CreateErrorInfo(create.Out()))) return false;
    // the setters copy; their parameters are only for history's sake not const
    create->SetGUID(iid);
    create->SetSource(const_cast<LPOLESTR>(source));
    create->SetDescription(const_cast<LPOLESTR>(description));
    const auto info = create.As<IErrorInfo>(IID_IErrorInfo);
    return info && SUCCEEDED(SetErrorInfo(0, info.Get()));
}

}  // namespace

HRESULT ReportFailure(const IID& iid, const ComFailure& failure) noexcept {
    // a stale error of an earlier call must not be taken for this one's
    if (!SetError(iid, failure.source.c_str(), failure.description.c_str())) {
        SetErrorInfo(0, nullptr);
    }
    return failure.result;
}

HRESULT ReportNullPointer(const IID& iid) noexcept {
    if (!SetError(iid, kErrorSource.data(), L"No place was given for the result")) {
        SetErrorInfo(0, nullptr);
    }
    return E_POINTER;
}

HRESULT ReportCurrentException(const IID& iid) noexcept {
    try {
        return ReportFailure(iid, DescribeCurrentException(kErrorSource));
    } catch (...) {
        // not even the failure could be described: memory is gone
        SetErrorInfo(0, nullptr);
        return static_cast<HRESULT>(ComResultOf(runtime_error::kOutOfMemory));
    }
}

void RaiseFailedCall(HRESULT result, IUnknown* callee, const IID& called) {
    std::wstring source, description;
    const ComPtr<IUnknown> host(callee);
    const auto support = host.As<ISupportErrorInfo>(IID_ISupportErrorInfo);
    ComPtr<IErrorInfo> info;
    if (support && support->InterfaceSupportsErrorInfo(called) == S_OK &&
        GetErrorInfo(0, info.Out()) == S_OK) {
        Bstr text;
        if (SUCCEEDED(info->GetSource(text.Out()))) source = TextOf(text.Get());
        if (SUCCEEDED(info->GetDescription(text.Out()))) description = TextOf(text.Get());
    }
    const std::int32_t number = ErrorNumberOf(result);
    if (description.empty()) description = StandardDescription(number);
    throw Error(number, std::move(source), std::move(description));
}

}  // namespace demovex
