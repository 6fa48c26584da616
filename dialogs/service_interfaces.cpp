#include "dialogs/service_interfaces.h"

namespace demovex {

// Texts come by value: an implementer keeps them without another copy.
// NOLINTBEGIN(performance-unnecessary-value-param)

bool IFeedback::SetText(std::wstring, std::int32_t) {
    return false;
}
bool IFeedback::SetProgress(float, std::int32_t) {
    return false;
}

std::int32_t IUserInteraction::MsgBox(std::wstring&, std::int32_t, std::wstring, std::wstring,
                                      std::int32_t) {
    return 0;
}

// NOLINTEND(performance-unnecessary-value-param)

void IFileSystemOperation::Copy(std::wstring&, std::wstring&) {}
void IFileSystemOperation::Delete(std::wstring&) {}
void IFileSystemOperation::MakeDirectory(std::wstring&) {}
void IFileSystemOperation::KillDirectory(std::wstring&) {}

}  // namespace demovex
