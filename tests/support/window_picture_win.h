// The pixels of a window as they stand on the screen or as it prints itself, to look at single
// points in tests and to save as a picture for people (BMP).
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace demovex {

class WindowPicture {
  public:
    // Copies what the screen shows of the window, borders included, up to the screen's edges.
    static WindowPicture OfScreen(HWND window) {
        RECT outer{};
        GetWindowRect(window, &outer);
        outer.right = std::min<LONG>(outer.right, GetSystemMetrics(SM_CXSCREEN));
        outer.bottom = std::min<LONG>(outer.bottom, GetSystemMetrics(SM_CYSCREEN));
        const HDC screen = GetDC(nullptr);
        WindowPicture picture(screen, outer.left, outer.top, outer.right - outer.left,
                              outer.bottom - outer.top);
        ReleaseDC(nullptr, screen);
        return picture;
    }

    int Width() const { return width_; }
    int Height() const { return height_; }
    // 0x00BBGGRR, as COLORREF.
    COLORREF At(int x, int y) const {
        if (x < 0 || y < 0 || x >= width_ || y >= height_) return CLR_INVALID;
        const std::uint32_t p =
            pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                    static_cast<std::size_t>(x)];
        return RGB((p >> 16) & 255, (p >> 8) & 255, p & 255);
    }
    // Number of pixels of this colour in a rectangle.
    int Count(const RECT& rect, COLORREF color) const {
        int count = 0;
        for (int y = rect.top; y < rect.bottom; ++y) {
            for (int x = rect.left; x < rect.right; ++x) count += At(x, y) == color;
        }
        return count;
    }

    bool Save(const std::string& path) const {
        BITMAPFILEHEADER file{};
        BITMAPINFOHEADER info = Header();
        const auto bytes = static_cast<DWORD>(pixels_.size() * 4);
        file.bfType = 0x4D42;
        file.bfOffBits = sizeof file + sizeof info;
        file.bfSize = file.bfOffBits + bytes;
        std::FILE* out = std::fopen(path.c_str(), "wb");
        if (out == nullptr) return false;
        bool good = std::fwrite(&file, sizeof file, 1, out) == 1;
        good = std::fwrite(&info, sizeof info, 1, out) == 1 && good;
        good = std::fwrite(pixels_.data(), 1, bytes, out) == bytes && good;
        return std::fclose(out) == 0 && good;
    }

  private:
    WindowPicture(HDC source, int left, int top, int width, int height)
        : width_(width), height_(height) {
        pixels_.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        const HDC memory = CreateCompatibleDC(source);
        const HBITMAP bitmap = CreateCompatibleBitmap(source, width, height);
        const HGDIOBJ before = SelectObject(memory, bitmap);
        BitBlt(memory, 0, 0, width, height, source, left, top, SRCCOPY);
        SelectObject(memory, before);
        BITMAPINFO info{};
        info.bmiHeader = Header();
        GetDIBits(memory, bitmap, 0, static_cast<UINT>(height), pixels_.data(), &info,
                  DIB_RGB_COLORS);
        DeleteObject(bitmap);
        DeleteDC(memory);
    }
    BITMAPINFOHEADER Header() const {
        BITMAPINFOHEADER info{};
        info.biSize = sizeof info;
        info.biWidth = width_;
        info.biHeight = -height_;  // top down
        info.biPlanes = 1;
        info.biBitCount = 32;
        return info;
    }

    int width_;
    int height_;
    std::vector<std::uint32_t> pixels_;
};

}  // namespace demovex
