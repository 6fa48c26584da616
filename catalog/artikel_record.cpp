#include "catalog/artikel_record.h"

#include <algorithm>

namespace demovex {
namespace {

template <std::size_t N>
std::string_view Trimmed(const std::array<char, N>& field) noexcept {
    std::size_t begin = 0;
    std::size_t end = N;
    while (begin < end && field[begin] == ' ') ++begin;
    while (end > begin && field[end - 1] == ' ') --end;
    return std::string_view(field.data() + begin, end - begin);
}

template <std::size_t N>
const char* Take(const char* from, std::array<char, N>& field) noexcept {
    std::copy_n(from, N, field.begin());
    return from + N;
}

}  // namespace

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
