#include "catalog/artikel_record.h"

#include <algorithm>

namespace demovex {
namespace {

template <std::size_t N>
std::string_view Trimmed(const std::array<char, N>& field) noexcept {
    return TrimmedField(std::string_view(field.data(), N));
}

template <std::size_t N>
const char* Take(const char* from, std::array<char, N>& field) noexcept {
    std::copy_n(from, N, field.begin());
    return from + N;
}

}  // namespace

std::string_view TrimmedField(std::string_view field) noexcept {
    while (!field.empty() && field.front() == ' ') field.remove_prefix(1);
    while (!field.empty() && field.back() == ' ') field.remove_suffix(1);
    return field;
}

ArtikelRecord::ArtikelRecord() noexcept {
    Nr.fill(' ');
    Bezeichnung.fill(' ');
    Preis.fill(' ');
    LineEnd = {'\r', '\n'};
}

void ArtikelRecord::Assign(std::string_view line) noexcept {
    const char* from = line.data();
    from = Take(from, Nr);
    from = Take(from, Bezeichnung);
    Take(from, Preis);
}

std::string_view ArtikelRecord::TrimmedNr() const noexcept {
    return Trimmed(Nr);
}

std::string_view ArtikelRecord::TrimmedBezeichnung() const noexcept {
    return Trimmed(Bezeichnung);
}

std::string_view ArtikelRecord::TrimmedPreis() const noexcept {
    return Trimmed(Preis);
}

}  // namespace demovex
