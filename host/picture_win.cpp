#include "host/picture_win.h"

#include <objidl.h>

// GDI+ in its flat form, which needs no wrapper classes.
#include <gdiplus.h>

#include <cstring>
#include <vector>

namespace demovex::host {

namespace {

// A screen copy in a bitmap of 24 bits a pixel, rows from the bottom up, as BMP files have them.
struct Copy {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rows;
    BITMAPINFO info{};
};

bool TakeCopy(const RECT& area, Copy& copy) {
    copy.width = area.right - area.left;
    copy.height = area.bottom - area.top;
    if (copy.width <= 0 || copy.height <= 0) return false;
    copy.info.bmiHeader.biSize = sizeof copy.info.bmiHeader;
    copy.info.bmiHeader.biWidth = copy.width;
    copy.info.bmiHeader.biHeight = copy.height;
    copy.info.bmiHeader.biPlanes = 1;
    copy.info.bmiHeader.biBitCount = 24;
    const std::size_t stride = (static_cast<std::size_t>(copy.width) * 3 + 3) / 4 * 4;
    copy.rows.resize(stride * static_cast<std::size_t>(copy.height));
    copy.info.bmiHeader.biSizeImage = static_cast<DWORD>(copy.rows.size());

    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, copy.width, copy.height);
    bool done = false;
    if (screen && memory && bitmap) {
        const HGDIOBJ before = SelectObject(memory, bitmap);
        done = BitBlt(memory, 0, 0, copy.width, copy.height, screen, area.left, area.top, SRCCOPY);
        SelectObject(memory, before);
        done = done && GetDIBits(memory, bitmap, 0, static_cast<UINT>(copy.height),
                                 copy.rows.data(), &copy.info, DIB_RGB_COLORS) == copy.height;
    }
    if (bitmap) DeleteObject(bitmap);
    if (memory) DeleteDC(memory);
    if (screen) ReleaseDC(nullptr, screen);
    return done;
}

bool WriteBmp(const Copy& copy, const std::wstring& path) {
    BITMAPFILEHEADER header{};
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof header + sizeof copy.info.bmiHeader;
    header.bfSize = header.bfOffBits + static_cast<DWORD>(copy.rows.size());
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    DWORD written = 0;
    const bool done =
        WriteFile(file, &header, sizeof header, &written, nullptr) &&
        WriteFile(file, &copy.info.bmiHeader, sizeof copy.info.bmiHeader, &written, nullptr) &&
        WriteFile(file, copy.rows.data(), static_cast<DWORD>(copy.rows.size()), &written, nullptr);
    return CloseHandle(file) && done;
}

bool WritePng(Copy& copy, const std::wstring& path) {
    namespace Gdip = Gdiplus::DllExports;
    // the system's encoder for PNG
    const CLSID encoder = {
        0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
    ULONG_PTR token = 0;
    Gdiplus::GdiplusStartupInput input;
    if (Gdiplus::GdiplusStartup(&token, &input, nullptr) != Gdiplus::Ok) return false;
    Gdiplus::GpBitmap* bitmap = nullptr;
    bool done =
        Gdip::GdipCreateBitmapFromGdiDib(&copy.info, copy.rows.data(), &bitmap) == Gdiplus::Ok;
    if (done) {
        done = Gdip::GdipSaveImageToFile(bitmap, path.c_str(), &encoder, nullptr) == Gdiplus::Ok;
        Gdip::GdipDisposeImage(bitmap);
    }
    Gdiplus::GdiplusShutdown(token);
    return done;
}

}  // namespace

bool SavePicture(const RECT& area, const std::wstring& path) {
    Copy copy;
    if (!TakeCopy(area, copy)) return false;
    const bool png = path.size() > 4 && _wcsicmp(path.c_str() + path.size() - 4, L".png") == 0;
    return png ? WritePng(copy, path) : WriteBmp(copy, path);
}

}  // namespace demovex::host
