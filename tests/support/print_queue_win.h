// Printer queues of the tests' own, made with the system's PostScript driver.
#pragma once

// clang-format off
#include <windows.h>
#include <winspool.h>
// clang-format on

#include <string>

namespace demovex {

// Whether a job on the queue begins with the print processor that it has.
inline bool TakesJobs(const std::wstring& queue) {
    const HDC dc = CreateDCW(L"WINSPOOL", queue.c_str(), nullptr, nullptr);
    DOCINFOW document = {};
    document.cbSize = sizeof document;
    document.lpszDocName = L"Probe";
    const bool begun = dc != nullptr && StartDocW(dc, &document) > 0;
    if (begun) AbortDoc(dc);
    DeleteDC(dc);
    return begun;
}

// Registers a queue with the printer description `ppd` (a full path) on the port LPT1: and makes it
// the default. Null when all went well, else the name of the call that failed.
inline const char* RegisterPrintQueue(std::wstring queue, std::wstring ppd, bool landscape) {
    std::wstring environment = L"Windows NT x86";
    std::wstring driver = L"wineps.drv";
    std::wstring driver_name = L"Test driver " + queue;
    DRIVER_INFO_3W info = {};
    info.cVersion = 3;
    info.pName = driver_name.data();
    info.pEnvironment = environment.data();
    info.pDriverPath = driver.data();
    info.pConfigFile = driver.data();
    info.pDataFile = ppd.data();
    if (!AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&info),
                             APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY)) {
        return "AddPrinterDriverEx";
    }
    std::wstring port = L"LPT1:";
    std::wstring processor = L"winprint";
    std::wstring data_type = L"RAW";
    PRINTER_INFO_2W printer = {};
    printer.pPrinterName = queue.data();
    printer.pPortName = port.data();
    printer.pDriverName = driver_name.data();
    printer.pPrintProcessor = processor.data();
    printer.pDatatype = data_type.data();
    HANDLE handle = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
    if (handle == nullptr) return "AddPrinter";
    if (!TakesJobs(queue)) {
        // a newer Wine hands pages over in a form that only the PostScript driver's own takes
        DeletePrinter(handle);
        ClosePrinter(handle);
        processor = L"wineps";
        printer.pPrintProcessor = processor.data();
        handle = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
        if (handle == nullptr) return "AddPrinter";
    }
    const char* failed = nullptr;
    if (landscape) {
        const LONG size = DocumentPropertiesW(nullptr, handle, queue.data(), nullptr, nullptr, 0);
        std::string buffer(static_cast<std::size_t>(size > 0 ? size : 1), '\0');
        auto* mode = reinterpret_cast<DEVMODEW*>(buffer.data());
        if (size <= 0 || DocumentPropertiesW(nullptr, handle, queue.data(), mode, nullptr,
                                             DM_OUT_BUFFER) != IDOK) {
            failed = "DocumentProperties";
        } else {
            mode->dmFields |= DM_ORIENTATION;
            mode->dmOrientation = DMORIENT_LANDSCAPE;
            PRINTER_INFO_9W defaults = {mode};
            if (!SetPrinterW(handle, 9, reinterpret_cast<BYTE*>(&defaults), 0)) {
                failed = "SetPrinter";
            }
        }
    }
    ClosePrinter(handle);
    if (!SetDefaultPrinterW(queue.c_str())) return "SetDefaultPrinter";
    return failed;
}

}  // namespace demovex
