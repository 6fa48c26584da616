// Between the component's wide paths and the C++ library's, whatever the C locale of the test.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>

namespace demovex {

inline std::filesystem::path ToNativePath(std::wstring_view path) {
#ifdef _WIN32
    return std::filesystem::path(std::wstring(path));
#else
    // wide characters are code points here; the file system's names are UTF-8
    std::u32string points(path.begin(), path.end());
    std::replace(points.begin(), points.end(), U'\\', U'/');
    return std::filesystem::path(points);
#endif
}

inline std::wstring FromNativePath(const std::filesystem::path& path) {
#ifdef _WIN32
    return path.wstring();
#else
    const std::u32string points = path.u32string();
    return {points.begin(), points.end()};
#endif
}

}  // namespace demovex
